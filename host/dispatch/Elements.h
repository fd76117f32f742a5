#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Convert.h"
#include "Rows.h"
#include "base/Variant.h"

namespace kestrel::dispatch {

/// Whether a host asks for an element by key and not by index.
inline bool IsKey(const Variant& index) {
  return index.TypeCode() == static_cast<std::int32_t>(Variant::Type::kString);
}

/// The element of a collection whose `Item` takes an index, or an index or a key.
template <typename Collection>
decltype(auto) ElementOf(Collection& collection, const Variant& index) {
  if constexpr (requires { collection.Item(std::string()); }) {
    if (IsKey(index)) return collection.Item(ToString(index));
  }
  return collection.Item(ToInt32(index));
}

/// The default member of a collection.
template <typename Collection>
constexpr auto ItemOf(std::string_view help) {
  return ReadOnly("Item", 0, &ElementOf<Collection>, {"Index"}, help);
}

}  // namespace kestrel::dispatch
