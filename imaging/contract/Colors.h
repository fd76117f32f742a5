#pragma once

#include <cstdint>

#include "Colour.h"
#include "base/Object.h"

namespace kestrel {

/// Makes color objects.
class Colors : public Object {
 public:
  /// Alpha is 0 (transparent) to 255 (opaque). Any color number is accepted; -1 makes "no color".
  virtual Colour Create(OLE_COLOR color, std::uint8_t alpha = 255) const = 0;
};

}  // namespace kestrel
