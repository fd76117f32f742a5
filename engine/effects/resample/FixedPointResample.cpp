#include "FixedPointResample.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "FixedPointKernels.h"
#include "FixedPointTable.h"
#include "engine/effects/rows/EffectRows.h"
#include "engine/parallel/Parallel.h"
#include "engine/pixels/Memory.h"

namespace kestrel::engine {
namespace {

constexpr std::int32_t kNarrowestStrip = 32, kWidestStrip = 64;

/// Columns of a strip: its row pairs and its sums must fit into the L1 cache together.
std::int32_t stripWidth(std::int32_t pairs) {
  constexpr std::int32_t kPairsBytes = 16 * 1024;
  constexpr std::int32_t kBytesPerPixel = 8 * sizeof(std::int16_t);
  const std::int32_t width = kPairsBytes / (kBytesPerPixel * pairs) / kGroupBlock * kGroupBlock;
  return std::clamp(width, kNarrowestStrip, kWidestStrip);
}

constexpr std::size_t kFloatsPerColumn = 4 * kGroupRows;

constexpr std::int32_t roundedUp(std::int32_t value, std::int32_t multiple) {
  return (value + multiple - 1) / multiple * multiple;
}

/// Schedule of the horizontal pass: the inputs that each four outputs need, when a row is processed from left
/// to right in strips.
class InputSchedule {
 public:
  explicit InputSchedule(const FilterTable& columns)
      : ends_(static_cast<std::size_t>((columns.outputs() + 3) / 4)) {
    std::vector<std::int32_t> firsts(ends_.size(), columns.inputs());
    for (std::int32_t x = 0; x < columns.outputs(); ++x) {
      const FilterTable::Run& run = columns.run(x);
      const auto four = static_cast<std::size_t>(x / 4);
      firsts[four] = std::min(firsts[four], run.first);
      ends_[four] = std::max(ends_[four], run.first + run.count);
    }
    for (std::size_t i = 1; i < ends_.size(); ++i) ends_[i] = std::max(ends_[i], ends_[i - 1]);
    for (std::size_t i = ends_.size(); i-- > 0;) {
      if (i + 1 < ends_.size()) firsts[i] = std::min(firsts[i], firsts[i + 1]);
      reach_ = std::max(reach_, ends_[i] - firsts[i]);
    }
  }

  /// Inputs before the present column that later outputs may still need.
  std::int32_t reach() const { return reach_; }

  /// Index of the first four outputs, from `four` on, that need inputs beyond `end`.
  std::size_t after(std::size_t four, std::int32_t end) const {
    while (four < ends_.size() && ends_[four] <= end) ++four;
    return four;
  }

 private:
  std::vector<std::int32_t> ends_;
  std::int32_t reach_ = 0;
};

/// Computes groups of rows, one after the other, in its own working memory.
class GroupWorker {
 public:
  GroupWorker(const ConstPixels& picture, const FilterTable& columns, const FixedPointTable& rows,
              const InputSchedule& schedule, const Pixels& result)
      : picture_(picture),
        columns_(columns),
        rows_(rows),
        schedule_(schedule),
        result_(result),
        sumsMemory_(static_cast<std::size_t>(schedule.reach() + kWidestStrip + 2) * kFloatsPerColumn *
                    sizeof(float)),
        sums_(reinterpret_cast<float*>(sumsMemory_.data())) {
    std::memset(sumsMemory_.data(), 0, sumsMemory_.size());
  }

