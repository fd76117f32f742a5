#include <memory>
#include <opencv2/imgproc.hpp>

#include "Filters.h"
#include "Pictures.h"
#include "engine/effects/DropShadow.h"

namespace kestrel::bench {
namespace {

constexpr int kOffset = 12;
constexpr double kBlur = 128;
constexpr engine::Pixel kColor{20, 30, 40, 153};

/// The whole effect with OpenCV's functions. Composites band by band, so that intermediate results stay in
/// the caches.
class HandMade {
 public:
  explicit HandMade(const engine::Bitmap& picture) : picture_(picture) {}

  void operator()() {
    const cv::Mat from = matOf(picture_);
    // The shadow of the visible part, extended by three standard deviations.
    const double sigma = engine::shadowSigma(kBlur);
    const int reach = cvRound(3 * sigma);
    const int before = std::max(0, reach - kOffset), after = reach + kOffset;
    cv::extractChannel(from, alpha_, 3);
    cv::copyMakeBorder(alpha_, shadow_, before + kOffset, after - kOffset, before + kOffset, after - kOffset,
                       cv::BORDER_CONSTANT, cv::Scalar());
    cv::GaussianBlur(shadow_, shadow_, {}, sigma, sigma, cv::BORDER_CONSTANT);
    shadow_.convertTo(shadow_, -1, kColor.a / 255.0);
    cv::copyMakeBorder(from, canvas_, before, after, before, after, cv::BORDER_CONSTANT, cv::Scalar());
    constexpr int kBand = 16;
    for (int y = 0; y < canvas_.rows; y += kBand) layOver(cv::Range(y, std::min(y + kBand, canvas_.rows)));
  }

 private:
  void layOver(const cv::Range& rows) {
    cv::Mat canvas = canvas_.rowRange(rows);
    cv::split(canvas, planes_);
    const cv::Mat& alpha = planes_[3];
    cv::subtract(cv::Scalar(255), alpha, rest_);
    cv::multiply(shadow_.rowRange(rows), rest_, rest_, 1 / 255.0);
    cv::add(alpha, rest_, sum_);
    sum_.convertTo(divisor_, CV_16U);
    const std::uint8_t tint[] = {kColor.r, kColor.g, kColor.b};
    for (std::size_t c = 0; c < 3; ++c) {
      cv::multiply(planes_[c], alpha, weighed_, 1, CV_16U);
      rest_.convertTo(tinted_, CV_16U, tint[c]);
      cv::add(weighed_, tinted_, weighed_);
      cv::divide(weighed_, divisor_, planes_[c], 1, CV_8U);
    }
    const cv::Mat mixed[] = {planes_[0], planes_[1], planes_[2], sum_};
    cv::merge(mixed, 4, canvas);
  }

  engine::Bitmap picture_;
  cv::Mat alpha_, shadow_, canvas_, rest_, sum_, divisor_, weighed_, tinted_;
  std::vector<cv::Mat> planes_;
};

std::vector<Contender> contenders(const engine::Bitmap& picture) {
  return {{"KestrelLib2", "blur, tint, canvas and straight alpha; finds the visible part first",
           [picture] { engine::dropShadow(picture, kOffset, kOffset, kColor, kBlur); }},
          {"OpenCV by hand",
           "extractChannel, copyMakeBorder, GaussianBlur, tint, straight alpha in 16 bits; kept buffers",
           HandMade(picture)}};
}

}  // namespace

std::vector<Comparison> shadowRows() {
  return {{"drop shadow, whole", 0.3, [] { return contenders(cutOutPicture()); }},
          {"drop shadow, whole, opaque", 0.3, [] { return contenders(opaquePicture()); }}};
}

}  // namespace kestrel::bench
