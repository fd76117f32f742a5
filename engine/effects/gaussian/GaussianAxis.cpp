#include "GaussianAxis.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "GaussianRows.h"
#include "engine/effects/rows/FloatRows.h"

namespace kestrel::engine {
namespace {

constexpr std::array kHalving{1 / 16.0F, 4 / 16.0F, 6 / 16.0F, 4 / 16.0F, 1 / 16.0F};
constexpr std::array kEvenDoubling{1 / 8.0F, 6 / 8.0F, 1 / 8.0F};
constexpr std::array kOddDoubling{1 / 2.0F, 1 / 2.0F};

/// Gaussian kernel, truncated at 3.5 standard deviations, which loses 1/2000 of its weight.
std::vector<float> gaussianKernel(double sigma) {
  const int radius = static_cast<int>(std::lround(3.5 * sigma));
  std::vector<double> values;
  double sum = 0;
  for (int x = -radius; x <= radius; ++x) {
    values.push_back(sigma > 0 ? std::exp(-x * x / (2 * sigma * sigma)) : 1);
    sum += values.back();
  }
  std::vector<float> weights;
  for (const double value : values) weights.push_back(static_cast<float>(value / sum));
  return weights;
}

/// Half of a number, rounded down; shifting rounds negative ones down too.
constexpr std::int32_t halfDown(std::int32_t x) { return x >> 1; }
constexpr std::int32_t halfUp(std::int32_t x) { return (x + 1) >> 1; }

Interval common(Interval a, Interval b) {
  const Interval both{std::max(a.first, b.first), std::min(a.last, b.last)};
  return both.empty() ? Interval{} : both;
}

}  // namespace

GaussianAxis::GaussianAxis(std::int32_t inputs, std::int32_t outputs, std::int32_t start, double sigma)
    : outputs_(outputs), start_(start) {
  double variance = sigma * sigma;
  std::size_t halvings = 0;
  for (double width = sigma; width >= 3; width /= 2) {
    // Halving and doubling each have variance 1 on the finer grid; 4 of its units are 1 on the coarser grid.
    variance = (variance - 2) / 4;
    ++halvings;
  }
  kernel_ = gaussianKernel(std::sqrt(variance));
  steps_.assign(halvings, Step::Halve);
  steps_.push_back(Step::Smooth);
  steps_.insert(steps_.end(), halvings, Step::Double);
  supports_.push_back({0, inputs});
  for (std::size_t k = 0; k < steps_.size(); ++k) supports_.push_back(reached(k, supports_.back()));
}

/// Outputs of step k that these inputs influence.
Interval GaussianAxis::reached(std::size_t k, Interval from) const {
  const auto radius = static_cast<std::int32_t>(kernel_.size() / 2);
  switch (steps_[k]) {
    case Step::Halve:
      return {halfUp(from.first - 2), halfDown(from.last + 1) + 1};
    case Step::Smooth:
      return {from.first - radius, from.last + radius};
    case Step::Double:
      break;
  }
  return {2 * from.first - 2, 2 * from.last + 2};
}

/// Inputs that step k reads for these outputs.
Interval GaussianAxis::inputsOf(std::size_t k, Interval made) const {
  if (made.empty()) return {};
  const auto radius = static_cast<std::int32_t>(kernel_.size() / 2);
  switch (steps_[k]) {
    case Step::Halve:
      return {2 * made.first - 2, 2 * made.last + 2};
    case Step::Smooth:
      return {made.first - radius, made.last + radius};
    case Step::Double:
      break;
  }
  return {halfDown(made.first) - 1, halfUp(made.last) + 1};
}

GaussianAxis::Taps GaussianAxis::taps(std::size_t k, std::int32_t position) const {
  const auto tapsOf = [](std::int32_t first, const auto& weights) {
    return Taps{first, weights.data(), static_cast<std::int32_t>(weights.size())};
  };
  switch (steps_[k]) {
    case Step::Halve:
      return tapsOf(2 * position - 2, kHalving);
    case Step::Smooth:
      return tapsOf(position - static_cast<std::int32_t>(kernel_.size() / 2), kernel_);
    case Step::Double:
      break;
  }
  const bool even = position % 2 == 0;
  return even ? tapsOf(position / 2 - 1, kEvenDoubling) : tapsOf(halfDown(position), kOddDoubling);
}

std::vector<GaussianAxis::Window> GaussianAxis::windows(std::size_t stage, Interval asked) const {
  std::vector<Window> result(stage + 1);
  for (std::size_t k = stage + 1; k-- > 0;) {
    Window& window = result[k];
    window = {common(asked, supports_[k]), asked, asked.first};
    if (k == 0) break;
    if (steps_[k - 1] == Step::Double && !window.made.empty()) {
      // Doubling computes pairs.
      window.made = {2 * halfDown(window.made.first), 2 * halfUp(window.made.last)};
      window.held = {std::min(asked.first, window.made.first), std::max(asked.last, window.made.last)};
    }
    asked = inputsOf(k - 1, window.made);
  }
  return result;
}

std::vector<float> GaussianAxis::profile() const {
  const std::vector<Window> all = windows(steps(), {start_, start_ + outputs_});
  std::vector<float> row, made;
  for (std::size_t stage = 0; stage < all.size(); ++stage) {
    const Window& window = all[stage];
    made.assign(static_cast<std::size_t>(window.made.length()) + kRowSlack, 1.0F);
    if (stage > 0 && !window.made.empty()) {
      const Window& before = all[stage - 1];
      makeRow(*this, stage - 1, row.data() + (before.asked - before.held.first), window.made, 1, made.data());
    }
    row.assign(static_cast<std::size_t>(window.held.length()) + kRowSlack, 0.0F);
    std::copy_n(made.begin(), window.made.length(), row.begin() + (window.made.first - window.held.first));
  }
  const auto first = row.begin() + (all.back().asked - all.back().held.first);
  return {first, first + outputs_};
}

void makeRow(const GaussianAxis& axis, std::size_t k, const float* in, Interval made, std::int32_t channels,
             float* out) {
  switch (axis.step(k)) {
    case GaussianAxis::Step::Halve:
      return halveRow(in, made.length(), channels, out);
    case GaussianAxis::Step::Smooth:
      return smoothRow(in, axis.kernel().data(), static_cast<std::int32_t>(axis.kernel().size()),
                       made.length(), channels, out);
    case GaussianAxis::Step::Double:
      return doubleRow(in, made.length(), channels, out);
  }
}

}  // namespace kestrel::engine
