#pragma once

#include <cstdint>
#include <string>

#include "../Control.h"

namespace kestrel {

/// A static text.
class Label : public Control {
 public:
  virtual std::string Caption() const = 0;
  virtual void Caption(const std::string& value) = 0;
};

}  // namespace kestrel
