#include "platform/os/Memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>

namespace kestrel::os {

std::uint8_t* mapPages(std::size_t length) noexcept {
  void* const whole =
      mmap(nullptr, length + kHugePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (whole == MAP_FAILED) return nullptr;
  auto* const begin = static_cast<std::uint8_t*>(whole);
  const std::size_t before = (kHugePage - reinterpret_cast<std::uintptr_t>(begin) % kHugePage) % kHugePage;
  if (before > 0) munmap(begin, before);
  munmap(begin + before + length, kHugePage - before);
  // Only advice: a system without huge pages ignores it.
  madvise(begin + before, length, MADV_HUGEPAGE);
  return begin + before;
}

void unmapPages(std::uint8_t* begin, std::size_t length) noexcept { munmap(begin, length); }

std::size_t physicalMemory() noexcept {
  static const std::size_t bytes = static_cast<std::size_t>(std::max(sysconf(_SC_PHYS_PAGES), 1L)) *
                                   static_cast<std::size_t>(std::max(sysconf(_SC_PAGESIZE), 1L));
  return bytes;
}

}  // namespace kestrel::os
