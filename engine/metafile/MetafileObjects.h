#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "MetafileCanvas.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::engine::metafile {

/// A color as metafiles store it: red in the lowest byte, then green and blue.
struct Color {
  std::uint32_t value = 0;

  double red() const { return (value & 0xFF) / 255.0; }
  double green() const { return (value >> 8 & 0xFF) / 255.0; }
  double blue() const { return (value >> 16 & 0xFF) / 255.0; }
};

struct Brush {
  enum class Kind { solid, none, hatched, pattern } kind = Kind::solid;
  Color color{0xFFFFFF};
  /// First hatch number without lines: 6 and 7 are solid in the brush's color, 8 and 9 in the text color, 10
  /// and 11 in the background color; the second of each pair is dithered on devices with few colors.
  static constexpr std::uint32_t kFirstPlainHatch = 6;
  std::uint32_t hatch = 0;  ///< 0 across, 1 down, 2 falling, 3 rising, 4 cross, 5 diagonal cross
  Bitmap pattern;
  bool ofTextColors = false;  ///< black and white of the pattern are drawn in the text and background color

  /// From the style number of a record.
  static Brush fromStyle(std::uint32_t style, Color color, std::uint32_t hatch) {
    constexpr std::uint32_t kNull = 1, kHatched = 2;
    return {style == kNull ? Kind::none : style == kHatched ? Kind::hatched : Kind::solid, color, hatch, {}};
  }
};

/// Enumerators have the values of the records.
struct Pen {
  enum Style : std::uint32_t {
    kSolid = 0,
    kDash = 1,
    kDot = 2,
    kDashDot = 3,
    kDashDotDot = 4,
    kNone = 5,
    kCustom = 7,
    kAlternate = 8
  };
  enum Cap : std::uint32_t { kRoundCap = 0, kSquareCap = 1, kFlatCap = 2 };
  enum Join : std::uint32_t { kRoundJoin = 0, kBevelJoin = 1, kMiterJoin = 2 };

  std::uint32_t style = kSolid;
  std::uint32_t cap = kRoundCap;
  std::uint32_t join = kRoundJoin;
  double width = 0;  ///< in logical units; 0 is the thinnest line
  Brush ink{Brush::Kind::solid, {}, 0, {}};
  bool geometric = false;           ///< dashes scale with the width
  std::vector<double> dashes = {};  ///< for kCustom: in logical units if geometric, else in pixels

  /// From the style number of a record, which holds style, cap and join.
  static Pen fromStyle(std::uint32_t number, double width, Color color) {
    constexpr std::uint32_t kGeometric = 0x10000;
    return {number & 0xF,
            number >> 8 & 0xF,
            number >> 12 & 0xF,
            width,
            {Brush::Kind::solid, color, 0, {}},
            (number & kGeometric) != 0};
  }
};

struct Font {
  double height = 12;     ///< of the character cell if positive, of the em square if negative
  double width = 0;       ///< average character width; 0 for the face's own
  double escapement = 0;  ///< degrees counterclockwise
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strikeOut = false;
  std::uint8_t charset = 0;
  std::string face;
};

/// In logical units.
struct Region {
  std::vector<Rect> rects;
};

/// An entry of the object table; std::monostate if empty or not used for drawing.
using Object = std::variant<std::monostate, Pen, Brush, Font, Region>;

}  // namespace kestrel::engine::metafile
