#include "FailingAllocator.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<int> allocationsLeft{-1};

bool refused() {
  int left = allocationsLeft.load();
  while (left > 0 && !allocationsLeft.compare_exchange_weak(left, left - 1)) {
  }
  return left == 0;
}

}  // namespace

namespace kestrel::engine::test {

void failAllocationsAfter(int count) { allocationsLeft = count; }

}  // namespace kestrel::engine::test

void* operator new(std::size_t size) {
  void* const memory = refused() ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return refused() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void operator delete(void* memory) noexcept { std::free(memory); }

void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
