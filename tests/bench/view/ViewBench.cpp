#include <benchmark/benchmark.h>

#include <cmath>

#include "../../engine/undo/Pictures.h"
#include "../../engine/view/TestView.h"

namespace kestrel::engine {
namespace {

constexpr std::int32_t kWidth = 1600;
constexpr std::int32_t kHeight = 1000;

/// Noise without transparent pixels.
Bitmap photograph(std::int32_t width, std::int32_t height) {
  Bitmap bitmap = noise(width, height);
  const Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) pixels.row(y)[4 * x + 3] = 255;
  }
  return bitmap;
}

const Bitmap& picture24() {
  static const Bitmap bitmap = photograph(6000, 4000);
  return bitmap;
}

const Bitmap& picture100() {
  static const Bitmap bitmap = photograph(12500, 8000);
  return bitmap;
}

/// Shows a copy of the picture that shares no pixels.
void prepare(TestView& view, const Bitmap& bitmap) {
  view.load(bitmap);
  view.Effects().Flip(0);
  view.UndoLevels(0);
  view.UndoLevels(20);
}

/// One frame of panning over 100 megapixels; the argument is the zoom in percent.
void paintWhilePanning(benchmark::State& state, const Bitmap& bitmap) {
  TestView view(kWidth, kHeight);
  view.load(bitmap);
  view.Zoom(static_cast<double>(state.range(0)) / 100);
  Bitmap buffer = Bitmap::uninitialized(kWidth, kHeight);
  const Pixels pixels = buffer.writable();
  const PaintBuffer target{pixels.data, pixels.stride, kWidth, kHeight, ChannelOrder::bgra};
  view.paint(target, {0, 0, kWidth, kHeight});
  float step = 7;
  for (auto _ : state) {
    view.scrollBy(-step, -step);
    if (view.horizontalScroll().position >= view.horizontalScroll().maximum) step = -7;
    if (view.horizontalScroll().position <= 0) step = 7;
    view.paint(target, {0, 0, kWidth, kHeight});
  }
}

void paintOpaque(benchmark::State& state) { paintWhilePanning(state, picture100()); }
BENCHMARK(paintOpaque)
    ->Arg(10)
    ->Arg(17)
    ->Arg(26)
    ->Arg(40)
    ->Arg(51)
    ->Arg(75)
    ->Arg(99)
    ->Arg(100)
    ->Arg(150)
    ->Arg(300)
    ->Arg(1000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

void paintTransparent(benchmark::State& state) {
  static const Bitmap bitmap = noise(12500, 8000);
  paintWhilePanning(state, bitmap);
}
BENCHMARK(paintTransparent)
    ->Arg(10)
    ->Arg(26)
    ->Arg(51)
    ->Arg(75)
    ->Arg(100)
    ->Arg(300)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

/// The first frame after the picture has changed as a whole.
void paintAfterChange(benchmark::State& state) {
  TestView view(kWidth, kHeight);
  view.load(picture100());
  view.Zoom(0.1);
  Bitmap buffer = Bitmap::uninitialized(kWidth, kHeight);
  const Pixels pixels = buffer.writable();
  for (auto _ : state) {
    view.load(picture100());
    view.paint({pixels.data, pixels.stride, kWidth, kHeight, ChannelOrder::bgra}, {0, 0, kWidth, kHeight});
  }
}
BENCHMARK(paintAfterChange)->Unit(benchmark::kMillisecond)->UseRealTime();

/// One pointer event of a freehand stroke with a pen of 5 pixels, with painting of the change.
void freehandEvent(benchmark::State& state, const Bitmap& bitmap, double zoom) {
  TestView view(kWidth, kHeight);
  prepare(view, bitmap);
  view.Zoom(zoom);
  view.Tool(kViewToolFreehand);
  view.Draw().PenSetting(5);
  Bitmap buffer = view.shot();
  const Pixels pixels = buffer.writable();
  view.press({800, 500});
  double angle = 0;
  for (auto _ : state) {
    angle += 0.05;
    view.invalid.clear();
    view.move({800 + 500 * std::cos(angle), 500 + 400 * std::sin(2.1 * angle)});
    for (const Rectangle& area : view.invalid) {
      view.paint({pixels.data, pixels.stride, kWidth, kHeight, ChannelOrder::bgra}, area);
    }
  }
  view.release({800, 500});
}
void freehand24(benchmark::State& state) { freehandEvent(state, picture24(), 1.0); }
void freehand24Reduced(benchmark::State& state) { freehandEvent(state, picture24(), 0.25); }
void freehand100(benchmark::State& state) { freehandEvent(state, picture100(), 1.0); }
void freehand100Reduced(benchmark::State& state) { freehandEvent(state, picture100(), 0.1); }
BENCHMARK(freehand24)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1000);
BENCHMARK(freehand24Reduced)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1000);
BENCHMARK(freehand100)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1000);
BENCHMARK(freehand100Reduced)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1000);

/// Undo and redo of one step on 24 megapixels, together.
template <typename Change>
void undoAndRedo(benchmark::State& state, const Change& change) {
  TestView view(kWidth, kHeight);
  prepare(view, picture24());
  change(view);
  state.counters["heldKB"] = static_cast<double>(view.undoMemory()) / 1024;
  for (auto _ : state) {
    view.Undo();
    view.Redo();
  }
}
void undoStroke(benchmark::State& state) {
  undoAndRedo(state, [](TestView& view) {
    view.Zoom(0.25);
    view.Tool(kViewToolFreehand);
    view.Draw().PenSetting(5);
    view.press({100, 100});
    for (int i = 1; i <= 1000; ++i) view.move({100 + 1.3 * i, 500 + 400 * std::sin(i * 0.01)});
    view.release({1400, 500});
  });
}
void undoWholePicture(benchmark::State& state) {
  undoAndRedo(state, [](TestView& view) { view.Effects().Flip(1); });
}
void undoLargeBox(benchmark::State& state) {
  undoAndRedo(state, [](TestView& view) {
    view.Draw().FillMode(kFillSolid);
    view.Draw().Rectangle({0, 0}, {5000, 3000});
  });
}
void undoLargestBoxKeptAsTiles(benchmark::State& state) {
  undoAndRedo(state, [](TestView& view) {
    view.Draw().FillMode(kFillSolid);
    view.Draw().Rectangle({0, 0}, {2000, 1400});
  });
}
BENCHMARK(undoStroke)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(undoWholePicture)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(undoLargeBox)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(undoLargestBoxKeptAsTiles)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace kestrel::engine
