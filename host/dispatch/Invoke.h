#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "Description.h"
#include "Reference.h"
#include "base/Event.h"
#include "base/Variant.h"

/// Late binding: calls by name or number with Variants, by the rules of script hosts.
namespace kestrel::dispatch {

/// How a host uses a member.
enum class Use : std::uint8_t {
  kGet,  ///< calls a method or reads a property; script hosts do not distinguish the two
  kPut,  ///< assigns to a property; the value is the last positional argument
};

struct NamedArgument {
  std::string_view name;
  Variant* value;  ///< written back if the argument is in-out
};

/// As a positional argument: omitted, as if it was not given.
Variant Omitted();
bool IsOmitted(const Variant& value);

/// Calls a method, or reads or writes a property, by number or by name.
///
/// A property without arguments whose value is an object passes arguments on to the object's default member:
/// `Commands("btnFileOpen")`. Conversions: a text that is a number as a whole is that number; numbers are
/// rounded to nearest, ties to even; a boolean is -1 or 0; Empty is 0, "" or False; an object where a value
/// is asked is its default property.
///
/// Raises, before the member runs: 438 no such member, 450 too many or too few arguments, 448 no argument of
/// that name, 449 an argument that is not optional, 383 or 394 a property that is read-only or write-only, 91
/// an object that is gone, `err::kWrongThread`; and as ArgumentError with the position: 13 a value of
/// another type, 6 a number out of range, 94 Null, 91 Nothing, 424 no object. The member's own errors
/// propagate.
Variant Invoke(const Reference& target, std::int32_t number, Use use, std::span<Variant> positional = {},
               std::span<const NamedArgument> named = {});
Variant Invoke(const Reference& target, std::string_view name, Use use, std::span<Variant> positional = {},
               std::span<const NamedArgument> named = {});
/// For a member that was looked up before; it must be one of the object's class.
Variant Invoke(const Reference& target, const Member& member, Use use, std::span<Variant> positional = {},
               std::span<const NamedArgument> named = {});

// Short forms.
Variant Get(const Reference& target, std::string_view name);
void Put(const Reference& target, std::string_view name, Variant value);
template <typename... Arguments>
Variant Call(const Reference& target, std::string_view name, Arguments&&... arguments) {
  if constexpr (sizeof...(arguments) == 0) {
    return Invoke(target, name, Use::kGet);
  } else {
    Variant values[] = {Variant(std::forward<Arguments>(arguments))...};
    return Invoke(target, name, Use::kGet, values);
  }
}

/// Connects a handler to an event, by number or by name. The connection keeps neither reference nor object
/// alive. Raises 459 if there is no such event.
///
/// The handler receives the arguments as Variants. What it leaves in those that are in-out is converted to
/// the argument's type and goes back to the raiser; a value that cannot be converted raises ArgumentError
/// there.
Connection Connect(const Reference& source, std::int32_t number, Handler handler);
Connection Connect(const Reference& source, std::string_view name, Handler handler);

}  // namespace kestrel::dispatch
