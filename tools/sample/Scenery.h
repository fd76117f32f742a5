#pragma once

#include <cstdint>

#include "engine/pixels/Bitmap.h"

namespace kestrel::sample {

/// A mountain lake at sunset, computed at any size of about 4 to 3; the same picture on every machine.
engine::Bitmap renderScenery(std::int32_t width, std::int32_t height);

}  // namespace kestrel::sample
