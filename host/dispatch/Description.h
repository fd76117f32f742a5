#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "base/Event.h"
#include "base/Variant.h"

/// The public interface as data: its classes with their members and events, and its enumerations. Everything
/// that presents the interface outside of C++ is derived from it.
namespace kestrel::dispatch {

class Reference;
struct ClassDescription;

/// What an argument or a result is.
enum class Kind : std::uint8_t {
  kVoid,
  kBoolean,
  kByte,
  kInt16,
  kInt32,
  kFloat,
  kDouble,
  kString,
  kColor,        ///< an OLE_COLOR
  kWindow,       ///< a WindowHandle
  kEnumeration,  ///< a number, usually one of `Type::enumeration`
  kObject,       ///< an object of `Type::objectClass`, or Nothing where that is allowed
  kVariant,
};

struct EnumerationValue {
  std::string_view name;
  std::int32_t value;
};

struct EnumerationDescription {
  std::string_view name;
  std::string_view help;
  std::span<const EnumerationValue> values;
};

struct Type {
  Kind kind = Kind::kVoid;
  // Functions, since classes refer to each other.
  const EnumerationDescription& (*enumeration)() = nullptr;
  const ClassDescription& (*objectClass)() = nullptr;
};

/// The value of an argument that the caller omits.
struct DefaultValue {
  enum class Kind : std::uint8_t { kNone, kNothing, kBoolean, kInt32, kDouble, kString };

  constexpr DefaultValue() = default;
  constexpr DefaultValue(std::nullptr_t) : kind(Kind::kNothing) {}
  constexpr DefaultValue(bool value) : kind(Kind::kBoolean), number(value ? 1 : 0) {}
  constexpr DefaultValue(std::int32_t value) : kind(Kind::kInt32), number(value) {}
  constexpr DefaultValue(double value) : kind(Kind::kDouble), number(value) {}
  constexpr DefaultValue(const char* value) : kind(Kind::kString), text(value) {}

  Kind kind = Kind::kNone;
  double number = 0;  ///< of a boolean 1 or 0; a double holds each 32-bit integer
  std::string_view text;
};

struct Parameter {
  std::string_view name;
  Type type;
  bool inOut = false;     ///< written back to the caller
  bool nullable = false;  ///< of an object: may be Nothing
  DefaultValue defaultValue;

  constexpr bool IsOptional() const { return defaultValue.kind != DefaultValue::Kind::kNone; }
};

/// No member takes more arguments.
inline constexpr std::size_t kMostParameters = 12;

/// Runs a member on its object. There is one pointer per parameter, null for an omitted argument; in-out
/// arguments are written back after the call.
using Thunk = void (*)(const Reference& self, void* object, Variant* const* arguments, Variant& result);

/// A method, or a property with its accessors.
struct Member {
  std::string_view name;
  /// Identifies the member in its class and never changes; 0 is the default member.
  std::int32_t number = 0;
  std::string_view help;
  bool isMethod = false;
  /// Of the method or of the read of the property. A write takes the value as one more argument.
  std::span<const Parameter> parameters;
  Type result;                    ///< of the method or of the read
  bool isResultNullable = false;  ///< it is an object by pointer, which may be Nothing
  Parameter value;                ///< of the write

  Thunk call = nullptr;  ///< the method, or the read of the property; null if it is write-only
  Thunk put = nullptr;   ///< the write of the property; null for methods and what is read-only
};

/// A late-bound handler of an event. In-out arguments are written back to the raiser after it has returned.
/// Its errors propagate to the raiser.
using Handler = std::function<void(std::span<Variant> arguments)>;

struct EventDescription {
  std::string_view name;
  std::int32_t number = 0;
  std::string_view help;
  std::span<const Parameter> parameters;

  Connection (*connect)(const Reference& source, void* object, Handler handler) = nullptr;
};

/// Positions in a table, ordered for a binary search.
using Order = std::span<const std::uint8_t>;

struct ClassDescription {
  std::string_view name;
  std::string_view help;
  std::span<const Member> members;  ///< in the order of the interface
  Order membersByName;
  Order membersByNumber;
  std::span<const EventDescription> events;
  Order eventsByName;
  Order eventsByNumber;
  /// Makes an object; null for a class whose objects others hand out.
  std::shared_ptr<const Reference> (*create)() = nullptr;
  /// Raises an error if the objects that `object` handed out are gone while it exists itself. May be null.
  void (*checkHandedOut)(void* object) = nullptr;
  /// Whether a host embeds the objects in its windows.
  bool isControl = false;

  /// The member of that name, ignoring the case of ASCII letters, or of that number; null if there is none.
  const Member* FindMember(std::string_view memberName) const;
  const Member* FindMember(std::int32_t number) const;
  const EventDescription* FindEvent(std::string_view eventName) const;
  const EventDescription* FindEvent(std::int32_t number) const;

  /// Whether the elements can be visited: by "Count", and the default member for each index from 1.
  bool IsCollection() const;
};

/// The position of a parameter, counted from 0; -1 if there is none of that name. Ignores the case of ASCII
/// letters.
std::ptrdiff_t FindParameter(std::span<const Parameter> parameters, std::string_view name);

/// The order of two names, ignoring the case of ASCII letters: below 0, 0 or above.
constexpr int CompareNames(std::string_view left, std::string_view right) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  for (std::size_t i = 0; i < left.size() && i < right.size(); ++i) {
    const int difference = lower(left[i]) - lower(right[i]);
    if (difference != 0) return difference;
  }
  if (left.size() == right.size()) return 0;
  return left.size() < right.size() ? -1 : 1;
}

}  // namespace kestrel::dispatch
