#pragma once

#include <cstdint>

#include "engine/pixels/Bitmap.h"

namespace kestrel::sample {

/// A mountain lake at sunset, rendered at any size with an aspect ratio of about 4:3; the same on every
/// machine.
engine::Bitmap renderScenery(std::int32_t width, std::int32_t height);

}  // namespace kestrel::sample
