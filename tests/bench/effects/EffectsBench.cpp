// Each operation on 6000 x 4000 RGBA pixels, opaque or with a soft-edged disc of alpha. "Copy" copies the
// same bytes into a kept buffer: the lower bound of pixel-wise operations. The CPU time of the effects is the
// sum over all threads.

#include <benchmark/benchmark.h>

#include <cmath>
#include <string>

#include "engine/draw/BoxShape.h"
#include "engine/draw/LineShape.h"
#include "engine/draw/Stroke.h"
#include "engine/effects/Canvas.h"
#include "engine/effects/Composite.h"
#include "engine/effects/Crop.h"
#include "engine/effects/DropShadow.h"
#include "engine/effects/Flatten.h"
#include "engine/effects/Flip.h"
#include "engine/effects/GrayScale.h"
#include "engine/effects/ReplaceColor.h"
#include "engine/effects/Rotate.h"
#include "engine/effects/gaussian/Blur.h"
#include "engine/effects/resample/Resize.h"
#include "engine/parallel/Parallel.h"

namespace kestrel::engine {
namespace {

constexpr std::int32_t kWidth = 6000;
constexpr std::int32_t kHeight = 4000;

/// Smooth colors with some noise; opaque, or with a soft-edged disc of alpha.
Bitmap makePicture(std::int32_t width, std::int32_t height, bool opaque) {
  Bitmap result = Bitmap::uninitialized(width, height);
  const Pixels pixels = result.writable();
  forRows(height, 16, [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t y = first; y < last; ++y) {
      std::uint8_t* p = pixels.row(y);
      auto noise = static_cast<std::uint32_t>(y) * 2654435761U;
      for (std::int32_t x = 0; x < width; ++x, p += 4) {
        noise = noise * 1664525U + 1013904223U;
        p[0] = static_cast<std::uint8_t>((x >> 4) + static_cast<std::int32_t>(noise >> 29));
        p[1] = static_cast<std::uint8_t>((y >> 4) + static_cast<std::int32_t>(noise >> 28));
        p[2] = static_cast<std::uint8_t>((x + y) >> 5);
        const double u = 2.0 * x / width - 1, v = 2.0 * y / height - 1;
        const double inside = (1.05 - u * u - v * v) * 6;
        p[3] = opaque || inside > 1 ? 255 : inside < 0 ? 0 : static_cast<std::uint8_t>(inside * 255);
      }
    }
  });
  return result;
}

const Bitmap& opaquePicture() {
  static const Bitmap picture = makePicture(kWidth, kHeight, true);
  return picture;
}

const Bitmap& cutOut() {
  static const Bitmap picture = makePicture(kWidth, kHeight, false);
  return picture;
}

template <class Operation>
void run(benchmark::State& state, const Operation& operation) {
  benchmark::DoNotOptimize(operation());  // fills the pool of buffers
  for (auto _ : state) benchmark::DoNotOptimize(operation());
}

void add(const char* name, auto operation) {
  benchmark::RegisterBenchmark(name, [operation](benchmark::State& state) { run(state, operation); })
      ->Unit(benchmark::kMillisecond)
      ->MeasureProcessCPUTime()
      ->UseRealTime();
}

Bitmap copied(const Bitmap& source) {
  Bitmap result = source;
  result.writable();
  return result;
}

void addAll() {
  add("Copy", [] { return copied(opaquePicture()); });
  add("Crop/5000x3000", [] { return crop(opaquePicture(), 500, 500, 5000, 3000); });
  add("Canvas/7000x5000", [] { return resizeCanvas(opaquePicture(), 7000, 5000, {1, 2, 3, 255}, 500, 500); });
  add("Flip/left-right", [] { return flip(opaquePicture(), FlipDirection::LeftToRight); });
  add("Flip/top-bottom", [] { return flip(opaquePicture(), FlipDirection::TopToBottom); });
  add("Rotate/90", [] { return rotate(opaquePicture(), 90); });
  add("Rotate/180", [] { return rotate(opaquePicture(), 180); });
  add("Rotate/270", [] { return rotate(opaquePicture(), 270); });
  add("Rotate/37.5", [] { return rotate(opaquePicture(), 37.5, {255, 255, 255, 255}); });
  add("Gray", [] { return grayScale(opaquePicture()); });
  add("Flatten", [] { return flatten(cutOut(), {255, 255, 255, 255}); });
  add("ReplaceColor", [] { return replaceColor(opaquePicture(), {100, 100, 100, 255}, {}, 1.0); });
  add("Composite/over-opaque", [] { return composite(opaquePicture(), cutOut(), 0, 0); });
  add("Composite/over-alpha", [] { return composite(cutOut(), cutOut(), 0, 0); });
  add("Composite/opacity", [] { return composite(cutOut(), cutOut(), 0, 0, {0.6, Pixel{1, 2, 3, 0}}); });
  struct Method {
    const char* name;
    ResampleMethod method;
  };
  static constexpr Method methods[] = {{"bilinear", ResampleMethod::Bilinear},
                                       {"bicubic", ResampleMethod::Bicubic},
                                       {"pixel", ResampleMethod::Pixel},
                                       {"decimate", ResampleMethod::Decimate},
                                       {"lanczos3", ResampleMethod::Lanczos3}};
  for (const Method& m : methods) {
    add((std::string("Resize/1500x1000/") + m.name).c_str(),
        [&m] { return resize(opaquePicture(), 1500, 1000, m.method); });
    add((std::string("Resize/3000x2000/") + m.name).c_str(),
        [&m] { return resize(cutOut(), 3000, 2000, m.method); });
  }
  add("Resize/1920x1080-3840x2160/lanczos3", [] {
    static const Bitmap small = makePicture(1920, 1080, false);
    return resize(small, 3840, 2160, ResampleMethod::Lanczos3);
  });
  add("Blur/sigma-2", [] { return blur(cutOut(), 2); });
  add("Blur/sigma-5", [] { return blur(cutOut(), 5); });
  add("Blur/sigma-40", [] { return blur(cutOut(), 40); });
  add("DropShadow/hard", [] { return dropShadow(cutOut(), 5, 5, {0, 0, 0, 75}, 0); });
  add("DropShadow/128", [] { return dropShadow(cutOut(), 5, 5, {0, 0, 0, 75}, 128); });
  add("DropShadow/255/opaque", [] { return dropShadow(opaquePicture(), 5, 5, {0, 0, 0, 75}, 255); });
}

void drawShape(benchmark::State& state, const Shape& shape) {
  Bitmap picture = copied(opaquePicture());
  const Pixels pixels = picture.writable();
  for (auto _ : state) {
    benchmark::DoNotOptimize(paint(pixels, {0, 0, kWidth, kHeight}, shape, {200, 10, 20, 128}));
  }
}

void drawEllipse(benchmark::State& state) {
  drawShape(state, BoxShape::ellipse({0, 0}, {kWidth, kHeight}, {}));
}
void drawEllipseOutline(benchmark::State& state) {
  drawShape(state, BoxShape::ellipse({0, 0}, {kWidth, kHeight}, 1));
}
void drawLine(benchmark::State& state) { drawShape(state, LineShape({0, 0}, {kWidth, kHeight})); }

/// One pointer event: a sample 30 pixels on, with 1,000 samples before it.
void drawStroke(benchmark::State& state) {
  Bitmap picture = copied(opaquePicture());
  const Pixels pixels = picture.writable();
  Stroke stroke({200, 10, 20, 128}, 3, {0, 0, kWidth, kHeight});
  int i = 0;
  const auto next = [&] {
    stroke.add({2000 + 1500.0 * std::cos(i * 0.02) + i % 1000, 2000 + 1500.0 * std::sin(i * 0.02)});
    stroke.paint(pixels);
    ++i;
  };
  while (i < 1000) next();
  for (auto _ : state) next();
}

BENCHMARK(drawEllipse)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(drawEllipseOutline)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(drawLine)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(drawStroke)->Unit(benchmark::kMillisecond)->UseRealTime();

const bool registered = (addAll(), true);

}  // namespace
}  // namespace kestrel::engine
