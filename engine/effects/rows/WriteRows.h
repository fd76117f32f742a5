#pragma once

#include <cstdint>
#include <cstring>

#include "EffectRows.h"
#include "engine/parallel/Parallel.h"
#include "engine/pixels/Bitmap.h"
#include "engine/pixels/NonTemporal.h"

namespace kestrel::engine {

/// Calls `work(y, stream)` for each row of a result, on several cores; for effects that cost about as much as
/// copying. `stream` asks for non-temporal stores; the store fence is issued here.
template <class Work>
void writeRows(const Pixels& result, const Work& work) {
  const bool stream = exceedsCaches(result.stride * static_cast<std::size_t>(result.height));
  forRows(result.height, rowsPerTask(result.width), [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t y = first; y < last; ++y) work(y, stream);
    if (stream) storeFence();
  });
}

/// Copies `count` pixels; with `stream`, `out` must be aligned to 64 bytes.
inline void copyRow(const std::uint8_t* in, std::int32_t count, bool stream, std::uint8_t* out) {
  const auto bytes = static_cast<std::size_t>(count) * sizeof(Pixel);
  if (stream) {
    copyNonTemporal(in, bytes, out);
  } else {
    std::memcpy(out, in, bytes);
  }
}

}  // namespace kestrel::engine
