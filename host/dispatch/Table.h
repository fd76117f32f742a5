#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "Convert.h"
#include "Description.h"
#include "Errors.h"
#include "Reference.h"
#include "Rows.h"

/// Builds the description of a class from its rows, at compile time.
///
///     constexpr ClassDescription kClass = MakeClass<View, kMembers, kEvents>({.name = "View", ...});
namespace kestrel::dispatch {

// -- Parameters
// ----------------------------------------------------------------------------------------------

constexpr bool Fits(const DefaultValue& value, const Type& type) {
  switch (value.kind) {
    case DefaultValue::Kind::kNone:
      return true;
    case DefaultValue::Kind::kNothing:
      return type.kind == Kind::kObject;
    case DefaultValue::Kind::kBoolean:
      return type.kind == Kind::kBoolean;
    case DefaultValue::Kind::kInt32:
      return type.kind >= Kind::kByte && type.kind <= Kind::kEnumeration && type.kind != Kind::kString;
    case DefaultValue::Kind::kDouble:
      return type.kind == Kind::kFloat || type.kind == Kind::kDouble;
    case DefaultValue::Kind::kString:
      return type.kind == Kind::kString;
  }
  return false;
}

/// What stops the compilation of a wrong row: a call of it is not a constant expression.
inline void WrongRow(const char* /*why*/) { std::terminate(); }

template <typename Declared>
constexpr Type TypeWithColor(bool isColor) {
  Type type = TypeOf<Declared>();
  if (isColor) {
    if (type.kind != Kind::kInt32) WrongRow("a color is an OLE_COLOR");
    type.kind = Kind::kColor;
  }
  return type;
}

template <typename Declared>
constexpr Parameter MakeParameter(const ArgumentRow& row) {
  const Type type = TypeWithColor<Declared>(row.isColor);
  if (!Fits(row.defaultValue, type)) WrongRow("the default has another type than the argument");
  return {row.name, type, kIsInOut<Declared>, kIsNullable<Declared>, row.defaultValue};
}

template <typename Arguments, std::size_t kCount>
constexpr auto MakeParameters(const std::array<ArgumentRow, kCount>& rows) {
  static_assert(std::tuple_size_v<Arguments> == kCount, "a name for each argument");
  static_assert(kCount <= kMostParameters);
  auto made = [&]<std::size_t... kAt>(std::index_sequence<kAt...>) {
    return std::array<Parameter, kCount>{MakeParameter<std::tuple_element_t<kAt, Arguments>>(rows[kAt])...};
  }
  (std::make_index_sequence<kCount>());
  for (std::size_t i = 1; i < kCount; ++i) {
    if (made[i - 1].IsOptional() && !made[i].IsOptional()) WrongRow("required after optional");
  }
  return made;
}

// -- Members
// -------------------------------------------------------------------------------------------------

/// Reads the arguments, and raises an error as one of the argument at fault.
template <typename... Declared, std::size_t... kAt>
void ReadArguments(const Reference& self, std::string_view member, std::span<const Parameter> parameters,
                   Variant* const* values, std::tuple<Argument<Declared>...>& arguments,
                   std::index_sequence<kAt...>) {
  [[maybe_unused]] std::size_t position = 0;
  try {
    ((position = kAt, values[kAt] ? std::get<kAt>(arguments).Read(*values[kAt])
                                  : std::get<kAt>(arguments).Take(parameters[kAt].defaultValue)),
     ...);
  } catch (const RuntimeError& error) {
    RaiseBadArgument(self.Class(), member, parameters[position], position, error);
  }
}

template <typename Class, typename R, typename... Declared, typename Function>
void Run(const Reference& self, void* object, Function function, std::string_view member,
         std::span<const Parameter> parameters, Variant* const* values, Variant& result,
         const std::tuple<Declared...>* /*types*/) {
  constexpr auto kAll = std::index_sequence_for<Declared...>();
  std::tuple<Argument<Declared>...> arguments;
  ReadArguments(self, member, parameters, values, arguments, kAll);
  const auto call = [&]<std::size_t... kAt>(std::index_sequence<kAt...>)->R {
    return std::invoke(function, *static_cast<Class*>(object), std::get<kAt>(arguments).Pass()...);
  };
  if constexpr (std::is_void_v<R>) {
    call(kAll);
  } else {
    result = ResultToVariant<Class, R>(self, call(kAll));
  }
  [&]<std::size_t... kAt>(std::index_sequence<kAt...>) {
    (std::get<kAt>(arguments).WriteBack(values[kAt]), ...);
  }
  (kAll);
}

template <typename Class, const auto& kRows, std::size_t kIndex>
struct MemberAt {
  static constexpr const auto& kRow = std::get<kIndex>(kRows);
  using Row = std::remove_cvref_t<decltype(kRow)>;
  using Call = SignatureOf<decltype(Row::call)>;
  using Put = SignatureOf<decltype(Row::put)>;
  static constexpr bool kReads = !std::is_null_pointer_v<decltype(Row::call)>;
  static constexpr bool kWrites = !std::is_null_pointer_v<decltype(Row::put)>;

