#pragma once

#include <cstdint>
#include <vector>

#include "PaintBuffer.h"
#include "Pyramid.h"
#include "ViewAxis.h"
#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

/// What there is to see in a view, selection and rubber bands aside.
struct Scene {
  const Bitmap& picture;
  const ViewAxis& horizontal;
  const ViewAxis& vertical;
  Pixel surroundings;        ///< what is beside the picture
  const Bitmap& background;  ///< opaque, tiled behind the picture from its corner on; not empty
};

/// Paints the visible part of a picture: pixel by pixel when it is shown at its size or larger, averaged over
/// the area that a view pixel covers when it is shown smaller. Once it has painted a view of some size,
/// painting allocates nothing.
class Painter {
 public:
  static constexpr Pixel kBorderColor{0x80, 0x80, 0x80, 255};

  /// Paints the part `area` of the view, which must lie inside the buffer. The buffer is the whole view.
  void paint(const Scene& scene, const PaintBuffer& buffer, const Rectangle& area);

  /// The picture is another one, or another size.
  void reset() { pyramid_.reset(); }
  /// A part of the picture has changed.
  void invalidate(const Rectangle& area) { pyramid_.invalidate(area); }

 private:
  /// The pixels of a row or column, three side by side, that make up one of the view, and their shares of
  /// 256.
  struct Taps {
    std::int32_t first;
    std::uint16_t weight[3];
  };

  /// What one band of rows works with.
  struct Scratch {
    std::vector<std::uint16_t> sums;          ///< a row of the source, averaged vertically
    std::vector<std::uint8_t> premultiplied;  ///< three rows of the source
    std::int32_t rows[3];                     ///< which those are, -1 for none
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
