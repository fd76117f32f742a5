#pragma once

#include <cstddef>
#include <cstdint>

/// Memory straight from the operating system.
namespace kestrel::os {

/// What `mapPages` aligns to: the size of a huge page.
inline constexpr std::size_t kHugePage = std::size_t{2} << 20;

/// Fresh zeroed memory that begins at a multiple of `kHugePage`, on huge pages where the system has them.
/// `length` is a multiple of `kHugePage`. Null when there is none.
std::uint8_t* mapPages(std::size_t length) noexcept;

/// Gives back what `mapPages` returned, whole.
void unmapPages(std::uint8_t* begin, std::size_t length) noexcept;

/// Bytes of memory that this machine has.
std::size_t physicalMemory() noexcept;

}  // namespace kestrel::os
