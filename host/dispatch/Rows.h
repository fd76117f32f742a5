#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "Convert.h"
#include "Description.h"

/// How a table of members is written: one row per method or property, whose types are those of the member
/// function. A row that does not fit its function does not compile.
///
///     constexpr std::tuple kMembers{
///         Property("Zoom", 1, &View::Zoom, &View::Zoom, "The scale of the view."),
///         ReadOnly("Width", 2, &View::Width, "..."),
///         Method("Rotate", 3, &View::Rotate, {"Angle", ColorArgument("BackColor", -1)}, "..."),
///     };
///
/// A function that is no member takes the object as its first argument.
namespace kestrel::dispatch {

/// An argument in a row: its name, and its default if it is optional.
struct ArgumentRow {
  constexpr ArgumentRow(const char* argumentName) : name(argumentName) {}
  constexpr ArgumentRow(const char* argumentName, DefaultValue value)
      : name(argumentName), defaultValue(value) {}

  std::string_view name;
  DefaultValue defaultValue;
  bool isColor = false;
};

/// An argument that is an OLE_COLOR.
constexpr ArgumentRow ColorArgument(const char* name, DefaultValue value = {}) {
  ArgumentRow row(name, value);
  row.isColor = true;
  return row;
}

// -- Signatures
// ----------------------------------------------------------------------------------------------

template <typename R, typename... A>
struct Signature {
  using Result = R;
  using Arguments = std::tuple<A...>;
  static constexpr std::size_t kArity = sizeof...(A);
};

template <typename Function>
struct SignatureOf;
template <typename R, typename C, typename... A>
struct SignatureOf<R (C::*)(A...)> : Signature<R, A...> {};
template <typename R, typename C, typename... A>
struct SignatureOf<R (C::*)(A...) const> : Signature<R, A...> {};
template <typename R, typename C, typename... A>
struct SignatureOf<R (*)(C&, A...)> : Signature<R, A...> {};
/// No accessor.
template <>
struct SignatureOf<std::nullptr_t> : Signature<void> {};

// -- Rows
// ----------------------------------------------------------------------------------------------------

template <typename CallFunction, typename PutFunction, std::size_t kArguments>
struct MemberRow {
  std::string_view name;
  std::int32_t number;
  CallFunction call;
  PutFunction put;
  std::array<ArgumentRow, kArguments> arguments;
  std::string_view help;
  bool isMethod = false;
  bool isColor = false;
};

template <std::size_t kCount, std::size_t... kAt>
constexpr std::array<ArgumentRow, kCount> ToArray(const ArgumentRow (&rows)[kCount],
                                                  std::index_sequence<kAt...>) {
  return {rows[kAt]...};
}
template <std::size_t kCount>
constexpr std::array<ArgumentRow, kCount> ToArray(const ArgumentRow (&rows)[kCount]) {
  return ToArray(rows, std::make_index_sequence<kCount>());
}

template <typename Function>
constexpr auto Method(std::string_view name, std::int32_t number, Function function, std::string_view help) {
  return MemberRow<Function, std::nullptr_t, 0>{name, number, function, nullptr, {}, help, true};
}
template <typename Function, std::size_t kCount>
constexpr auto Method(std::string_view name, std::int32_t number, Function function,
                      const ArgumentRow (&arguments)[kCount], std::string_view help) {
  return MemberRow<Function, std::nullptr_t, kCount>{name, number, function, nullptr, ToArray(arguments),
                                                     help, true};
}

// Property, ReadOnly and WriteOnly: each accessor is a parameter of its own type, which selects the one
// function of an overloaded pair.

template <typename Get, typename Put>
constexpr auto Accessors(std::string_view name, std::int32_t number, Get get, Put put,
                         std::string_view help) {
  return MemberRow<Get, Put, 0>{name, number, get, put, {}, help};
}

template <typename R, typename C, typename D, typename V>
constexpr auto Property(std::string_view name, std::int32_t number, R (C::*get)() const, void (D::*put)(V),
                        std::string_view help) {
  return Accessors(name, number, get, put, help);
}
template <typename R, typename C, typename D, typename V>
constexpr auto Property(std::string_view name, std::int32_t number, R (C::*get)(), void (D::*put)(V),
                        std::string_view help) {
  return Accessors(name, number, get, put, help);
}
template <typename R, typename C, typename D, typename V>
constexpr auto Property(std::string_view name, std::int32_t number, R (*get)(C&), void (*put)(D&, V),
                        std::string_view help) {
  return Accessors(name, number, get, put, help);
}

template <typename R, typename C>
constexpr auto ReadOnly(std::string_view name, std::int32_t number, R (C::*get)() const,
                        std::string_view help) {
  return Accessors(name, number, get, nullptr, help);
}
template <typename R, typename C>
constexpr auto ReadOnly(std::string_view name, std::int32_t number, R (C::*get)(), std::string_view help) {
  return Accessors(name, number, get, nullptr, help);
}
template <typename R, typename C>
constexpr auto ReadOnly(std::string_view name, std::int32_t number, R (*get)(C&), std::string_view help) {
  return Accessors(name, number, get, nullptr, help);
}
/// With arguments, such as the element of a collection.
template <typename R, typename C, typename... A, std::size_t kCount>
constexpr auto ReadOnly(std::string_view name, std::int32_t number, R (*get)(C&, A...),
                        const ArgumentRow (&arguments)[kCount], std::string_view help) {
  using Get = R (*)(C&, A...);
  return MemberRow<Get, std::nullptr_t, kCount>{name, number, get, nullptr, ToArray(arguments), help};
}

template <typename C, typename V>
constexpr auto WriteOnly(std::string_view name, std::int32_t number, void (C::*put)(V),
                         std::string_view help) {
  return Accessors(name, number, nullptr, put, help);
}

/// A property whose value is an OLE_COLOR.
template <typename Row>
constexpr Row Color(Row row) {
  row.isColor = true;
  return row;
}

template <typename EventPointer, std::size_t kArguments>
struct EventRow {
  std::string_view name;
  std::int32_t number;
  EventPointer event;
  std::array<ArgumentRow, kArguments> arguments;
  std::string_view help;
};

template <typename C>
constexpr auto EventOf(std::string_view name, std::int32_t number, Event<> C::*event, std::string_view help) {
  return EventRow<Event<> C::*, 0>{name, number, event, {}, help};
}
template <typename C, typename... A, std::size_t kCount>
constexpr auto EventOf(std::string_view name, std::int32_t number, Event<A...> C::*event,
                       const ArgumentRow (&arguments)[kCount], std::string_view help) {
  static_assert(kCount == sizeof...(A), "a name for each argument");
  return EventRow<Event<A...> C::*, kCount>{name, number, event, ToArray(arguments), help};
}

/// An event that a function finds in the object.
template <typename C, typename... A, std::size_t kCount>
constexpr auto EventOf(std::string_view name, std::int32_t number, Event<A...>& (*event)(C&),
                       const ArgumentRow (&arguments)[kCount], std::string_view help) {
  static_assert(kCount == sizeof...(A), "a name for each argument");
  return EventRow<Event<A...>& (*)(C&), kCount>{name, number, event, ToArray(arguments), help};
}

}  // namespace kestrel::dispatch
