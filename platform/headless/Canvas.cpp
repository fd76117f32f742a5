#include "Canvas.h"

#include <algorithm>

#include "engine/imgx/PictureObject.h"
#include "imaging/contract/Colour.h"

namespace kestrel::headless {

Canvas::Canvas(std::int32_t width, std::int32_t height)
    : bitmap_(engine::Bitmap::filled(width, height, {255, 255, 255, 255})) {}

void Canvas::FillRectangle(const Rectangle& rectangle, OLE_COLOR color) {
  const Colour components(color);
  const std::int32_t left = std::max(rectangle.Left, 0);
  const std::int32_t top = std::max(rectangle.Top, 0);
  const auto right = static_cast<std::int32_t>(
      std::min<std::int64_t>(std::int64_t{rectangle.Left} + rectangle.Width, Width()));
  const auto bottom = static_cast<std::int32_t>(
      std::min<std::int64_t>(std::int64_t{rectangle.Top} + rectangle.Height, Height()));
  const engine::Pixels pixels = bitmap_.writable();
  for (std::int32_t y = top; y < bottom; ++y) {
    auto* row = reinterpret_cast<engine::Pixel*>(pixels.row(y));
    for (std::int32_t x = left; x < right; ++x) {
      row[x] = {components.Red(), components.Green(), components.Blue(), 255};
    }
  }
}

PicturePtr Canvas::Picture() const { return std::make_shared<engine::PictureObject>(bitmap_); }

}  // namespace kestrel::headless
