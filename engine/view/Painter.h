#pragma once

#include <cstdint>
#include <vector>

#include "PaintBuffer.h"
#include "Pyramid.h"
#include "ViewAxis.h"
#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

/// Contents of a view, without selection and rubber bands.
struct Scene {
  const Bitmap& picture;
  const ViewAxis& horizontal;
  const ViewAxis& vertical;
  Pixel surroundings;        ///< color around the picture
  const Bitmap& background;  ///< opaque tile behind the picture, aligned to its corner; not empty
};

/// Paints the visible part of a picture: nearest neighbor at zoom 1 and above, box kernel below. Once it has
/// painted a view of some size, painting allocates nothing.
class Painter {
 public:
  static constexpr Pixel kBorderColor{0x80, 0x80, 0x80, 255};

  /// Paints the part `area` of the view, which must lie inside the buffer. The buffer is the whole view.
  void paint(const Scene& scene, const PaintBuffer& buffer, const Rectangle& area);

  /// Call when the picture or its size has changed.
  void reset() { pyramid_.reset(); }
  /// Call when a part of the picture has changed.
  void invalidate(const Rectangle& area) { pyramid_.invalidate(area); }

 private:
  /// The three consecutive source pixels that contribute to a view pixel along one axis. Weights sum to 256.
  struct Taps {
    std::int32_t first;
    std::uint16_t weight[3];
  };

  /// Working memory of one band of rows.
  struct Scratch {
    std::vector<std::uint16_t> sums;          ///< a source row after the vertical pass
    std::vector<std::uint8_t> premultiplied;  ///< three rows of the source
    std::int32_t rows[3];                     ///< their row numbers, -1 for none
  };

  struct Job;

  static Taps tapsAt(const ViewAxis& axis, std::int32_t position, std::int32_t level, std::int32_t size);
  void prepareColumns(Job& job);
  void prepareSource(Job& job);
  void paintRows(const Job& job, std::int32_t first, std::int32_t last, Scratch& scratch) const;
  void magnifyRow(const Job& job, std::int32_t sourceRow, std::uint8_t* target) const;
  void reduceRow(const Job& job, std::int32_t y, Scratch& scratch, std::uint8_t* target) const;

  Pyramid pyramid_;
  std::vector<std::int32_t> columns_;
  std::vector<Taps> taps_;
  std::vector<Scratch> scratch_;
};

}  // namespace kestrel::engine
