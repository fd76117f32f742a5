#pragma once

#include <string>
#include <string_view>

namespace kestrel {

/// Text of one line for the user, from a name that may hold any bytes: bytes that are no UTF-8,
/// control characters and line breaks are replaced by U+FFFD.
std::string VisibleText(std::string_view text);

}  // namespace kestrel
