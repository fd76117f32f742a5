#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::png {

/// How the bytes of a row are told: as their differences from what others let expect (PNG, 9.2).
enum class Filter : std::uint8_t { none, sub, up, average, paeth };
inline constexpr int kFilters = 5;

/// What a filter expects of a byte, by the like bytes of the pixels to its left, above it and in the corner.
inline std::uint8_t expected(Filter filter, int left, int above, int corner) {
  const auto nearest = [&] {
    const int byLeft = std::abs(above - corner), byAbove = std::abs(left - corner),
              byCorner = std::abs(left + above - 2 * corner);
    if (byLeft <= byAbove && byLeft <= byCorner) return left;
    return byAbove <= byCorner ? above : corner;
  };
  const int value = filter == Filter::none      ? 0
                    : filter == Filter::sub     ? left
                    : filter == Filter::up      ? above
                    : filter == Filter::average ? (left + above) / 2
                                                : nearest();
  return static_cast<std::uint8_t>(value);
}

/// Rows to be filtered and filtered rows are worked on up to a multiple of this many bytes.
inline constexpr std::size_t kRowBlock = 64;
/// What stands before a row to be filtered: zeros, so that the first pixel needs no case of its own.
inline constexpr std::size_t kRowMargin = 64;

/// The filter that leaves the smallest differences in sum, the first of equals. `row` and `above` have a
/// margin of zeros before them and zeros up to a multiple of kRowBlock behind them.
Filter bestFilter(const std::uint8_t* row, const std::uint8_t* above, std::size_t count,
                  std::size_t bytesPerPixel);

/// Filters a row, given as for `bestFilter`; writes up to a multiple of kRowBlock bytes.
void filterRow(Filter filter, const std::uint8_t* row, const std::uint8_t* above, std::size_t count,
               std::size_t bytesPerPixel, std::uint8_t* out);

/// The red, green and blue of a bitmap's row, 3 bytes a pixel; reads and writes whole groups of 16 pixels.
void packRgb(const std::uint8_t* rgba, std::int32_t width, std::uint8_t* out);

}  // namespace kestrel::engine::png
