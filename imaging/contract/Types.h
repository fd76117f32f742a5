#pragma once

#include <cstddef>
#include <cstdint>

namespace kestrel {

/// A color number 0x00BBGGRR; -1 means no color.
using OLE_COLOR = std::int32_t;
inline constexpr OLE_COLOR kNoColor = -1;

/// Identifies a window to the platform; 0 is none.
using WindowHandle = std::intptr_t;

struct Point {
  std::int32_t X = 0;
  std::int32_t Y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
  std::int32_t Width = 0;
  std::int32_t Height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

struct Rectangle {
  std::int32_t Left = 0;
  std::int32_t Top = 0;
  std::int32_t Width = 0;
  std::int32_t Height = 0;
  friend bool operator==(const Rectangle&, const Rectangle&) = default;
};

/// Widths added at each side of a rectangle.
struct Margins {
  std::int32_t Left = 0;
  std::int32_t Top = 0;
  std::int32_t Right = 0;
  std::int32_t Bottom = 0;
  friend bool operator==(const Margins&, const Margins&) = default;
};

/// Rows of 8-bit RGBA pixels with straight alpha; valid during a call.
struct PixelRows {
  const std::uint8_t* Data = nullptr;
  std::size_t Stride = 0;  ///< bytes from row to row
  std::int32_t Width = 0;
  std::int32_t Height = 0;
};

/// The argument through which a handler cancels the default action.
struct CancelValue {
  bool Value = false;
};

/// Masks of the Shift argument of key and mouse events and of hot keys.
inline constexpr std::int32_t kShiftMask = 1;
inline constexpr std::int32_t kCtrlMask = 2;
inline constexpr std::int32_t kAltMask = 4;

/// Values of the Button argument of mouse events.
inline constexpr std::int32_t kLeftButton = 1;
inline constexpr std::int32_t kRightButton = 2;
inline constexpr std::int32_t kMiddleButton = 4;

}  // namespace kestrel
