#include "DrawPart.h"

#include <algorithm>
#include <array>
#include <optional>

#include "Conversions.h"
#include "PictureObject.h"
#include "engine/draw/BoxShape.h"
#include "engine/effects/Composite.h"

namespace kestrel::engine {
namespace {

/// The part of a picture that `top` covers when placed at (x, y).
kestrel::Rectangle overlap(const Bitmap& picture, const Bitmap& top, std::int32_t x, std::int32_t y) {
  const std::int32_t left = std::max(x, 0);
  const std::int32_t upper = std::max(y, 0);
  const std::int64_t right = std::min<std::int64_t>(std::int64_t{x} + top.width(), picture.width());
  const std::int64_t lower = std::min<std::int64_t>(std::int64_t{y} + top.height(), picture.height());
  return {left, upper, static_cast<std::int32_t>(std::max<std::int64_t>(right - left, 0)),
          static_cast<std::int32_t>(std::max<std::int64_t>(lower - upper, 0))};
}

void makeOpaque(Bitmap& bitmap) {
  const Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    std::uint8_t* const row = pixels.row(y);
    for (std::int32_t x = 0; x < pixels.width; ++x) row[4 * x + 3] = 255;
  }
}

}  // namespace

void DrawPart::FillMode(std::int32_t value) {
  if (value != kFillSolid && value != kFillNone) {
    throw RuntimeError(err::kInvalidPropertyValue, "The fill mode is 6 (solid) or -1 (outline).");
  }
  owner_.settings().fillMode = value;
}

void DrawPart::PenSetting(std::int32_t value) {
  if (value < 1) throw RuntimeError(err::kInvalidPropertyValue, "The pen is at least one pixel wide.");
  owner_.settings().penWidth = value;
}

void DrawPart::Rectangle(const Point& start, const Point& end, std::int32_t radiusX, std::int32_t radiusY,
                         const std::string& undoName) {
  EditablePicture& picture = owner_.pictureToChange();
  const ImagingSettings& settings = owner_.settings();
  const auto pen = settings.fillMode == kFillNone ? std::optional(settings.penWidth) : std::nullopt;
  const BoxShape shape = BoxShape::rectangle(start, end, pen, radiusX, radiusY);
  const kestrel::Rectangle whole{0, 0, picture.bitmap().width(), picture.bitmap().height()};
  picture.paint(touchedBy(shape, whole), undoName,
                [&](Pixels pixels) { engine::paint(pixels, whole, shape, pixelOf(settings.drawColor)); });
}

void DrawPart::Image(const kestrel::Image& source, std::int32_t x, std::int32_t y, const Colour* maskColor,
                     float opacity, bool blend, const std::string& undoName) {
  if (!(opacity >= 0 && opacity <= 1)) {
    throw RuntimeError(err::kInvalidCall, "An opacity lies between 0 and 1.");
  }
  EditablePicture& picture = owner_.pictureToChange();
  // The source may be this very picture: holding a reference keeps its pixels unchanged (copy-on-write).
  Bitmap top = bitmapOf(source);
  if (!blend) makeOpaque(top);
  const std::optional<Pixel> mask =
      maskColor == nullptr || maskColor->IsNone() ? std::nullopt : std::optional(pixelOf(*maskColor));
  const kestrel::Rectangle area = overlap(picture.bitmap(), top, x, y);
  picture.paint(std::array{area}, undoName, [&](Pixels pixels) {
    compositeOnto(pixels, top.pixels(), x, y, {.opacity = static_cast<double>(opacity), .maskColor = mask});
  });
}

void DrawPart::ImageWithAlpha(const kestrel::Image& source, std::int32_t x, std::int32_t y,
                              const std::string& undoName) {
  Image(source, x, y, nullptr, 1.0F, true, undoName);
}

}  // namespace kestrel::engine
