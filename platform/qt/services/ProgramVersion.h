#pragma once

#include <cstdint>
#include <string>

namespace kestrel::qt {

/// Title and version of the program.
struct ProgramVersion {
  std::string title;
  std::int32_t major = 0;
  std::int32_t minor = 0;
  std::int32_t revision = 0;
};

}  // namespace kestrel::qt
