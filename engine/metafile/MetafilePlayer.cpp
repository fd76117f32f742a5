#include "MetafilePlayer.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace kestrel::engine::metafile {
namespace {

constexpr std::size_t kMostSaved = 1000;

/// Pixels per unit of the physical mapping modes, at 96 pixels per inch.
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

Pixel pixelOf(Color c, std::uint8_t alpha) {
  return {static_cast<std::uint8_t>(c.value), static_cast<std::uint8_t>(c.value >> 8),
          static_cast<std::uint8_t>(c.value >> 16), alpha};
}

/// 8 x 8 tile with the lines of a hatch.
Bitmap hatchTile(const Brush& brush, bool opaque, Color back) {
  Bitmap tile = Bitmap::filled(8, 8, pixelOf(back, opaque ? 255 : 0));
  const Pixels pixels = tile.writable();
  const Pixel line = pixelOf(brush.color, 255);
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 8; ++x) {
      const bool across = y == 4, down = x == 4, falling = x == y, rising = x + y == 7;
      const bool on[] = {across, down, falling, rising, across || down, falling || rising};
      if (on[brush.hatch]) std::memcpy(pixels.row(y) + 4 * x, &line, 4);
    }
  }
  return tile;
}

/// The color of a hatch without lines.
Color plainHatchColor(const Brush& brush, const State& state) {
  constexpr std::uint32_t kText = 8, kDitheredText = 9, kBack = 10, kDitheredBack = 11;
  switch (brush.hatch) {
    case kText:
    case kDitheredText:
      return state.textColor;
    case kBack:
    case kDitheredBack:
      return state.backColor;
    default:
      return brush.color;
  }
}

/// The pattern with black and white replaced by two colors.
Bitmap inColors(const Bitmap& pattern, Color black, Color white) {
  Bitmap result = pattern;
  const Pixels pixels = result.writable();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    std::uint8_t* p = pixels.row(y);
    for (std::int32_t x = 0; x < pixels.width; ++x, p += 4) {
      const Pixel pixel = pixelOf(p[0] < 128 ? black : white, 255);
      std::memcpy(p, &pixel, sizeof pixel);
    }
  }
  return result;
}

/// The ternary raster operation equivalent to a binary one (pen with picture).
std::uint8_t ternaryOf(std::uint32_t binary) {
  const std::uint32_t table = (binary - 1) & 0xF;  // bit i is the result for i = 2 * pen + picture
  const std::uint32_t without = table & 3, with = table >> 2;
  return static_cast<std::uint8_t>(without | without << 2 | with << 4 | with << 6);
}

}  // namespace

Player::Player(Canvas& canvas, const cairo_matrix_t& device, double scale)
    : canvas_(canvas), device_(device), naturalScale_(scale) {}

void Player::save() {
  if (saved_.size() < kMostSaved) saved_.push_back(state_);
}

void Player::restore(std::int32_t level) {
  const auto depth = static_cast<std::int64_t>(saved_.size());
  const std::int64_t target = level > 0 ? level - 1 : depth + level;
  if (target < 0 || target >= depth) return;
  state_ = std::move(saved_[static_cast<std::size_t>(target)]);
  saved_.resize(static_cast<std::size_t>(target));
  showClip();
}

