#include "GifLzw.h"

#include <algorithm>
#include <array>
#include <optional>

#include "engine/parallel/Cancellation.h"

// GIF89a, appendix F: LZW with codes of code size + 1 to 12 bits, least significant bit first.

namespace kestrel::engine::gif {
namespace {

constexpr std::uint32_t kMostBits = 12;
constexpr std::size_t kMostCodes = std::size_t{1} << kMostBits;

/// Bit reader over a chain of sub-blocks, which ends with an empty block or with the file.
class BitReader {
 public:
  explicit BitReader(ByteReader& reader) : reader_(reader) {}

  std::optional<std::uint32_t> read(std::uint32_t bits) {
    while (held_ < bits) {
      if (block_.empty() && !nextBlock()) return std::nullopt;
      window_ |= std::uint32_t{block_[0]} << held_;
      block_ = block_.subspan(1);
      held_ += 8;
    }
    const std::uint32_t value = window_ & ((1U << bits) - 1);
    window_ >>= bits;
    held_ -= bits;
    return value;
  }

 private:
  bool nextBlock() {
    if (reader_.remaining() == 0) return false;
    const std::size_t size = reader_.u8();
    block_ = reader_.take(std::min(size, reader_.remaining()));
    return !block_.empty();
  }

  ByteReader& reader_;
  Bytes block_;
  std::uint32_t window_ = 0, held_ = 0;
};

/// LZW dictionary: each string is an earlier string and one more index.
class Dictionary {
 public:
  explicit Dictionary(std::uint32_t codeSize) : roots_(1U << codeSize) {
    for (std::uint32_t i = 0; i < roots_; ++i) last_[i] = first_[i] = static_cast<std::uint8_t>(i);
    length_.fill(1);
    reset();
  }

  std::uint32_t clearCode() const { return roots_; }
  std::uint32_t endCode() const { return roots_ + 1; }
  std::uint32_t size() const { return size_; }
  void reset() { size_ = roots_ + 2; }

  /// Whether the code is defined as a string.
  bool knows(std::uint32_t code) const { return code < roots_ || (code > roots_ + 1 && code < size_); }
  std::uint8_t first(std::uint32_t code) const { return first_[code]; }

  void add(std::uint32_t prefix, std::uint8_t last) {
    if (size_ == kMostCodes) return;
    prefix_[size_] = static_cast<std::uint16_t>(prefix);
    last_[size_] = last;
    first_[size_] = first_[prefix];
    length_[size_] = static_cast<std::uint16_t>(length_[prefix] + 1);
    ++size_;
  }

  /// Appends a code's string, up to `most` indices in total.
  void append(std::uint32_t code, std::vector<std::uint8_t>& indices, std::size_t most) const {
    const std::size_t start = indices.size();
    const std::size_t length = length_[code];
    indices.resize(std::min(most, start + length));
    for (std::size_t at = start + length; at-- > start; code = prefix_[code]) {
      if (at < indices.size()) indices[at] = last_[code];
    }
  }

 private:
  std::uint32_t roots_;
  std::uint32_t size_ = 0;
  std::array<std::uint16_t, kMostCodes> prefix_{};
  std::array<std::uint16_t, kMostCodes> length_{};
  std::array<std::uint8_t, kMostCodes> first_{}, last_{};
};

}  // namespace

std::vector<std::uint8_t> unpackLzw(ByteReader& reader, std::size_t count) {
  std::vector<std::uint8_t> indices;
  if (reader.remaining() == 0) return indices;
  const std::uint32_t codeSize = reader.u8();
  if (codeSize < 1 || codeSize >= kMostBits) return indices;
  indices.reserve(count);

  BitReader bits(reader);
  Dictionary dictionary(codeSize);
  std::uint32_t width = codeSize + 1;
  constexpr std::uint32_t kNoCode = kMostCodes;
  std::uint32_t previous = kNoCode;
  constexpr std::size_t kCodesPerCheck = 4096;
  for (std::size_t codes = 0; indices.size() < count; ++codes) {
    if (codes % kCodesPerCheck == 0) checkCanceled();
    const auto code = bits.read(width);
    if (!code || *code == dictionary.endCode()) break;
    if (*code == dictionary.clearCode()) {
      dictionary.reset();
      width = codeSize + 1;
      previous = kNoCode;
      continue;
    }
    // A code may be used by the very step that defines it; higher codes are invalid.
    const bool known = dictionary.knows(*code);
    if (!known && (previous == kNoCode || *code != dictionary.size())) break;
    if (previous != kNoCode) dictionary.add(previous, dictionary.first(known ? *code : previous));
    dictionary.append(*code, indices, count);
    previous = *code;
    if (dictionary.size() == (std::size_t{1} << width) && width < kMostBits) ++width;
  }
  return indices;
}

}  // namespace kestrel::engine::gif
