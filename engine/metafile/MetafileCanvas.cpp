#include "MetafileCanvas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string>

#include "base/RuntimeError.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/parallel/Parallel.h"

namespace kestrel::engine::metafile {
namespace {

/// Limits of Cairo's fixed-point coordinates.
constexpr std::int32_t kLongestSide = 32000;
constexpr double kFarthest = 4e6;

/// Work of adding a point to a path.
constexpr double kPerPoint = 20;

/// Converts straight alpha to Cairo's premultiplied ARGB in native byte order.
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

/// Converts back. Most pixels of a drawing are transparent or opaque and need no division.
void unpremultiplyRow(const std::uint8_t* argb, std::uint8_t* rgba, std::int32_t width) {
  for (std::int32_t x = 0; x < width; ++x, rgba += 4, argb += 4) {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, argb, sizeof pixel);
    const std::uint32_t alpha = pixel >> 24;
    const auto straight = [alpha](std::uint32_t v) {
      if (alpha == 0) return std::uint8_t{0};
      return static_cast<std::uint8_t>(alpha == 255 ? v : std::min(255U, (v * 255 + alpha / 2) / alpha));
    };
    rgba[0] = straight(pixel >> 16 & 0xFF);
    rgba[1] = straight(pixel >> 8 & 0xFF);
    rgba[2] = straight(pixel & 0xFF);
    rgba[3] = static_cast<std::uint8_t>(alpha);
  }
}

/// A premultiplied pixel composited over white.
std::uint32_t onWhite(std::uint32_t pixel) {
  const std::uint32_t rest = 255 - (pixel >> 24);
  return (pixel & 0xFFFFFF) + rest * 0x010101;
}

/// Pixel access to a layer, in coordinates of the picture.
class LayerRows {
 public:
  explicit LayerRows(cairo_pattern_t* pattern) {
    cairo_surface_t* surface = nullptr;
    if (pattern == nullptr || cairo_pattern_get_surface(pattern, &surface) != CAIRO_STATUS_SUCCESS) return;
    cairo_surface_flush(surface);
    data_ = cairo_image_surface_get_data(surface);
    stride_ = cairo_image_surface_get_stride(surface);
    width_ = cairo_image_surface_get_width(surface);
    height_ = cairo_image_surface_get_height(surface);
    // The pattern's matrix maps pixels of the picture to pixels of the layer.
    cairo_matrix_t matrix;
    cairo_pattern_get_matrix(pattern, &matrix);
    double dx = 0, dy = 0;
    cairo_surface_get_device_offset(surface, &dx, &dy);
    left_ = -static_cast<int>(std::lround(matrix.x0 + dx));
    top_ = -static_cast<int>(std::lround(matrix.y0 + dy));
  }

  bool exists() const { return data_ != nullptr; }
  int left() const { return left_; }
  int right() const { return left_ + width_; }
  int top() const { return top_; }
  int bottom() const { return top_ + height_; }
  /// The pixel at (x, y), which must be inside the layer.
  std::uint32_t at(int x, int y) const {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, data_ + (y - top_) * stride_ + std::ptrdiff_t{4} * (x - left_), sizeof pixel);
    return pixel;
  }

 private:
  const std::uint8_t* data_ = nullptr;
  std::ptrdiff_t stride_ = 0;
  int width_ = 0, height_ = 0, left_ = 0, top_ = 0;
};

/// Evaluates a ternary raster operation on all bits of a color at once.
class Mixer {
 public:
  explicit Mixer(std::uint8_t operation) {
    for (unsigned bits = 0; bits < 8; ++bits) wanted_[bits] = (operation >> bits & 1) != 0 ? 0xFFFFFF : 0;
  }

  std::uint32_t operator()(std::uint32_t brush, std::uint32_t source, std::uint32_t under) const {
    const auto chosen = [&](unsigned first) {
      const std::uint32_t clear = (wanted_[first] & ~under) | (wanted_[first + 1] & under);
      const std::uint32_t set = (wanted_[first + 2] & ~under) | (wanted_[first + 3] & under);
      return (clear & ~source) | (set & source);
    };
    return (chosen(0) & ~brush) | (chosen(4) & brush);
  }

