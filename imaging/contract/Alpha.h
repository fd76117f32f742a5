#pragma once

#include <string>

#include "Colour.h"

namespace kestrel {

/// The picture's transparency.
class Alpha {
 public:
  virtual ~Alpha() = default;

  /// Composites the picture over the color; the result is opaque.
  virtual void Flatten(const Colour& color, const std::string& undoName = {}) = 0;
};

}  // namespace kestrel
