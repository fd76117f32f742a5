#pragma once

#include <cstdint>

#include "Types.h"

namespace kestrel {

/// A color with its alpha. The value -1 is "no color", which operations with an optional color treat as
/// absent; its components read 0.
class Colour {
 public:
  Colour() = default;
  explicit Colour(OLE_COLOR value, std::uint8_t alpha = 255) : value_(value), alpha_(alpha) {}

  std::uint8_t Red() const { return Component(0); }
  std::uint8_t Green() const { return Component(8); }
  std::uint8_t Blue() const { return Component(16); }
  std::uint8_t Alpha() const { return IsNone() ? std::uint8_t{0} : alpha_; }

  OLE_COLOR Value() const { return value_; }
  void Value(OLE_COLOR value) { value_ = value; }

  bool IsNone() const { return value_ == kNoColor; }

 private:
  std::uint8_t Component(int shift) const {
    return IsNone() ? std::uint8_t{0} : static_cast<std::uint8_t>((value_ >> shift) & 0xFF);
  }

  OLE_COLOR value_ = 0;
  std::uint8_t alpha_ = 255;
};

}  // namespace kestrel
