#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Description.h"
#include "base/RuntimeError.h"

namespace kestrel::err {
inline constexpr std::int32_t kReadOnlyProperty = 383;
inline constexpr std::int32_t kWriteOnlyProperty = 394;
inline constexpr std::int32_t kObjectRequired = 424;
inline constexpr std::int32_t kNoSuchMember = 438;
inline constexpr std::int32_t kNoSuchArgument = 448;
inline constexpr std::int32_t kArgumentNotOptional = 449;
inline constexpr std::int32_t kNumberOfArguments = 450;
inline constexpr std::int32_t kNoSuchEvent = 459;
/// A call from another thread than the object's: 0x8001010E, as hosts know it.
inline constexpr std::int32_t kWrongThread = -2147417842;
}  // namespace kestrel::err

namespace kestrel::dispatch {

/// An error that concerns one argument of a call.
class ArgumentError : public RuntimeError {
 public:
  ArgumentError(std::int32_t number, std::string description, std::string source, std::int32_t position)
      : RuntimeError(number, std::move(description), std::move(source)), position_(position) {}

  /// Counted from 1, in the order of the declaration. The value that is assigned to a property comes after
  /// the property's own arguments.
  std::int32_t Position() const noexcept { return position_; }

 private:
  std::int32_t position_;
};

// Errors have the name of the class as their source.

[[noreturn]] void RaiseNoSuchMember(const ClassDescription& owner, std::string_view name);
[[noreturn]] void RaiseNoSuchMember(const ClassDescription& owner, std::int32_t number);
[[noreturn]] void RaiseNoSuchEvent(const ClassDescription& owner, std::string_view name);
[[noreturn]] void RaiseReadOnly(const ClassDescription& owner, const Member& member);
[[noreturn]] void RaiseWriteOnly(const ClassDescription& owner, const Member& member);
[[noreturn]] void RaiseNotAProperty(const ClassDescription& owner, const Member& member);
[[noreturn]] void RaiseNumberOfArguments(const ClassDescription& owner, const Member& member,
                                         std::span<const Parameter> parameters, std::size_t given);
[[noreturn]] void RaiseNoSuchArgument(const ClassDescription& owner, std::string_view member,
                                      std::string_view name);
/// The argument was given twice, by position and by name.
[[noreturn]] void RaiseArgumentTwice(const ClassDescription& owner, std::string_view member,
                                     std::string_view name);
[[noreturn]] void RaiseNotOptional(const ClassDescription& owner, std::string_view member,
                                   const Parameter& parameter, std::size_t position);
/// Raises the error of a failed conversion again, as one of this argument.
[[noreturn]] void RaiseBadArgument(const ClassDescription& owner, std::string_view member,
                                   const Parameter& parameter, std::size_t position,
                                   const RuntimeError& error);
[[noreturn]] void RaiseObjectGone(const ClassDescription& owner);
[[noreturn]] void RaiseWrongThread(const ClassDescription& owner);
[[noreturn]] void RaiseObjectRequired();
[[noreturn]] void RaiseNothing();
/// An object where a value is expected that has no default property.
[[noreturn]] void RaiseNoValue();
/// An object of another class than the expected one.
[[noreturn]] void RaiseWrongClass();

}  // namespace kestrel::dispatch
