// Pixel-wise operations on 24 megapixels of RGBA. Ours returns a new picture each time, in memory that the
// engine reuses; the others write to a kept buffer.

#include <cstring>
#include <memory>
#include <opencv2/core.hpp>

#include "ByHand.h"
#include "Comparison.h"
#include "MemoryPass.h"
#include "Pictures.h"
#include "Turns.h"
#include "engine/effects/Composite.h"
#include "engine/effects/Crop.h"
#include "engine/effects/Flatten.h"
#include "engine/effects/Flip.h"
#include "engine/effects/GrayScale.h"
#include "engine/effects/QuarterTurn.h"
#include "engine/effects/ReplaceColor.h"

namespace kestrel::bench {
namespace {

using engine::Bitmap;
using engine::Pixel;

/// The bar of operations that should be about as fast as a memory pass.
constexpr double kPassBar = 1.3;

std::vector<Contender> turns(int quarters) {
  const Bitmap picture = makePicture(true);
  const Bitmap turned = engine::quarterTurn(picture, quarters);
  const auto pixman = std::make_shared<PixmanTurn>(picture, quarters);
  const auto yuv = std::make_shared<YuvTurn>(picture, quarters);
  pixman->run();
  requireLike(turned, pixman->result(), 0);
  yuv->run();
  requireLike(turned, yuv->result(), 0);
  return {{"KestrelLib2", "exact", [=] { engine::quarterTurn(picture, quarters); }},
          {"pixman", "exact", [=] { pixman->run(); }},
          {"libyuv", "exact", [=] { yuv->run(); }}};
}

/// Compares ours with memory passes that read and write as many bytes, to the same buffer that the engine
/// reuses.
template <class Operation>
Comparison pass(const char* name, const char* computes, bool opaque, Operation operation) {
  return {name, kPassBar, [=]() -> std::vector<Contender> {
            const Bitmap picture = makePicture(opaque);
            const Bitmap like = operation(picture);
            const std::int32_t width = like.width(), height = like.height();
            const std::size_t bytes = like.byteSize();
            return {{"KestrelLib2", computes, [=] { operation(picture); }},
                    {"memcpy", "copies the bytes",
                     [=] {
                       std::memcpy(Bitmap::uninitialized(width, height).writable().data,
                                   picture.pixels().data, bytes);
                     }},
                    {"non-temporal copy", "copies the bytes with non-temporal stores", [=] {
                       Bitmap out = Bitmap::uninitialized(width, height);
                       nonTemporalPass(picture.pixels().data, bytes, out.writable().data);
                       storeFence();
                     }}};
          }};
}

Bitmap copied(const Bitmap& source) {
  Bitmap result = source;
  result.writable();
  return result;
}

/// The same for a part of the picture, row by row because of its stride.
std::vector<Contender> cropRow() {
  constexpr std::int32_t kLeft = 500, kTop = 500, kPartWidth = 5000, kPartHeight = 3000;
  const Bitmap picture = makePicture(true);
  const auto rows = [=](const auto& passRow) {
    Bitmap out = Bitmap::uninitialized(kPartWidth, kPartHeight);
    const engine::Pixels to = out.writable();
    for (std::int32_t y = 0; y < kPartHeight; ++y)
      passRow(picture.pixels().row(kTop + y) + 4 * kLeft, to.row(y), to.stride);
  };
  return {{"KestrelLib2", "exact", [=] { engine::crop(picture, kLeft, kTop, kPartWidth, kPartHeight); }},
          {"memcpy", "copies the bytes, row by row",
           [=] {
             rows([](const std::uint8_t* in, std::uint8_t* out, std::size_t) {
               std::memcpy(out, in, std::size_t{4} * kPartWidth);
             });
           }},
          {"non-temporal copy", "copies the bytes with non-temporal stores, row by row", [=] {
             rows([](const std::uint8_t* in, std::uint8_t* out, std::size_t bytes) {
               nonTemporalPass(in, bytes, out);
             });
             storeFence();
           }}};
}

constexpr const char* kCompositeComputes =
    "source-over, straight alpha of every value in both, within 0.51 levels";

struct Layers {
  Bitmap under = makePicture(false, 1), top = makePicture(false, 77), out = keptBuffer();
};

std::vector<Contender> compositeRow() {
  const auto layers = std::make_shared<Layers>();
  return {{"KestrelLib2", kCompositeComputes, [=] { engine::composite(layers->under, layers->top, 0, 0); }},
          {"non-temporal pass", "reads both pictures and writes one with non-temporal stores", [=] {
             Bitmap out = Bitmap::uninitialized(kWidth, kHeight);
             nonTemporalPass(layers->under.pixels().data, layers->top.pixels().data, out.byteSize(),
                             out.writable().data);
             storeFence();
           }}};
}

std::vector<Contender> compositeOpenCvRow() {
  const auto layers = std::make_shared<Layers>();
  const auto composite = std::make_shared<FloatComposite>();
  const auto run = [=] {
    cv::Mat out = asMat(layers->out.writable());
    composite->run(asMat(layers->under.pixels()), asMat(layers->top.pixels()), out);
  };
  run();
  requireLike(engine::composite(layers->under, layers->top, 0, 0), layers->out, 1);
  return {{"KestrelLib2", kCompositeComputes, [=] { engine::composite(layers->under, layers->top, 0, 0); }},
          {"OpenCV", "the same within a level, in float planes, in bands of rows that stay cached", run}};
}

std::vector<Contender> replaceOpenCvRow() {
  const Bitmap picture = makePicture(true);
  const auto out = std::make_shared<Bitmap>(keptBuffer());
  const auto replace = std::make_shared<ThreeCallReplace>();
  const Pixel from{100, 100, 100, 255}, to{10, 200, 30, 255};
  constexpr double kTolerance = 40;
  const auto run = [=] {
    cv::Mat mat = asMat(out->writable());
    replace->run(asMat(picture.pixels()), {100, 100, 100, 255}, {10, 200, 30, 255}, kTolerance, mat);
  };
  run();
  requireLike(engine::replaceColor(picture, from, to, kTolerance), *out, 0);
  return {{"KestrelLib2", "all transparent pixels count as one color",
           [=] { engine::replaceColor(picture, from, to, kTolerance); }},
          {"OpenCV", "inRange, copyTo, setTo; also compares colors of transparent pixels", run}};
}

}  // namespace

std::vector<Comparison> comparisons() {
  using engine::FlipDirection;
  return {
      {"rotate 90", 0.6, [] { return turns(1); }},
      {"rotate 270", 0.6, [] { return turns(3); }},
      pass("flip left to right", "exact", true,
           [](const Bitmap& b) { return engine::flip(b, FlipDirection::LeftToRight); }),
      pass("flip top to bottom", "exact", true,
           [](const Bitmap& b) { return engine::flip(b, FlipDirection::TopToBottom); }),
      {"crop to 5000x3000", kPassBar, cropRow},
      pass("copy", "as by the first write to a shared picture", true, copied),
      pass("gray", "BT.709 luma; keeps the alpha", true,
           [](const Bitmap& b) { return engine::grayScale(b); }),
      pass("flatten on a color", "alpha of every value", false,
           [](const Bitmap& b) {
             return engine::flatten(b, {200, 220, 240, 255});
           }),
      {"composite", kPassBar, compositeRow},
      {"composite, with OpenCV", 0.4, compositeOpenCvRow},
      {"replace color with tolerance", 0.3, replaceOpenCvRow},
  };
}

}  // namespace kestrel::bench
