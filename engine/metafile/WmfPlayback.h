#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "MetafilePlayer.h"
#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::wmf {

/// Record types that are played.
enum Record : std::uint16_t {
  kEnd = 0x0000,
  kSave = 0x001E,
  kSetStretchMode = 0x0107,
  kSetBackMode = 0x0102,
  kSetMapMode = 0x0103,
  kSetRasterOperation = 0x0104,
  kSetFillMode = 0x0106,
  kSetLetterSpace = 0x0108,
  kRestore = 0x0127,
  kInvertRegion = 0x012A,
  kPaintRegion = 0x012B,
  kClipRegion = 0x012C,
  kSelect = 0x012D,
  kSetTextAlign = 0x012E,
  kDelete = 0x01F0,
  kSetBackColor = 0x0201,
  kSetTextColor = 0x0209,
  kSetTextJustification = 0x020A,
  kSetWindowOrigin = 0x020B,
  kSetWindowExtent = 0x020C,
  kSetViewportOrigin = 0x020D,
  kSetViewportExtent = 0x020E,
  kOffsetWindow = 0x020F,
  kLineTo = 0x0213,
  kMoveTo = 0x0214,
  kOffsetClip = 0x0220,
  kFillRegion = 0x0228,
  kPolygon = 0x0324,
  kPolyline = 0x0325,
  kScaleWindow = 0x0410,
  kExcludeClip = 0x0415,
  kIntersectClip = 0x0416,
  kEllipse = 0x0418,
  kRectangle = 0x041B,
  kSetPixel = 0x041F,
  kFrameRegion = 0x0429,
  kText = 0x0521,
  kPolyPolygon = 0x0538,
  kRoundRectangle = 0x061C,
  kPatternFill = 0x061D,
  kArc = 0x0817,
  kPie = 0x081A,
  kChord = 0x0830,
  kBitBlt = 0x0922,
  kDibBitBlt = 0x0940,
  kExtText = 0x0A32,
  kStretchBlt = 0x0B23,
  kDibStretchBlt = 0x0B41,
  kSetDibToDevice = 0x0D33,
  kStretchDib = 0x0F43,
  kCreatePalette = 0x00F7,
  kCreateDibBrush = 0x0142,
  kCreatePatternBrush = 0x01F9,
  kCreatePen = 0x02FA,
  kCreateFont = 0x02FB,
  kCreateBrush = 0x02FC,
  kCreateRegion = 0x06FF
};

/// Plays the records of a Windows metafile. Invalid records are skipped.
class Playback {
 public:
  explicit Playback(metafile::Player& player) : player_(player) {}

  void play(std::uint16_t number, Bytes parameters);

 private:
  bool playState(std::uint16_t number, ByteReader& r);
  bool playClip(std::uint16_t number, ByteReader& r);
  bool playObject(std::uint16_t number, Bytes parameters);
  bool playShape(std::uint16_t number, ByteReader& r);
  bool playRegion(std::uint16_t number, ByteReader& r);
  bool playText(std::uint16_t number, ByteReader& r);
  void playPicture(std::uint16_t number, Bytes parameters);

  void keep(metafile::Object object);
  void select(std::size_t slot);
  template <typename Kind>
  const Kind* objectOf(std::size_t slot) const {
    return slot < objects_.size() && objects_[slot] ? std::get_if<Kind>(&*objects_[slot]) : nullptr;
  }
  void extText(ByteReader& r);
  void blit(std::uint16_t number, Bytes parameters);
  void setDibToDevice(Bytes parameters);

  metafile::Player& player_;
  std::vector<std::optional<metafile::Object>> objects_;
};

}  // namespace kestrel::engine::wmf
