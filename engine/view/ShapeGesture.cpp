#include "ShapeGesture.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <utility>

#include "engine/draw/BoxShape.h"
#include "engine/draw/LineShape.h"
#include "engine/imgx/Conversions.h"

namespace kestrel::engine {
namespace {

/// Positions farther out are never visible; the bound keeps the arithmetic of shapes exact.
constexpr double kFarthest = 1e8;

std::int32_t rounded(double value) {
  return static_cast<std::int32_t>(std::lround(std::clamp(value, -kFarthest, kFarthest)));
}

const char* nameOf(ShapeGesture::Kind kind) {
  switch (kind) {
    case ShapeGesture::Kind::line:
      return "Line";
    case ShapeGesture::Kind::rectangle:
      return "Rectangle";
    case ShapeGesture::Kind::ellipse:
      return "Ellipse";
  }
  return "";
}

std::unique_ptr<Shape> makeBox(ShapeGesture::Kind kind, Point start, Point end,
                               std::optional<std::int32_t> pen) {
  return std::make_unique<BoxShape>(kind == ShapeGesture::Kind::rectangle
                                        ? BoxShape::rectangle(start, end, pen)
                                        : BoxShape::ellipse(start, end, pen));
}

}  // namespace

ShapeGesture::ShapeGesture(GestureHost& host, Kind kind, PointD at)
    : host_(host), kind_(kind), from_(pointAt(at)), to_(from_) {}

PointD ShapeGesture::pointAt(PointD at) const {
  return host_.toPicture(kind_ == Kind::line ? pixelCenter(at) : at);
}

void ShapeGesture::drag(PointD at, std::int32_t shift) {
  invalidateBand();
  dragging_ = true;
  to_ = pointAt(at);
  if ((shift & kShiftMask) != 0) to_ = constrained(to_);
  invalidateBand();
}

void ShapeGesture::end(bool dragged) {
  invalidateBand();
  if (!dragged) return;
  EditablePicture& picture = host_.gesturePicture();
  const std::unique_ptr<Shape> shape = inPicture();
  const Rectangle whole{0, 0, picture.bitmap().width(), picture.bitmap().height()};
  picture.paint(touchedBy(*shape, whole), nameOf(kind_),
                [&](Pixels pixels) { engine::paint(pixels, whole, *shape, pixelOf(host_.drawColor())); });
}

void ShapeGesture::cancel() { invalidateBand(); }

PointD ShapeGesture::constrained(PointD to) const {
  double width = to.X - from_.X;
  double height = to.Y - from_.Y;
  if (kind_ == Kind::line) {
    constexpr double kStep = std::numbers::pi / 4;
    const double angle = std::round(std::atan2(height, width) / kStep) * kStep;
    const double length = width * std::cos(angle) + height * std::sin(angle);
    return {from_.X + length * std::cos(angle), from_.Y + length * std::sin(angle)};
  }
  const double side = std::max(std::abs(width), std::abs(height));
  return {from_.X + std::copysign(side, width), from_.Y + std::copysign(side, height)};
}

std::unique_ptr<Shape> ShapeGesture::inPicture() const {
  if (kind_ == Kind::line) {
    return std::make_unique<LineShape>(pixelCenter(from_), pixelCenter(to_), host_.penWidth());
  }
  return makeBox(kind_, {rounded(from_.X), rounded(from_.Y)}, {rounded(to_.X), rounded(to_.Y)},
                 host_.outlined() ? std::optional(host_.penWidth()) : std::nullopt);
}

std::unique_ptr<Shape> ShapeGesture::inView() const {
  const ViewAxis& x = host_.horizontal();
  const ViewAxis& y = host_.vertical();
  const std::int32_t pen = std::max(1, rounded(host_.penWidth() * x.zoom()));
  if (kind_ == Kind::line) {
    const PointD from = pixelCenter(from_), to = pixelCenter(to_);
    return std::make_unique<LineShape>(PointD{x.toView(from.X), y.toView(from.Y)},
                                       PointD{x.toView(to.X), y.toView(to.Y)}, pen);
  }
  return makeBox(kind_, {rounded(x.toView(std::round(from_.X))), rounded(y.toView(std::round(from_.Y)))},
                 {rounded(x.toView(std::round(to_.X))), rounded(y.toView(std::round(to_.Y)))},
                 host_.outlined() ? std::optional(pen) : std::nullopt);
}

void ShapeGesture::paint(const PaintBuffer& buffer, const Rectangle& area) const {
  if (!dragging_) return;
  Pixel color = pixelOf(host_.drawColor());
  if (buffer.order == ChannelOrder::bgra) std::swap(color.r, color.b);
  engine::paint({buffer.data, buffer.stride, buffer.width, buffer.height}, area, *inView(), color);
}

void ShapeGesture::invalidateBand() {
  const Rectangle band = inView()->bounds({0, 0, host_.horizontal().view(), host_.vertical().view()});
  if (band.Width > 0 && band.Height > 0) host_.invalidateView(band);
}

}  // namespace kestrel::engine
