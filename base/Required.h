#pragma once

#include "RuntimeError.h"

namespace kestrel {

/// The object pointed to; raises RuntimeError 91 for a null pointer.
template <typename Pointer>
auto& Required(const Pointer& pointer) {
  if (!pointer) throw RuntimeError(err::kObjectNotSet, "Object variable not set.");
  return *pointer;
}

}  // namespace kestrel
