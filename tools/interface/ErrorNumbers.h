#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace kestrel::tools {

struct ErrorNumber {
  std::int32_t number;
  std::string_view meaning;
};

/// The numbers of errors that hosts meet, with what they mean.
std::span<const ErrorNumber> errorNumbers();

}  // namespace kestrel::tools
