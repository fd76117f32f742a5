#include "Memory.h"

#include <algorithm>
#include <iterator>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

#include "base/RuntimeError.h"
#include "platform/os/Memory.h"

namespace kestrel::engine {
namespace {

using os::kHugePage;
/// Blocks of at least this size are mappings; for smaller ones the heap is fast and wastes less.
constexpr std::size_t kSmallestMapping = kHugePage;
constexpr std::chrono::seconds kKeepFor{5};
constexpr std::size_t kMostKeptBlocks = 8;

using Clock = std::chrono::steady_clock;

/// The freed mappings, oldest first. Never destroyed, because bitmaps may be static.
class KeptMappings {
 public:
  static KeptMappings& instance() {
    static KeptMappings& mappings = *new KeptMappings;
    return mappings;
  }

  struct Mapping {
    std::uint8_t* data = nullptr;
    std::size_t length = 0;
    Clock::time_point freed;
  };

  /// Removes and returns a kept mapping of `length` bytes or up to a quarter more; one without data if there
  /// is none.
  Mapping take(std::size_t length) noexcept {
    const std::lock_guard lock(mutex_);
    auto best = kept_.end();
    for (auto it = kept_.begin(); it != kept_.end(); ++it) {
      const bool fits = it->length >= length && it->length - length <= length / 4;
      if (fits && (best == kept_.end() || it->length <= best->length)) best = it;
    }
    Mapping result;
    if (best != kept_.end()) {
      result = *best;
      bytes_ -= best->length;
      kept_.erase(best);
    }
    dropUnusedSince(Clock::now() - kKeepFor);
    return result;
  }

  void give(std::uint8_t* data, std::size_t length) noexcept {
    const std::lock_guard lock(mutex_);
    const auto now = Clock::now();
    dropUnusedSince(now - kKeepFor);
    while (!kept_.empty() && (bytes_ + length > keptMemoryBound() || kept_.size() == kMostKeptBlocks)) {
      dropOldest();
    }
    if (length > keptMemoryBound()) {
      os::unmapPages(data, length);
      return;
    }
    kept_.push_back({data, length, now});
    bytes_ += length;
  }

  void dropUnused(std::chrono::milliseconds idle) noexcept {
    const std::lock_guard lock(mutex_);
    dropUnusedSince(Clock::now() - idle);
  }

  std::size_t bytes() noexcept {
    const std::lock_guard lock(mutex_);
    return bytes_;
  }

 private:
  KeptMappings() { kept_.reserve(kMostKeptBlocks); }

  void dropUnusedSince(Clock::time_point moment) noexcept {
    while (!kept_.empty() && kept_.front().freed <= moment) dropOldest();
  }

  void dropOldest() noexcept {
    os::unmapPages(kept_.front().data, kept_.front().length);
    bytes_ -= kept_.front().length;
    kept_.erase(kept_.begin());
  }

  std::mutex mutex_;
  std::vector<Mapping> kept_;
  std::size_t bytes_ = 0;
};

}  // namespace

Memory::Memory(std::size_t bytes) : size_(bytes) {
  if (bytes < kSmallestMapping) {
    data_ = static_cast<std::uint8_t*>(::operator new (bytes, std::align_val_t{64}, std::nothrow));
  } else if (bytes <= SIZE_MAX - 2 * kHugePage) {
    mapped_ = (bytes + kHugePage - 1) / kHugePage * kHugePage;
    if (const auto kept = KeptMappings::instance().take(mapped_); kept.data != nullptr) {
      data_ = kept.data;
      mapped_ = kept.length;
    } else {
      data_ = os::mapPages(mapped_);
    }
  }
  if (data_ == nullptr) throw RuntimeError(err::kOutOfMemory, "There is not enough memory for the picture.");
}

Memory::Memory(Memory&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)),
      size_(std::exchange(other.size_, 0)),
      mapped_(std::exchange(other.mapped_, 0)) {}

Memory& Memory::operator=(Memory&& other) noexcept {
  if (this != &other) {
    release();
    data_ = std::exchange(other.data_, nullptr);
    size_ = std::exchange(other.size_, 0);
    mapped_ = std::exchange(other.mapped_, 0);
  }
  return *this;
}

Memory::~Memory() { release(); }

void Memory::release() noexcept {
  if (mapped_ > 0) {
    KeptMappings::instance().give(data_, mapped_);
  } else if (data_ != nullptr) {
    ::operator delete (data_, std::align_val_t{64});
  }
}

void releaseKeptMemory(std::chrono::milliseconds idle) noexcept { KeptMappings::instance().dropUnused(idle); }

std::size_t keptMemory() noexcept { return KeptMappings::instance().bytes(); }

std::size_t keptMemoryBound() noexcept { return std::min(machineMemory() / 16, std::size_t{512} << 20); }

std::size_t machineMemory() noexcept { return os::physicalMemory(); }

}  // namespace kestrel::engine
