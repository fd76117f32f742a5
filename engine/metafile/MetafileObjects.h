#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "MetafileCanvas.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::engine::metafile {

/// A colour as metafiles store it: red in the low byte, then green and blue.
struct Color {
  std::uint32_t value = 0;

  double red() const { return (value & 0xFF) / 255.0; }
  double green() const { return (value >> 8 & 0xFF) / 255.0; }
  double blue() const { return (value >> 16 & 0xFF) / 255.0; }
};

struct Brush {
  enum class Kind { solid, none, hatched, pattern } kind = Kind::solid;
  Color color{0xFFFFFF};
  /// Hatches from here on have no lines: 6 and 7 are of the brush's colour, 8 and 9 of the text's, 10 and 11
  /// of the back's, the second of each pair dithered on devices of few colours.
  static constexpr std::uint32_t kFirstPlainHatch = 6;
  std::uint32_t hatch = 0;  ///< 0 across, 1 down, 2 falling, 3 rising, 4 cross, 5 diagonal cross
  Bitmap pattern;
  bool ofTextColors = false;  ///< the pattern's black and white stand for the text's and the back's colour

  /// From the style number of a record.
  static Brush fromStyle(std::uint32_t style, Color color, std::uint32_t hatch) {
    constexpr std::uint32_t kNull = 1, kHatched = 2;
    return {style == kNull ? Kind::none : style == kHatched ? Kind::hatched : Kind::solid, color, hatch, {}};
  }
};

/// The numbers are those of the records.
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
  bool geometric = false;           ///< dashes grow with the width
  std::vector<double> dashes = {};  ///< of kCustom: in logical units if geometric, else in pixels

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
  double height = 12;     ///< of a cell if positive, of a letter if negative
  double width = 0;       ///< of an average letter; 0 for that of the face
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

/// What a slot of the object table holds; the first for nothing, or nothing that is drawn with.
using Object = std::variant<std::monostate, Pen, Brush, Font, Region>;

}  // namespace kestrel::engine::metafile
