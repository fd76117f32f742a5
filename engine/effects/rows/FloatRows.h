#pragma once

#include <cstddef>
#include <cstdint>

#include "FilterTable.h"

/// The inner loops of separable filters, one row at a time, in the widest vectors that the machine has.
///
/// Inside a filter a pixel is four floats, weighed by its alpha: red, green and blue times alpha (0 to 65025)
/// and alpha itself (0 to 255), so that what is transparent adds no color. Float rows have room, and
/// numbers, for `kRowSlack` more values than are meant; what a kernel writes there has no meaning. Picture
/// rows are those of a Bitmap, padded to 64 bytes, unless a parameter says otherwise.
namespace kestrel::engine {

inline constexpr std::size_t kRowSlack = 64;

/// Pixels to floats.
void premultiplyRow(const std::uint8_t* in, std::int32_t count, float* out);

/// The weighted sum of `rows` successive picture rows; faster where they are known to be `opaque`.
void sumPictureRows(const std::uint8_t* in, std::size_t stride, const float* weights, std::int32_t rows,
                    std::int32_t count, bool opaque, float* out);

/// The weighted sum of the alphas of `rows` successive picture rows: one float a pixel.
void sumAlphaRows(const std::uint8_t* in, std::size_t stride, const float* weights, std::int32_t rows,
                  std::int32_t count, float* out);

/// The weighted sum of float rows.
void sumFloatRows(const float* const* in, const float* weights, std::int32_t rows, std::size_t values,
                  float* out);

/// A row filtered along itself by the table.
void filterColumns(const float* in, const FilterTable& table, float* out);

/// Floats to pixels with straight alpha, rounded to the nearest and limited to 0 to 255. Less than half a
/// level of alpha is transparent black. `out` may end anywhere.
void storeStraightRow(const float* in, std::int32_t count, std::uint8_t* out);

/// Pixels of one color whose alphas are `in` times `opacity`; the alpha in `color` plays no part. `out` may
/// end anywhere.
void tintRow(const float* in, std::int32_t count, std::uint32_t color, float opacity, std::uint8_t* out);

}  // namespace kestrel::engine
