#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace kestrel::engine {

/// A block of memory for pixels, aligned to at least 64 bytes, its contents undefined.
///
/// Large blocks are mappings of huge pages. Freed ones are kept for reuse by the next block of about the same
/// size: page faults on fresh memory cost several times as much as the work on it. The kept amount is
/// bounded; blocks unused for a few seconds return to the system at the next request or `releaseKeptMemory`.
class Memory {
 public:
  Memory() noexcept = default;
  /// Raises RuntimeError 7 when out of memory.
  explicit Memory(std::size_t bytes);
  Memory(Memory&& other) noexcept;
  Memory& operator=(Memory&& other) noexcept;
  ~Memory();

  std::uint8_t* data() const noexcept { return data_; }
  /// The size requested, in bytes.
  std::size_t size() const noexcept { return size_; }

 private:
  void release() noexcept;

  std::uint8_t* data_ = nullptr;
  std::size_t size_ = 0;
  std::size_t mapped_ = 0;  ///< length of the mapping; 0 for a small block from the heap
};

/// Returns to the system the kept blocks unused for at least `idle`. Call it when the program is idle.
void releaseKeptMemory(std::chrono::milliseconds idle = std::chrono::milliseconds{0}) noexcept;

/// Bytes currently in kept blocks.
std::size_t keptMemory() noexcept;

/// Upper bound of `keptMemory`, in bytes.
std::size_t keptMemoryBound() noexcept;

/// Physical memory of this machine, in bytes.
std::size_t machineMemory() noexcept;

}  // namespace kestrel::engine
