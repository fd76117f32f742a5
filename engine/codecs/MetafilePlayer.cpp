#include "MetafilePlayer.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

#include "Damage.h"
#include "base/RuntimeError.h"

namespace kestrel::engine::metafile {
namespace {

/// Beyond these Cairo's fixed-point numbers end.
constexpr std::int32_t kLongestSide = 32000;
constexpr double kFarthest = 4e6;
constexpr std::size_t kMostSaved = 1000;

double bounded(double value) { return std::isfinite(value) ? std::clamp(value, -kFarthest, kFarthest) : 0.0; }

/// Pixels per unit of the physical mapping modes, at the 96 pixels per inch of the picture.
double unitsOf(std::uint32_t mode) {
  switch (mode) {
    case 2:
      return 96 / 254.0;
    case 3:
      return 96 / 2540.0;
    case 4:
      return 96 / 100.0;
    case 5:
      return 96 / 1000.0;
    case 6:
      return 96 / 1440.0;
    default:
      return 1;
  }
}

/// Straight to premultiplied pixels in the machine's order of a Cairo picture.
void premultiplyRow(const std::uint8_t* rgba, std::uint8_t* argb, std::int32_t width) {
  for (std::int32_t x = 0; x < width; ++x, rgba += 4, argb += 4) {
    const auto times = [alpha = rgba[3]](std::uint8_t v) {
      return static_cast<std::uint32_t>((v * alpha + 127) / 255);
    };
    const std::uint32_t pixel = static_cast<std::uint32_t>(rgba[3]) << 24 | times(rgba[0]) << 16 |
                                times(rgba[1]) << 8 | times(rgba[2]);
    std::memcpy(argb, &pixel, sizeof pixel);
  }
}

void unpremultiplyRow(const std::uint8_t* argb, std::uint8_t* rgba, std::int32_t width) {
  for (std::int32_t x = 0; x < width; ++x, rgba += 4, argb += 4) {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, argb, sizeof pixel);
    const std::uint32_t alpha = pixel >> 24;
    const auto divided = [alpha](std::uint32_t v) {
      return static_cast<std::uint8_t>(alpha == 0 ? 0 : std::min(255U, (v * 255 + alpha / 2) / alpha));
    };
    rgba[0] = divided(pixel >> 16 & 0xFF);
    rgba[1] = divided(pixel >> 8 & 0xFF);
    rgba[2] = divided(pixel & 0xFF);
    rgba[3] = static_cast<std::uint8_t>(alpha);
  }
}

cairo_surface_t* surfaceOf(const Bitmap& bitmap) {
  cairo_surface_t* const surface =
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, bitmap.width(), bitmap.height());
  if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) return surface;
  cairo_surface_flush(surface);
  std::uint8_t* const data = cairo_image_surface_get_data(surface);
  const std::ptrdiff_t stride = cairo_image_surface_get_stride(surface);
  for (std::int32_t y = 0; y < bitmap.height(); ++y) {
    premultiplyRow(bitmap.pixels().row(y), data + y * stride, bitmap.width());
  }
  cairo_surface_mark_dirty(surface);
  return surface;
}

struct DestroyPattern {
  void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};
using Pattern = std::unique_ptr<cairo_pattern_t, DestroyPattern>;

Pattern patternOf(const Bitmap& bitmap) {
  cairo_surface_t* const surface = surfaceOf(bitmap);
  Pattern pattern(cairo_pattern_create_for_surface(surface));
  cairo_surface_destroy(surface);
  return pattern;
}

