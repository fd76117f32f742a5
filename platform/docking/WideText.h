#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel::docking {

/// UTF-8 to little-endian UTF-16 with a closing NUL; raises RuntimeError 5 if the text is not UTF-8.
std::vector<std::byte> wideFromUtf8(std::string_view text);

/// Little-endian UTF-16 with a terminating NUL, the only one, to UTF-8; raises RuntimeError 321 for anything
/// else.
std::string utf8FromWide(std::span<const std::byte> wide);

}  // namespace kestrel::docking
