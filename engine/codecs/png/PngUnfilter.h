#pragma once

#include <cstddef>
#include <cstdint>

#include "PngFilter.h"

namespace kestrel::engine::png {

/// Takes the filter off a row of `width` pixels of `bytesPerPixel` 3 or 4 and makes it a row of RGBA, opaque
/// where it has no alpha. `above` is the row before it as RGBA, zeros for the first one. Reads up to a byte
/// beyond the row.
void unfilterPixels(Filter filter, const std::uint8_t* row, const std::uint8_t* above, std::int32_t width,
                    std::size_t bytesPerPixel, std::uint8_t* rgba);

/// Takes the filter off a row in its place. `bytesPerPixel` is 1 to 8; `above` is the row before it without
/// its filter, zeros for the first one.
void unfilterBytes(Filter filter, std::uint8_t* row, const std::uint8_t* above, std::size_t count,
                   std::size_t bytesPerPixel);

}  // namespace kestrel::engine::png