/// A tile of 8 x 8 with the lines of a hatch.
Bitmap hatchTile(const Brush& brush, bool opaque, Color back) {
  const auto pixelOf = [](Color c, std::uint8_t alpha) {
    return Pixel{static_cast<std::uint8_t>(c.value), static_cast<std::uint8_t>(c.value >> 8),
                 static_cast<std::uint8_t>(c.value >> 16), alpha};
  };
  Bitmap tile = Bitmap::filled(8, 8, pixelOf(back, opaque ? 255 : 0));
  const Pixels pixels = tile.writable();
  const Pixel line = pixelOf(brush.color, 255);
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 8; ++x) {
      const bool across = y == 4, down = x == 4, falling = x == y, rising = x + y == 7;
      const bool on[] = {across, down, falling, rising, across || down, falling || rising};
      if (on[std::min<std::uint32_t>(brush.hatch, 5)]) std::memcpy(pixels.row(y) + 4 * x, &line, 4);
    }
  }
  return tile;
}

}  // namespace

Player::Player(std::int32_t width, std::int32_t height, const cairo_matrix_t& device) : device_(device) {
  if (width < 1 || height < 1) refusePicture("The metafile is damaged: its picture has no size.");
  if (width > kLongestSide || height > kLongestSide) {
    throw RuntimeError(err::kOutOfMemory,
                       "The picture of the metafile is too large: " + std::to_string(width) + " x " +
                           std::to_string(height) + " pixels.");
  }
  // Asks for the result's memory once, so that a size beyond the limits is refused in the usual words.
  Bitmap::uninitialized(width, height);
  surface_.reset(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
  cairo_.reset(cairo_create(surface_.get()));
}

void Player::save() {
  if (saved_.size() >= kMostSaved) return;
  saved_.push_back(state_);
  cairo_save(cairo_.get());
}

void Player::restore(std::int32_t level) {
  const auto depth = static_cast<std::int64_t>(saved_.size());
  const std::int64_t target = level > 0 ? level - 1 : depth + level;
  if (target < 0) return;
  while (static_cast<std::int64_t>(saved_.size()) > target) {
    state_ = saved_.back();
    saved_.pop_back();
    cairo_restore(cairo_.get());
  }
}

cairo_matrix_t Player::matrix() const {
  const Mapping& m = state_.mapping;
  cairo_matrix_t page{1, 0, 0, 1, 0, 0};
  constexpr std::uint32_t kText = 1, kIsotropic = 7;
  if (m.mode == kText) {
    page.x0 = m.viewportOrigin.x - m.windowOrigin.x;
    page.y0 = m.viewportOrigin.y - m.windowOrigin.y;
  } else if (m.mode < kIsotropic) {
    // A physical measure is so many pixels of the picture, whatever the device's are; it counts upwards.
    page.xx = unitsOf(m.mode) / device_.xx;
    page.yy = -unitsOf(m.mode) / device_.yy;
    page.x0 = m.viewportOrigin.x - m.windowOrigin.x * page.xx;
    page.y0 = m.viewportOrigin.y - m.windowOrigin.y * page.yy;
  } else {
    page.xx = m.windowExtent.x != 0 ? m.viewportExtent.x / m.windowExtent.x : 1;
    page.yy = m.windowExtent.y != 0 ? m.viewportExtent.y / m.windowExtent.y : 1;
    if (m.mode == kIsotropic) {
      const double both = std::min(std::abs(page.xx), std::abs(page.yy));
      page.xx = std::copysign(both, page.xx);
      page.yy = std::copysign(both, page.yy);
    }
    page.x0 = m.viewportOrigin.x - m.windowOrigin.x * page.xx;
    page.y0 = m.viewportOrigin.y - m.windowOrigin.y * page.yy;
  }
  cairo_matrix_t whole = m.world;
  cairo_matrix_multiply(&whole, &whole, &page);
  cairo_matrix_multiply(&whole, &whole, &device_);
  return whole;
}

Point Player::toPicture(Point logical) const {
  const cairo_matrix_t m = matrix();
  cairo_matrix_transform_point(&m, &logical.x, &logical.y);
  return {bounded(logical.x), bounded(logical.y)};
}

double Player::scale() const {
  const cairo_matrix_t m = matrix();
  return std::clamp(std::sqrt(std::abs(m.xx * m.yy - m.xy * m.yx)), 1e-6, 1e6);
}

void Player::setSource(Color color, double opacity) {
  cairo_set_source_rgba(cairo_.get(), color.red(), color.green(), color.blue(), opacity);
}

/// Mixing bits has no meaning between colours with alpha; the nearest that look alike stand in.
void Player::setOperator() {
  constexpr std::uint32_t kInvert = 6, kXor = 7, kMask = 9, kMerge = 15;
  switch (state_.rasterOperation) {
    case kInvert:
    case kXor:
      return cairo_set_operator(cairo_.get(), CAIRO_OPERATOR_DIFFERENCE);
    case kMask:
      return cairo_set_operator(cairo_.get(), CAIRO_OPERATOR_MULTIPLY);
    case kMerge:
      return cairo_set_operator(cairo_.get(), CAIRO_OPERATOR_SCREEN);
    default:
      return cairo_set_operator(cairo_.get(), CAIRO_OPERATOR_OVER);
  }
}

void Player::setBrushSource() {
  const Brush& brush = state_.brush;
  if (brush.kind == Brush::Kind::solid || (brush.kind == Brush::Kind::pattern && brush.pattern.empty())) {
    setSource(brush.color);
    return;
  }
  const Pattern pattern =
      patternOf(brush.kind == Brush::Kind::pattern ? brush.pattern
                                                   : hatchTile(brush, state_.opaqueBack, state_.backColor));
  cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_REPEAT);
  cairo_pattern_set_filter(pattern.get(), CAIRO_FILTER_NEAREST);
  cairo_set_source(cairo_.get(), pattern.get());
}

