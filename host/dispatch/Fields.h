#pragma once

namespace kestrel::dispatch {

template <typename Pointer>
struct FieldPointer;
template <typename C, typename V>
struct FieldPointer<V C::*> {
  using Class = C;
  using Value = V;
};

/// The accessors of a property that is a field of a struct:
/// `Property("X", 1, &FieldOf<&Point::X>, &SetField<&Point::X>, "...")`.
template <auto kField>
const typename FieldPointer<decltype(kField)>::Value& FieldOf(
    typename FieldPointer<decltype(kField)>::Class& object) {
  return object.*kField;
}
template <auto kField>
void SetField(typename FieldPointer<decltype(kField)>::Class& object,
              const typename FieldPointer<decltype(kField)>::Value& value) {
  object.*kField = value;
}

}  // namespace kestrel::dispatch
