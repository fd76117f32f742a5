#pragma once

#include <cstdint>
#include <functional>

#include "GaussianAxis.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Takes a piece of a finished row, the outputs of `columns`, and may change it; called on several threads at
/// a time. The first column of each piece is a multiple of 64. It may write past the caches: what it has so
/// written is seen when the filter is done.
using PieceSink = std::function<void(std::int32_t y, Interval columns, float* piece)>;

/// What of a picture is filtered: its colors weighed by alpha and alpha, four floats a pixel (see
/// FloatRows.h), or alpha alone, one float.
enum class GaussianChannels { WeightedRgba = 4, Alpha = 1 };

/// Filters a picture along both axes, which have one sigma, and hands over the rows of the result in pieces:
/// each pixel once, in no promised order.
void gaussianFilter(const ConstPixels& picture, GaussianChannels channels, const GaussianAxis& columns,
                    const GaussianAxis& rows, const PieceSink& sink);

}  // namespace kestrel::engine
