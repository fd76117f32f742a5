#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "Classes.h"
#include "Description.h"
#include "Errors.h"
#include "Reference.h"
#include "base/Numbers.h"
#include "base/Variant.h"
#include "imaging/contract/Types.h"

/// Conversions between Variants and the types of arguments and results.
namespace kestrel::dispatch {

/// The value itself, or for an object its default property.
Variant ValueOf(const Variant& value);

bool ToBoolean(const Variant& value);
double ToDouble(const Variant& value);
std::int32_t ToInt32(const Variant& value);
WindowHandle ToWindow(const Variant& value);
std::string ToString(const Variant& value);

/// A number that 32 bits cannot hold becomes a double.
Variant FromWindow(WindowHandle window);

// -- Types
// ---------------------------------------------------------------------------------------------------

template <typename T>
inline constexpr bool kIsSharedPointer = false;
template <typename T>
inline constexpr bool kIsSharedPointer<std::shared_ptr<T>> = true;

/// The class of a parameter or result that is an object: by value, reference, plain or shared pointer.
template <typename T>
struct ClassOf {
  using type = T;
};
template <typename T>
struct ClassOf<T*> {
  using type = std::remove_const_t<T>;
};
template <typename T>
struct ClassOf<std::shared_ptr<T>> {
  using type = std::remove_const_t<T>;
};

template <typename Value>
concept SimpleValue = std::is_arithmetic_v<Value> || std::is_enum_v<Value> ||
    std::same_as<Value, std::string> || std::same_as<Value, Variant>;

template <typename Declared>
constexpr Type TypeOf() {
  using Value = std::remove_cvref_t<Declared>;
  if constexpr (std::is_void_v<Value>) {
    return {};
  } else if constexpr (std::same_as<Value, bool>) {
    return {Kind::kBoolean};
  } else if constexpr (std::same_as<Value, std::uint8_t>) {
    return {Kind::kByte};
  } else if constexpr (std::same_as<Value, std::int16_t>) {
    return {Kind::kInt16};
  } else if constexpr (std::same_as<Value, std::int32_t>) {
    return {Kind::kInt32};
  } else if constexpr (std::same_as<Value, WindowHandle>) {
    return {Kind::kWindow};
  } else if constexpr (std::same_as<Value, float>) {
    return {Kind::kFloat};
  } else if constexpr (std::same_as<Value, double>) {
    return {Kind::kDouble};
  } else if constexpr (std::same_as<Value, std::string>) {
    return {Kind::kString};
  } else if constexpr (std::same_as<Value, Variant>) {
    return {Kind::kVariant};
  } else if constexpr (std::is_enum_v<Value>) {
    return {Kind::kEnumeration, &DescribeEnumeration<Value>};
  } else {
    static_assert(!std::is_arithmetic_v<Value>, "no type of the public interface");
    return {Kind::kObject, nullptr, &Describe<typename ClassOf<Value>::type>};
  }
}

/// Whether the callee may change the caller's value.
template <typename Declared>
inline constexpr bool kIsInOut =
    std::is_lvalue_reference_v<Declared> && !std::is_const_v<std::remove_reference_t<Declared>> &&
    SimpleValue<std::remove_cvref_t<Declared>>;

template <typename Declared>
inline constexpr bool kIsNullable =
    std::is_pointer_v<std::remove_cvref_t<Declared>> || kIsSharedPointer<std::remove_cvref_t<Declared>>;

// -- From a Variant
// ------------------------------------------------------------------------------------------

template <SimpleValue Value>
Value FromVariant(const Variant& value) {
  if constexpr (std::same_as<Value, bool>) {
    return ToBoolean(value);
  } else if constexpr (std::same_as<Value, std::uint8_t>) {
    return ToByte(ToDouble(value));
  } else if constexpr (std::same_as<Value, std::int16_t>) {
    return ToInt16(ToDouble(value));
  } else if constexpr (std::same_as<Value, std::int32_t>) {
    return ToInt32(value);
  } else if constexpr (std::same_as<Value, WindowHandle>) {
    return ToWindow(value);
  } else if constexpr (std::same_as<Value, float>) {
    return ToSingle(ToDouble(value));
  } else if constexpr (std::same_as<Value, double>) {
    return ToDouble(value);
  } else if constexpr (std::same_as<Value, std::string>) {
    return ToString(value);
  } else if constexpr (std::same_as<Value, Variant>) {
    return value;
  } else {
    return static_cast<Value>(ToInt32(value));
  }
}

template <SimpleValue Value>
Variant ToVariant(const Value& value) {
  if constexpr (std::same_as<Value, WindowHandle>) {
    return FromWindow(value);
  } else if constexpr (std::is_enum_v<Value>) {
    return static_cast<std::int32_t>(value);
  } else {
    return value;
  }
}

// -- Arguments
// -----------------------------------------------------------------------------------------------

/// The object in a Variant; null for Nothing. Raises 424 for a value, 13 for another class.
template <typename Class>
Class* ObjectIn(const Variant& value, const Reference** reference = nullptr) {
  const Reference* found = ReferenceOrNothing(value);
  if (reference) *reference = found;
  if (!found) return nullptr;
  if (&found->Class() != &Describe<Class>()) RaiseWrongClass();
  return static_cast<Class*>(found->Target());
}

/// One argument while its member runs.
template <typename Declared>
class Argument {
  using Value = std::remove_cvref_t<Declared>;

