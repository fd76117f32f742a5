#pragma once

#include <functional>
#include <string>

namespace kestrel {

class Variant;

/// Base of the types that a Variant can hold by reference. A report shows the name of the type and, for
/// collections, the elements.
class Object {
 public:
  virtual ~Object() = default;

  /// The plain name of the object's type, without a namespace ("Collection").
  virtual std::string TypeName() const = 0;

  /// Calls `visit` with each element in order and returns true. Returns false without a call if the object is
  /// not a collection.
  virtual bool Enumerate(const std::function<void(const Variant&)>& /*visit*/) const { return false; }

 protected:
  Object() = default;
  Object(const Object&) = default;
  Object& operator=(const Object&) = default;
};

}  // namespace kestrel