void Player::fillPresentPath() {
  constexpr std::uint32_t kNothing = 11;
  if (state_.brush.kind == Brush::Kind::none || state_.rasterOperation == kNothing) return;
  cairo_set_fill_rule(cairo_.get(), state_.fillWinding ? CAIRO_FILL_RULE_WINDING : CAIRO_FILL_RULE_EVEN_ODD);
  setBrushSource();
  setOperator();
  cairo_fill_preserve(cairo_.get());
}

void Player::strokePresentPath() {
  constexpr std::uint32_t kNothing = 11;
  const Pen& pen = state_.pen;
  if (pen.style == Pen::kNone || state_.rasterOperation == kNothing) return;
  cairo_t* const c = cairo_.get();
  const double width = std::clamp(pen.width * scale(), 1.0, kFarthest);
  cairo_set_line_width(c, width);
  cairo_set_line_cap(c, pen.cap == Pen::kRoundCap    ? CAIRO_LINE_CAP_ROUND
                        : pen.cap == Pen::kSquareCap ? CAIRO_LINE_CAP_SQUARE
                                                     : CAIRO_LINE_CAP_BUTT);
  cairo_set_line_join(c, pen.join == Pen::kRoundJoin   ? CAIRO_LINE_JOIN_ROUND
                         : pen.join == Pen::kBevelJoin ? CAIRO_LINE_JOIN_BEVEL
                                                       : CAIRO_LINE_JOIN_MITER);
  const double on = 3 * width, off = 2 * width, dot = width;
  const double dash[] = {on, off}, dots[] = {dot, dot}, dashDot[] = {on, dot, dot, dot},
               dashDotDot[] = {on, dot, dot, dot, dot, dot};
  switch (pen.style) {
    case Pen::kDash:
      cairo_set_dash(c, dash, 2, 0);
      break;
    case Pen::kDot:
      cairo_set_dash(c, dots, 2, 0);
      break;
    case Pen::kDashDot:
      cairo_set_dash(c, dashDot, 4, 0);
      break;
    case Pen::kDashDotDot:
      cairo_set_dash(c, dashDotDot, 6, 0);
      break;
    default:
      cairo_set_dash(c, nullptr, 0, 0);
      break;
  }
  setSource(pen.color);
  setOperator();
  cairo_stroke_preserve(c);
}

void Player::beginFigure() {
  if (!inPath_) cairo_new_path(cairo_.get());
}

void Player::endFigure(bool fill) {
  if (inPath_) return;
  if (fill) fillPresentPath();
  strokePresentPath();
  cairo_new_path(cairo_.get());
}

