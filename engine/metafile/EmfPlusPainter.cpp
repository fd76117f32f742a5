#include "EmfPlusPainter.h"

#include <algorithm>
#include <cmath>

#include "EmfPlusBrushes.h"

namespace kestrel::engine::emf::plus {

using metafile::Canvas;
using metafile::ClipPiece;
using metafile::isUsable;
using metafile::Pattern;

namespace {

/// Upper bound of the length in pixels of a unit vector.
double reachOf(const cairo_matrix_t& m) {
  return std::sqrt(m.xx * m.xx + m.xy * m.xy + m.yx * m.yx + m.yy * m.yy);
}

double scaleOf(const cairo_matrix_t& m) { return std::sqrt(std::abs(m.xx * m.yy - m.xy * m.yx)); }

}  // namespace

double Painter::pixelsPer(std::uint32_t unit) const {
  switch (unit) {
    case 3:
      return pixelsPerInch_ / 72;
    case 4:
      return pixelsPerInch_;
    case 5:
      return pixelsPerInch_ / 300;
    case 6:
      return pixelsPerInch_ / 25.4;
    default:
      return 1;
  }
}

cairo_matrix_t Painter::pageMatrix() const {
  const double scale = state_.pageScale * pixelsPer(state_.pageUnit);
  cairo_matrix_t page{scale, 0, 0, scale, 0, 0};
  cairo_matrix_multiply(&page, &page, &state_.container);
  cairo_matrix_multiply(&page, &page, &device_);
  return page;
}

cairo_matrix_t Painter::matrix() const {
  cairo_matrix_t whole = pageMatrix();
  cairo_matrix_multiply(&whole, &state_.world, &whole);
  return whole;
}

void Painter::addPath(const Path& path) {
  const cairo_matrix_t m = matrix();
  const auto at = [&](std::size_t i) {
    Point p = path.points[i];
    cairo_matrix_transform_point(&m, &p.x, &p.y);
    return p;
  };
  canvas_.newPath();
  for (std::size_t i = 0; i < path.points.size(); ++i) {
    const std::uint8_t kind = path.types[i] & Path::kKind;
    if (kind == Path::kStart || !canvas_.hasPoint()) {
      canvas_.moveTo(at(i));
    } else if (kind == Path::kCurve && i + 2 < path.points.size()) {
      canvas_.curveTo(at(i), at(i + 1), at(i + 2));
      i += 2;
    } else {
      canvas_.lineTo(at(i));
    }
    if ((path.types[i] & Path::kClose) != 0) canvas_.closePath();
  }
}

void Painter::setOperator() {
  cairo_set_operator(canvas_.context(), state_.replaces ? CAIRO_OPERATOR_SOURCE : CAIRO_OPERATOR_OVER);
}

/// Returns false if the brush's coordinates are out of range.
bool Painter::placePattern(cairo_pattern_t* pattern, const Brush& brush) {
  cairo_matrix_t place = matrix();
  cairo_matrix_multiply(&place, &brush.transform, &place);
  // Meshes are rasterized over their full extent, so bound it.
  constexpr double kFarthest = 1e5;
  for (const Point& p : brush.outline.points) {
    if (!(std::hypot(p.x, p.y) * reachOf(place) < kFarthest)) return false;
  }
  if (!isUsable(place) || cairo_matrix_invert(&place) != CAIRO_STATUS_SUCCESS) return false;
  cairo_pattern_set_matrix(pattern, &place);
  return true;
}

/// Returns false if the brush paints nothing.
bool Painter::setBrush(const Brush& brush) {
  cairo_t* const c = canvas_.context();
  if (brush.kind == Brush::Kind::solid) {
    cairo_set_source_rgba(c, brush.color.red(), brush.color.green(), brush.color.blue(), brush.color.alpha());
    return true;
  }
  const Pattern pattern = patternOf(brush, canvas_.work());
  if (!pattern) return false;
  if (brush.kind == Brush::Kind::hatched) {
    // Hatches are in pixels, independent of the world transform.
    cairo_matrix_t place;
    cairo_matrix_init_translate(&place, -state_.hatchOrigin.x, -state_.hatchOrigin.y);
    cairo_pattern_set_matrix(pattern.get(), &place);
  } else if (!placePattern(pattern.get(), brush)) {
    return false;
  }
  cairo_set_source(c, pattern.get());
  return true;
}

void Painter::fill(const Path& path, const Brush& brush) {
  if (!setBrush(brush)) return;
  addPath(path);
  cairo_t* const c = canvas_.context();
  cairo_set_fill_rule(c, path.winding ? CAIRO_FILL_RULE_WINDING : CAIRO_FILL_RULE_EVEN_ODD);
  setOperator();
  if (canvas_.affords(canvas_.filledExtents(), weightOf(brush))) cairo_fill(c);
  canvas_.newPath();
}

void Painter::fill(const Region& region, const Brush& brush) {
  if (!setBrush(brush)) return;
  Clip all = state_.clip;
  const Clip inner = clipOf(region);
  all.insert(all.end(), inner.begin(), inner.end());
  canvas_.setClip(all);
  setOperator();
  constexpr double kEverywhere = 1e9;
  if (canvas_.affords({-kEverywhere, -kEverywhere, kEverywhere, kEverywhere}, weightOf(brush)))
    cairo_paint(canvas_.context());
  showClip();
}

void Painter::clear(Argb color) {
  cairo_t* const c = canvas_.context();
  canvas_.newPath();
  cairo_set_source_rgba(c, color.red(), color.green(), color.blue(), color.alpha());
  cairo_set_operator(c, CAIRO_OPERATOR_SOURCE);
  constexpr double kEverywhere = 1e9;
  if (canvas_.affords({-kEverywhere, -kEverywhere, kEverywhere, kEverywhere})) cairo_paint(c);
}

void Painter::setDashes(const Pen& pen, double width, double pixelsPerUnit) {
  std::vector<double> dashes;
  double total = 0;
  for (const double dash : pen.dashes) {
    dashes.push_back(std::isfinite(dash) && dash > 0 ? dash * width : 0);
    total += dashes.back() * pixelsPerUnit;
  }
  // Draw a solid line if the dashes are too small to see.
  constexpr double kMostDashes = 1e6;
  const double count = static_cast<double>(dashes.size()) * canvas_.pathLength() / std::max(total, 1e-9);
  if (!(total >= 1) || count > kMostDashes || !canvas_.work().take(100 * count)) dashes.clear();
  const double offset = std::isfinite(pen.dashOffset) ? pen.dashOffset * width : 0;
  cairo_set_dash(canvas_.context(), dashes.data(), static_cast<int>(dashes.size()), offset);
}

void Painter::stroke(const Path& path, const Pen& pen) {
  if (!setBrush(pen.brush) || !std::isfinite(pen.width)) return;
  addPath(path);
  cairo_t* const c = canvas_.context();
  cairo_matrix_t nib = pen.unit == 0 ? matrix() : device_;
  cairo_matrix_multiply(&nib, &pen.transform, &nib);
  double width = std::abs(pen.width) * (pen.unit == 0 ? 1 : pixelsPer(pen.unit));
  double pixels = 1;
  // GDI+ draws lines at least a pixel wide, smoothed ones too.
  if (!isUsable(nib) || !(scaleOf(nib) * width >= 1)) {
    cairo_matrix_init_identity(&nib);
    width = 1;
  } else {
    pixels = std::min(width * reachOf(nib), 1e6);
    width = std::min(width, 1e6 / reachOf(nib));
  }
  nib.x0 = nib.y0 = 0;
  const std::uint32_t cap = pen.dashes.empty() ? std::max(pen.startCap, pen.endCap) : pen.dashCap;
  cairo_set_line_cap(c, cap == Pen::kRound    ? CAIRO_LINE_CAP_ROUND
                        : cap == Pen::kSquare ? CAIRO_LINE_CAP_SQUARE
                                              : CAIRO_LINE_CAP_BUTT);
  cairo_set_line_join(c, pen.join == Pen::kRoundJoin ? CAIRO_LINE_JOIN_ROUND
                         : pen.join == Pen::kBevel   ? CAIRO_LINE_JOIN_BEVEL
                                                     : CAIRO_LINE_JOIN_MITER);
  const double limit = std::isfinite(pen.miterLimit) ? std::clamp(pen.miterLimit, 1.0, 100.0) : 10;
  cairo_set_miter_limit(c, limit);
  setOperator();
  if (canvas_.affords(canvas_.strokedExtents(pixels), 2 * weightOf(pen.brush))) {
    cairo_save(c);
    cairo_set_matrix(c, &nib);
    cairo_set_line_width(c, width);
    setDashes(pen, width, scaleOf(nib));
    cairo_stroke(c);
    cairo_restore(c);
  }
  canvas_.newPath();
  drawAnchors(path, pen, std::max(1.0, width * scaleOf(nib)));
}

/// Draws the anchor caps at the ends of open figures.
void Painter::drawAnchors(const Path& path, const Pen& pen, double pixels) {
  if (pen.startCap < Pen::kTriangle && pen.endCap < Pen::kTriangle) return;
  const cairo_matrix_t m = matrix();
  const auto at = [&](std::size_t i) {
    Point p = path.points[i];
    cairo_matrix_transform_point(&m, &p.x, &p.y);
    return p;
  };
  canvas_.newPath();
  for (std::size_t first = 0; first < path.points.size();) {
    std::size_t last = first;
    while (last + 1 < path.points.size() && (path.types[last + 1] & Path::kKind) != Path::kStart) ++last;
    if (last > first && (path.types[last] & Path::kClose) == 0) {
      addAnchor(pen.startCap, at(first), at(first + 1), pixels);
      addAnchor(pen.endCap, at(last), at(last - 1), pixels);
    }
    first = last + 1;
  }
  cairo_t* const c = canvas_.context();
  cairo_set_fill_rule(c, CAIRO_FILL_RULE_WINDING);
  if (canvas_.affords(canvas_.filledExtents(), weightOf(pen.brush))) cairo_fill(c);
  canvas_.newPath();
}

void Painter::addAnchor(std::uint32_t cap, Point at, Point from, double pixels) {
  const double length = std::hypot(at.x - from.x, at.y - from.y);
  if (!(length > 0) || !std::isfinite(length)) return;
  // Vector of one line width along the line; rotated, across it.
  const Point along{(at.x - from.x) / length * pixels, (at.y - from.y) / length * pixels};
  const auto place = [&](double forward, double aside) {
    return Point{at.x + along.x * forward - along.y * aside, at.y + along.y * forward + along.x * aside};
  };
  switch (cap) {
    case Pen::kTriangle:
      return canvas_.polygon({place(0, -0.5), place(0.5, 0), place(0, 0.5)});
    case Pen::kSquareAnchor:
      return canvas_.polygon(
          {place(-0.75, -0.75), place(0.75, -0.75), place(0.75, 0.75), place(-0.75, 0.75)});
    case Pen::kDiamondAnchor:
      return canvas_.polygon({place(-1, 0), place(0, -1), place(1, 0), place(0, 1)});
    case Pen::kRoundAnchor: {
      std::vector<Point> circle;
      for (int i = 0; i < 32; ++i)
        circle.push_back(place(std::cos(i * 0.19634954), std::sin(i * 0.19634954)));
      return canvas_.polygon(circle);
    }
    case Pen::kArrowAnchor:
    case Pen::kCustom:
      return canvas_.polygon({place(0, 0), place(-1.75, -1), place(-1.75, 1)});
    default:
      return;
  }
}

void Painter::picture(const Bitmap& bitmap, const Rect& source, const std::array<Point, 3>& corners) {
  const double width = source.right - source.left, height = source.bottom - source.top;
  if (bitmap.empty() || width == 0 || height == 0) return;
  const cairo_matrix_t m = matrix();
  std::array<Point, 3> p = corners;
  for (Point& each : p) cairo_matrix_transform_point(&m, &each.x, &each.y);
  cairo_matrix_t place{(p[1].x - p[0].x) / width,
                       (p[1].y - p[0].y) / width,
                       (p[2].x - p[0].x) / height,
                       (p[2].y - p[0].y) / height,
                       0,
                       0};
  place.x0 = p[0].x - source.left * place.xx - source.top * place.xy;
  place.y0 = p[0].y - source.left * place.yx - source.top * place.yy;
  if (!isUsable(place)) return;
  const bool exact =
      std::abs(place.xx - 1) < 1e-9 && std::abs(place.yy - 1) < 1e-9 && place.xy == 0 && place.yx == 0;
  constexpr double kPerPixel = 8, kWeight = 16;
  if (cairo_matrix_invert(&place) != CAIRO_STATUS_SUCCESS ||
      !canvas_.work().take(kPerPixel * bitmap.width() * bitmap.height()))
    return;
  cairo_t* const c = canvas_.context();
  const Pattern pattern = metafile::patternOf(bitmap);
  cairo_pattern_set_matrix(pattern.get(), &place);
  cairo_pattern_set_filter(pattern.get(), exact ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD);
  cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD);
  canvas_.newPath();
  canvas_.polygon({p[0], p[1], {p[1].x + p[2].x - p[0].x, p[1].y + p[2].y - p[0].y}, p[2]});
  cairo_set_source(c, pattern.get());
  cairo_set_fill_rule(c, CAIRO_FILL_RULE_WINDING);
  setOperator();
  if (canvas_.affords(canvas_.filledExtents(), kWeight)) cairo_fill(c);
  canvas_.newPath();
}