 private:
  std::array<std::uint32_t, 8> wanted_{};
};

std::shared_ptr<cairo_path_t> shared(cairo_path_t* path) { return {path, cairo_path_destroy}; }

}  // namespace

Point bounded(Point p) {
  const auto each = [](double v) { return std::isfinite(v) ? std::clamp(v, -kFarthest, kFarthest) : 0.0; };
  return {each(p.x), each(p.y)};
}

bool isUsable(const cairo_matrix_t& m) {
  constexpr double kSteepest = 1e6, kMostMoved = 1e9, kFlattest = 1e-12;
  for (const double each : {m.xx, m.xy, m.yx, m.yy}) {
    if (!(std::abs(each) < kSteepest)) return false;
  }
  return std::abs(m.x0) < kMostMoved && std::abs(m.y0) < kMostMoved &&
         std::abs(m.xx * m.yy - m.xy * m.yx) > kFlattest;
}

bool Work::take(double amount) {
  if (exhausted || amount > left) {
    exhausted = true;
    return false;
  }
  left -= amount;
  return true;
}

Pattern patternOf(const Bitmap& bitmap) {
  cairo_surface_t* const surface =
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, bitmap.width(), bitmap.height());
  if (cairo_surface_status(surface) == CAIRO_STATUS_SUCCESS) {
    std::uint8_t* const data = cairo_image_surface_get_data(surface);
    const std::ptrdiff_t stride = cairo_image_surface_get_stride(surface);
    for (std::int32_t y = 0; y < bitmap.height(); ++y) {
      premultiplyRow(bitmap.pixels().row(y), data + y * stride, bitmap.width());
    }
    cairo_surface_mark_dirty(surface);
  }
  Pattern pattern(cairo_pattern_create_for_surface(surface));
  cairo_surface_destroy(surface);
  return pattern;
}

Canvas::Canvas(std::int32_t width, std::int32_t height, Work& work)
    : work_(work), width_(width), height_(height) {
  if (width < 1 || height < 1) refusePicture("The metafile is damaged: its picture has no size.");
  if (width > kLongestSide || height > kLongestSide) {
    throw RuntimeError(err::kOutOfMemory,
                       "The picture of the metafile is too large: " + std::to_string(width) + " x " +
                           std::to_string(height) + " pixels.");
  }
  constexpr double kPerPixel = 2;
  if (!work.take(kPerPixel * width * height)) refusePicture("The metafile takes too long to be drawn.");
  // Allocates a bitmap of this size, so that sizes beyond the limits raise the usual error.
  Bitmap::uninitialized(width, height);
  surface_.reset(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
  cairo_.reset(cairo_create(surface_.get()));
}

void Canvas::newPath() {
  cairo_new_path(cairo_.get());
  length_ = crossed_ = 0;
}

void Canvas::moveTo(Point to) {
  work_.take(kPerPoint);
  last_ = bounded(to);
  cairo_move_to(cairo_.get(), last_.x, last_.y);
}

void Canvas::lineTo(Point to) {
  work_.take(kPerPoint);
  const Point p = bounded(to);
  cairo_line_to(cairo_.get(), p.x, p.y);
  length_ += std::hypot(p.x - last_.x, p.y - last_.y);
  crossed_ += 1 + std::min<double>(std::abs(p.y - last_.y), height_);
  last_ = p;
}

void Canvas::curveTo(Point a, Point b, Point c) {
  work_.take(3 * kPerPoint);
  const Point p = bounded(a), q = bounded(b), r = bounded(c);
  cairo_curve_to(cairo_.get(), p.x, p.y, q.x, q.y, r.x, r.y);
  length_ += std::hypot(p.x - last_.x, p.y - last_.y) + std::hypot(q.x - p.x, q.y - p.y) +
             std::hypot(r.x - q.x, r.y - q.y);
  // Curves are flattened to more lines the larger they are.
  constexpr double kLines = 16;
  crossed_ += kLines + std::min<double>(std::abs(p.y - last_.y) + std::abs(q.y - p.y) + std::abs(r.y - q.y),
                                        2 * height_);
  last_ = r;
}

void Canvas::closePath() {
  cairo_close_path(cairo_.get());
  crossed_ += height_ / 4.0;
}

bool Canvas::hasPoint() const { return cairo_has_current_point(cairo_.get()) != 0; }

void Canvas::polygon(const std::vector<Point>& points) {
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (i == 0) {
      moveTo(points[i]);
    } else {
      lineTo(points[i]);
    }
  }
  if (!points.empty()) closePath();
}

