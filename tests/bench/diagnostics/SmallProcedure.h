#pragma once

#include <cstdint>
#include <string>

/// The same small procedure with and without the error trailer, in a separate file so that it is not inlined.
namespace kestrel::bench {

std::int32_t withTrailer(std::int32_t value, const std::string& name);
std::int32_t withoutTrailer(std::int32_t value, const std::string& name);

/// Fails, reports, and returns.
std::int32_t failing(std::int32_t value);

}  // namespace kestrel::bench
