#include "Variant.h"

#include <type_traits>

#include "Numbers.h"
#include "RuntimeError.h"

namespace kestrel {
namespace {

template <typename... Handlers>
struct Overloaded : Handlers... {
  using Handlers::operator()...;
};
template <typename... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

constexpr std::int32_t Code(Variant::Type type) { return static_cast<std::int32_t>(type); }

[[noreturn]] void RaiseMismatch() {
  throw RuntimeError(err::kTypeMismatch, "The value has a type that does not fit.");
}
[[noreturn]] void RaiseNull() { throw RuntimeError(err::kInvalidUseOfNull, "The value is Null."); }

template <typename T>
constexpr bool kIsNumber = std::is_arithmetic_v<T> && !std::is_same_v<T, bool>;

template <typename T, typename Value>
const T& Get(const Value& value) {
  if (const T* held = std::get_if<T>(&value)) return *held;
  RaiseMismatch();
}

}  // namespace

Variant::Variant(VariantArray value) : value_(std::make_shared<const VariantArray>(std::move(value))) {}

std::int32_t Variant::TypeCode() const {
  return std::visit(Overloaded{
                        [](std::monostate) { return Code(Type::kEmpty); },
                        [](Null) { return Code(Type::kNull); },
                        [](bool) { return Code(Type::kBoolean); },
                        [](std::uint8_t) { return Code(Type::kByte); },
                        [](std::int16_t) { return Code(Type::kInt16); },
                        [](std::int32_t) { return Code(Type::kInt32); },
                        [](float) { return Code(Type::kFloat); },
                        [](double) { return Code(Type::kDouble); },
                        [](const std::string&) { return Code(Type::kString); },
                        [](Error) { return Code(Type::kError); },
                        [](const DataObject&) { return Code(Type::kDataObject); },
                        [](const Record&) { return Code(Type::kRecord); },
                        [](const ObjectReference&) { return Code(Type::kObject); },
                        [](const std::shared_ptr<const VariantArray>& array) {
                          return Code(Type::kArray) + Code(array->ElementType());
                        },
                    },
                    value_);
}

std::string Variant::ToString() const {
  return std::visit(
      []<typename T>(const T& value) -> std::string {
        if constexpr (std::is_same_v<T, std::monostate>) {
          return {};
        } else if constexpr (std::is_same_v<T, std::string>) {
          return value;
        } else if constexpr (std::is_same_v<T, bool>) {
          return value ? "True" : "False";
        } else if constexpr (std::is_floating_point_v<T>) {
          return ToText(value);
        } else if constexpr (kIsNumber<T>) {
          return ToText(std::int32_t{value});
        } else if constexpr (std::is_same_v<T, Null>) {
          RaiseNull();
        } else {
          RaiseMismatch();
        }
      },
      value_);
}

double Variant::ToDouble() const {
  return std::visit(
      []<typename T>(const T& value) -> double {
        if constexpr (std::is_same_v<T, std::monostate>) {
          return 0;
        } else if constexpr (std::is_same_v<T, std::string>) {
          return ParseNumber(value);
        } else if constexpr (std::is_same_v<T, bool>) {
          return value ? -1 : 0;
        } else if constexpr (kIsNumber<T>) {
          return static_cast<double>(value);
        } else if constexpr (std::is_same_v<T, Null>) {
          RaiseNull();
        } else {
          RaiseMismatch();
        }
      },
      value_);
}

std::int32_t Variant::ToInt32() const { return kestrel::ToInt32(ToDouble()); }

bool Variant::ToBoolean() const {
  if (const auto* text = std::get_if<std::string>(&value_)) {
    if (EqualIgnoringCase(*text, "True")) return true;
    if (EqualIgnoringCase(*text, "False")) return false;
  }
  return ToDouble() != 0;
}

const Variant::ObjectReference& Variant::AsObject() const { return Get<ObjectReference>(value_); }
const Variant::DataObject& Variant::AsDataObject() const { return Get<DataObject>(value_); }
const Variant::Record& Variant::AsRecord() const { return Get<Record>(value_); }
const VariantArray& Variant::AsArray() const { return *Get<std::shared_ptr<const VariantArray>>(value_); }

VariantArray::VariantArray(Variant::Type element, std::vector<Bounds> bounds, std::vector<Variant> elements)
    : element_(element), bounds_(std::move(bounds)), elements_(std::move(elements)) {
  std::int64_t count = 1;
  for (const Bounds& dimension : bounds_) count *= std::int64_t{dimension.upper} - dimension.lower + 1;
  if (bounds_.empty() || count != static_cast<std::int64_t>(elements_.size())) {
    throw RuntimeError(err::kInvalidCall, "The number of elements does not fit the bounds of the array.");
  }
}

const VariantArray::Bounds& VariantArray::BoundsOf(std::int32_t dimension) const {
  if (dimension < 1 || dimension > Dimensions()) {
    throw RuntimeError(err::kSubscript, "The array has no such dimension.");
  }
  return bounds_[static_cast<std::size_t>(dimension - 1)];
}

const Variant& VariantArray::At(const std::vector<std::int32_t>& indices) const {
  if (indices.size() != bounds_.size())
    throw RuntimeError(err::kSubscript, "The array has other dimensions.");
  std::int64_t position = 0;
  for (std::size_t i = 0; i < indices.size(); ++i) {
    const auto [lower, upper] = bounds_[i];
    if (indices[i] < lower || indices[i] > upper) {
      throw RuntimeError(err::kSubscript, "The index is outside the bounds of the array.");
    }
    position = position * (std::int64_t{upper} - lower + 1) + (indices[i] - lower);
  }
  return elements_[static_cast<std::size_t>(position)];
}

}  // namespace kestrel