void Canvas::append(const ClipPiece& piece) {
  cairo_set_fill_rule(cairo_.get(), piece.winding ? CAIRO_FILL_RULE_WINDING : CAIRO_FILL_RULE_EVEN_ODD);
  cairo_append_path(cairo_.get(), piece.outline.get());
}

void Canvas::setClip(const Clip& clip) {
  cairo_reset_clip(cairo_.get());
  newPath();
  for (const ClipPiece& piece : clip) {
    work_.take(kPerPoint / 2 * piece.outline->num_data);
    append(piece);
    cairo_clip(cairo_.get());
  }
  clipPieces_ = clip.size();
}

ClipPiece Canvas::takePath(bool winding) {
  ClipPiece piece{shared(cairo_copy_path(cairo_.get())), winding};
  newPath();
  return piece;
}

Clip Canvas::combined(const Clip& clip, const ClipPiece& piece, Combine how) {
  const auto outside = [&] {
    newPath();
    addEverything();
    cairo_append_path(cairo_.get(), piece.outline.get());
    return takePath(false);
  };
  const auto with = [&](ClipPiece added) {
    // Each piece slows down all later drawing.
    constexpr std::size_t kMostPieces = 200;
    Clip result = clip;
    if (result.size() < kMostPieces) result.push_back(std::move(added));
    return result;
  };
  if (how == Combine::replace) return {piece};
  if (how == Combine::intersect) return with(piece);
  if (how == Combine::exclude || (how == Combine::exclusive && clip.empty())) return with(outside());
  if (how == Combine::unite && clip.empty()) return {};
  if (how == Combine::complement && clip.empty()) {
    newPath();
    return {takePath(false)};
  }

  // The other modes are evaluated per pixel, with masks.
  if (!work_.take(8.0 * width_ * height_)) return clip;
  const Surface mask = maskOf(clip), other = maskOf({piece});
  const std::unique_ptr<cairo_t, DestroyContext> painter(cairo_create(mask.get()));
  // OUT: the piece without the present clip.
  cairo_set_operator(painter.get(), how == Combine::unite       ? CAIRO_OPERATOR_OVER
                                    : how == Combine::exclusive ? CAIRO_OPERATOR_XOR
                                                                : CAIRO_OPERATOR_OUT);
  cairo_set_source_surface(painter.get(), other.get(), 0, 0);
  cairo_paint(painter.get());
  const ClipPiece result = outlineOf(mask.get());
  return result.outline ? Clip{result} : clip;
}

Canvas::Surface Canvas::maskOf(const Clip& clip) const {
  Surface mask(cairo_image_surface_create(CAIRO_FORMAT_A8, width_, height_));
  const std::unique_ptr<cairo_t, DestroyContext> painter(cairo_create(mask.get()));
  for (const ClipPiece& each : clip) {
    cairo_append_path(painter.get(), each.outline.get());
    cairo_set_fill_rule(painter.get(), each.winding ? CAIRO_FILL_RULE_WINDING : CAIRO_FILL_RULE_EVEN_ODD);
    cairo_clip(painter.get());
  }
  cairo_paint(painter.get());
  return mask;
}

ClipPiece Canvas::united(const Clip& clip) {
  if (clip.size() == 1) return clip[0];
  if (clip.empty() || !work_.take(8.0 * width_ * height_)) {
    newPath();
    addEverything();
    return takePath(false);
  }
  ClipPiece whole = outlineOf(maskOf(clip).get());
  return whole.outline ? whole : clip[0];
}

void Canvas::addEverything() {
  polygon(
      {{-kFarthest, -kFarthest}, {kFarthest, -kFarthest}, {kFarthest, kFarthest}, {-kFarthest, kFarthest}});
}

