#pragma once

#include <cstdint>
#include <string>

#include "Colour.h"
#include "Image.h"
#include "Types.h"

namespace kestrel {

/// Values of `Draw::FillMode`.
inline constexpr std::int32_t kFillSolid = 6;
inline constexpr std::int32_t kFillNone = -1;

/// Draws on the picture.
class Draw {
 public:
  virtual ~Draw() = default;

  /// The color of the mouse tools and of `Rectangle`; change it through its `Value`.
  virtual Colour& Color() = 0;

  /// 6 fills a shape, -1 draws its outline only.
  virtual std::int32_t FillMode() const = 0;
  virtual void FillMode(std::int32_t value) = 0;

  /// The width of the pen in picture pixels, at least 1.
  virtual std::int32_t PenSetting() const = 0;
  virtual void PenSetting(std::int32_t value) = 0;

  /// Draws the rectangle between the two points with `Color` and `FillMode`. The larger coordinates are
  /// exclusive. The radii round its corners.
  virtual void Rectangle(const Point& start, const Point& end, std::int32_t radiusX = 0,
                         std::int32_t radiusY = 0, const std::string& undoName = {}) = 0;

  /// Composites an image with its top left corner at (x, y). Pixels of the mask color are skipped; opacity is
  /// 0 to 1; `blend` applies the source's alpha.
  virtual void Image(const kestrel::Image& source, std::int32_t x, std::int32_t y, const Colour* maskColor,
                     float opacity, bool blend, const std::string& undoName = {}) = 0;

  /// Composites an image with its alpha.
  virtual void ImageWithAlpha(const kestrel::Image& source, std::int32_t x, std::int32_t y,
                              const std::string& undoName = {}) = 0;
};

}  // namespace kestrel
