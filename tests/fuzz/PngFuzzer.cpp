// Fuzzes the PNG decoder in two ways. Input that begins with a PNG signature is decoded as it is: damaged
// framing. Any other input describes a file, which is built with a legal header, right checksums and a valid
// zlib stream: without that nearly no input would reach the pixels. Both are held to libpng: a file that
// libpng decodes must give the same pixels.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <vector>

#include "FramedPng.h"
#include "PngReference.h"
#include "RoundTrip.h"
#include "base/RuntimeError.h"
#include "engine/codecs/png/Png.h"

namespace {

using namespace kestrel;
using namespace kestrel::engine;

/// Ends the program unless our decoder gave the pixels that libpng gave. Pictures whose metadata changes
/// their colors or their orientation are not compared: libpng does not apply it.
void requireSamePixels(const std::vector<std::uint8_t>& rgba, const Decoded& decoded) {
  if (!decoded.stored.profile.empty() || !decoded.metadata.exif.empty()) return;
  const ConstPixels pixels = decoded.bitmap.pixels();
  const std::size_t stride = std::size_t{4} * static_cast<std::size_t>(pixels.width);
  if (!decoded.notice.empty() || stride * static_cast<std::size_t>(pixels.height) != rgba.size())
    std::abort();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    if (std::memcmp(pixels.row(y), &rgba[static_cast<std::size_t>(y) * stride], stride) != 0) std::abort();
  }
}

void decodeAsLibpng(Bytes file) {
  const std::optional<std::vector<std::uint8_t>> reference = fuzz::decodeByLibpng(file);
  try {
    const Decoded decoded = png::decode(file);
    if (decoded.bitmap.empty()) std::abort();
    if (reference) requireSamePixels(*reference, decoded);
    fuzz::requireRoundTrip(decoded, format::kPng);
  } catch (const RuntimeError& error) {
    const bool expected = error.Number() == err::kInvalidPicture || error.Number() == err::kOutOfMemory;
    if (expected && !error.Description().empty() && !reference) return;
    std::fprintf(stderr, "error %d: %s\n", error.Number(), error.what());
    std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Bytes input(data, size);
  if (png::probe(input)) {
    decodeAsLibpng(input);
  } else {
    decodeAsLibpng(fuzz::framedPng(input));
  }
  return 0;
}
