#pragma once

#include <cstdint>
#include <string>

#include "Colour.h"
#include "Palette.h"

namespace kestrel {

/// Values of the direction of `Effects::Flip`.
inline constexpr std::int32_t kFlipLeftToRight = 0;
inline constexpr std::int32_t kFlipTopToBottom = 1;

/// Values of the method of `Effects::Resize`.
inline constexpr std::int32_t kResampleBilinear = 0;
inline constexpr std::int32_t kResampleBicubic = 1;
inline constexpr std::int32_t kResamplePixel = 2;
inline constexpr std::int32_t kResampleDecimate = 3;
inline constexpr std::int32_t kResampleLanczos = 13;

/// Changes the whole picture. Each member raises RuntimeError on failure and then leaves the picture as it
/// was; 91 without a picture.
class Effects {
 public:
  virtual ~Effects() = default;

  /// Crops to the rectangle, clipped to the picture. Negative sizes extend left and up from the corner.
  /// Raises 5 if the result is empty.
  virtual void Crop(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
                    const std::string& undoName = {}) = 0;
  /// 0 left to right, 1 top to bottom.
  virtual void Flip(std::int32_t direction, const std::string& undoName = {}) = 0;
  /// Resamples to the size; height 0 keeps the aspect ratio. Raises 5 for a width below 1 or an unknown
  /// method.
  virtual void Resize(std::int32_t width, std::int32_t height, std::int32_t resampleMethod,
                      const std::string& undoName = {}) = 0;
  /// Places the picture at the offset on a canvas of the size and color; parts beyond the canvas are clipped.
  virtual void ResizeCanvas(std::int32_t width, std::int32_t height, const Colour& color,
                            std::int32_t offsetX, std::int32_t offsetY, const std::string& undoName = {}) = 0;
  /// Rotates the picture clockwise by an angle in degrees and grows the canvas to hold all of it. The color
  /// fills the exposed corners, which are transparent if it is null or "no color". Quality is 0.
  virtual void Rotate(float angle, const Colour* color, std::int32_t quality = 0,
                      const std::string& undoName = {}) = 0;
  /// Adds a shadow of the picture's alpha below it, displaced by the offset in pixels. The alpha of the color
  /// is the opacity, blur is 0 (hard) to 255. With `grow` the picture grows to hold the shadow.
  virtual void DropShadow(std::int32_t offsetX, std::int32_t offsetY, const Colour& color, double blur,
                          bool grow, const std::string& undoName = {}) = 0;
  /// Replaces the pixels of the color `from`, within the tolerance, by `to`. Tolerance 0 replaces exact
  /// matches only. Mode is 0.
  virtual void ReplaceColor(const Colour& from, const Colour& to, double tolerance, std::int32_t mode = 0,
                            const std::string& undoName = {}) = 0;
  /// Converts the colors to those of the palette; alpha is unchanged.
  virtual void ApplyPalette(const Palette& palette, bool dither, const std::string& undoName = {}) = 0;
};

}  // namespace kestrel
