#include "RoundTrip.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "engine/codecs/CodecTable.h"

namespace kestrel::fuzz {
namespace {

using namespace kestrel::engine;

constexpr std::int64_t kLargest = 64 * 64;

void requireEqual(const ConstPixels& a, const ConstPixels& b) {
  for (std::int32_t y = 0; y < a.height; ++y) {
    if (std::memcmp(a.row(y), b.row(y), std::size_t{4} * static_cast<std::size_t>(a.width)) != 0)
      std::abort();
  }
}

}  // namespace

void requireRoundTrip(const Decoded& decoded, std::int32_t format) {
  const Codec* const codec = codecOf(format);
  const ConstPixels pixels = decoded.bitmap.pixels();
  if (codec->encode == nullptr || std::int64_t{pixels.width} * pixels.height > kLargest) return;
  const std::vector<std::uint8_t> file = codec->encode(decoded.bitmap, decoded.metadata, {});
  if (!codec->probe(file)) std::abort();
  const Decoded again = codec->decode(file);
  if (!again.notice.empty() || again.bitmap.width() != pixels.width ||
      again.bitmap.height() != pixels.height) {
    std::abort();
  }
  if (format == format::kPng) requireEqual(pixels, again.bitmap.pixels());
}

}  // namespace kestrel::fuzz
