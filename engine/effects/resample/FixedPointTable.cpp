#include "FixedPointTable.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace kestrel::engine {
namespace {

std::span<const float> weightsOf(const FilterTable& table, std::int32_t output) {
  const FilterTable::Run& run = table.run(output);
  return {table.weights(run), static_cast<std::size_t>(run.count)};
}

struct Pairs {
  std::int32_t first, last;
};

Pairs pairsOf(const FilterTable::Run& run, std::int32_t lead) {
  return {(run.first + lead) / 2, (run.first + run.count + lead + 1) / 2};
}

std::int64_t pairsUsed(const FilterTable& table, std::int32_t lead) {
  std::int64_t used = 0;
  for (std::int32_t output = 0; output < table.outputs(); ++output) {
    const Pairs pairs = pairsOf(table.run(output), lead);
    used += pairs.last - pairs.first;
  }
  return used;
}

}  // namespace

bool FixedPointTable::suits(const FilterTable& table) {
  // Each weight has an error of at most half a unit, times half the range of levels: 64 * 0.5 / 2^14 * 127.5
  // = 0.25.
  constexpr std::int32_t kLongestRun = 64;
  // Sums of signed 16-bit values times weights of this total stay within 32 bits, with a margin of half the
  // range.
  constexpr float kMostWeight = 2;
  if (table.longestRun() > kLongestRun) return false;
  for (std::int32_t output = 0; output < table.outputs(); ++output) {
    float sum = 0, amount = 0;
    for (const float weight : weightsOf(table, output)) {
      sum += weight;
      amount += std::abs(weight);
    }
    if (amount >= kMostWeight || std::abs(sum - 1) > 1e-4F) return false;
  }
  return true;
}

FixedPointTable::FixedPointTable(const FilterTable& table)
    : runs_(static_cast<std::size_t>(table.outputs())) {
  lead_ = pairsUsed(table, 1) < pairsUsed(table, 0) ? 1 : 0;
  for (std::int32_t output = 0; output < table.outputs(); ++output) {
    const Pairs pairs = pairsOf(table.run(output), lead_);
    Run& run = runs_[static_cast<std::size_t>(output)];
    run = {pairs.first, pairs.last - pairs.first, weights_.size()};
    weights_.resize(run.offset + 4 * static_cast<std::size_t>((run.count + 1) / 2));

    std::int16_t* const begin = weights_.data() + run.offset + (table.run(output).first + lead_) % 2;
    std::int16_t* end = begin;
    std::int32_t left = kOne;
    for (const float weight : weightsOf(table, output)) {
      *end = static_cast<std::int16_t>(std::lrint(weight * kOne));
      left -= *end++;
    }
    std::int16_t& greatest = *std::max_element(begin, end);
    greatest = static_cast<std::int16_t>(greatest + left);
  }
}

}  // namespace kestrel::engine
