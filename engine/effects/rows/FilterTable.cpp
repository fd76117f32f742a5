#include "FilterTable.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

namespace kestrel::engine {

FilterTable::FilterTable(std::int32_t inputs, std::int32_t outputs, const FilterKernel& kernel)
    : inputs_(inputs), runs_(static_cast<std::size_t>(outputs)) {
  // Rounding may put an input at exactly the kernel's radius on either side; include it.
  constexpr double kSlack = 1e-9;
  const double step = static_cast<double>(inputs) / outputs;
  // The weights repeat with this period of outputs, except where an edge truncates the run.
  const std::int32_t period = outputs / std::gcd(inputs, outputs);
  const std::int32_t periodInputs = inputs / std::gcd(inputs, outputs);
  std::int32_t firstWhole = outputs;
  std::vector<double> weights;
  for (std::int32_t output = 0; output < outputs; ++output) {
    const double center = (output + 0.5) * step - 0.5;
    const double low = std::ceil(center - kernel.radius - kSlack);
    const double high = std::floor(center + kernel.radius + kSlack);
    Run& run = runs_[static_cast<std::size_t>(output)];
    if (low >= 0 && high <= inputs - 1.0) {
      firstWhole = std::min(firstWhole, output);
      if (output - period >= firstWhole) {
        run = runs_[static_cast<std::size_t>(output - period)];
        run.first += periodInputs;
        continue;
      }
    }
    double first = std::max(low, 0.0);
    double last = std::min(high, inputs - 1.0);
    if (first > last) first = last = std::clamp(std::round(center), 0.0, inputs - 1.0);

    double sum = 0;
    weights.clear();
    for (double input = first; input <= last; ++input) {
      weights.push_back(kernel.weight(std::abs(input - center)));
      sum += weights.back();
    }
    // Drop zero weights at both ends.
    while (weights.size() > 1 && weights.back() == 0) weights.pop_back();
    while (weights.size() > 1 && weights.front() == 0) {
      weights.erase(weights.begin());
      ++first;
    }
    if (weights.size() == 1) weights[0] = sum = 1;

    run = {static_cast<std::int32_t>(first), static_cast<std::int32_t>(weights.size()), weights_.size()};
    longestRun_ = std::max(longestRun_, run.count);
    for (const double weight : weights) weights_.push_back(static_cast<float>(weight / sum));
    weights_.resize((weights_.size() + kPadding - 1) / kPadding * kPadding);
  }
}

FilterTable scalingTable(std::int32_t inputs, std::int32_t outputs, const FilterKernel& kernel) {
  const double step = static_cast<double>(inputs) / outputs;
  const double stretch = std::max(step, 1.0);
  const FilterKernel widened{[&](double distance) { return kernel.weight(distance / stretch); },
                             kernel.radius * stretch};
  return {inputs, outputs, widened};
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
            // 3 sin(a) sin(a / 3) / a^2 for a = pi x, with sin(3t) = 3 sin(t) - 4 sin(t)^3.
            const double angle = std::numbers::pi * x;
            const double sine = std::sin(angle / 3);
            return 3 * sine * sine * (3 - 4 * sine * sine) / (angle * angle);
          },
          3};
}

}  // namespace kestrel::engine
