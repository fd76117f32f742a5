#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace kestrel::engine {

/// A block of memory for pixels, aligned to at least 64 bytes, its contents undefined.
///
/// Large blocks are mappings of huge pages and are kept for the next one of about the same size when they
/// are given up: fresh memory costs several times what the work on it does. What is kept is bounded, and what
/// nobody asked for within a few seconds goes back to the system at the next request or `releaseKeptMemory`.
class Memory {
 public:
  Memory() noexcept = default;
  /// Raises RuntimeError 7 when there is no memory.
  explicit Memory(std::size_t bytes);
  Memory(Memory&& other) noexcept;
  Memory& operator=(Memory&& other) noexcept;
  ~Memory();

  std::uint8_t* data() const noexcept { return data_; }
  /// The bytes asked for.
  std::size_t size() const noexcept { return size_; }

 private:
  void release() noexcept;

  std::uint8_t* data_ = nullptr;
  std::size_t size_ = 0;
  std::size_t mapped_ = 0;  ///< length of the mapping; 0 for a small block from the heap
};

/// Gives back the kept blocks that have lain unused for at least `idle`; for a program's idle moments.
void releaseKeptMemory(std::chrono::milliseconds idle = std::chrono::milliseconds{0}) noexcept;

/// Bytes in kept blocks at this moment.
std::size_t keptMemory() noexcept;

/// The most bytes that are kept.
std::size_t keptMemoryBound() noexcept;

/// Bytes of memory that this machine has.
std::size_t machineMemory() noexcept;

}  // namespace kestrel::engine
