#pragma once

#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::png {

/// Interprets a text chunk: XMP, IPTC, a comment, or EXIF of files older than the eXIf chunk. Other texts are
/// kept as texts.
void readText(KeyedText text, Metadata& metadata);

/// Text chunks for `metadata`: its texts, XMP, IPTC and comment.
std::vector<KeyedText> writeTexts(const Metadata& metadata);

}  // namespace kestrel::engine::png
