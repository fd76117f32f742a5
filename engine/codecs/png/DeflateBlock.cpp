#include "DeflateBlock.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "PrefixCode.h"

namespace kestrel::engine {
namespace {

constexpr std::size_t kSymbols = 286, kDistances = 30, kEndOfBlock = 256;
constexpr std::size_t kFixedSymbols = 288, kFixedDistances = 32;
constexpr std::size_t kLengthCodes = 19;
/// One bit less than the format allows: four literal codes then always fit into the bit buffer.
constexpr int kLongestCode = 14;
constexpr int kLongestLengthCode = 7;
constexpr unsigned kTypeBits = 3;
constexpr std::size_t kMostStored = 65535;
/// Largest overhead of a stored block.
constexpr std::size_t kStoredOverhead = 5;
enum BlockType : std::uint32_t { kStored = 0, kFixed = 1, kDynamic = 2 };

/// A length or distance: its symbol, and the number and value of its extra bits.
struct Range {
  std::size_t symbol;
  unsigned bits;
  std::uint32_t extra;
};

Range lengthRange(std::uint32_t length) {
  if (length == DeflateBlocks::kLongestMatch) return {285, 0, 0};
  const std::uint32_t value = length - 3;
  const unsigned bits = value < 8 ? 0 : static_cast<unsigned>(std::bit_width(value)) - 3;
  return {257 + 4 * bits + (value >> bits), bits, value & ((1U << bits) - 1)};
}

Range distanceRange(std::uint32_t distance) {
  const std::uint32_t value = distance - 1;
  const unsigned bits = value < 4 ? 0 : static_cast<unsigned>(std::bit_width(value)) - 2;
  return {2 * bits + (value >> bits), bits, value & ((1U << bits) - 1)};
}

void storeLittleEndian(std::uint8_t* target, std::uint64_t value) {
  if constexpr (std::endian::native == std::endian::big) value = __builtin_bswap64(value);
  std::memcpy(target, &value, sizeof value);
}

struct Counts {
  std::array<std::uint32_t, kSymbols> symbols{};
  std::array<std::uint32_t, kDistances> distances{};
  std::size_t extraBits = 0;
};

/// Four histograms: repeated bytes would otherwise stall on the same counter.
void countLiterals(Bytes data, std::span<const DeflateMatch> matches, Counts& counts) {
  std::array<std::array<std::uint32_t, 256>, 4> tables{};
  const std::uint8_t* at = data.data();
  for (const DeflateMatch& match : matches) {
    const std::uint8_t* const end = at + match.literals;
    for (; end - at >= 4; at += 4)
      for (std::size_t i = 0; i < 4; ++i) ++tables[i][at[i]];
    for (; at < end; ++at) ++tables[0][*at];
    at += match.length;
  }
  for (std::size_t i = 0; i < 256; ++i)
    counts.symbols[i] = tables[0][i] + tables[1][i] + tables[2][i] + tables[3][i];
}

Counts countSymbols(Bytes data, std::span<const DeflateMatch> matches) {
  Counts counts;
  countLiterals(data, matches, counts);
  for (const DeflateMatch& match : matches) {
    if (match.length == 0) continue;
    const Range length = lengthRange(match.length), distance = distanceRange(match.distance);
    ++counts.symbols[length.symbol];
    ++counts.distances[distance.symbol];
    counts.extraBits += length.bits + distance.bits;
  }
  counts.symbols[kEndOfBlock] = 1;
  return counts;
}

/// A symbol of the code length alphabet: a length, or a repetition with its extra bits.
struct LengthSymbol {
  std::uint8_t symbol;
  std::uint8_t bits;
  std::uint8_t extra;
};

std::vector<LengthSymbol> encodeLengths(std::span<const std::uint8_t> lengths) {
  std::vector<LengthSymbol> steps;
  for (std::size_t i = 0; i < lengths.size();) {
    const std::uint8_t length = lengths[i];
    std::size_t run = 1;
    while (i + run < lengths.size() && lengths[i + run] == length) ++run;
    i += run;
    if (length != 0) {
      steps.push_back({length, 0, 0});
      --run;
    }
    while (run >= 3) {
      const std::size_t most = length != 0 ? 6 : run < 11 ? 10 : 138;
      const std::size_t taken = std::min(run, most);
      if (length != 0) {
        steps.push_back({16, 2, static_cast<std::uint8_t>(taken - 3)});
      } else if (taken < 11) {
        steps.push_back({17, 3, static_cast<std::uint8_t>(taken - 3)});
      } else {
        steps.push_back({18, 7, static_cast<std::uint8_t>(taken - 11)});
      }
      run -= taken;
    }
    for (; run > 0; --run) steps.push_back({length, 0, 0});
  }
  return steps;
}

/// Number of lengths to write: up to the last that is not 0, at least `fewest`.
std::size_t usedLengths(std::span<const std::uint8_t> lengths, std::size_t fewest) {
  std::size_t count = lengths.size();
  while (count > fewest && lengths[count - 1] == 0) --count;
  return count;
}

/// The encoded code lengths of a dynamic block (RFC 1951, 3.2.7).
class LengthTable {
 public:
  LengthTable(std::span<const std::uint8_t> symbols, std::span<const std::uint8_t> distances)
      : symbolCount_(usedLengths(symbols, kEndOfBlock + 1)), distanceCount_(usedLengths(distances, 1)) {
    std::vector<std::uint8_t> all(symbols.begin(),
                                  symbols.begin() + static_cast<std::ptrdiff_t>(symbolCount_));
    all.insert(all.end(), distances.begin(), distances.begin() + static_cast<std::ptrdiff_t>(distanceCount_));
    steps_ = encodeLengths(all);
    std::array<std::uint32_t, kLengthCodes> counts{};
    for (const LengthSymbol& step : steps_) ++counts[step.symbol];
    makeCodeLengths(counts, kLongestLengthCode, lengths_);
    makeCodes(lengths_, codes_);
    while (codeCount_ > 4 && lengths_[kOrder[codeCount_ - 1]] == 0) --codeCount_;
  }