  static constexpr auto kParameters = MakeParameters<typename Call::Arguments>(kRow.arguments);

  static constexpr Parameter Value() {
    if constexpr (kWrites) {
      ArgumentRow row("Value");
      row.isColor = kRow.isColor;
      return MakeParameter<std::tuple_element_t<0, typename Put::Arguments>>(row);
    } else {
      return {};
    }
  }
  static constexpr Parameter kValue = Value();

  static void CallIt(const Reference& self, void* object, Variant* const* values, Variant& result) {
    Run<Class, typename Call::Result>(self, object, kRow.call, kRow.name, kParameters, values, result,
                                      static_cast<const typename Call::Arguments*>(nullptr));
  }
  static void PutIt(const Reference& self, void* object, Variant* const* values, Variant& result) {
    Run<Class, typename Put::Result>(self, object, kRow.put, kRow.name, {&kValue, 1}, values, result,
                                     static_cast<const typename Put::Arguments*>(nullptr));
  }

  static constexpr Member Make() {
    Member made{.name = kRow.name,
                .number = kRow.number,
                .help = kRow.help,
                .isMethod = kRow.isMethod,
                .parameters = kParameters,
                .result = {},
                .isResultNullable = false,
                .value = kValue};
    if constexpr (kReads) {
      made.result = TypeWithColor<typename Call::Result>(kRow.isColor);
      made.isResultNullable = kIsNullable<typename Call::Result>;
      made.call = &CallIt;
    }
    if constexpr (kWrites) made.put = &PutIt;
    return made;
  }
};

// -- Events
// --------------------------------------------------------------------------------------------------

/// The arguments of one raise.
template <typename Class, typename Declared>
class EventArgument {
  using Value = std::remove_cvref_t<Declared>;

 public:
  EventArgument(const Reference& source, Declared argument) : argument_(argument) {
    if constexpr (SimpleValue<Value>) {
      variant_ = ToVariant(static_cast<const Value&>(argument));
    } else if constexpr (!std::is_reference_v<Declared>) {
      variant_ = ResultToVariant<Class, Declared>(source, std::forward<Declared>(argument));
    } else if constexpr (kLife<Value> == Life::kCopied) {
      copy_ = Refer(std::make_shared<Value>(argument));
      variant_ = ToVariant(copy_);
    } else if constexpr (kLife<Value> == Life::kDuringEvent) {
      token_ = std::make_shared<char>();
      auto& object = const_cast<Value&>(argument);
      variant_ = ToVariant(Reference::Watch(Describe<Value>(), &object, token_));
    } else {
      variant_ = ToVariant(Refer<Class>(source, argument));
    }
  }

  const Variant& AsVariant() const { return variant_; }

  void WriteBack([[maybe_unused]] const Variant& value) {
    if constexpr (kIsInOut<Declared>) {
      argument_ = FromVariant<Value>(value);
    } else if constexpr (kIsCopiedBack) {
      argument_ = *static_cast<const Value*>(copy_->Owned().get());
    }
  }

 private:
  static constexpr bool kIsCopiedBack = std::is_lvalue_reference_v<Declared> &&
                                        !std::is_const_v<std::remove_reference_t<Declared>> &&
                                        kLife<Value> == Life::kCopied && !SimpleValue<Value>;

