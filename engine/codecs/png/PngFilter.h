#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::png {

/// Filter types (PNG, 9.2): a row is stored as differences from a predictor.
enum class Filter : std::uint8_t { none, sub, up, average, paeth };
inline constexpr int kFilters = 5;

/// Predictor of a filter type, from the corresponding bytes of the pixels to the left, above, and above left
/// (corner).
inline std::uint8_t predict(Filter filter, int left, int above, int corner) {
  const auto paeth = [&] {
    const int byLeft = std::abs(above - corner), byAbove = std::abs(left - corner),
              byCorner = std::abs(left + above - 2 * corner);
    if (byLeft <= byAbove && byLeft <= byCorner) return left;
    return byAbove <= byCorner ? above : corner;
  };
  const int value = filter == Filter::none      ? 0
                    : filter == Filter::sub     ? left
                    : filter == Filter::up      ? above
                    : filter == Filter::average ? (left + above) / 2
                                                : paeth();
  return static_cast<std::uint8_t>(value);
}

/// Rows are processed up to a multiple of this many bytes.
inline constexpr std::size_t kRowBlock = 64;
/// Zeros before a row to be filtered, so that the first pixel is not a special case.
inline constexpr std::size_t kRowMargin = 64;

/// The filter type with the smallest sum of absolute differences, the first of equals. `row` and `above` need
/// kRowMargin zeros before them, and zeros behind them up to a multiple of kRowBlock.
Filter bestFilter(const std::uint8_t* row, const std::uint8_t* above, std::size_t count,
                  std::size_t bytesPerPixel);

/// Filters a row; requirements as for `bestFilter`. Writes up to a multiple of kRowBlock bytes.
void filterRow(Filter filter, const std::uint8_t* row, const std::uint8_t* above, std::size_t count,
               std::size_t bytesPerPixel, std::uint8_t* out);

/// Packs a bitmap's row to 3 bytes per pixel, without alpha; reads and writes whole groups of 16 pixels.
void packRgb(const std::uint8_t* rgba, std::int32_t width, std::uint8_t* out);

}  // namespace kestrel::engine::png