  void make(std::int32_t y) {
    std::array<std::uint8_t*, kGroupRows> out;
    for (std::int32_t i = 0; i < kGroupRows; ++i) {
      out[static_cast<std::size_t>(i)] = result_.row(std::min(y + i, result_.height - 1));
    }
    RowPairs pairs = pairsFor(y);
    const std::int32_t strip = pairs.pixels;
    std::int32_t origin = 0;  // column of the first sum
    std::size_t next = 0;     // index of the next four outputs
    for (std::int32_t x = 0; x < picture_.width; x += strip) {
      const std::int32_t width = std::min(strip, picture_.width - x);
      pairs.pixels = roundedUp(width, kGroupBlock);
      premultiplyPairs(picture_, x, rows_.lead(), pairs);
      origin = discardBefore(origin, x);
      verticalPass(pairs, rows_, y, sums_ + static_cast<std::size_t>(x - origin) * kFloatsPerColumn);
      const std::size_t end = schedule_.after(next, x + width);
      horizontalPass(sums_, origin, columns_, static_cast<std::int32_t>(4 * next),
                     std::min(static_cast<std::int32_t>(4 * end), columns_.outputs()), out.data());
      next = end;
    }
  }

 private:
  /// Memory for a strip of the row pairs that the eight output rows from `y` on need.
  RowPairs pairsFor(std::int32_t y) {
    std::int32_t first = INT32_MAX, last = 0;
    for (std::int32_t i = y; i < std::min(y + kGroupRows, rows_.outputs()); ++i) {
      const FixedPointTable::Run& run = rows_.run(i);
      first = std::min(first, run.first);
      last = std::max(last, run.first + run.count);
    }
    const std::int32_t count = last - first;
    const std::int32_t width = stripWidth(count);
    const std::size_t stride = std::size_t{8} * static_cast<std::size_t>(width);
    const std::size_t bytes = static_cast<std::size_t>(count + 1) * stride * sizeof(std::int16_t);
    if (pairsMemory_.size() < bytes) pairsMemory_ = Memory(bytes);
    return {reinterpret_cast<std::int16_t*>(pairsMemory_.data()), stride, first, count, width};
  }

  /// Discards sums that no output needs any more once the columns before `x` are done. Returns the column of
  /// the first sum kept.
  std::int32_t discardBefore(std::int32_t origin, std::int32_t x) {
    const std::int32_t kept = std::max(origin, x - schedule_.reach());
    std::memmove(sums_, sums_ + static_cast<std::size_t>(kept - origin) * kFloatsPerColumn,
                 static_cast<std::size_t>(x - kept) * kFloatsPerColumn * sizeof(float));
    return kept;
  }

  const ConstPixels picture_;
  const FilterTable& columns_;
  const FixedPointTable& rows_;
  const InputSchedule& schedule_;
  const Pixels result_;
  Memory sumsMemory_, pairsMemory_;
  float* const sums_;
};

}  // namespace

bool suitsFixedPointResample(const FilterTable& columns, const FilterTable& rows) {
  // The vertical pass runs over the picture's whole width. If the picture is much wider than the result and
  // much lower, the horizontal pass should come first.
  const double sums = static_cast<double>(columns.inputs()) * rows.outputs();
  const double pixels = static_cast<double>(columns.inputs()) * rows.inputs() +
                        static_cast<double>(columns.outputs()) * rows.outputs();
  // Bounds the sums kept from strip to strip.
  constexpr std::int32_t kLongestRun = 256;
  return sums <= 4 * pixels && columns.longestRun() <= kLongestRun && FixedPointTable::suits(rows);
}

void fixedPointResample(const ConstPixels& picture, const FilterTable& columns, const FilterTable& rows,
                        const Pixels& result) {
  const FixedPointTable pairs(rows);
  const InputSchedule schedule(columns);
  const std::int32_t groups = (rows.outputs() + kGroupRows - 1) / kGroupRows;
  const std::int32_t cost = rows.longestRun() + columns.longestRun();
  const std::int32_t perTask = rowsPerTask(std::max(columns.inputs(), columns.outputs()), cost);
  forRows(groups, (perTask + kGroupRows - 1) / kGroupRows, [&](std::int32_t first, std::int32_t last) {
    GroupWorker worker(picture, columns, pairs, schedule, result);
    for (std::int32_t group = first; group < last; ++group) worker.make(group * kGroupRows);
  });
}

}  // namespace kestrel::engine
