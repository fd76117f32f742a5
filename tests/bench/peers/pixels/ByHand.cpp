#include "ByHand.h"

#include <algorithm>
#include <opencv2/core.hpp>

namespace kestrel::bench {
namespace {

constexpr int kBandRows = 4;

template <class Work>
void inBands(int rows, Work work) {
  for (int row = 0; row < rows; row += kBandRows) work(cv::Range(row, std::min(row + kBandRows, rows)));
}

}  // namespace

void FloatComposite::run(const cv::Mat& under, const cv::Mat& top, cv::Mat& out) {
  inBands(under.rows, [&](const cv::Range& rows) {
    cv::split(under.rowRange(rows), underPlanes_);
    cv::split(top.rowRange(rows), topPlanes_);
    topPlanes_[3].convertTo(topWeight_, CV_32F);
    underPlanes_[3].convertTo(underWeight_, CV_32F, 1 / 255.0);
    cv::subtract(255, topWeight_, total_);
    cv::multiply(underWeight_, total_, underWeight_);
    cv::add(topWeight_, underWeight_, total_);
    total_.convertTo(outPlanes_[3], CV_8U);
    for (int c = 0; c < 3; ++c) {
      topPlanes_[c].convertTo(topFloat_, CV_32F);
      underPlanes_[c].convertTo(underFloat_, CV_32F);
      cv::multiply(topFloat_, topWeight_, topFloat_);
      cv::multiply(underFloat_, underWeight_, underFloat_);
      cv::add(topFloat_, underFloat_, topFloat_);
      cv::divide(topFloat_, total_, topFloat_);
      topFloat_.convertTo(outPlanes_[c], CV_8U);
    }
    cv::Mat band = out.rowRange(rows);
    cv::merge(outPlanes_, 4, band);
  });
}

void ThreeCallReplace::run(const cv::Mat& in, const cv::Scalar& from, const cv::Scalar& to, double tolerance,
                           cv::Mat& out) {
  const cv::Scalar reach = cv::Scalar::all(tolerance);
  cv::inRange(in, from - reach, from + reach, mask_);
  in.copyTo(out);
  out.setTo(to, mask_);
}

}  // namespace kestrel::bench
