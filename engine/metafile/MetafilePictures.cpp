// The player's pictures: bitmaps mixed with the brush and what was drawn.

#include <algorithm>
#include <cmath>
#include <utility>

#include "MetafilePlayer.h"

namespace kestrel::engine::metafile {
namespace {

/// White becomes opaque, black transparent.
Bitmap asAlpha(const Bitmap& mask) {
  Bitmap result = mask;
  const Pixels pixels = result.writable();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    std::uint8_t* p = pixels.row(y);
    for (std::int32_t x = 0; x < pixels.width; ++x, p += 4) p[3] = p[0] < 128 ? 0 : 255;
  }
  return result;
}

constexpr std::uint32_t kCopyOperation = 0xCC0020;
constexpr std::uint8_t kAnd = 0x88, kOr = 0xEE, kXor = 0x66;

std::uint8_t operationOf(const Player::Picture& picture) {
  return static_cast<std::uint8_t>(picture.operation >> 16);
}

bool isNear(const Point& a, const Point& b) {
  return std::abs(a.x - b.x) < 1e-3 && std::abs(a.y - b.y) < 1e-3;
}

bool isSame(const Rect& a, const Rect& b) {
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

/// Whether each pixel of the bitmap is one of the canvas.
bool isExact(const Player::Corners& corners, const Player::Picture& picture) {
  const Rect& source = picture.source;
  const auto& [at, right, below] = corners;
  return isNear(right, {at.x + source.right - source.left, at.y}) &&
         isNear(below, {at.x, at.y + source.bottom - source.top});
}

/// Whether the second operation draws a picture into what the first has cut out of the background.
bool isPair(std::uint8_t first, std::uint8_t second) {
  return first == kAnd ? second == kOr || second == kXor : first == kOr && second == kAnd;
}

/// Makes the picture transparent where the mask leaves the background. That is where it is white if it is
/// mixed by AND, and where it is black if by OR. False if the mask is not black and white alone, or the
/// picture would change the background there.
bool clearOutside(Bitmap& picture, const Bitmap& mask, std::uint8_t maskOperation) {
  const Pixels pixels = picture.writable();
  const ConstPixels masks = mask.pixels();
  const bool leavesWhite = maskOperation == kAnd;
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    std::uint8_t* p = pixels.row(y);
    const std::uint8_t* m = masks.row(y);
    for (std::int32_t x = 0; x < pixels.width; ++x, p += 4, m += 4) {
      const bool black = (m[0] | m[1] | m[2]) == 0, white = (m[0] & m[1] & m[2]) == 0xFF;
      if (!black && !white) return false;
      if (white != leavesWhite) continue;
      const bool neutral = leavesWhite ? (p[0] | p[1] | p[2]) == 0 : (p[0] & p[1] & p[2]) == 0xFF;
      if (!neutral) return false;
      p[3] = 0;
    }
  }
  return true;
}

bool takesBrush(std::uint8_t operation) { return ((operation >> 4 ^ operation) & 0x0F) != 0; }
bool takesSource(std::uint8_t operation) { return ((operation >> 2 ^ operation) & 0x33) != 0; }

}  // namespace

void Player::picture(const Rect& target, const Picture& what) {
  picture(Corners{Point{target.left, target.top}, Point{target.right, target.top},
                  Point{target.left, target.bottom}},
          what);
}

void Player::picture(const Corners& corners, const Picture& what) {
  const Corners placed{toPicture(corners[0]), toPicture(corners[1]), toPicture(corners[2])};
  if (held_) {
    const HeldMask mask = std::move(*std::exchange(held_, std::nullopt));
    if (drawJoined(mask, placed, what)) return;
    drawPicture(mask.corners, mask.picture);
  }
  const bool maybeMask = operationOf(what) == kAnd || operationOf(what) == kOr;
  if (maybeMask && !what.bitmap.empty() && what.mask.empty() && !isExact(placed, what)) {
    held_ = {placed, what};
  } else {
    drawPicture(placed, what);
  }
}

void Player::showHeldMask() {
  if (!held_) return;
  const HeldMask mask = std::move(*std::exchange(held_, std::nullopt));
  drawPicture(mask.corners, mask.picture);
}

