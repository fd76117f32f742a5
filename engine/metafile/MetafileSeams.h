#pragma once

#include <array>
#include <cstddef>
#include <unordered_set>
#include <vector>

#include "MetafileCanvas.h"

namespace kestrel::engine::metafile {

struct Edge {
  Point from, to;
};

/// The edges of the polygons of a surface that is drawn piece by piece without outlines. Where two pieces
/// meet, both cover a pixel in part, and the background shows between them as a thin line.
class Seams {
 public:
  /// Adds a closed polygon in pixels. Returns the edges that it shares with earlier polygons on their other
  /// side.
  std::vector<Edge> add(const std::vector<Point>& polygon);

 private:
  using Key = std::array<double, 4>;
  struct Hash {
    std::size_t operator()(const Key& key) const noexcept;
  };

  std::unordered_set<Key, Hash> edges_;  ///< each with its polygon on the same side
};

}  // namespace kestrel::engine::metafile
