#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Codecs.h"

namespace kestrel::engine::png {

/// A keyed text of a PNG file; an international one is UTF-8.
struct Text {
  std::string key;
  std::string text;
  bool international = false;
};

/// Takes what a keyed text tells of XMP, IPTC and, in files from before the format had a place for it, EXIF.
void readText(std::string_view key, std::string_view text, Metadata& metadata);

/// The texts that hold the XMP and IPTC of `metadata`.
std::vector<Text> writeTexts(const Metadata& metadata);

}  // namespace kestrel::engine::png
