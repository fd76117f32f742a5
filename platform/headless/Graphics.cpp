#include "Graphics.h"

#include <algorithm>

#include "base/RuntimeError.h"
#include "engine/effects/Composite.h"
#include "imaging/contract/Colour.h"

namespace kestrel::headless {

void Graphics::resize(std::int32_t width, std::int32_t height) {
  face_ = width > 0 && height > 0 ? engine::Bitmap::filled(width, height) : engine::Bitmap();
}

// In place, without allocation: the surface is also cleared when memory is short.
void Graphics::Clear() {
  if (face_.empty()) return;
  const engine::Pixels pixels = face_.writable();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    std::fill_n(reinterpret_cast<engine::Pixel*>(pixels.row(y)), pixels.width, engine::Pixel());
  }
}

void Graphics::DrawMode(std::int32_t value) {
  if (value != kDrawCopy && value != kDrawInvert) {
    throw RuntimeError(err::kInvalidPropertyValue, "The draw mode is neither 6 nor 13.");
  }
  mode_ = value;
}

void Graphics::PaintPicture(const Picture& picture, const Rectangle& destination, const Rectangle& source) {
  if (face_.empty() || destination.Width < 1 || destination.Height < 1) return;
  const PixelRows from = picture.Pixels();
  const engine::Pixels to = face_.writable();
  const auto spread = [](std::int32_t step, std::int32_t sourceSize, std::int32_t destinationSize) {
    return static_cast<std::int32_t>(std::int64_t{step} * sourceSize / destinationSize);
  };
  for (std::int32_t row = 0; row < destination.Height; ++row) {
    const std::int32_t y = destination.Top + row;
    const std::int32_t fromY = source.Top + spread(row, source.Height, destination.Height);
    if (y < 0 || y >= to.height) continue;
    for (std::int32_t column = 0; column < destination.Width; ++column) {
      const std::int32_t x = destination.Left + column;
      const std::int32_t fromX = source.Left + spread(column, source.Width, destination.Width);
      if (x < 0 || x >= to.width) continue;
      auto& pixel = reinterpret_cast<engine::Pixel*>(to.row(y))[x];
      pixel = groundAt(x, y);
      if (source.Width < 1 || source.Height < 1) continue;
      if (fromY < 0 || fromY >= from.Height || fromX < 0 || fromX >= from.Width) continue;
      const std::uint8_t* const top = from.Data + static_cast<std::size_t>(fromY) * from.Stride + fromX * 4;
      engine::compositeRow(top, reinterpret_cast<std::uint8_t*>(&pixel), 1);
    }
  }
}

engine::Pixel Graphics::groundAt(std::int32_t x, std::int32_t y) const {
  if (!ground_) return {};
  const PixelRows tile = ground_->Pixels();
  const std::uint8_t* const row = tile.Data + static_cast<std::size_t>(y % tile.Height) * tile.Stride;
  return reinterpret_cast<const engine::Pixel*>(row)[x % tile.Width];
}

void Graphics::DrawBox(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
                       OLE_COLOR color) {
  if (face_.empty()) return;
  if (left > right) std::swap(left, right);
  if (top > bottom) std::swap(top, bottom);
  const engine::Pixels pixels = face_.writable();
  for (std::int32_t x = std::max(left, 0); x <= std::min(right, pixels.width - 1); ++x) {
    plot(pixels, x, top, color);
    if (bottom != top) plot(pixels, x, bottom, color);
  }
  for (std::int32_t y = std::max(top, -1) + 1; y < std::min(bottom, pixels.height); ++y) {
    plot(pixels, left, y, color);
    if (right != left) plot(pixels, right, y, color);
  }
}

void Graphics::plot(const engine::Pixels& pixels, std::int32_t x, std::int32_t y, OLE_COLOR color) const {
  if (x < 0 || y < 0 || x >= pixels.width || y >= pixels.height) return;
  auto& pixel = reinterpret_cast<engine::Pixel*>(pixels.row(y))[x];
  const auto inverse = [](std::uint8_t value) { return static_cast<std::uint8_t>(255 - value); };
  if (mode_ == kDrawInvert) {
    pixel = {inverse(pixel.r), inverse(pixel.g), inverse(pixel.b), 255};
  } else {
    const Colour components(color);
    pixel = {components.Red(), components.Green(), components.Blue(), 255};
  }
}

}  // namespace kestrel::headless
