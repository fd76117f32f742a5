#pragma once

#include <memory>

#include "base/Object.h"

namespace kestrel {

/// Holds a weak reference to an object.
class SinkHolder {
 public:
  virtual ~SinkHolder() = default;

  /// The object, or null if none was set or it has been destroyed.
  virtual std::shared_ptr<kestrel::Object> Object() const = 0;
  virtual void Object(const std::shared_ptr<kestrel::Object>& value) = 0;
};

}  // namespace kestrel
