#pragma once

#include <string>
#include <string_view>

namespace kestrel::thumbnails {

/// The name of a file as text to paint: bytes that are no UTF-8 are replaced by U+FFFD, control characters,
/// line breaks among them, by U+2426.
std::string labelOf(std::string_view name);

}  // namespace kestrel::thumbnails
