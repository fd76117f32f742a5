#pragma once

#include <cstddef>
#include <cstdint>

#include "PngFilter.h"

namespace kestrel::engine::png {

/// Unfilters a row of `width` pixels with `bytesPerPixel` 3 or 4 to RGBA; RGB becomes opaque. `above` is the
/// unfiltered row above as RGBA, zeros for the first one. Reads up to one byte beyond the row.
void unfilterPixels(Filter filter, const std::uint8_t* row, const std::uint8_t* above, std::int32_t width,
                    std::size_t bytesPerPixel, std::uint8_t* rgba);

/// Unfilters a row in place. `bytesPerPixel` is 1 to 8; `above` is the unfiltered row above, zeros for the
/// first one.
void unfilterBytes(Filter filter, std::uint8_t* row, const std::uint8_t* above, std::size_t count,
                   std::size_t bytesPerPixel);

}  // namespace kestrel::engine::png
