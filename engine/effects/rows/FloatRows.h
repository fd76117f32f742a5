#pragma once

#include <cstddef>
#include <cstdint>

#include "FilterTable.h"

/// Row kernels of separable filters, in the widest vectors of the machine.
///
/// Float pixels are premultiplied: red, green and blue times alpha (0 to 65025), and alpha (0 to 255). Float
/// rows have `kRowSlack` more values than used, initialized on input; kernels write undefined values there.
/// Picture rows are those of a Bitmap, padded to 64 bytes, unless stated otherwise.
namespace kestrel::engine {

inline constexpr std::size_t kRowSlack = 64;

/// Converts pixels to premultiplied floats.
void premultiplyRow(const std::uint8_t* in, std::int32_t count, float* out);

/// Vertical pass: weighted sum of `rows` successive picture rows, premultiplied. `opaque` asserts alpha 255
/// and is faster.
void sumPictureRows(const std::uint8_t* in, std::size_t stride, const float* weights, std::int32_t rows,
                    std::int32_t count, bool opaque, float* out);

/// Vertical pass over alpha only: weighted sum of `rows` successive picture rows, one float per pixel.
void sumAlphaRows(const std::uint8_t* in, std::size_t stride, const float* weights, std::int32_t rows,
                  std::int32_t count, float* out);

/// Vertical pass: weighted sum of float rows.
void sumFloatRows(const float* const* in, const float* weights, std::int32_t rows, std::size_t values,
                  float* out);

/// Horizontal pass over a float row of premultiplied pixels.
void filterColumns(const float* in, const FilterTable& table, float* out);

/// Converts premultiplied floats to pixels with straight alpha, rounded to the nearest and clamped to 0 to
/// 255. Alpha below half a level gives transparent black. `out` needs no padding.
void storeStraightRow(const float* in, std::int32_t count, std::uint8_t* out);

/// Writes pixels of one color with alpha `in` times `opacity`; the alpha of `color` is ignored. `out` needs
/// no padding.
void tintRow(const float* in, std::int32_t count, std::uint32_t color, float opacity, std::uint8_t* out);

}  // namespace kestrel::engine
