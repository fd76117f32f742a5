#pragma once

#include <opencv2/core/mat.hpp>

#include "engine/pixels/Bitmap.h"

namespace kestrel::bench {

inline constexpr std::int32_t kWidth = 6000;
inline constexpr std::int32_t kHeight = 4000;

/// 24 megapixels of smooth colors with noise. Opaque, or with a different alpha per pixel from 0 to 255.
engine::Bitmap makePicture(bool opaque, std::uint32_t seed = 1);

/// A matrix on the same memory, valid as long as the pixels.
cv::Mat asMat(const engine::Pixels& pixels);
/// Read-only, which a cv::Mat cannot express.
cv::Mat asMat(const engine::ConstPixels& pixels);

/// A buffer to keep between runs, with each page touched.
engine::Bitmap keptBuffer(std::int32_t width = kWidth, std::int32_t height = kHeight);

/// Raises std::runtime_error if the pictures differ by more than `levels` in a channel, colors weighted by
/// alpha: a peer with another result is not comparable.
void requireLike(const engine::Bitmap& ours, const engine::Bitmap& theirs, int levels);

}  // namespace kestrel::bench
