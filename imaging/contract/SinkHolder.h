#pragma once

#include <memory>

#include "base/Object.h"

namespace kestrel {

/// Holds an object without keeping it alive.
class SinkHolder {
 public:
  virtual ~SinkHolder() = default;

  /// The object, or null where none was set or it has ended.
  virtual std::shared_ptr<kestrel::Object> Object() const = 0;
  virtual void Object(const std::shared_ptr<kestrel::Object>& value) = 0;
};

}  // namespace kestrel
