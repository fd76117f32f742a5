#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kestrel::engine {

/// The positions from `first` on to, and not including, `last`.
struct Interval {
  std::int32_t first = 0, last = 0;

  bool empty() const { return first >= last; }
  std::int32_t length() const { return last - first; }
  bool contains(std::int32_t position) const { return first <= position && position < last; }
};

/// A Gaussian along one axis, at a cost that does not grow with its width: the plan of its steps.
///
/// A wide bell makes so smooth a function that a coarse grid holds it. So the picture is halved, again and
/// again, by the kernel (1, 4, 6, 4, 1) / 16 of the Gaussian pyramid (Burt and Adelson 1983), until the bell
/// is 1.5 to 3 pixels wide; it is applied there, and the same kernel brings the result back to the full grid.
/// Variances add, so the bell is the narrower by those of the other steps. Beyond the picture there are
/// zeros.
class GaussianAxis {
 public:
  enum class Step { Halve, Smooth, Double };

  /// Blurs `inputs` pixels to `outputs` of them, of which the first stands at input `start`. Sigma 0 moves
  /// only.
  GaussianAxis(std::int32_t inputs, std::int32_t outputs, std::int32_t start, double sigma);

  std::int32_t outputs() const { return outputs_; }
  /// Where an output stands on the axis of the inputs.
  std::int32_t place(std::int32_t output) const { return start_ + output; }
  /// How far from an input it has an effect.
  std::int32_t reach() const { return supports_.back().last - supports_.front().last; }

  /// Step k, counted from 0, makes stage k + 1 of stage k; stage 0 is the picture. First come the halving
  /// steps.
  std::size_t steps() const { return steps_.size(); }
  std::size_t halvings() const { return steps_.size() / 2; }
  Step step(std::size_t k) const { return steps_[k]; }
  const std::vector<float>& bell() const { return bell_; }

  /// Where a stage can be anything but zero.
  Interval support(std::size_t stage) const { return supports_[stage]; }

  /// What a position of stage k + 1 is made of.
  struct Taps {
    std::int32_t first;
    const float* weights;
    std::int32_t count;
  };
  Taps taps(std::size_t k, std::int32_t position) const;

  /// What part of a stage is worked on.
  struct Window {
    Interval made;           ///< what is computed
    Interval held;           ///< what has room: that, and the zeros beside it that are read
    std::int32_t asked = 0;  ///< the first that is read
  };
  /// The windows of each stage up to this one, if of this one `asked` is wanted.
  std::vector<Window> windows(std::size_t stage, Interval asked) const;

  /// What the axis makes of inputs that are all 1: for each output how much of the bell lies on them.
  std::vector<float> profile() const;

 private:
  Interval inputsOf(std::size_t k, Interval made) const;
  Interval reached(std::size_t k, Interval from) const;

  std::int32_t outputs_, start_;
  std::vector<float> bell_;
  std::vector<Step> steps_;
  std::vector<Interval> supports_;
};

/// One row of a stage made by step k from one of the stage before; `in` begins where the made part's first
/// input stands.
void makeRow(const GaussianAxis& axis, std::size_t k, const float* in, Interval made, std::int32_t channels,
             float* out);

}  // namespace kestrel::engine
