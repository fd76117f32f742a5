#pragma once

#include <cstddef>
#include <span>

namespace kestrel::resources {

/// The picture that a dialog's preview shows while it is given none of the user's: 360 by 270 pixels, as the
/// bytes of a PNG file.
std::span<const std::byte> stockPicture();

}  // namespace kestrel::resources
