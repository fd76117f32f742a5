#include "MetafileSeams.h"

#include <functional>
#include <utility>

namespace kestrel::engine::metafile {
namespace {

double signedArea(const std::vector<Point>& polygon) {
  double twice = 0;
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const Point& a = polygon[i];
    const Point& b = polygon[(i + 1) % polygon.size()];
    twice += a.x * b.y - b.x * a.y;
  }
  return twice / 2;
}

}  // namespace

std::size_t Seams::Hash::operator()(const Key& key) const noexcept {
  std::size_t hash = 0;
  for (const double value : key) hash = hash * 1'000'003 + std::hash<double>{}(value);
  return hash;
}

std::vector<Edge> Seams::add(const std::vector<Point>& polygon) {
  constexpr std::size_t kMostEdges = 500'000;
  const double area = signedArea(polygon);
  if (area == 0) return {};
  std::vector<Edge> shared;
  std::vector<Key> own;
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    Point from = polygon[i], to = polygon[(i + 1) % polygon.size()];
    if (area < 0) std::swap(from, to);
    if (from.x == to.x && from.y == to.y) continue;
    if (edges_.contains({to.x, to.y, from.x, from.y})) shared.push_back({from, to});
    own.push_back({from.x, from.y, to.x, to.y});
  }
  if (edges_.size() + own.size() > kMostEdges) edges_.clear();
  edges_.insert(own.begin(), own.end());
  return shared;
}

}  // namespace kestrel::engine::metafile
