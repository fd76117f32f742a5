#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "base/RuntimeError.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/jpeg/Jpeg.h"

/// Decoding any bytes for a thumbnail must return a picture or raise an error. A decoded picture with its
/// metadata must survive saving and decoding.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kestrel;
  try {
    const engine::Decoded decoded = engine::jpeg::decodeReduced({data, size}, 1);
    if (decoded.bitmap.empty()) std::abort();
    const auto saved = engine::encode(decoded.bitmap, decoded.metadata, engine::format::kJpg);
    const engine::Decoded again = engine::decode(saved);
    if (again.bitmap.width() != decoded.bitmap.width() || !again.notice.empty()) std::abort();
  } catch (const RuntimeError& error) {
    const bool expected = error.Number() == err::kInvalidPicture || error.Number() == err::kOutOfMemory;
    if (!expected || error.Description().empty()) {
      std::fprintf(stderr, "error %d: %s\n", error.Number(), error.what());
      std::abort();
    }
  }
  return 0;
}
