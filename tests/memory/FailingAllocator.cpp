#include "FailingAllocator.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> allocationsLeft{-1};
std::atomic<std::size_t> smallestCounted{0};
std::atomic<std::size_t> held{0};

bool refused() {
  long left = allocationsLeft.load();
  while (left > 0 && !allocationsLeft.compare_exchange_weak(left, left - 1)) {
  }
  return left == 0;
}

void* allocate(std::size_t size, std::size_t alignment) noexcept {
  if (size >= smallestCounted.load() && refused()) return nullptr;
  const std::size_t rounded = (size + alignment - 1) / alignment * alignment;
  void* const memory = std::aligned_alloc(alignment, rounded == 0 ? alignment : rounded);
  held += malloc_usable_size(memory);
  return memory;
}

void release(void* memory) noexcept {
  held -= malloc_usable_size(memory);
  std::free(memory);
}

void* allocateOrThrow(std::size_t size, std::size_t alignment) {
  void* const memory = allocate(size, alignment);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

constexpr std::size_t kUsual = alignof(std::max_align_t);

}  // namespace

namespace kestrel::test {

void failAllocationsAfter(long count, std::size_t smallest) {
  smallestCounted = smallest;
  allocationsLeft = count;
}

std::size_t heldMemory() { return held.load(); }

}  // namespace kestrel::test

[[gnu::noinline]] void* operator new(std::size_t size) { return allocateOrThrow(size, kUsual); }
[[gnu::noinline]] void* operator new(std::size_t size, std::align_val_t alignment) {
  return allocateOrThrow(size, static_cast<std::size_t>(alignment));
}
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size, kUsual);
}
[[gnu::noinline]] void* operator new(std::size_t size, std::align_val_t alignment,
                                     const std::nothrow_t&) noexcept {
  return allocate(size, static_cast<std::size_t>(alignment));
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { release(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { release(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::align_val_t) noexcept { release(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  release(memory);
}