void Player::addLines(const std::vector<Point>& points) {
  for (std::size_t i = 0; i < points.size(); ++i) {
    const Point p = toPicture(points[i]);
    if (i == 0) {
      cairo_move_to(cairo_.get(), p.x, p.y);
    } else {
      cairo_line_to(cairo_.get(), p.x, p.y);
    }
  }
}

void Player::addCurves(const std::vector<Point>& points, std::size_t first) {
  for (std::size_t i = first; i + 2 < points.size(); i += 3) {
    const Point a = toPicture(points[i]), b = toPicture(points[i + 1]), c = toPicture(points[i + 2]);
    cairo_curve_to(cairo_.get(), a.x, a.y, b.x, b.y, c.x, c.y);
  }
}

void Player::moveTo(Point to) {
  state_.position = to;
  if (!inPath_) return;
  const Point p = toPicture(to);
  cairo_move_to(cairo_.get(), p.x, p.y);
}

void Player::lineTo(const std::vector<Point>& points) {
  if (points.empty()) return;
  std::vector<Point> all{state_.position};
  all.insert(all.end(), points.begin(), points.end());
  beginFigure();
  if (inPath_ && cairo_has_current_point(cairo_.get()) != 0) {
    for (const Point& point : points) {
      const Point p = toPicture(point);
      cairo_line_to(cairo_.get(), p.x, p.y);
    }
  } else {
    addLines(all);
  }
  endFigure(false);
  state_.position = points.back();
}

void Player::bezierTo(const std::vector<Point>& points) {
  if (points.empty()) return;
  beginFigure();
  if (cairo_has_current_point(cairo_.get()) == 0) addLines({state_.position});
  addCurves(points, 0);
  endFigure(false);
  state_.position = points.back();
}

void Player::polygons(const std::vector<std::vector<Point>>& figures, bool closed) {
  beginFigure();
  for (const auto& figure : figures) {
    addLines(figure);
    if (closed && !figure.empty()) cairo_close_path(cairo_.get());
  }
  endFigure(closed);
}

void Player::bezier(const std::vector<Point>& points) {
  if (points.empty()) return;
  beginFigure();
  addLines({points[0]});
  addCurves(points, 1);
  endFigure(false);
}

void Player::setPixel(Point at, Color color) {
  const Point p = toPicture(at);
  cairo_save(cairo_.get());
  cairo_new_path(cairo_.get());
  cairo_rectangle(cairo_.get(), std::floor(p.x), std::floor(p.y), 1, 1);
  setSource(color);
  cairo_fill(cairo_.get());
  cairo_restore(cairo_.get());
}

void Player::beginPath() {
  cairo_new_path(cairo_.get());
  inPath_ = true;
}

void Player::endPath() { inPath_ = false; }

void Player::closeFigure() {
  if (inPath_ && cairo_has_current_point(cairo_.get()) != 0) cairo_close_path(cairo_.get());
}

void Player::abortPath() {
  inPath_ = false;
  cairo_new_path(cairo_.get());
}

void Player::drawPath(bool fill, bool stroke) {
  inPath_ = false;
  if (fill) fillPresentPath();
  if (stroke) strokePresentPath();
  cairo_new_path(cairo_.get());
}

void Player::clipToPath(bool replace) {
  inPath_ = false;
  if (replace) cairo_reset_clip(cairo_.get());
  cairo_set_fill_rule(cairo_.get(), state_.fillWinding ? CAIRO_FILL_RULE_WINDING : CAIRO_FILL_RULE_EVEN_ODD);
  cairo_clip(cairo_.get());
}

void Player::clipToRects(const std::vector<Rect>& rects, bool replace) {
  if (replace) cairo_reset_clip(cairo_.get());
  cairo_new_path(cairo_.get());
  for (const Rect& rect : rects) {
    addLines(
        {{rect.left, rect.top}, {rect.right, rect.top}, {rect.right, rect.bottom}, {rect.left, rect.bottom}});
    cairo_close_path(cairo_.get());
  }
  cairo_set_fill_rule(cairo_.get(), CAIRO_FILL_RULE_WINDING);
  cairo_clip(cairo_.get());
}