  Declared argument_;
  Variant variant_;
  Reference::Pointer copy_;
  std::shared_ptr<char> token_;
};

template <typename Class, typename... Declared, std::size_t... kAt>
void HandOver(const Reference& source, std::string_view event, std::span<const Parameter> parameters,
              const Handler& handler,
              [[maybe_unused]] std::tuple<EventArgument<Class, Declared>...> arguments,
              std::index_sequence<kAt...>) {
  std::array<Variant, sizeof...(Declared)> values{std::get<kAt>(arguments).AsVariant()...};
  handler(values);
  [[maybe_unused]] std::size_t position = 0;
  try {
    ((position = kAt, std::get<kAt>(arguments).WriteBack(values[kAt])), ...);
  } catch (const RuntimeError& error) {
    RaiseBadArgument(source.Class(), event, parameters[position], position, error);
  }
}

template <typename Class, const auto& kRows, std::size_t kIndex>
struct EventAt {
  static constexpr const auto& kRow = std::get<kIndex>(kRows);

  template <typename C, typename... Declared>
  static std::tuple<Declared...> ArgumentsOf(Event<Declared...> C::*);
  template <typename C, typename... Declared>
  static std::tuple<Declared...> ArgumentsOf(Event<Declared...>& (*)(C&));
  using Arguments = decltype(ArgumentsOf(std::remove_cvref_t<decltype(kRow)>{kRow}.event));

  static constexpr auto kParameters = MakeParameters<Arguments>(kRow.arguments);

  template <typename... Declared>
  static Connection ConnectIt(const Reference& source, Event<Declared...>& event, Handler handler) {
    return event.Connect([weak = source.Weakened(), handler = std::move(handler)](Declared... arguments) {
      HandOver<Class, Declared...>(*weak, kRow.name, kParameters, handler,
                                   {EventArgument<Class, Declared>(*weak, arguments)...},
                                   std::index_sequence_for<Declared...>());
    });
  }

  static Connection Connect(const Reference& source, void* object, Handler handler) {
    return ConnectIt(source, std::invoke(kRow.event, *static_cast<Class*>(object)), std::move(handler));
  }

  static constexpr EventDescription Make() {
    return {kRow.name, kRow.number, kRow.help, kParameters, &Connect};
  }
};

// -- Classes
// -------------------------------------------------------------------------------------------------

/// The positions of the rows, in the order of `less`. Two that are equal do not compile.
template <typename Row, std::size_t kCount, typename Less>
constexpr std::array<std::uint8_t, kCount> OrderOf(const std::array<Row, kCount>& rows, Less less) {
  static_assert(kCount < 256);
  std::array<std::uint8_t, kCount> order{};
  for (std::size_t i = 0; i < kCount; ++i) order[i] = static_cast<std::uint8_t>(i);
  std::sort(order.begin(), order.end(),
            [&](std::uint8_t left, std::uint8_t right) { return less(rows[left], rows[right]); });
  for (std::size_t i = 1; i < kCount; ++i) {
    if (!less(rows[order[i - 1]], rows[order[i]])) WrongRow("a name or a number is used twice");
  }
  return order;
}

struct ByName {
  constexpr bool operator()(const auto& left, const auto& right) const {
    return CompareNames(left.name, right.name) < 0;
  }
};
struct ByNumber {
  constexpr bool operator()(const auto& left, const auto& right) const { return left.number < right.number; }
};

template <typename Class, template <typename, const auto&, std::size_t> typename At, typename Row,
          const auto& kRows>
struct TableOf {
  static constexpr std::size_t kCount = std::tuple_size_v<std::remove_cvref_t<decltype(kRows)>>;
  static constexpr auto kTable = []<std::size_t... kAt>(std::index_sequence<kAt...>) {
    return std::array<Row, kCount>{At<Class, kRows, kAt>::Make()...};
  }
  (std::make_index_sequence<kCount>());
  static constexpr auto kByName = OrderOf(kTable, ByName());
  static constexpr auto kByNumber = OrderOf(kTable, ByNumber());
};

inline constexpr std::tuple kNoEvents{};

/// What of a class is not in its rows.
struct ClassRow {
  std::string_view name;
  std::string_view help;
  std::shared_ptr<const Reference> (*create)() = nullptr;
  void (*checkHandedOut)(void* object) = nullptr;
  bool isControl = false;
};

template <typename Class, const auto& kMemberRows, const auto& kEventRows = kNoEvents>
constexpr ClassDescription MakeClass(const ClassRow& row) {
  using Members = TableOf<Class, MemberAt, Member, kMemberRows>;
  using Events = TableOf<Class, EventAt, EventDescription, kEventRows>;
  return {row.name,           row.help,           Members::kTable, Members::kByName,
          Members::kByNumber, Events::kTable,     Events::kByName, Events::kByNumber,
          row.create,         row.checkHandedOut, row.isControl};
}

}  // namespace kestrel::dispatch