/// Draws the mask and the picture at once if they are a pair. False if they are not.
bool Player::drawJoined(const HeldMask& mask, const Corners& corners, const Picture& what) {
  const Bitmap& hole = mask.picture.bitmap;
  const std::uint8_t maskOperation = operationOf(mask.picture);
  const bool pair = isPair(maskOperation, operationOf(what)) && what.mask.empty() &&
                    what.bitmap.width() == hole.width() && what.bitmap.height() == hole.height() &&
                    isSame(mask.picture.source, what.source) &&
                    std::ranges::equal(mask.corners, corners, isNear);
  if (!pair || !canvas_.work().take(4.0 * hole.width() * hole.height())) return false;
  Picture joined = what;
  if (!clearOutside(joined.bitmap, hole, maskOperation)) return false;
  joined.operation = kCopyOperation;
  drawPicture(corners, joined);
  return true;
}

/// The corners are pixels of the canvas.
void Player::drawPicture(const Corners& corners, const Picture& what) {
  constexpr std::uint8_t kCopy = 0xCC, kBrush = 0xF0, kBlack = 0x00, kWhite = 0xFF;
  const std::uint8_t operation = operationOf(what);
  const double width = what.source.right - what.source.left, height = what.source.bottom - what.source.top;
  const bool source = takesSource(operation), brush = takesBrush(operation);
  if (source && (what.bitmap.empty() || width == 0 || height == 0)) return;
  cairo_t* const c = canvas_.context();

  const auto& [at, right, below] = corners;
  canvas_.newPath();
  canvas_.polygon({at, right, {right.x + below.x - at.x, right.y + below.y - at.y}, below});
  const Rect extents = canvas_.filledExtents();
  // From pixels of the bitmap to those of the canvas.
  cairo_matrix_t place{width == 0 ? 0 : (right.x - at.x) / width,
                       width == 0 ? 0 : (right.y - at.y) / width,
                       height == 0 ? 0 : (below.x - at.x) / height,
                       height == 0 ? 0 : (below.y - at.y) / height,
                       0,
                       0};
  place.x0 = at.x - what.source.left * place.xx - what.source.top * place.xy;
  place.y0 = at.y - what.source.left * place.yx - what.source.top * place.yy;
  const bool exact =
      std::abs(place.xx - 1) < 1e-9 && std::abs(place.yy - 1) < 1e-9 && place.xy == 0 && place.yx == 0;
  const bool mixes = operation != kCopy && operation != kBrush && operation != kBlack && operation != kWhite;
  const auto placed = [&](const Bitmap& bitmap, Point offset) -> Pattern {
    cairo_matrix_t inverse = place;
    if (!isUsable(inverse) || cairo_matrix_invert(&inverse) != CAIRO_STATUS_SUCCESS) return nullptr;
    constexpr double kPerPixel = 8;
    if (!canvas_.work().take(kPerPixel * bitmap.width() * bitmap.height())) return nullptr;
    Pattern pattern = patternOf(bitmap);
    inverse.x0 += offset.x;
    inverse.y0 += offset.y;
    cairo_pattern_set_matrix(pattern.get(), &inverse);
    // Bits that are mixed are not to be blended with their neighbours.
    cairo_pattern_set_filter(pattern.get(), exact || mixes ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD);
    cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD);
    return pattern;
  };
  const Pattern image = source ? placed(what.bitmap, {}) : nullptr;
  const Pattern mask = what.mask.empty() ? nullptr : placed(asAlpha(what.mask), what.maskOffset);
  if ((source && !image) || (!what.mask.empty() && !mask)) return canvas_.newPath();

  const auto paintPresentSource = [&] {
    if (mask) {
      cairo_mask(c, mask.get());
    } else {
      cairo_paint_with_alpha(c, what.opacity);
    }
  };
  const auto paintImage = [&] {
    cairo_set_source(c, image.get());
    paintPresentSource();
  };
  const auto paintBrush = [&] {
    if (setBrushSource(state_.brush)) paintPresentSource();
  };
  const auto paintColor = [&] {
    setSource({operation == kBlack ? 0 : 0xFFFFFFU});
    paintPresentSource();
  };

  cairo_save(c);
  if (mixes) cairo_set_antialias(c, CAIRO_ANTIALIAS_NONE);
  cairo_set_fill_rule(c, CAIRO_FILL_RULE_WINDING);
  cairo_clip(c);
  if (mixes) {
    canvas_.mix(operation, extents, source ? std::function<void()>(paintImage) : nullptr,
                brush    ? std::function<void()>(paintBrush)
                : source ? nullptr
                         : std::function<void()>(paintColor));
  } else if (canvas_.affords(extents, operation == kCopy ? 16 : 2)) {
    cairo_set_operator(c, CAIRO_OPERATOR_OVER);
    operation == kCopy ? paintImage() : operation == kBrush ? paintBrush() : paintColor();
  }
  cairo_restore(c);
  canvas_.newPath();
}

}  // namespace kestrel::engine::metafile
