#include <cmath>
#include <memory>
#include <numbers>
#include <opencv2/imgproc.hpp>

#include "Filters.h"
#include "Pictures.h"
#include "engine/effects/Rotate.h"

namespace kestrel::bench {
namespace {

constexpr double kDegrees = 37.5;

/// The affine map from pixels of a canvas of size `to` to positions in `from`, rotated about the centers.
cv::Matx23d placesOf(cv::Size to, cv::Size from) {
  const double cosine = std::cos(kDegrees * std::numbers::pi / 180);
  const double sine = std::sin(kDegrees * std::numbers::pi / 180);
  const double x = (1 - to.width) / 2.0, y = (1 - to.height) / 2.0;
  return {cosine, sine,   x * cosine + y * sine + (from.width - 1) / 2.0,  //
          -sine,  cosine, y * cosine - x * sine + (from.height - 1) / 2.0};
}

/// Rotation by OpenCV onto a canvas of the size of our result.
class Turn {
 public:
  explicit Turn(const engine::Bitmap& picture) : picture_(picture) {
    const engine::Bitmap ours = engine::rotate(picture, kDegrees);
    canvas_ = {ours.width(), ours.height()};
  }

  void plain() { warp(matOf(picture_), turned_); }

  /// Premultiplies by hand, band by band, so that intermediate results stay in the caches.
  void premultiplied() {
    const cv::Mat from = matOf(picture_);
    premultiplied_.create(from.size(), CV_8UC4);
    result_.create(canvas_, CV_8UC4);
    inBands(from.rows, [&](const cv::Range& rows) {
      cv::split(from.rowRange(rows), planes_);
      for (std::size_t c = 0; c < 3; ++c) cv::multiply(planes_[c], planes_[3], planes_[c], 1 / 255.0);
      cv::Mat to = premultiplied_.rowRange(rows);
      cv::merge(planes_, to);
    });
    warp(premultiplied_, turned_);
    inBands(canvas_.height, [&](const cv::Range& rows) {
      cv::split(turned_.rowRange(rows), planes_);
      for (std::size_t c = 0; c < 3; ++c) cv::divide(planes_[c], planes_[3], planes_[c], 255);
      cv::Mat to = result_.rowRange(rows);
      cv::merge(planes_, to);
    });
  }

 private:
  void warp(const cv::Mat& from, cv::Mat& to) const {
    cv::warpAffine(from, to, placesOf(canvas_, from.size()), canvas_, cv::INTER_CUBIC | cv::WARP_INVERSE_MAP,
                   cv::BORDER_CONSTANT, cv::Scalar());
  }

  static void inBands(int rows, const auto& work) {
    constexpr int kBand = 16;
    for (int first = 0; first < rows; first += kBand) work(cv::Range(first, std::min(first + kBand, rows)));
  }

  engine::Bitmap picture_;
  cv::Size canvas_;
  cv::Mat premultiplied_, turned_, result_;
  std::vector<cv::Mat> planes_;
};

std::vector<Contender> contenders(const engine::Bitmap& picture) {
  const auto turn = std::make_shared<Turn>(picture);
  return {
      {"KestrelLib2", "premultiplied; positions to 1/1024 pixel; edges smoothed",
       [picture] { engine::rotate(picture, kDegrees); }},
      {"OpenCV warpAffine",
       "ignores alpha; positions to 1/32 pixel; a = -3/4; edges blended with the border color; kept buffer",
       [turn] { turn->plain(); }},
      {"OpenCV warpAffine, premultiplied by hand",
       "premultiplied before and divided after, 8 bits in between; otherwise as above; kept buffers",
       [turn] { turn->premultiplied(); }}};
}

}  // namespace

std::vector<Comparison> rotateRows() {
  return {{"rotate 37.5 degrees, bicubic", 0.6, [] { return contenders(cutOutPicture()); }},
          {"rotate 37.5 degrees, bicubic, opaque", 0.6, [] { return contenders(opaquePicture()); }}};
}

}  // namespace kestrel::bench
