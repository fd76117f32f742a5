#pragma once

#include <string>
#include <string_view>

namespace kestrel::c {

/// The text with each byte that is no part of UTF-8 replaced by U+FFFD.
std::string ValidUtf8(std::string_view text);

/// A name of a host; null is none.
inline std::string_view TextOrEmpty(const char* text) {
  return text ? std::string_view(text) : std::string_view();
}

}  // namespace kestrel::c