void Player::resetClip() { cairo_reset_clip(cairo_.get()); }

void Player::excludeRect(const Rect& rect) {
  cairo_new_path(cairo_.get());
  cairo_rectangle(cairo_.get(), -kFarthest, -kFarthest, 2 * kFarthest, 2 * kFarthest);
  addLines(
      {{rect.left, rect.top}, {rect.right, rect.top}, {rect.right, rect.bottom}, {rect.left, rect.bottom}});
  cairo_close_path(cairo_.get());
  cairo_set_fill_rule(cairo_.get(), CAIRO_FILL_RULE_EVEN_ODD);
  cairo_clip(cairo_.get());
}

void Player::fillRect(const Rect& rect, Color color) {
  cairo_new_path(cairo_.get());
  addLines(
      {{rect.left, rect.top}, {rect.right, rect.top}, {rect.right, rect.bottom}, {rect.left, rect.bottom}});
  setSource(color);
  cairo_set_operator(cairo_.get(), CAIRO_OPERATOR_OVER);
  cairo_fill(cairo_.get());
}

void Player::text(Point at, const std::vector<std::string>& letters, const std::vector<double>& advances) {
  if (letters.empty()) return;
  const Font& font = state_.font;
  cairo_t* const c = cairo_.get();
  const cairo_matrix_t m = matrix();
  const double across = std::hypot(m.xx, m.yx), down = std::hypot(m.xy, m.yy);
  // A cell is taller than a letter by the space between lines.
  constexpr double kLetterOfCell = 0.86;
  const double height =
      (font.height == 0 ? 12.0 : std::abs(font.height)) * (font.height > 0 ? kLetterOfCell : 1.0);
  const double size = std::clamp(height * down, 0.5, 4000.0);

  cairo_save(c);
  cairo_new_path(c);
  cairo_select_font_face(c, font.face.empty() ? "sans-serif" : font.face.c_str(),
                         font.italic ? CAIRO_FONT_SLANT_ITALIC : CAIRO_FONT_SLANT_NORMAL,
                         font.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(c, size);
  std::vector<double> widths;
  double width = 0;
  for (std::size_t i = 0; i < letters.size(); ++i) {
    cairo_text_extents_t extents{};
    cairo_text_extents(c, letters[i].c_str(), &extents);
    widths.push_back(i < advances.size() ? bounded(advances[i] * across) : extents.x_advance);
    width += widths.back();
  }
  cairo_font_extents_t line{};
  cairo_font_extents(c, &line);

  constexpr std::uint32_t kUpdatePosition = 1, kHorizontal = 6, kRight = 2, kCentre = 6, kVertical = 24,
                          kBottom = 8, kBaseline = 24;
  const std::uint32_t align = state_.textAlign;
  const Point origin = toPicture((align & kUpdatePosition) != 0 ? state_.position : at);
  const double left = (align & kHorizontal) == kRight    ? -width
                      : (align & kHorizontal) == kCentre ? -width / 2
                                                         : 0;
  const double base = (align & kVertical) == kBaseline ? 0
                      : (align & kVertical) == kBottom ? -line.descent
                                                       : line.ascent;
  cairo_translate(c, origin.x, origin.y);
  cairo_rotate(c, std::atan2(m.yx, m.xx) - font.escapement * std::numbers::pi / 180);
  if (state_.opaqueBack) {
    cairo_rectangle(c, left, base - line.ascent, width, line.ascent + line.descent);
    setSource(state_.backColor);
    cairo_fill(c);
  }
  setSource(state_.textColor);
  double x = left;
  for (std::size_t i = 0; i < letters.size(); ++i) {
    cairo_move_to(c, x, base);
    cairo_show_text(c, letters[i].c_str());
    x += widths[i];
  }
  const auto rule = [&](double y) {
    cairo_rectangle(c, left, y, width, std::max(1.0, size / 16));
    cairo_fill(c);
  };
  if (font.underline) rule(base + line.descent / 3);
  if (font.strikeOut) rule(base - line.ascent / 3);
  cairo_restore(c);
  cairo_new_path(c);
  if ((align & kUpdatePosition) != 0) state_.position.x += across > 0 ? width / across : 0;
}

void Player::picture(const Rect& target, const Bitmap& bitmap, const Rect& source, std::uint32_t operation,
                     double opacity) {
  constexpr std::uint32_t kBlack = 0x42, kWhite = 0xFF0062, kBrush = 0xF00021, kInvert = 0x550009,
                          kAnd = 0x8800C6, kOr = 0xEE0086, kXor = 0x660046;
  cairo_t* const c = cairo_.get();
  cairo_save(c);
  cairo_new_path(c);
  addLines({{target.left, target.top},
            {target.right, target.top},
            {target.right, target.bottom},
            {target.left, target.bottom}});
  cairo_close_path(c);
  cairo_set_operator(c, operation == kAnd                           ? CAIRO_OPERATOR_MULTIPLY
                        : operation == kOr                          ? CAIRO_OPERATOR_SCREEN
                        : operation == kXor || operation == kInvert ? CAIRO_OPERATOR_DIFFERENCE
                                                                    : CAIRO_OPERATOR_OVER);
  const double sourceWidth = source.right - source.left, sourceHeight = source.bottom - source.top;
  if (operation == kBlack || operation == kWhite || operation == kInvert) {
    setSource(Color{operation == kBlack ? 0U : 0xFFFFFFU});
    cairo_fill(c);
  } else if (operation == kBrush) {
    if (state_.brush.kind != Brush::Kind::none) {
      setBrushSource();
      cairo_fill(c);
    }
  } else if (!bitmap.empty() && sourceWidth != 0 && sourceHeight != 0) {
    const double sx = (target.right - target.left) / sourceWidth,
                 sy = (target.bottom - target.top) / sourceHeight;
    cairo_matrix_t place{sx, 0, 0, sy, target.left - source.left * sx, target.top - source.top * sy};
    const cairo_matrix_t whole = matrix();
    cairo_matrix_multiply(&place, &place, &whole);
    cairo_matrix_t inverse = place;
    if (cairo_matrix_invert(&inverse) == CAIRO_STATUS_SUCCESS) {
      const Pattern pattern = patternOf(bitmap);
      cairo_pattern_set_matrix(pattern.get(), &inverse);
      const bool exact =
          std::abs(place.xx - 1) < 1e-9 && std::abs(place.yy - 1) < 1e-9 && place.xy == 0 && place.yx == 0;
      cairo_pattern_set_filter(pattern.get(), exact ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD);
      cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD);
      cairo_set_source(c, pattern.get());
      cairo_clip(c);
      cairo_paint_with_alpha(c, opacity);
    }
  }
  cairo_restore(c);
  cairo_new_path(c);
}

Bitmap Player::finish() {
  cairo_surface_flush(surface_.get());
  // A command that makes no sense stops Cairo; what was drawn before it is the picture.
  if (cairo_status(cairo_.get()) == CAIRO_STATUS_NO_MEMORY ||
      cairo_surface_status(surface_.get()) != CAIRO_STATUS_SUCCESS) {
    throw RuntimeError(err::kOutOfMemory, "There is not enough memory for the picture.");
  }
  Bitmap bitmap = Bitmap::uninitialized(cairo_image_surface_get_width(surface_.get()),
                                        cairo_image_surface_get_height(surface_.get()));
  const Pixels pixels = bitmap.writable();
  const std::uint8_t* const data = cairo_image_surface_get_data(surface_.get());
  const std::ptrdiff_t stride = cairo_image_surface_get_stride(surface_.get());
  for (std::int32_t y = 0; y < pixels.height; ++y)
    unpremultiplyRow(data + y * stride, pixels.row(y), pixels.width);
  return bitmap;
}

}  // namespace kestrel::engine::metafile
