#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// File names are UTF-8 text everywhere in the program. These are the only conversions from and to the
/// system's form.
namespace kestrel::os {

inline std::filesystem::path pathOf(std::string_view utf8) {
  return {std::u8string_view(reinterpret_cast<const char8_t*>(utf8.data()), utf8.size())};
}

inline std::string textOf(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {reinterpret_cast<const char*>(text.data()), text.size()};
}

}  // namespace kestrel::os
