#pragma once

#include <cstdint>

#include "MetafilePlayer.h"

namespace kestrel::engine::emf {

/// The types of the records that are played.
enum Record : std::uint32_t {
  kHeader = 1,
  kPolyBezier = 2,
  kPolygon = 3,
  kPolyline = 4,
  kPolyBezierTo = 5,
  kPolylineTo = 6,
  kPolyPolyline = 7,
  kPolyPolygon = 8,
  kSetWindowExtent = 9,
  kSetWindowOrigin = 10,
  kSetViewportExtent = 11,
  kSetViewportOrigin = 12,
  kEnd = 14,
  kSetPixel = 15,
  kSetMapMode = 17,
  kSetBackMode = 18,
  kSetFillMode = 19,
  kSetRasterOperation = 20,
  kSetTextAlign = 22,
  kSetTextColor = 24,
  kSetBackColor = 25,
  kMoveTo = 27,
  kExcludeClip = 29,
  kIntersectClip = 30,
  kScaleViewport = 31,
  kScaleWindow = 32,
  kSave = 33,
  kRestore = 34,
  kSetWorld = 35,
  kModifyWorld = 36,
  kSelect = 37,
  kCreatePen = 38,
  kCreateBrush = 39,
  kDelete = 40,
  kAngleArc = 41,
  kEllipse = 42,
  kRectangle = 43,
  kRoundRectangle = 44,
  kArc = 45,
  kChord = 46,
  kPie = 47,
  kLineTo = 54,
  kArcTo = 55,
  kSetArcDirection = 57,
  kBeginPath = 59,
  kEndPath = 60,
  kCloseFigure = 61,
  kFillPath = 62,
  kStrokeAndFillPath = 63,
  kStrokePath = 64,
  kClipPath = 67,
  kAbortPath = 68,
  kClipRegion = 75,
  kBitBlt = 76,
  kStretchBlt = 77,
  kSetDibToDevice = 80,
  kStretchDib = 81,
  kCreateFont = 82,
  kTextA = 83,
  kTextW = 84,
  kPolyBezier16 = 85,
  kPolygon16 = 86,
  kPolyline16 = 87,
  kPolyBezierTo16 = 88,
  kPolylineTo16 = 89,
  kPolyPolyline16 = 90,
  kPolyPolygon16 = 91,
  kCreateMonoBrush = 93,
  kCreateDibBrush = 94,
  kExtCreatePen = 95,
  kAlphaBlend = 114,
  kTransparentBlt = 116
};

/// Plays the records of an enhanced metafile; one that makes no sense is passed over. True if the end record
/// was reached.
bool play(metafile::Player& player, Bytes file);

}  // namespace kestrel::engine::emf
