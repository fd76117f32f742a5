#pragma once

#include <concepts>
#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "base/Object.h"
#include "base/Variant.h"

/// Renders the variables of a procedure or class as the text of a report.
namespace kestrel::qdk {

/// The plain name of a type, without namespaces.
template <typename T>
std::string TypeNameOf() {
  // The compiler's own text of this function: "... [with T = kestrel::Form; ...".
  std::string_view text = __PRETTY_FUNCTION__;
  text.remove_prefix(text.find("T = ") + 4);
  text = text.substr(0, text.find_first_of(";]<"));
  return std::string(text.substr(text.find_last_of(": ") + 1));
}

/// Placeholder for an object of which only the type is known.
class NamedObject : public Object {
 public:
  explicit NamedObject(std::string typeName) : typeName_(std::move(typeName)) {}
  std::string TypeName() const override { return typeName_; }

 private:
  std::string typeName_;
};

template <typename T>
concept PointerLike = requires(const T& pointer) {
  *pointer;
  { pointer == nullptr } -> std::convertible_to<bool>;
}
&&!std::ranges::range<T>;

template <typename T>
concept DumpableObject = std::is_class_v<T> && std::is_polymorphic_v<T>;

template <typename T>
Variant NamedAfterType() {
  return Variant(Variant::ObjectReference(std::make_shared<NamedObject>(TypeNameOf<T>())));
}

template <typename T>
std::optional<Variant> AsVariant(const T& value);

template <typename T>
std::optional<Variant> ObjectAsVariant(const T* object) {
  if constexpr (std::is_base_of_v<Object, T>) {
    return Variant::Borrow(object);
  } else if constexpr (DumpableObject<T>) {
    return object == nullptr ? Variant(Variant::ObjectReference()) : NamedAfterType<T>();
  } else {
    // A pointer to a plain type: null is Nothing, all else the pointee's value.
    if (object == nullptr) return Variant(Variant::ObjectReference());
    return AsVariant(*object);
  }
}

template <std::ranges::range T>
std::optional<Variant> RangeAsVariant(const T& range) {
  using Element = std::ranges::range_value_t<T>;
  const std::optional<Variant> sample = [] {
    if constexpr (std::is_default_constructible_v<Element>) {
      return AsVariant(Element{});
    } else {
      return std::optional<Variant>();
    }
  }();
  if (!sample) return std::nullopt;
  const auto type = static_cast<Variant::Type>(sample->TypeCode());
  std::vector<Variant> elements;
  for (const auto& element : range) elements.push_back(*AsVariant(static_cast<const Element&>(element)));
  if (elements.empty()) return Variant(VariantArray(type));
  const auto upper = static_cast<std::int32_t>(elements.size()) - 1;
  return Variant(VariantArray(type, {{0, upper}}, std::move(elements)));
}

/// The variable as a value of a report. Classes are objects, shown by their type. None for aggregates
/// (records), which cannot be shown.
template <typename T>
std::optional<Variant> AsVariant(const T& value) {
  if constexpr (std::is_same_v<T, Variant>) {
    return value;
  } else if constexpr (std::is_same_v<T, char>) {
    return Variant(std::string(1, value));
  } else if constexpr (std::is_enum_v<T>) {
    return AsVariant(static_cast<std::underlying_type_t<T>>(value));
  } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
    if constexpr (std::is_same_v<T, std::uint8_t> || std::is_same_v<T, std::int16_t>) {
      return Variant(value);
    } else if (std::in_range<std::int32_t>(value)) {
      return Variant(static_cast<std::int32_t>(value));
    } else {
      return Variant(static_cast<double>(value));
    }
  } else if constexpr (std::is_arithmetic_v<T>) {
    return Variant(value);
  } else if constexpr (std::is_convertible_v<const T&, std::string_view>) {
    return Variant(std::string(std::string_view(value)));
  } else if constexpr (DumpableObject<T>) {
    return ObjectAsVariant(std::addressof(value));
  } else if constexpr (requires { value.lock(); }) {
    return AsVariant(value.lock());
  } else if constexpr (requires {
                         value.has_value();
                         *value;
                       }) {
    return value.has_value() ? AsVariant(*value) : Variant();
  } else if constexpr (std::ranges::range<T>) {
    return RangeAsVariant(value);
  } else if constexpr (PointerLike<T>) {
    if constexpr (std::is_object_v<std::remove_reference_t<decltype(*value)>>) {
      return ObjectAsVariant(value == nullptr ? nullptr : std::addressof(*value));
    } else {
      return std::nullopt;
    }
  } else if constexpr (requires { value.get(); }) {
    return ObjectAsVariant(std::addressof(value.get()));
  } else if constexpr (std::is_class_v<T> && !std::is_aggregate_v<T>) {
    return NamedAfterType<T>();
  } else {
    return std::nullopt;
  }
}

/// The value of one variable between tags of its name, or the fixed text `fallback` if it cannot be shown.
std::string DumpOrFallback(std::string_view name, const std::optional<Variant>& value,
                           std::string_view fallback);

/// Removes the first name from a list as the preprocessor writes it ("a, b, c") and returns it.
std::string_view TakeName(std::string_view& names);

inline constexpr std::string_view kNothingToDump = "{None}";

template <typename T>
std::string DumpParameter(std::string_view name, const T& value) {
  // Parameters of our own enumeration types are not shown as numbers; locals and fields are.
  constexpr std::string_view kNotShown = "{Can't dump UDT parameters}";
  if constexpr (std::is_enum_v<T>) {
    return DumpOrFallback(name, std::nullopt, kNotShown);
  } else {
    return DumpOrFallback(name, AsVariant(value), kNotShown);
  }
}

template <typename T>
std::string DumpVariable(std::string_view name, const T& value) {
  return DumpOrFallback(name, AsVariant(value), "{Cannot dump external UDTs}");
}

/// A field that cannot be read is omitted, and the report continues with the next one.
template <typename T>
std::string DumpField(std::string_view name, const T& value) {
  try {
    return DumpVariable(name, value);
  } catch (...) {
    return {};
  }
}

template <typename... Values>
std::string DumpParameters([[maybe_unused]] std::string_view names, const Values&... values) {
  if constexpr (sizeof...(Values) == 0) return std::string(kNothingToDump);
  std::string text;
  (text.append(DumpParameter(TakeName(names), values)), ...);
  return text;
}

template <typename... Values>
std::string DumpLocals([[maybe_unused]] std::string_view names, const Values&... values) {
  if constexpr (sizeof...(Values) == 0) return std::string(kNothingToDump);
  std::string text;
  (text.append(DumpVariable(TakeName(names), values)), ...);
  return text;
}

template <typename... Values>
std::string DumpFields([[maybe_unused]] std::string_view names, const Values&... values) {
  if constexpr (sizeof...(Values) == 0) return std::string(kNothingToDump);
  std::string text;
  (text.append(DumpField(TakeName(names), values)), ...);
  return text;
}

}  // namespace kestrel::qdk
