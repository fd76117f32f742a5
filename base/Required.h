#pragma once

#include "RuntimeError.h"

namespace kestrel {

/// What the pointer points to; raises RuntimeError 91 where it points to nothing.
template <typename Pointer>
auto& Required(const Pointer& pointer) {
  if (!pointer) throw RuntimeError(err::kObjectNotSet, "Object variable not set.");
  return *pointer;
}

}  // namespace kestrel
