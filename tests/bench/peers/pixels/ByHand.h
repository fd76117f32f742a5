#pragma once

#include <opencv2/core/mat.hpp>

namespace kestrel::bench {

/// What stands in for an operation that OpenCV does not have: its calls put together by hand, in bands of
/// rows that stay in the cache, with everything in between kept from run to run.

/// Straight alpha over straight alpha in float: weigh, add, divide, each plane by itself.
class FloatComposite {
 public:
  void run(const cv::Mat& under, const cv::Mat& top, cv::Mat& out);

 private:
  cv::Mat underPlanes_[4], topPlanes_[4], outPlanes_[4];
  cv::Mat underFloat_, topFloat_, topWeight_, underWeight_, total_;
};

/// Color and alpha within a tolerance become another: `inRange`, `copyTo`, `setTo`.
class ThreeCallReplace {
 public:
  void run(const cv::Mat& in, const cv::Scalar& from, const cv::Scalar& to, double tolerance, cv::Mat& out);

 private:
  cv::Mat mask_;
};

}  // namespace kestrel::bench
