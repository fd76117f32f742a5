#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/effects/rows/FilterTable.h"

namespace kestrel::engine {

/// A filter table with Q14 weights, for arithmetic on pairs of inputs. The weights of an output sum to
/// exactly `kOne`, so that constant areas stay constant.
class FixedPointTable {
 public:
  static constexpr std::int32_t kOne = 1 << 14;

  struct Run {
    std::int32_t first = 0;  ///< the first pair
    std::int32_t count = 0;  ///< pairs used; their weights are padded with zeros to an even number of pairs
    std::size_t offset = 0;  ///< index of the first pair's weights
  };

  /// Whether Q14 weights are precise enough for the table: rounding errors of a run add up to less than a
  /// quarter of a level, the weights are in range and sum to 1.
  static bool suits(const FilterTable& table);

  /// `table` must suit.
  explicit FixedPointTable(const FilterTable& table);

  /// Pair i holds the inputs 2i - lead and 2i - lead + 1. 0 or 1, the value that gives the shorter runs.
  std::int32_t lead() const { return lead_; }

  std::int32_t outputs() const { return static_cast<std::int32_t>(runs_.size()); }
  const Run& run(std::int32_t output) const { return runs_[static_cast<std::size_t>(output)]; }
  /// Two weights per pair; 0 for an input that the output does not use.
  const std::int16_t* weights(const Run& run) const { return weights_.data() + run.offset; }

 private:
  std::int32_t lead_ = 0;
  std::vector<Run> runs_;
  std::vector<std::int16_t> weights_;
};

}  // namespace kestrel::engine
