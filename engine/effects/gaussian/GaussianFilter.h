#pragma once

#include <cstdint>
#include <functional>

#include "GaussianAxis.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Receives a piece of a finished row, the outputs `columns`, and may modify it; called on several threads at
/// a time. The first column of each piece is a multiple of 64. It may use non-temporal stores: the filter
/// ends with a store fence.
using PieceSink = std::function<void(std::int32_t y, Interval columns, float* piece)>;

/// Channels to filter: premultiplied RGBA (4 floats per pixel, see FloatRows.h) or alpha only (1 float).
enum class GaussianChannels { PremultipliedRgba = 4, Alpha = 1 };

/// Filters a picture along both axes, which must have the same sigma, and passes the result to `sink` in
/// pieces of rows: each pixel once, in undefined order.
void gaussianFilter(const ConstPixels& picture, GaussianChannels channels, const GaussianAxis& columns,
                    const GaussianAxis& rows, const PieceSink& sink);

}  // namespace kestrel::engine
