#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kestrel::engine {

/// Positions `first` to `last`, `last` not included.
struct Interval {
  std::int32_t first = 0, last = 0;

  bool empty() const { return first >= last; }
  std::int32_t length() const { return last - first; }
  bool contains(std::int32_t position) const { return first <= position && position < last; }
};

/// Plan of a Gaussian filter along one axis. Its cost does not grow with sigma.
///
/// The result of a wide Gaussian is smooth enough to be represented on a coarse grid. The picture is
/// repeatedly halved with the kernel (1, 4, 6, 4, 1) / 16 of the Gaussian pyramid (Burt and Adelson 1983)
/// until sigma is 1.5 to 3 pixels; the Gaussian kernel is applied there, and the same pyramid kernel enlarges
/// the result. Variances add, so the kernel's variance is reduced by that of the other steps. Pixels outside
/// the picture count as 0.
class GaussianAxis {
 public:
  enum class Step { Halve, Smooth, Double };

  /// Filters `inputs` pixels to `outputs` pixels; output 0 is at input position `start`. Sigma 0 only shifts.
  GaussianAxis(std::int32_t inputs, std::int32_t outputs, std::int32_t start, double sigma);

  std::int32_t outputs() const { return outputs_; }
  /// Input position of an output.
  std::int32_t inputPosition(std::int32_t output) const { return start_ + output; }
  /// Radius of influence of an input, in pixels.
  std::int32_t reach() const { return supports_.back().last - supports_.front().last; }

  /// Step k, from 0, computes stage k + 1 from stage k; stage 0 is the picture. The halving steps come first.
  std::size_t steps() const { return steps_.size(); }
  std::size_t halvings() const { return steps_.size() / 2; }
  Step step(std::size_t k) const { return steps_[k]; }
  const std::vector<float>& kernel() const { return kernel_; }

  /// Positions of a stage that can be other than 0.
  Interval support(std::size_t stage) const { return supports_[stage]; }

  /// Taps of a position of stage k + 1, in stage k.
  struct Taps {
    std::int32_t first;
    const float* weights;
    std::int32_t count;
  };
  Taps taps(std::size_t k, std::int32_t position) const;

  /// The part of a stage that is needed.
  struct Window {
    Interval made;  ///< positions computed
    Interval held;  ///< positions with memory: those computed, and the zeros around them that are read
    std::int32_t asked = 0;  ///< first position that is read
  };
  /// Windows of the stages 0 to `stage` that produce the positions `asked` of `stage`.
  std::vector<Window> windows(std::size_t stage, Interval asked) const;

  /// Response to inputs that are all 1: for each output the kernel's weight inside the picture.
  std::vector<float> profile() const;

 private:
  Interval inputsOf(std::size_t k, Interval made) const;
  Interval reached(std::size_t k, Interval from) const;

  std::int32_t outputs_, start_;
  std::vector<float> kernel_;
  std::vector<Step> steps_;
  std::vector<Interval> supports_;
};

/// Horizontal pass of step k: computes the positions `made` of a row from a row of the stage before; `in`
/// begins at the first tap of the first position.
void makeRow(const GaussianAxis& axis, std::size_t k, const float* in, Interval made, std::int32_t channels,
             float* out);

}  // namespace kestrel::engine
