#include <libyuv/planar_functions.h>

#include <initializer_list>
#include <memory>
#include <opencv2/imgproc.hpp>

#include "Filters.h"
#include "Pictures.h"
#include "engine/effects/gaussian/Blur.h"

namespace kestrel::bench {
namespace {

Contender ours(const engine::Bitmap& picture, double sigma) {
  return {"KestrelLib2", "premultiplied; within one level of direct convolution",
          [picture, sigma] { engine::blur(picture, sigma); }};
}

Contender openCv(const engine::Bitmap& picture, double sigma, int side, const std::string& kernel) {
  return {"OpenCV GaussianBlur " + std::to_string(side), kernel + "; ignores alpha; fixed point; kept buffer",
          [picture, sigma, side, blurred = cv::Mat()]() mutable {
            cv::GaussianBlur(matOf(picture), blurred, {side, side}, sigma);
          }};
}

/// Successive box blurs by libyuv.
Contender boxes(const engine::Bitmap& picture, std::vector<int> radii, const std::string& computes) {
  const engine::ConstPixels from = picture.pixels();
  const auto sums = std::make_shared<std::vector<std::int32_t>>(
      static_cast<std::size_t>(2 * radii.front() + 3) * static_cast<std::size_t>(from.width) * 4);
  auto buffers = std::vector<engine::Bitmap>(2, engine::Bitmap::filled(from.width, from.height));
  return {"libyuv ARGBBlur x " + std::to_string(radii.size()), computes,
          [picture, radii, sums, buffers]() mutable {
            engine::ConstPixels in = picture.pixels();
            for (std::size_t i = 0; i < radii.size(); ++i) {
              const engine::Pixels out = buffers[i % 2].writable();
              libyuv::ARGBBlur(in.data, static_cast<int>(in.stride), out.data, static_cast<int>(out.stride),
                               sums->data(), in.width * 4, in.width, in.height, radii[i]);
              in = out;
            }
          }};
}

std::vector<Contender> narrow() {
  const engine::Bitmap picture = cutOutPicture();
  return {ours(picture, 5), openCv(picture, 5, 31, "kernel cut at 3 standard deviations, its default"),
          openCv(picture, 5, 35, "kernel cut at 3.5 standard deviations, as ours")};
}

std::vector<Contender> wide() {
  const engine::Bitmap picture = cutOutPicture();
  return {
      ours(picture, 40),
      boxes(picture, {40, 39, 39},
            "three box filters (one alone, no Gaussian, takes two fifths of the time); ignores alpha; kept "
            "buffers")};
}

}  // namespace

std::vector<Comparison> blurRows() {
  return {{"Gaussian blur, sigma 5", 0.8, narrow}, {"Gaussian blur, sigma 40", 0.6, wide}};
}

}  // namespace kestrel::bench
