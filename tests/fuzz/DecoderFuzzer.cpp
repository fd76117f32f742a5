#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "RoundTrip.h"
#include "base/RuntimeError.h"
#include "engine/codecs/CodecTable.h"

/// Decoding any bytes must return a picture, which can be encoded and decoded again, or raise an error.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kestrel;
  static const engine::Codec& codec = *engine::codecOfName("x." KESTREL_FUZZED_FORMAT);
  try {
    const engine::Decoded decoded = codec.decode({data, size});
    if (decoded.bitmap.empty()) std::abort();
    fuzz::requireRoundTrip(decoded, codec.format);
  } catch (const RuntimeError& error) {
    const bool expected = error.Number() == err::kInvalidPicture || error.Number() == err::kOutOfMemory;
    if (!expected || error.Description().empty()) {
      std::fprintf(stderr, "error %d: %s\n", error.Number(), error.what());
      std::abort();
    }
  }
  return 0;
}
