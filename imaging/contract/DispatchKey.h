#pragma once

#include <string>
#include <string_view>

#include "base/Numbers.h"

namespace kestrel {

/// The key by which a command is dispatched: its name without the three-letter prefix, in lower case.
inline std::string DispatchKey(std::string_view name) {
  constexpr std::size_t kPrefix = 3;  // "btn", "mnu"
  return name.size() > kPrefix ? LowerCase(name.substr(kPrefix)) : std::string();
}

}  // namespace kestrel
