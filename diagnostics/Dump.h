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

/// From the variables of a procedure or class to the text of a report.
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

/// Stands for an object of which nothing but the type is known.
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
    // A pointer to a type without a face of its own, which is known to be there or not.
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

/// The variable as a value of a report. Classes are objects, and shown by their type; none for records, which
/// are the aggregates, as they can't be shown.
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

/// `<Name>` and the value of one variable as tagged text, or the fixed text where it can't be shown.
std::string DumpOrApology(std::string_view name, const std::optional<Variant>& value,
                          std::string_view apology);

/// Takes the first of the names off a list as the preprocessor writes it ("a, b, c").
std::string_view TakeName(std::string_view& names);

inline constexpr std::string_view kNothingToDump = "{None}";

template <typename T>
std::string DumpParameter(std::string_view name, const T& value) {
  // Enumerations of our own are told apart from numbers here, but not among locals and fields.
  constexpr std::string_view kApology = "{Can't dump UDT parameters}";
  if constexpr (std::is_enum_v<T>) {
    return DumpOrApology(name, std::nullopt, kApology);
  } else {
    return DumpOrApology(name, AsVariant(value), kApology);
  }
}

template <typename T>
std::string DumpVariable(std::string_view name, const T& value) {
  return DumpOrApology(name, AsVariant(value), "{Cannot dump external UDTs}");
}

/// A field that can't be read is left out, and the report goes on with the next one.
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
