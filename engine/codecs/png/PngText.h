#pragma once

#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::png {

/// Takes what a keyed text tells: XMP, IPTC, a comment and, in files from before the format had a place for
/// it, EXIF; any other stays a text.
void readText(KeyedText text, Metadata& metadata);

/// The texts of `metadata`, and those that hold its XMP, IPTC and comment.
std::vector<KeyedText> writeTexts(const Metadata& metadata);

}  // namespace kestrel::engine::png
