#pragma once

#include <opencv2/core/mat.hpp>

#include "engine/pixels/Bitmap.h"

namespace kestrel::bench {

inline constexpr std::int32_t kWidth = 6000;
inline constexpr std::int32_t kHeight = 4000;

/// 24 megapixels of smooth colors with noise. Opaque, or each pixel with an alpha of its own from 0 to 255.
engine::Bitmap makePicture(bool opaque, std::uint32_t seed = 1);

/// The same pixels as OpenCV sees them; lives as long as they do.
cv::Mat asMat(const engine::Pixels& pixels);
/// For reading only, which a cv::Mat cannot say.
cv::Mat asMat(const engine::ConstPixels& pixels);

/// A buffer that is kept from run to run, each page of it touched.
engine::Bitmap keptBuffer(std::int32_t width = kWidth, std::int32_t height = kHeight);

/// Raises std::runtime_error where two pictures differ by more than `levels` in a channel, or, where a color
/// is hardly seen for its alpha, by as much as can be seen: a peer that does other work is no peer.
void requireLike(const engine::Bitmap& ours, const engine::Bitmap& theirs, int levels);

}  // namespace kestrel::bench
