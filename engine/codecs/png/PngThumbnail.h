#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "engine/codecs/common/Decoded.h"

// What a cache of thumbnails needs of PNG in addition to `decode`.

namespace kestrel::engine::png {

/// What the chunks of a file contain, without its pixels.
struct Facts {
  std::int32_t width = 0, height = 0;
  std::vector<KeyedText> texts;
};

/// The facts of a complete file with correct checksums; nothing for other files. Decodes no pixels.
/// Raises RuntimeError 7 when out of memory.
std::optional<Facts> readFacts(Bytes data);

/// Encodes as 8-bit RGBA, not interlaced, also where all pixels are opaque.
std::vector<std::uint8_t> encodeWithAlpha(const Bitmap& bitmap, const std::vector<KeyedText>& texts);

}  // namespace kestrel::engine::png
