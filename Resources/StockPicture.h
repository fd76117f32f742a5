#pragma once

#include <cstddef>
#include <span>

namespace kestrel::resources {

/// The default picture of a dialog's preview: 360 by 270 pixels, as a PNG file.
std::span<const std::byte> stockPicture();

}  // namespace kestrel::resources