 public:
  void Read(const Variant& value) {
    if constexpr (SimpleValue<Value>) {
      value_ = FromVariant<Value>(value);
    } else if constexpr (kIsSharedPointer<Value>) {
      const Reference* reference = nullptr;
      if (auto* object = ObjectIn<Class>(value, &reference)) {
        if (!reference->Owned()) RaiseWrongClass();
        value_ = Value(reference->Owned(), object);
      } else {
        value_ = nullptr;
      }
    } else {
      value_ = ObjectIn<Class>(value);
      if (!kIsNullable<Declared> && !value_) RaiseNothing();
    }
  }

  void Take(const DefaultValue& value) {
    if constexpr (std::same_as<Value, std::string>) {
      value_ = std::string(value.text);
    } else if constexpr (std::same_as<Value, bool>) {
      value_ = value.number != 0;
    } else if constexpr (std::is_arithmetic_v<Value> || std::is_enum_v<Value>) {
      value_ = static_cast<Value>(value.number);
    } else {
      value_ = {};
    }
  }

  decltype(auto) Pass() {
    if constexpr (SimpleValue<Value> || kIsNullable<Declared>) {
      return static_cast<Value&>(value_);
    } else {
      return static_cast<Class&>(*value_);
    }
  }

  void WriteBack(Variant* value) const {
    if constexpr (kIsInOut<Declared>) {
      if (value) *value = ToVariant(value_);
    }
  }

 private:
  using Class = typename ClassOf<Value>::type;
  std::conditional_t<SimpleValue<Value> || kIsNullable<Declared>, Value, Class*> value_{};
};

// -- Objects as Variants
// -------------------------------------------------------------------------------------

inline Variant ToVariant(Reference::Pointer reference) {
  return Variant::ObjectReference(std::move(reference));
}

/// For an object whose life is its own.
template <typename Class>
Reference::Pointer Refer(std::shared_ptr<Class> object) {
  using Plain = std::remove_const_t<Class>;
  if (!object) return nullptr;
  return Reference::Owner(Describe<Plain>(), std::const_pointer_cast<Plain>(std::move(object)));
}

template <typename Class, typename Parent>
void* FindIn(void* parent, const std::string& key) {
  return Locate<Class>::Find(*static_cast<Parent*>(parent), key);
}

/// For an object that `parent` hands out.
template <typename Parent, typename Class>
Reference::Pointer Refer(const Reference& parent, Class& object) {
  using Plain = std::remove_const_t<Class>;
  auto& plain = const_cast<Plain&>(object);
  if constexpr (kLife<Plain> == Life::kCopied) {
    return Refer(std::make_shared<Plain>(plain));
  } else if constexpr (kLife<Plain> == Life::kLocated) {
    if constexpr (std::same_as<Parent, Plain>) {
      return parent.Sibling(Locate<Plain>::Key(plain));
    } else {
      return Reference::Located(Describe<Plain>(), &FindIn<Plain, Parent>, Locate<Plain>::Key(plain),
                                parent.shared_from_this());
    }
  } else {
    // Its address is kept, so its parent must not be another object one day. An editor outlives its windows.
    static_assert(kLife<Parent> != Life::kLocated || std::same_as<Plain, IImageProcessingCtl>);
    return Reference::Part(Describe<Plain>(), &plain, parent.shared_from_this());
  }
}

/// A result of a member of `Parent`.
template <typename Parent, typename Declared>
Variant ResultToVariant(const Reference& parent, Declared&& result) {
  using Value = std::remove_cvref_t<Declared>;
  if constexpr (SimpleValue<Value>) {
    return ToVariant(static_cast<const Value&>(result));
  } else if constexpr (kIsSharedPointer<Value>) {
    return ToVariant(Refer(Value(std::forward<Declared>(result))));
  } else if constexpr (std::is_pointer_v<Value>) {
    return ToVariant(result ? Refer<Parent>(parent, *result) : nullptr);
  } else if constexpr (std::is_lvalue_reference_v<Declared>) {
    return ToVariant(Refer<Parent>(parent, result));
  } else {
    return ToVariant(Refer(std::make_shared<Value>(std::forward<Declared>(result))));
  }
}

}  // namespace kestrel::dispatch
