#pragma once

#include <cstdint>

namespace kestrel {

/// Values of `Palette::Type`.
inline constexpr std::int32_t kPaletteGrayScale = 0;

/// A palette to convert a picture to.
class Palette {
 public:
  std::int32_t Type() const { return type_; }
  void Type(std::int32_t value) { type_ = value; }

 private:
  std::int32_t type_ = kPaletteGrayScale;
};

}  // namespace kestrel
