#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace kestrel {

/// The return addresses on the stack at one moment, innermost first.
///
/// Recording walks the stack and does nothing else: no names, no lines, no allocation. The addresses are
/// resolved later, when the error is reported, if ever.
class CallStack {
 public:
  static constexpr std::size_t kMaxDepth = 48;

  CallStack() = default;

  /// Records the callers of the calling function. `skip` further frames are left out.
  static CallStack Record(std::size_t skip = 0) noexcept;

  std::span<const std::uintptr_t> Addresses() const noexcept { return {addresses_.data(), depth_}; }

 private:
  std::array<std::uintptr_t, kMaxDepth> addresses_{};
  std::size_t depth_ = 0;
};

}  // namespace kestrel
