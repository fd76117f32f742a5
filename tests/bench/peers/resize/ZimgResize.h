#pragma once

#include <zimg.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/effects/resample/Resize.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::bench {

/// zimg scaling the four planes of an interleaved picture independently. Graph, buffers and output are kept;
/// a run unpacks, scales and packs a few rows at a time on demand, which keeps the planes in the caches.
class ZimgResize {
 public:
  /// `sample` is ZIMG_PIXEL_BYTE (zimg widens to words itself) or ZIMG_PIXEL_WORD.
  ZimgResize(engine::Bitmap source, std::int32_t width, std::int32_t height, engine::ResampleMethod method,
             zimg_pixel_type_e sample);

  const engine::Bitmap& run();

 private:
  /// A ring buffer of rows of four planes, for the input or output of the graph.
  struct Planes {
    std::size_t stride = 0;
    unsigned mask = 0;
    std::unique_ptr<std::byte, void (*)(void*)> memory{nullptr, nullptr};

    void allocate(std::size_t rowBytes, unsigned lines, unsigned height);
    std::byte* row(int plane, unsigned y) const;
  };

  static int unpackRow(void* self, unsigned y, unsigned left, unsigned right);
  static int packRow(void* self, unsigned y, unsigned left, unsigned right);

  engine::Bitmap source_, result_;
  engine::ConstPixels from_;
  engine::Pixels to_;
  zimg_pixel_type_e sample_;
  std::unique_ptr<zimg_filter_graph, void (*)(zimg_filter_graph*)> graph_;
  Planes in_, out_;
  std::unique_ptr<std::byte, void (*)(void*)> scratch_;
};

}  // namespace kestrel::bench