/// Transform from logical units, after the world transform, to device units.
cairo_matrix_t Player::page() const {
  const Mapping& m = state_.mapping;
  cairo_matrix_t page{1, 0, 0, 1, 0, 0};
  constexpr std::uint32_t kText = 1, kIsotropic = 7;
  if (m.mode == kText) {
    page.x0 = m.viewportOrigin.x - m.windowOrigin.x;
    page.y0 = m.viewportOrigin.y - m.windowOrigin.y;
  } else if (m.mode < kIsotropic) {
    // Physical units are converted at the picture's resolution, not the device's; their y axis points up.
    page.xx = unitsOf(m.mode) * naturalScale_ / device_.xx;
    page.yy = -unitsOf(m.mode) * naturalScale_ / device_.yy;
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
  return page;
}

bool Player::mirrorsOneAxis() const {
  const cairo_matrix_t onPage = page();
  return onPage.xx * device_.xx * onPage.yy * device_.yy < 0;
}

cairo_matrix_t Player::matrix() const {
  const cairo_matrix_t onPage = page();
  cairo_matrix_t whole = state_.mapping.world;
  cairo_matrix_multiply(&whole, &whole, &onPage);
  cairo_matrix_multiply(&whole, &whole, &device_);
  return whole;
}

Point Player::toPicture(Point logical) const {
  const cairo_matrix_t m = matrix();
  cairo_matrix_transform_point(&m, &logical.x, &logical.y);
  return bounded(logical);
}

double Player::scale() const {
  const cairo_matrix_t m = matrix();
  return std::clamp(std::sqrt(std::abs(m.xx * m.yy - m.xy * m.yx)), 1e-6, 1e6);
}

void Player::setSource(Color color, double opacity) {
  cairo_set_source_rgba(canvas_.context(), color.red(), color.green(), color.blue(), opacity);
}

/// Returns false if the brush paints nothing.
bool Player::setBrushSource(const Brush& brush) {
  if (brush.kind == Brush::Kind::none) return false;
  if (brush.kind == Brush::Kind::hatched && brush.hatch >= Brush::kFirstPlainHatch) {
    setSource(plainHatchColor(brush, state_));
    return true;
  }
  if (brush.kind == Brush::Kind::solid || (brush.kind == Brush::Kind::pattern && brush.pattern.empty())) {
    setSource(brush.color);
    return true;
  }
  const Bitmap tile = brush.kind == Brush::Kind::hatched
                          ? hatchTile(brush, state_.opaqueBack, state_.backColor)
                      : brush.ofTextColors ? inColors(brush.pattern, state_.textColor, state_.backColor)
                                           : brush.pattern;
  if (!canvas_.work().take(8.0 * tile.width() * tile.height())) return false;
  const Pattern pattern = patternOf(tile);
  Point origin = state_.brushOrigin;
  cairo_matrix_transform_point(&device_, &origin.x, &origin.y);
  cairo_matrix_t place;
  cairo_matrix_init_translate(&place, -std::round(origin.x), -std::round(origin.y));
  cairo_pattern_set_matrix(pattern.get(), &place);
  cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_REPEAT);
  cairo_pattern_set_filter(pattern.get(), CAIRO_FILTER_NEAREST);
  cairo_set_source(canvas_.context(), pattern.get());
  return true;
}

/// Draws with the current binary raster operation.
void Player::paint(const Rect& extents, double weight, const std::function<void()>& draw) {
  constexpr std::uint32_t kNothing = 11, kCopy = 13;
  if (state_.rasterOperation == kNothing) return;
  if (state_.rasterOperation < 1 || state_.rasterOperation > 16 || state_.rasterOperation == kCopy) {
    if (!canvas_.affords(extents, weight)) return;
    cairo_set_operator(canvas_.context(), CAIRO_OPERATOR_OVER);
    draw();
  } else {
    canvas_.mix(ternaryOf(state_.rasterOperation), extents, nullptr, draw);
  }
}

void Player::fillPresentPath() {
  cairo_t* const c = canvas_.context();
  if (!setBrushSource(state_.brush)) return;
  cairo_set_fill_rule(c, state_.fillWinding ? CAIRO_FILL_RULE_WINDING : CAIRO_FILL_RULE_EVEN_ODD);
  paint(canvas_.filledExtents(), 2, [c] { cairo_fill_preserve(c); });
}