/// Converts a mask to an outline: pixels at least half covered, as rectangles over equal rows.
ClipPiece Canvas::outlineOf(cairo_surface_t* mask) {
  constexpr std::size_t kMostRects = 50'000;
  if (cairo_surface_status(mask) != CAIRO_STATUS_SUCCESS) return {};
  cairo_surface_flush(mask);
  const std::uint8_t* const data = cairo_image_surface_get_data(mask);
  const std::ptrdiff_t stride = cairo_image_surface_get_stride(mask);
  using Runs = std::vector<std::pair<std::int32_t, std::int32_t>>;
  Runs above;
  std::int32_t first = 0;
  std::size_t count = 0;
  newPath();
  const auto flush = [&](std::int32_t end) {
    for (const auto& [left, right] : above)
      cairo_rectangle(cairo_.get(), left, first, right - left, end - first);
    count += above.size();
  };
  for (std::int32_t y = 0; y < height_ && count < kMostRects; ++y) {
    const std::uint8_t* const row = data + y * stride;
    Runs runs;
    for (std::int32_t x = 0; x < width_; ++x) {
      if (row[x] < 128) continue;
      const std::int32_t left = x;
      while (x < width_ && row[x] >= 128) ++x;
      runs.emplace_back(left, x);
    }
    if (runs == above) continue;
    flush(y);
    above = std::move(runs);
    first = y;
  }
  flush(height_);
  ClipPiece piece = takePath(true);
  return count < kMostRects ? piece : ClipPiece{};
}

Clip Canvas::moved(const Clip& clip, Point by) {
  Clip result;
  for (const ClipPiece& piece : clip) {
    const std::unique_ptr<cairo_surface_t, DestroySurface> scratch(
        cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1));
    const std::unique_ptr<cairo_t, DestroyContext> context(cairo_create(scratch.get()));
    const Point step = bounded(by);
    cairo_translate(context.get(), step.x, step.y);
    cairo_append_path(context.get(), piece.outline.get());
    cairo_identity_matrix(context.get());
    result.push_back({shared(cairo_copy_path(context.get())), piece.winding});
  }
  return result;
}

Rect Canvas::filledExtents() const {
  Rect r;
  cairo_path_extents(cairo_.get(), &r.left, &r.top, &r.right, &r.bottom);
  return r;
}

Rect Canvas::strokedExtents(double width) const {
  // Largest distance of a stroke from its path: half the width, times the miter limit at miter joins.
  const bool miter = cairo_get_line_join(cairo_.get()) == CAIRO_LINE_JOIN_MITER;
  const double grown = width / 2 * (miter ? cairo_get_miter_limit(cairo_.get()) : 1.5) + 1;
  const Rect r = filledExtents();
  return {r.left - grown, r.top - grown, r.right + grown, r.bottom + grown};
}

bool Canvas::affords(const Rect& extents, double weight) {
  Rect visible;
  cairo_clip_extents(cairo_.get(), &visible.left, &visible.top, &visible.right, &visible.bottom);
  const double across = std::min(extents.right, visible.right) - std::max(extents.left, visible.left);
  const double down = std::min(extents.bottom, visible.bottom) - std::max(extents.top, visible.top);
  if (!(across >= 0) || !(down >= 0)) return false;
  constexpr double kRecord = 500, kCrossing = 8;
  const double pixels = (across + 1) * (down + 1);
  return work_.take(kRecord + pixels * (weight + static_cast<double>(clipPieces_)) + kCrossing * crossed_);
}

Pattern Canvas::layer(const std::function<void()>& paint) {
  if (!paint) return nullptr;
  cairo_push_group(cairo_.get());
  paint();
  return Pattern(cairo_pop_group(cairo_.get()));
}

