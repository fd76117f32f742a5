#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace kestrel::engine {

/// A symmetric filter kernel, as a function of the distance from its center.
struct FilterKernel {
  std::function<double(double distance)> weight;
  double radius = 0;  ///< beyond this distance the weight counts as 0
};

/// One axis of a separable filter: for each output a run of inputs and their weights. The weights of an
/// output sum to 1, at the edges too.
class FilterTable {
 public:
  /// Weights of a run are padded with zeros to a multiple of this.
  static constexpr std::int32_t kPadding = 4;

  struct Run {
    std::int32_t first = 0;  ///< the first input
    std::int32_t count = 0;  ///< inputs used, at least 1; all inside the input range
    std::size_t offset = 0;  ///< index of the first weight; outputs with equal weights share them
  };

  /// Table that maps `inputs` to `outputs` over the whole axis. The kernel's distances are in inputs; it is
  /// used as given, so a caller that reduces must widen it.
  FilterTable(std::int32_t inputs, std::int32_t outputs, const FilterKernel& kernel);

  std::int32_t inputs() const { return inputs_; }
  std::int32_t outputs() const { return static_cast<std::int32_t>(runs_.size()); }
  const Run& run(std::int32_t output) const { return runs_[static_cast<std::size_t>(output)]; }
  const float* weights(const Run& run) const { return weights_.data() + run.offset; }
  std::int32_t longestRun() const { return longestRun_; }

 private:
  std::int32_t inputs_;
  std::int32_t longestRun_ = 0;
  std::vector<Run> runs_;
  std::vector<float> weights_;
};

/// Table for scaling: when it reduces, the kernel is widened so that every input contributes.
FilterTable scalingTable(std::int32_t inputs, std::int32_t outputs, const FilterKernel& kernel);

/// Box kernel: overlap of one input pixel with an output pixel `width` inputs wide.
FilterKernel areaKernel(double width);
FilterKernel triangleKernel();    ///< linear interpolation
FilterKernel catmullRomKernel();  ///< cubic convolution with a = -1/2 (Keys 1981)
FilterKernel lanczos3Kernel();    ///< sinc windowed by its own main lobe stretched to 3 (Duchon 1979)

}  // namespace kestrel::engine
