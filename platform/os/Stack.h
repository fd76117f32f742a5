#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace kestrel::os {

/// Writes the return addresses on the stack, innermost first, without the first `skip`, counted from the
/// caller of this function. Returns how many there are, at most as many as fit. Allocates nothing.
std::size_t recordStack(std::span<std::uintptr_t> addresses, std::size_t skip) noexcept;

}  // namespace kestrel::os