  std::size_t bits() const {
    std::size_t total = 14 + 3 * codeCount_;
    for (const LengthSymbol& step : steps_) total += std::size_t{lengths_[step.symbol]} + step.bits;
    return total;
  }

  template <typename Put>
  void write(const Put& put) const {
    put(static_cast<std::uint32_t>(symbolCount_ - 257), 5);
    put(static_cast<std::uint32_t>(distanceCount_ - 1), 5);
    put(static_cast<std::uint32_t>(codeCount_ - 4), 4);
    for (std::size_t i = 0; i < codeCount_; ++i) put(lengths_[kOrder[i]], 3);
    for (const LengthSymbol& step : steps_) {
      put(codes_[step.symbol], lengths_[step.symbol]);
      put(step.extra, step.bits);
    }
  }

 private:
  static constexpr std::array<std::uint8_t, kLengthCodes> kOrder{16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                                 11, 4,  12, 3, 13, 2, 14, 1, 15};
  std::size_t symbolCount_, distanceCount_, codeCount_ = kLengthCodes;
  std::vector<LengthSymbol> steps_;
  std::array<std::uint8_t, kLengthCodes> lengths_{};
  std::array<std::uint16_t, kLengthCodes> codes_{};
};

}  // namespace

struct DeflateBlocks::Codes {
  std::array<std::uint8_t, kFixedSymbols> symbolLengths{};
  std::array<std::uint16_t, kFixedSymbols> symbolCodes{};
  std::array<std::uint8_t, kFixedDistances> distanceLengths{};
  std::array<std::uint16_t, kFixedDistances> distanceCodes{};

  static Codes fixed() {
    Codes codes;
    for (std::size_t i = 0; i < kFixedSymbols; ++i)
      codes.symbolLengths[i] = i < 144 ? 8 : i < 256 ? 9 : i < 280 ? 7 : 8;
    codes.distanceLengths.fill(5);
    codes.assign();
    return codes;
  }

  static Codes dynamic(const Counts& counts) {
    Codes codes;
    makeCodeLengths(counts.symbols, kLongestCode, std::span(codes.symbolLengths).first(kSymbols));
    makeCodeLengths(counts.distances, kLongestCode, std::span(codes.distanceLengths).first(kDistances));
    codes.assign();
    return codes;
  }

  void assign() {
    makeCodes(symbolLengths, symbolCodes);
    makeCodes(distanceLengths, distanceCodes);
  }

