#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "base/RuntimeError.h"
#include "engine/codecs/Formats.h"

/// Whatever the bytes are, decoding gives a picture or an error that says why not.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kestrel;
  try {
    const engine::Decoded decoded = engine::KESTREL_FUZZED_FORMAT::decode({data, size});
    if (decoded.bitmap.empty()) std::abort();
  } catch (const RuntimeError& error) {
    const bool expected = error.Number() == err::kInvalidPicture || error.Number() == err::kOutOfMemory;
    if (!expected || error.Description().empty()) {
      std::fprintf(stderr, "error %d: %s\n", error.Number(), error.what());
      std::abort();
    }
  }
  return 0;
}
