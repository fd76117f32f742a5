#include "Stroke.h"

#include <algorithm>
#include <cmath>

#include "LineShape.h"
#include "engine/effects/rows/Blend.h"

namespace kestrel::engine {

/// Coverage of each pixel of a square by the stroke, and the part of it that is painted already.
struct Stroke::Tile {
  std::int32_t left = 0;
  std::int32_t top = 0;
  bool pending = false;
  PixelRun columns, rows;  ///< where it is pending, in picture pixels
  std::array<std::uint8_t, std::size_t{kSide} * kSide> covered{};
  std::array<std::uint8_t, std::size_t{kSide} * kSide> painted{};

  std::size_t index(std::int32_t x, std::int32_t y) const {
    return static_cast<std::size_t>((y - top) * kSide + x - left);
  }
};

namespace {

PointD operator+(PointD a, PointD b) { return {a.X + b.X, a.Y + b.Y}; }
PointD operator-(PointD a, PointD b) { return {a.X - b.X, a.Y - b.Y}; }
PointD operator*(double factor, PointD a) { return {factor * a.X, factor * a.Y}; }

double length(PointD a) { return std::hypot(a.X, a.Y); }

PixelRun hull(PixelRun a, PixelRun b) {
  if (a.empty()) return b;
  return {std::min(a.first, b.first), std::max(a.last, b.last)};
}

/// The alpha that raises a pixel's effective alpha from `from` to `to` when the same color is composited
/// again.
std::uint8_t alphaBetween(std::uint32_t from, std::uint32_t to) {
  return static_cast<std::uint8_t>((510 * (to - from) + 255 - from) / (2 * (255 - from)));
}

}  // namespace

Stroke::Stroke(Pixel color, double width, const Rectangle& clip)
    : color_(color), width_(width), clip_(clip) {}

Stroke::~Stroke() = default;

std::vector<Rectangle> Stroke::add(PointD sample) {
  if (samples_.empty()) {
    samples_.push_back(sample);
    addLine(sample, sample);
    return pending();
  }
  if (length(sample - samples_.back()) < 1e-6) return {};
  samples_.push_back(sample);
  const std::size_t count = samples_.size();
  if (count == 3) {
    // The first sample has no predecessor: extrapolate one on the straight line through the first two.
    addPiece(2 * samples_[0] - samples_[1], samples_[0], samples_[1], samples_[2]);
  } else if (count == 4) {
    addPiece(samples_[0], samples_[1], samples_[2], samples_[3]);
    samples_.erase(samples_.begin());
  }
  return pending();
}

std::vector<Rectangle> Stroke::finish() {
  const std::size_t count = samples_.size();
  if (count < 2) return {};
  const PointD from = samples_[count - 2];
  const PointD to = samples_[count - 1];
  addPiece(count == 3 ? samples_[0] : 2 * from - to, from, to, 2 * to - from);
  samples_ = {to};
  return pending();
}

void Stroke::addPiece(PointD before, PointD from, PointD to, PointD after) {
  // Centripetal knots: the parameter's steps are the square roots of the distances. The tangents at both ends
  // follow from them.
  const double step0 = std::sqrt(length(from - before));
  const double step1 = std::sqrt(length(to - from));
  const double step2 = std::sqrt(length(after - to));
  const PointD direction = (1 / step1) * (to - from);
  const PointD leave =
      step1 * ((1 / step0) * (from - before) - (1 / (step0 + step1)) * (to - before) + direction);
  const PointD arrive =
      step1 * (direction - (1 / (step1 + step2)) * (after - from) + (1 / step2) * (after - to));

  constexpr double kPixelsPerLine = 2;
  const int lines =
      std::max(1, static_cast<int>(std::min(std::ceil(length(to - from) / kPixelsPerLine), 1e5)));
  PointD last = from;
  for (int i = 1; i <= lines; ++i) {
    const double t = static_cast<double>(i) / lines;
    const double rest = 1 - t;
    const PointD next = ((1 + 2 * t) * rest * rest) * from + (t * rest * rest) * leave +
                        (t * t * (3 - 2 * t)) * to - (t * t * rest) * arrive;
    addLine(last, next);
    last = next;
  }
}

void Stroke::addLine(PointD from, PointD to) {
  const LineShape line(from, to, width_);
  const Rectangle area = line.bounds(clip_);
  std::array<std::uint8_t, kSide> coverage;
  for (std::int32_t y = area.Top; y < area.Top + area.Height; ++y) {
    const PixelRun run = line.runs(y, {area.Left, area.Left + area.Width})[0];
    for (std::int32_t x = run.first; x < run.last;) {
      Tile& tile = tileAt(x / kSide, y / kSide);
      const PixelRun piece{x, std::min(run.last, tile.left + kSide)};
      line.cover(y, piece, coverage.data());
      std::uint8_t* const covered = tile.covered.data() + tile.index(x, y);
      for (std::int32_t i = 0; i < piece.last - piece.first; ++i) {
        covered[i] = std::max(covered[i], coverage[static_cast<std::size_t>(i)]);
      }
      tile.columns = hull(tile.columns, piece);
      tile.rows = hull(tile.rows, {y, y + 1});
      x = piece.last;
    }
  }
}

Stroke::Tile& Stroke::tileAt(std::int32_t column, std::int32_t row) {
  const std::uint64_t key = static_cast<std::uint64_t>(row) << 32 | static_cast<std::uint64_t>(column);
  std::unique_ptr<Tile>& tile = tiles_[key];
  if (!tile) {
    tile = std::make_unique<Tile>();
    tile->left = column * kSide;
    tile->top = row * kSide;
  }
  if (!tile->pending) {
    pending_.push_back(tile.get());
    tile->pending = true;
  }
  return *tile;
}

std::vector<Rectangle> Stroke::pending() const {
  std::vector<Rectangle> result;
  result.reserve(pending_.size());
  for (const Tile* tile : pending_) {
    result.push_back({tile->columns.first, tile->rows.first, tile->columns.last - tile->columns.first,
                      tile->rows.last - tile->rows.first});
  }
  return result;
}

Rectangle Stroke::paint(Pixels target) {
  PixelRun columns, rows;
  for (Tile* tile : pending_) {
    for (std::int32_t y = tile->rows.first; y < tile->rows.last; ++y) {
      for (std::int32_t x = tile->columns.first; x < tile->columns.last; ++x) {
        const std::size_t i = tile->index(x, y);
        if (tile->covered[i] <= tile->painted[i]) continue;
        const std::uint8_t from = mul255(color_.a, tile->painted[i]);
        const std::uint8_t to = mul255(color_.a, tile->covered[i]);
        tile->painted[i] = tile->covered[i];
        if (to <= from) continue;
        std::uint8_t* const p = target.row(y) + std::ptrdiff_t{4} * x;
        const Pixel mixed =
            over({p[0], p[1], p[2], p[3]}, {color_.r, color_.g, color_.b, alphaBetween(from, to)});
        p[0] = mixed.r;
        p[1] = mixed.g;
        p[2] = mixed.b;
        p[3] = mixed.a;
      }
    }
    columns = hull(columns, tile->columns);
    rows = hull(rows, tile->rows);
    tile->pending = false;
    tile->columns = tile->rows = {};
  }
  pending_.clear();
  if (columns.empty()) return {};
  return {columns.first, rows.first, columns.last - columns.first, rows.last - rows.first};
}

}  // namespace kestrel::engine
