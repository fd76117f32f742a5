#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "base/Variant.h"
#include "host/dispatch/Invoke.h"
#include "kestrel.h"

namespace kestrel::c {

/// The arguments of a host for one call of a member.
class Arguments {
 public:
  /// Converts them. Raises ArgumentError for a value that cannot be converted, 450 for more than any member
  /// takes, KESTREL_INVALID_CALL for a positional argument after a named one.
  Arguments(const dispatch::ClassDescription& owner, const dispatch::Member& member, kestrel_value* values,
            std::int32_t count, const char* const* names);

  std::span<Variant> Positional() { return {values_.data(), positional_}; }
  std::span<const dispatch::NamedArgument> Named() const { return {named_.data(), count_ - positional_}; }

  /// Gives the in-out arguments back to the host.
  void WriteBack();

 private:
  /// The position in the declaration; -1 for a name that there is not.
  std::ptrdiff_t PositionOf(std::size_t at) const;

  static constexpr std::size_t kMost = dispatch::kMostParameters + 1;

  const dispatch::Member& member_;
  kestrel_value* const host_;
  std::size_t count_ = 0;
  std::size_t positional_ = 0;
  std::array<Variant, kMost> values_;
  std::array<dispatch::NamedArgument, kMost> named_{};
};

}  // namespace kestrel::c
