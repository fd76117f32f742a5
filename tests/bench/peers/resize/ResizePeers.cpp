// Resizing by us and by zimg. Ours premultiplies; zimg scales the four planes independently.

#include <string>
#include <utility>

#include "Comparison.h"
#include "ZimgResize.h"
#include "engine/effects/resample/Resize.h"

namespace kestrel::bench {
namespace {

using engine::Bitmap;
using engine::ResampleMethod;

/// Smooth colors with some noise, and a soft-edged disc of alpha. (Opaque pictures take ours as long.)
Bitmap makePicture(std::int32_t width, std::int32_t height) {
  Bitmap result = Bitmap::uninitialized(width, height);
  const engine::Pixels pixels = result.writable();
  for (std::int32_t y = 0; y < height; ++y) {
    std::uint8_t* p = pixels.row(y);
    auto noise = static_cast<std::uint32_t>(y) * 2654435761U;
    for (std::int32_t x = 0; x < width; ++x, p += 4) {
      noise = noise * 1664525U + 1013904223U;
      p[0] = static_cast<std::uint8_t>((x >> 4) + static_cast<std::int32_t>(noise >> 29));
      p[1] = static_cast<std::uint8_t>((y >> 4) + static_cast<std::int32_t>(noise >> 28));
      p[2] = static_cast<std::uint8_t>((x + y) >> 5);
      const double u = 2.0 * x / width - 1, v = 2.0 * y / height - 1;
      const double inside = (1.05 - u * u - v * v) * 6;
      p[3] = inside > 1 ? 255 : inside < 0 ? 0 : static_cast<std::uint8_t>(inside * 255);
    }
  }
  return result;
}

struct Size {
  std::int32_t width, height;
};

std::string text(Size size) { return std::to_string(size.width) + "x" + std::to_string(size.height); }

Contender zimg(const Bitmap& source, Size to, ResampleMethod method, zimg_pixel_type_e sample) {
  const auto work = std::make_shared<ZimgResize>(source, to.width, to.height, method, sample);
  const bool bytes = sample == ZIMG_PIXEL_BYTE;
  return {bytes ? "zimg, bytes" : "zimg, words",
          std::string("unpacks, scales four planes in 16-bit integers, packs; ") +
              (bytes ? "zimg widens the bytes" : "widened and rounded while packing") +
              "; ignores alpha; kept buffers",
          [work] { work->run(); }};
}

Comparison row(const std::string& name, double bar, Size from, Size to, ResampleMethod method) {
  return {"resize " + text(from) + " to " + text(to) + ", " + name, bar, [=] {
            const Bitmap source = makePicture(from.width, from.height);
            return std::vector<Contender>{
                {"KestrelLib2", "premultiplied; vertical pass in 16-bit integers, horizontal pass in floats",
                 [=] { static_cast<void>(engine::resize(source, to.width, to.height, method)); }},
                zimg(source, to, method, ZIMG_PIXEL_BYTE),
                zimg(source, to, method, ZIMG_PIXEL_WORD)};
          }};
}

}  // namespace

std::vector<Comparison> comparisons() {
  const std::pair<std::string, ResampleMethod> methods[] = {{"area-aware bilinear", ResampleMethod::Bilinear},
                                                            {"bicubic", ResampleMethod::Bicubic},
                                                            {"Lanczos3", ResampleMethod::Lanczos3}};
  std::vector<Comparison> rows;
  for (const Size to : {Size{1500, 1000}, {3000, 2000}})
    for (const auto& [name, method] : methods) rows.push_back(row(name, 0.7, {6000, 4000}, to, method));
  rows.push_back(row("Lanczos3", 1.0, {1920, 1080}, {3840, 2160}, ResampleMethod::Lanczos3));
  return rows;
}

}  // namespace kestrel::bench