  std::size_t bits(const Counts& counts) const {
    std::size_t total = counts.extraBits;
    for (std::size_t i = 0; i < kSymbols; ++i) total += std::size_t{counts.symbols[i]} * symbolLengths[i];
    for (std::size_t i = 0; i < kDistances; ++i)
      total += std::size_t{counts.distances[i]} * distanceLengths[i];
    return total;
  }
};

void DeflateBlocks::makeRoom(std::size_t bits) { bytes_.resize(used_ + bits / 8 + 2 * sizeof pending_); }

/// `bits` is at most 57. `makeRoom` must have reserved the memory.
void DeflateBlocks::put(std::uint32_t value, unsigned bits) {
  pending_ |= std::uint64_t{value} << pendingBits_;
  pendingBits_ += bits;
  storeLittleEndian(bytes_.data() + used_, pending_);
  used_ += pendingBits_ / 8;
  pending_ >>= pendingBits_ & ~7U;
  pendingBits_ &= 7;
}

void DeflateBlocks::add(Bytes data, std::span<const DeflateMatch> matches, bool last) {
  static const Codes fixed = Codes::fixed();
  const Counts counts = countSymbols(data, matches);
  const Codes dynamic = Codes::dynamic(counts);
  const LengthTable table(std::span(dynamic.symbolLengths).first(kSymbols),
                          std::span(dynamic.distanceLengths).first(kDistances));
  const std::size_t dynamicBits = table.bits() + dynamic.bits(counts), fixedBits = fixed.bits(counts);
  const std::size_t storedBits = 8 * (data.size() + kStoredOverhead * (data.size() / kMostStored + 1));
  if (storedBits <= std::min(dynamicBits, fixedBits)) return addStored(data, last);

  makeRoom(kTypeBits + std::min(dynamicBits, fixedBits));
  const std::uint32_t final = last ? 1 : 0;
  if (fixedBits <= dynamicBits) {
    put(final | kFixed << 1, kTypeBits);
    addCoded(fixed, data, matches);
  } else {
    put(final | kDynamic << 1, kTypeBits);
    table.write([this](std::uint32_t value, unsigned bits) { put(value, bits); });
    addCoded(dynamic, data, matches);
  }
}

void DeflateBlocks::addCoded(const Codes& codes, Bytes data, std::span<const DeflateMatch> matches) {
  // Local copies, because byte stores may alias members.
  std::uint8_t* to = bytes_.data() + used_;
  std::uint64_t pending = pending_;
  unsigned pendingBits = pendingBits_;
  const auto push = [&](std::uint64_t value, unsigned bits) {
    pending |= value << pendingBits;
    pendingBits += bits;
  };
  const auto store = [&] {
    storeLittleEndian(to, pending);
    to += pendingBits / 8;
    pending >>= pendingBits & ~7U;
    pendingBits &= 7;
  };
  const auto pushSymbol = [&](std::size_t symbol) {
    push(codes.symbolCodes[symbol], codes.symbolLengths[symbol]);
  };

  const std::uint8_t* at = data.data();
  for (const DeflateMatch& match : matches) {
    const std::uint8_t* const end = at + match.literals;
    for (; end - at >= 4; at += 4) {
      for (std::size_t i = 0; i < 4; ++i) pushSymbol(at[i]);
      store();
    }
    for (; at < end; ++at) pushSymbol(*at);
    store();
    if (match.length == 0) break;
    const Range length = lengthRange(match.length), distance = distanceRange(match.distance);
    pushSymbol(length.symbol);
    push(length.extra, length.bits);
    push(codes.distanceCodes[distance.symbol], codes.distanceLengths[distance.symbol]);
    push(distance.extra, distance.bits);
    store();
    at += match.length;
  }
  used_ = static_cast<std::size_t>(to - bytes_.data());
  pending_ = pending;
  pendingBits_ = pendingBits;
  put(codes.symbolCodes[kEndOfBlock], codes.symbolLengths[kEndOfBlock]);
}

/// Splits the data into blocks: a stored block has a 16-bit length.
void DeflateBlocks::addStored(Bytes data, bool last) {
  do {
    const Bytes part = data.first(std::min(data.size(), kMostStored));
    data = data.subspan(part.size());
    putStored(part, last && data.empty());
  } while (!data.empty());
}

void DeflateBlocks::putStored(Bytes data, bool last) {
  makeRoom(8 * (data.size() + kStoredOverhead));
  put((last ? 1U : 0U) | kStored << 1, kTypeBits);
  if (pendingBits_ > 0) put(0, 8 - pendingBits_);
  const auto size = static_cast<std::uint32_t>(data.size());
  put(size, 16);
  put(~size & 0xFFFF, 16);
  if (!data.empty()) std::memcpy(bytes_.data() + used_, data.data(), data.size());
  used_ += data.size();
}

std::vector<std::uint8_t> DeflateBlocks::finish(bool last) {
  if (last) {
    makeRoom(8);
    if (pendingBits_ > 0) put(0, 8 - pendingBits_);
  } else {
    addStored({}, false);
  }
  bytes_.resize(used_);
  used_ = 0;
  return std::move(bytes_);
}

}  // namespace kestrel::engine