void Player::setDashes(double width) {
  std::vector<double> dashes;
  // Dash lengths of cosmetic pens are in pixels, of geometric pens in widths.
  const bool wide = state_.pen.geometric;
  switch (state_.pen.style) {
    case Pen::kDash:
      dashes = wide ? std::vector<double>{3, 1} : std::vector<double>{18, 6};
      break;
    case Pen::kDot:
      dashes = wide ? std::vector<double>{1, 1} : std::vector<double>{3, 3};
      break;
    case Pen::kDashDot:
      dashes = wide ? std::vector<double>{3, 1, 1, 1} : std::vector<double>{9, 6, 3, 6};
      break;
    case Pen::kDashDotDot:
      dashes = wide ? std::vector<double>{3, 1, 1, 1, 1, 1} : std::vector<double>{9, 3, 3, 3, 3, 3};
      break;
    case Pen::kAlternate:
      dashes = {1, 1};
      break;
    case Pen::kCustom:
      dashes = state_.pen.dashes;
      break;
    default:
      break;
  }
  const double unit = !wide ? std::max(1.0, width) : state_.pen.style == Pen::kCustom ? scale() : width;
  double total = 0;
  for (double& dash : dashes) {
    dash = std::max(dash, 0.0) * unit;
    total += dash;
  }
  // Draw a solid line if the dashes are too small to see.
  constexpr double kMostDashes = 1e6;
  const double count = static_cast<double>(dashes.size()) * canvas_.pathLength() / std::max(total, 1e-9);
  if (total < 1 || count > kMostDashes || !canvas_.work().take(100 * count)) dashes.clear();
  cairo_set_dash(canvas_.context(), dashes.data(), static_cast<int>(dashes.size()), 0);
}

void Player::strokePresentPath() {
  cairo_t* const c = canvas_.context();
  const Pen& pen = state_.pen;
  if (pen.style == Pen::kNone || !setBrushSource(pen.ink)) return;
  constexpr double kWidest = 1e6;
  const double thinnest = pen.geometric && pen.width != 0 ? 0.5 : 1;
  const double width = std::clamp(std::abs(pen.width) * scale(), thinnest, kWidest);
  cairo_set_line_width(c, width);
  cairo_set_line_cap(c, pen.cap == Pen::kRoundCap    ? CAIRO_LINE_CAP_ROUND
                        : pen.cap == Pen::kSquareCap ? CAIRO_LINE_CAP_SQUARE
                                                     : CAIRO_LINE_CAP_BUTT);
  cairo_set_line_join(c, pen.join == Pen::kRoundJoin   ? CAIRO_LINE_JOIN_ROUND
                         : pen.join == Pen::kBevelJoin ? CAIRO_LINE_JOIN_BEVEL
                                                       : CAIRO_LINE_JOIN_MITER);
  cairo_set_miter_limit(c, std::clamp(state_.miterLimit, 1.0, 100.0));
  setDashes(width);
  paint(canvas_.strokedExtents(width), 2, [c] { cairo_stroke_preserve(c); });
}

void Player::beginFigure() {
  if (!inPath_) canvas_.newPath();
}

void Player::endFigure(bool fill) {
  if (inPath_) return;
  if (fill) fillPresentPath();
  strokePresentPath();
  canvas_.newPath();
}

void Player::addLines(const std::vector<Point>& points) {
  const cairo_matrix_t m = matrix();
  for (std::size_t i = 0; i < points.size(); ++i) {
    Point p = points[i];
    cairo_matrix_transform_point(&m, &p.x, &p.y);
    if (i == 0) {
      canvas_.moveTo(p);
    } else {
      canvas_.lineTo(p);
    }
  }
}

void Player::addCurves(const std::vector<Point>& points, std::size_t first) {
  for (std::size_t i = first; i + 2 < points.size(); i += 3)
    canvas_.curveTo(toPicture(points[i]), toPicture(points[i + 1]), toPicture(points[i + 2]));
}

void Player::addRects(const std::vector<Rect>& rects) {
  canvas_.newPath();
  for (const Rect& r : rects) {
    addLines({{r.left, r.top}, {r.right, r.top}, {r.right, r.bottom}, {r.left, r.bottom}});
    canvas_.closePath();
  }
}

void Player::moveTo(Point to) {
  state_.position = to;
  if (inPath_) canvas_.moveTo(toPicture(to));
}

void Player::lineTo(const std::vector<Point>& points) {
  if (points.empty()) return;
  std::vector<Point> all{state_.position};
  all.insert(all.end(), points.begin(), points.end());
  beginFigure();
  if (inPath_ && canvas_.hasPoint()) {
    for (const Point& point : points) canvas_.lineTo(toPicture(point));
  } else {
    addLines(all);
  }
  endFigure(false);
  state_.position = points.back();
}

