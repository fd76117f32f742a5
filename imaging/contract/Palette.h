#pragma once

#include <cstdint>

namespace kestrel {

/// The palettes that `Effects::ApplyPalette` knows by number.
inline constexpr std::int32_t kPaletteGrayScale = 0;

/// A palette to convert a picture to; made new by whoever asks for the conversion.
class Palette {
 public:
  std::int32_t Type() const { return type_; }
  void Type(std::int32_t value) { type_ = value; }

 private:
  std::int32_t type_ = kPaletteGrayScale;
};

}  // namespace kestrel
