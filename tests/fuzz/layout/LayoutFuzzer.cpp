// Fuzzes the layout reader. The block gets a correct header and checksum, without which the reader would stop
// there. A layout that is read must survive a round trip.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "base/RuntimeError.h"
#include "platform/docking/LayoutFormat.h"
#include "platform/docking/LayoutReader.h"
#include "platform/docking/LayoutWriter.h"
#include "platform/docking/TagStream.h"
#include "platform/docking/WideText.h"

namespace {

using namespace kestrel;
using namespace kestrel::docking;

/// The bytes after the first are a whole block if the first is even, else a stream that gets a header.
std::vector<std::byte> blockOf(std::span<const std::byte> input) {
  std::vector<std::byte> block(input.begin() + 1, input.end());
  if (static_cast<int>(input[0]) % 2 == 1) {
    std::vector<std::byte> header = wideFromUtf8(layout_format::kMagic);
    for (const std::uint32_t word : {4u, 0u, 511u, 27u, 36u}) {
      for (int i = 0; i < 4; ++i) header.push_back(static_cast<std::byte>(word >> (8 * i) & 0xFF));
    }
    block.insert(block.begin(), header.begin(), header.end());
  }
  if (block.size() >= layout_format::kHeaderSize) {
    const std::uint32_t sum = layoutChecksum(block);
    for (std::size_t i = 0; i < 4; ++i) {
      block[layout_format::kChecksumOffset + i] = static_cast<std::byte>(sum >> (8 * i) & 0xFF);
    }
  }
  return block;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const auto block = blockOf(std::as_bytes(std::span(data, size)));
  StoredLayout layout;
  try {
    layout = readLayout(block);
  } catch (const RuntimeError& error) {
    if (error.Number() != kInvalidFileFormat) std::abort();
    return 0;
  }
  if (readLayout(writeLayout(layout)) != layout) std::abort();
  return 0;
}
