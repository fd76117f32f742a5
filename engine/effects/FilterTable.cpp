#include "FilterTable.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numbers>

namespace kestrel::engine {

FilterTable::FilterTable(std::int32_t inputs, std::int32_t outputs, double start, double step,
                         const FilterKernel& kernel, FilterEdge edge)
    : inputs_(inputs), runs_(static_cast<std::size_t>(outputs)) {
  // An input that stands on the kernel's very rim may fall to either side by rounding; let it be inside.
  constexpr double kSlack = 1e-9;
  // With whole steps, all runs that no edge cuts are alike, and share their weights.
  const bool wholeSteps = step == 1 && start == std::floor(start);
  std::vector<double> weights;
  for (std::int32_t output = 0; output < outputs; ++output) {
    const double center = start + output * step;
    const double low = std::ceil(center - kernel.radius - kSlack);
    const double high = std::floor(center + kernel.radius + kSlack);
    Run& run = runs_[static_cast<std::size_t>(output)];
    if (wholeSteps && low >= 0 && high <= inputs - 1.0) {
      if (uniform_.last == output && uniform_.first < output) {
        run = runs_[static_cast<std::size_t>(output) - 1];
        ++run.first;
        ++uniform_.last;
        continue;
      }
      uniform_ = {output, output + 1};
    }
    double first = std::max(low, 0.0);
    double last = std::min(high, inputs - 1.0);
    if (edge == FilterEdge::Renormalize && first > last) {
      first = last = std::clamp(std::round(center), 0.0, inputs - 1.0);
    }
    const double sumFrom = edge == FilterEdge::Transparent ? low : first;
    const double sumTo = edge == FilterEdge::Transparent ? high : last;

    double sum = 0;
    weights.clear();
    for (double input = sumFrom; input <= sumTo; ++input) {
      const double weight = kernel.weight(std::abs(input - center));
      sum += weight;
      if (input >= first && input <= last) weights.push_back(weight);
    }
    // What counts nothing need not be read.
    while (weights.size() > 1 && weights.back() == 0) weights.pop_back();
    while (weights.size() > 1 && weights.front() == 0) {
      weights.erase(weights.begin());
      ++first;
    }
    if (weights.size() == 1 && edge == FilterEdge::Renormalize) weights[0] = sum = 1;

    run.offset = weights_.size();
    run.count = static_cast<std::int32_t>(weights.size());
    run.first = run.count > 0 ? static_cast<std::int32_t>(first) : 0;
    longestRun_ = std::max(longestRun_, run.count);
    for (const double weight : weights) weights_.push_back(static_cast<float>(weight / sum));
    weights_.resize((weights_.size() + kPadding - 1) / kPadding * kPadding);
  }
}

void FilterTable::scale(std::int32_t output, double factor) {
  assert(uniform_.first == uniform_.last);
  const Run& scaled = run(output);
  for (std::int32_t i = 0; i < scaled.count; ++i) {
    float& weight = weights_[scaled.offset + static_cast<std::size_t>(i)];
    weight = static_cast<float>(weight * factor);
  }
}

FilterTable scalingTable(std::int32_t inputs, std::int32_t outputs, const FilterKernel& kernel) {
  const double step = static_cast<double>(inputs) / outputs;
  const double stretch = std::max(step, 1.0);
  const FilterKernel widened{[&](double distance) { return kernel.weight(distance / stretch); },
                             kernel.radius * stretch};
  return {inputs, outputs, 0.5 * step - 0.5, step, widened, FilterEdge::Renormalize};
}

FilterKernel areaKernel(double width) {
  return {[width](double x) { return std::clamp((width + 1) / 2 - x, 0.0, std::min(width, 1.0)); },
          (width + 1) / 2};
}

FilterKernel triangleKernel() {
  return {[](double x) { return std::max(0.0, 1 - x); }, 1};
}

FilterKernel catmullRomKernel() {
  return {[](double x) {
            if (x < 1) return (1.5 * x - 2.5) * x * x + 1;
            if (x < 2) return ((-0.5 * x + 2.5) * x - 4) * x + 2;
            return 0.0;
          },
          2};
}

FilterKernel lanczos3Kernel() {
  return {[](double x) {
            if (x < 1e-9) return 1.0;
            if (x >= 3) return 0.0;
            const double angle = std::numbers::pi * x;
            return 3 * std::sin(angle) * std::sin(angle / 3) / (angle * angle);
          },
          3};
}

FilterKernel gaussianKernel(double sigma) {
  return {[sigma](double x) { return std::exp(-x * x / (2 * sigma * sigma)); }, 3.5 * sigma};
}

}  // namespace kestrel::engine
