#pragma once

#include <opencv2/core/mat.hpp>

namespace kestrel::bench {

/// Operations that OpenCV lacks, composed of its functions in bands of rows that stay in the caches.
/// Intermediate buffers are kept between runs.

/// Source-over with straight alpha in float planes: weight, add, divide.
class FloatComposite {
 public:
  void run(const cv::Mat& under, const cv::Mat& top, cv::Mat& out);

 private:
  cv::Mat underPlanes_[4], topPlanes_[4], outPlanes_[4];
  cv::Mat underFloat_, topFloat_, topWeight_, underWeight_, total_;
};

/// Replaces colors (with alpha) within a tolerance: `inRange`, `copyTo`, `setTo`.
class ThreeCallReplace {
 public:
  void run(const cv::Mat& in, const cv::Scalar& from, const cv::Scalar& to, double tolerance, cv::Mat& out);

 private:
  cv::Mat mask_;
};

}  // namespace kestrel::bench