void Painter::combineClip(const Path& path, Combine how) {
  addPath(path);
  const ClipPiece piece = canvas_.takePath(path.winding);
  state_.clip = canvas_.combined(state_.clip, piece, how);
  showClip();
}

void Painter::combineClip(const Region& region, Combine how) {
  const Clip other = clipOf(region);
  if (how == Combine::replace) {
    state_.clip = other;
  } else if (how == Combine::intersect) {
    for (const ClipPiece& piece : other)
      state_.clip = canvas_.combined(state_.clip, piece, Combine::intersect);
  } else {
    state_.clip = canvas_.combined(state_.clip, canvas_.united(other), how);
  }
  showClip();
}

void Painter::moveClip(Point by) {
  const cairo_matrix_t m = matrix();
  cairo_matrix_transform_distance(&m, &by.x, &by.y);
  state_.clip = Canvas::moved(state_.clip, by);
  showClip();
}

/// Converts a region to a clip.
Clip Painter::clipOf(const Region& region) {
  switch (region.kind) {
    case Region::Kind::everything:
      return {};
    case Region::Kind::nothing:
      canvas_.newPath();
      return {canvas_.takePath(false)};
    case Region::Kind::rect: {
      const Rect& r = region.rect;
      Path path;
      path.start({r.left, r.top});
      path.line({r.right, r.top});
      path.line({r.right, r.bottom});
      path.line({r.left, r.bottom});
      path.close();
      addPath(path);
      return {canvas_.takePath(false)};
    }
    case Region::Kind::path:
      addPath(region.path);
      return {canvas_.takePath(region.path.winding)};
    case Region::Kind::combined:
      break;
  }
  Clip first = clipOf(region.parts[0]);
  const Clip second = clipOf(region.parts[1]);
  if (region.how == Combine::intersect) {
    for (const ClipPiece& piece : second) first = canvas_.combined(first, piece, Combine::intersect);
    return first;
  }
  return canvas_.combined(first, canvas_.united(second), region.how);
}

}  // namespace kestrel::engine::emf::plus
