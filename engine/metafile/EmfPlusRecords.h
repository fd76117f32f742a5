#pragma once

#include <cstdint>

namespace kestrel::engine::emf::plus {

/// Command types that are played.
enum Command : std::uint16_t {
  kHeader = 0x4001,
  kPlainRecords = 0x4004,
  kObject = 0x4008,
  kClear = 0x4009,
  kFillRects = 0x400A,
  kDrawRects = 0x400B,
  kFillPolygon = 0x400C,
  kDrawLines = 0x400D,
  kFillEllipse = 0x400E,
  kDrawEllipse = 0x400F,
  kFillPie = 0x4010,
  kDrawPie = 0x4011,
  kDrawArc = 0x4012,
  kFillRegion = 0x4013,
  kFillPath = 0x4014,
  kDrawPath = 0x4015,
  kFillClosedCurve = 0x4016,
  kDrawClosedCurve = 0x4017,
  kDrawCurve = 0x4018,
  kDrawBeziers = 0x4019,
  kDrawImage = 0x401A,
  kDrawImagePoints = 0x401B,
  kDrawString = 0x401C,
  kSetRenderingOrigin = 0x401D,
  kSetCompositingMode = 0x4023,
  kSave = 0x4025,
  kRestore = 0x4026,
  kBeginContainer = 0x4027,
  kBeginContainerNoParams = 0x4028,
  kEndContainer = 0x4029,
  kSetWorld = 0x402A,
  kResetWorld = 0x402B,
  kMultiplyWorld = 0x402C,
  kTranslateWorld = 0x402D,
  kScaleWorld = 0x402E,
  kRotateWorld = 0x402F,
  kSetPage = 0x4030,
  kResetClip = 0x4031,
  kSetClipRect = 0x4032,
  kSetClipPath = 0x4033,
  kSetClipRegion = 0x4034,
  kOffsetClip = 0x4035,
  kDrawDriverString = 0x4036
};

// Command flags.
constexpr std::uint16_t kIdMask = 0x00FF, kClosed = 0x2000, kWinding = 0x2000, kAppended = 0x2000,
                        kGoesOn = 0x8000, kColorInstead = 0x8000;

}  // namespace kestrel::engine::emf::plus