void Player::bezierTo(const std::vector<Point>& points) {
  if (points.empty()) return;
  beginFigure();
  if (!canvas_.hasPoint()) addLines({state_.position});
  addCurves(points, 0);
  endFigure(false);
  state_.position = points.back();
}

void Player::polygons(const std::vector<std::vector<Point>>& figures, bool closed) {
  beginFigure();
  for (const auto& figure : figures) {
    addLines(figure);
    if (closed && !figure.empty()) canvas_.closePath();
  }
  endFigure(closed);
  if (closed && figures.size() == 1) closeSeams(figures[0]);
}

/// Lets a polygon without an outline reach over the edges that it shares with earlier ones.
void Player::closeSeams(const std::vector<Point>& polygon) {
  constexpr std::uint32_t kCopy = 13;
  constexpr double kPerPoint = 100;
  if (inPath_ || polygon.size() < 3 || state_.pen.style != Pen::kNone ||
      state_.brush.kind != Brush::Kind::solid || state_.rasterOperation != kCopy ||
      !canvas_.work().take(kPerPoint * static_cast<double>(polygon.size())))
    return;
  std::vector<Point> points;
  for (const Point& each : polygon) points.push_back(toPicture(each));
  const std::vector<Edge> shared = seams_.add(points);
  if (shared.empty()) return;
  canvas_.newPath();
  for (const auto& [from, to] : shared) {
    canvas_.moveTo(from);
    canvas_.lineTo(to);
  }
  cairo_t* const c = canvas_.context();
  setSource(state_.brush.color);
  cairo_set_line_width(c, 1);
  cairo_set_line_cap(c, CAIRO_LINE_CAP_BUTT);
  cairo_set_dash(c, nullptr, 0, 0);
  paint(canvas_.strokedExtents(1), 1, [c] { cairo_stroke(c); });
  canvas_.newPath();
}

void Player::bezier(const std::vector<Point>& points) {
  if (points.empty()) return;
  beginFigure();
  addLines({points[0]});
  addCurves(points, 1);
  endFigure(false);
}

void Player::beginPath() {
  canvas_.newPath();
  inPath_ = true;
}

void Player::endPath() { inPath_ = false; }

void Player::closeFigure() {
  if (inPath_ && canvas_.hasPoint()) canvas_.closePath();
}

void Player::abortPath() {
  inPath_ = false;
  canvas_.newPath();
}

void Player::drawPath(bool fill, bool stroke) {
  inPath_ = false;
  if (fill) fillPresentPath();
  if (stroke) strokePresentPath();
  canvas_.newPath();
}

void Player::showClip() {
  Clip both = state_.outerClip;
  both.insert(both.end(), state_.clip.begin(), state_.clip.end());
  canvas_.setClip(both);
}

void Player::clipToPath(Combine how) {
  inPath_ = false;
  const ClipPiece piece = canvas_.takePath(state_.fillWinding);
  state_.clip = canvas_.combined(state_.clip, piece, how);
  showClip();
}

void Player::clipToRects(const std::vector<Rect>& rects, Combine how) {
  addRects(rects);
  const ClipPiece piece = canvas_.takePath(true);
  state_.clip = canvas_.combined(state_.clip, piece, how);
  showClip();
}

void Player::clipToAll() {
  state_.clip.clear();
  showClip();
}

void Player::moveClip(Point by) {
  const cairo_matrix_t m = matrix();
  cairo_matrix_transform_distance(&m, &by.x, &by.y);
  state_.clip = Canvas::moved(state_.clip, by);
  showClip();
}

void Player::keepClip() {
  // Each piece slows down all later drawing.
  constexpr std::size_t kMostPieces = 200;
  if (state_.outerClip.size() + state_.clip.size() > kMostPieces) return;
  state_.outerClip.insert(state_.outerClip.end(), state_.clip.begin(), state_.clip.end());
  state_.clip.clear();
}

}  // namespace kestrel::engine::metafile