void Canvas::mix(std::uint8_t operation, const Rect& extents, const std::function<void()>& source,
                 const std::function<void()>& brush) {
  constexpr std::uint8_t kNothing = 0xAA;
  constexpr double kWeight = 40;
  if (operation == kNothing || !affords(extents, kWeight)) return;
  const auto whole = [](double v, std::int32_t most) {
    return static_cast<std::int32_t>(std::clamp(v, 0.0, static_cast<double>(most)));
  };
  const std::int32_t left = whole(std::floor(extents.left), width_),
                     right = whole(std::ceil(extents.right), width_);
  const std::int32_t top = whole(std::floor(extents.top), height_),
                     bottom = whole(std::ceil(extents.bottom), height_);
  if (left >= right || top >= bottom) return;
  // Processes bands, to bound the size of the layers.
  constexpr std::int32_t kLayerPixels = 4'000'000;
  const std::int32_t step = std::max(1, kLayerPixels / (right - left));
  cairo_t* const c = cairo_.get();
  const std::shared_ptr<cairo_path_t> path = shared(cairo_copy_path(c));
  for (std::int32_t y = top; y < bottom; y += step) {
    const std::int32_t end = std::min(bottom, y + step);
    cairo_save(c);
    cairo_new_path(c);
    cairo_rectangle(c, left, y, right - left, end - y);
    cairo_clip(c);
    cairo_append_path(c, path.get());
    cairo_set_antialias(c, CAIRO_ANTIALIAS_NONE);
    cairo_set_operator(c, CAIRO_OPERATOR_OVER);
    const Pattern sourceLayer = layer(source), brushLayer = layer(brush);
    mixBand(operation, y, end, sourceLayer.get(), brushLayer.get());
    cairo_restore(c);
  }
  cairo_new_path(c);
  cairo_append_path(c, path.get());
}

void Canvas::mixBand(std::uint8_t operation, std::int32_t top, std::int32_t bottom, cairo_pattern_t* source,
                     cairo_pattern_t* brush) {
  const LayerRows sourceRows(source), brushRows(brush);
  const bool hasSource = sourceRows.exists(), hasBrush = brushRows.exists();
  if (!hasSource && !hasBrush) return;
  std::int32_t left = 0, right = width_;
  for (const LayerRows* const rows : {&sourceRows, &brushRows}) {
    if (!rows->exists()) continue;
    left = std::max(left, rows->left());
    right = std::min(right, rows->right());
    top = std::max(top, rows->top());
    bottom = std::min(bottom, rows->bottom());
  }
  cairo_surface_flush(surface_.get());
  std::uint8_t* const data = cairo_image_surface_get_data(surface_.get());
  const std::ptrdiff_t stride = cairo_image_surface_get_stride(surface_.get());
  if (data == nullptr) return;
  const Mixer mix(operation);
  for (std::int32_t y = top; y < bottom; ++y) {
    for (std::int32_t x = left; x < right; ++x) {
      constexpr std::uint32_t kHalf = 0x80000000, kColors = 0xFFFFFF;
      const std::uint32_t s = hasSource ? sourceRows.at(x, y) : kHalf;
      const std::uint32_t b = hasBrush ? brushRows.at(x, y) : kHalf;
      if (s < kHalf || b < kHalf) continue;
      std::uint8_t* const at = data + y * stride + std::ptrdiff_t{4} * x;
      std::uint32_t pixel = 0;
      std::memcpy(&pixel, at, sizeof pixel);
      const std::uint32_t under = onWhite(pixel) & kColors;
      const std::uint32_t result = mix(b, s, under) & kColors;
      if (result == under) continue;
      pixel = 0xFF000000 | result;
      std::memcpy(at, &pixel, sizeof pixel);
    }
  }
  cairo_surface_mark_dirty(surface_.get());
}

Bitmap Canvas::finish() {
  cairo_surface_flush(surface_.get());
  // An invalid command puts Cairo into an error state; keep what was drawn before.
  if (cairo_status(cairo_.get()) == CAIRO_STATUS_NO_MEMORY ||
      cairo_surface_status(surface_.get()) != CAIRO_STATUS_SUCCESS) {
    throw RuntimeError(err::kOutOfMemory, "There is not enough memory for the picture.");
  }
  Bitmap bitmap = Bitmap::uninitialized(width_, height_);
  const Pixels pixels = bitmap.writable();
  const std::uint8_t* const data = cairo_image_surface_get_data(surface_.get());
  const std::ptrdiff_t stride = cairo_image_surface_get_stride(surface_.get());
  const std::int32_t rowsPerBand = 1 + 128 * 1024 / width_;
  forRows(height_, rowsPerBand, [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t y = first; y < last; ++y) unpremultiplyRow(data + y * stride, pixels.row(y), width_);
  });
  return bitmap;
}

}  // namespace kestrel::engine::metafile
