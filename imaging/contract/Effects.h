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

/// Changes the picture as a whole. Each member raises RuntimeError, and leaves the picture as it was, when it
/// cannot do what it is asked; 91 when there is no picture.
class Effects {
 public:
  virtual ~Effects() = default;

  /// Keeps the rectangle, cut to the picture. Negative sizes reach left and up from the corner. Raises 5 if
  /// nothing of the picture is left.
  virtual void Crop(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
                    const std::string& undoName = {}) = 0;
  /// 0 left to right, 1 top to bottom.
  virtual void Flip(std::int32_t direction, const std::string& undoName = {}) = 0;
  /// Resamples to the size; height 0 keeps the proportion. Raises 5 for a width below 1 or an unknown method.
  virtual void Resize(std::int32_t width, std::int32_t height, std::int32_t resampleMethod,
                      const std::string& undoName = {}) = 0;
  /// Places the picture at the offset on a canvas of the size and colour; what sticks out is cut.
  virtual void ResizeCanvas(std::int32_t width, std::int32_t height, const Colour& color,
                            std::int32_t offsetX, std::int32_t offsetY, const std::string& undoName = {}) = 0;
  /// Turns the picture clockwise by an angle in degrees and grows the canvas to hold it whole. The colour
  /// fills the exposed corners, which are transparent where it is null or no colour. Quality is 0.
  virtual void Rotate(float angle, const Colour* color, std::int32_t quality = 0,
                      const std::string& undoName = {}) = 0;
  /// Adds a shadow of the picture's outline below it, displaced by the offset; the alpha of the colour is its
  /// opacity, blur is 0 (hard) to 255. With `grow` the picture grows to hold the shadow.
  virtual void DropShadow(std::int32_t offsetX, std::int32_t offsetY, const Colour& color, double blur,
                          bool grow, const std::string& undoName = {}) = 0;
  /// All pixels of the colour `from`, within the tolerance, become `to`. Tolerance 0 takes exact matches
  /// only. Mode is 0.
  virtual void ReplaceColor(const Colour& from, const Colour& to, double tolerance, std::int32_t mode = 0,
                            const std::string& undoName = {}) = 0;
  /// Converts the colours to those of the palette; alpha stays.
  virtual void ApplyPalette(const Palette& palette, bool dither, const std::string& undoName = {}) = 0;
};

}  // namespace kestrel
