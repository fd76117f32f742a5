#include "PrefixCode.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace kestrel::engine {
namespace {

constexpr std::size_t kMostSymbols = 288;
constexpr std::size_t kLongestCode = 15;

/// Number of codes of each length.
using LengthCounts = std::array<std::uint32_t, kLongestCode + 1>;

/// Leaf depths of the Huffman tree for weights in ascending order, clamped to `longest`.
LengthCounts leafDepths(std::span<const std::uint32_t> weights, std::size_t longest) {
  const std::size_t leaves = weights.size(), root = 2 * leaves - 2;
  std::array<std::uint32_t, 2 * kMostSymbols> weight{};
  std::array<std::size_t, 2 * kMostSymbols> parent{}, depth{};
  std::ranges::copy(weights, weight.begin());
  // Inner nodes are created in ascending order, too, so the lightest nodes are at the front of the two
  // queues.
  std::size_t leaf = 0, inner = leaves;
  for (std::size_t node = leaves; node <= root; ++node) {
    for (int child = 0; child < 2; ++child) {
      const bool takeLeaf = leaf < leaves && (inner == node || weight[leaf] <= weight[inner]);
      const std::size_t lightest = takeLeaf ? leaf++ : inner++;
      weight[node] += weight[lightest];
      parent[lightest] = node;
    }
  }
  LengthCounts counts{};
  for (std::size_t node = root; node-- > 0;) {
    depth[node] = depth[parent[node]] + 1;
    if (node < leaves) ++counts[std::min(depth[node], longest)];
  }
  return counts;
}

/// Restores the Kraft inequality after clamping. For each excess unit the deepest leaf above the last level
/// moves down one level, together with a leaf of the last level as its sibling.
void fitLengths(LengthCounts& counts, std::size_t longest) {
  std::uint32_t claimed = 0;
  for (std::size_t length = 1; length <= longest; ++length) claimed += counts[length] << (longest - length);
  for (; claimed > 1U << longest; --claimed) {
    std::size_t shorter = longest - 1;
    while (counts[shorter] == 0) --shorter;
    --counts[shorter];
    counts[shorter + 1] += 2;
    --counts[longest];
  }
}

}  // namespace

void makeCodeLengths(std::span<const std::uint32_t> counts, int longest, std::span<std::uint8_t> lengths) {
  // Sort keys: the count in the upper bits, the symbol in the lower, so that ties are resolved
  // deterministically.
  std::array<std::uint64_t, kMostSymbols> byCount{};
  std::size_t used = 0;
  for (std::size_t symbol = 0; symbol < counts.size(); ++symbol) {
    if (counts[symbol] > 0) byCount[used++] = std::uint64_t{counts[symbol]} << 16 | symbol;
  }
  for (std::size_t symbol = 0; symbol < 2 && used < 2; ++symbol) {
    if (counts[symbol] == 0) byCount[used++] = symbol;
  }
  std::sort(byCount.begin(), byCount.begin() + static_cast<std::ptrdiff_t>(used));
  std::array<std::uint32_t, kMostSymbols> weights{};
  for (std::size_t i = 0; i < used; ++i) weights[i] = static_cast<std::uint32_t>(byCount[i] >> 16);

  const auto most = static_cast<std::size_t>(longest);
  LengthCounts ofLength = leafDepths(std::span(weights).first(used), most);
  fitLengths(ofLength, most);
  std::ranges::fill(lengths, std::uint8_t{0});
  std::size_t next = 0;
  for (std::size_t length = most; length > 0; --length) {
    for (std::uint32_t i = 0; i < ofLength[length]; ++i)
      lengths[byCount[next++] & 0xFFFF] = static_cast<std::uint8_t>(length);
  }
}

void makeCodes(std::span<const std::uint8_t> lengths, std::span<std::uint16_t> codes) {
  LengthCounts counts{};
  for (const std::uint8_t length : lengths) ++counts[length];
  counts[0] = 0;
  LengthCounts next{};
  for (std::size_t length = 1; length <= kLongestCode; ++length)
    next[length] = (next[length - 1] + counts[length - 1]) << 1;
  for (std::size_t symbol = 0; symbol < lengths.size(); ++symbol) {
    const unsigned length = lengths[symbol];
    std::uint32_t code = length > 0 ? next[length]++ : 0, reversed = 0;
    for (unsigned bit = 0; bit < length; ++bit, code >>= 1) reversed = reversed << 1 | (code & 1);
    codes[symbol] = static_cast<std::uint16_t>(reversed);
  }
}

}  // namespace kestrel::engine
