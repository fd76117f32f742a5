#pragma once

#include <string>

#include "Colour.h"

namespace kestrel {

/// The picture's transparency.
class Alpha {
 public:
  virtual ~Alpha() = default;

  /// Composes the picture on the colour and leaves it opaque.
  virtual void Flatten(const Colour& color, const std::string& undoName = {}) = 0;
};

}  // namespace kestrel
