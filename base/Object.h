#pragma once

#include <functional>
#include <string>

namespace kestrel {

class Variant;

/// What a Variant can hold by reference, and what a report can show of it: the name of its type and, for
/// collections, its elements.
class Object {
 public:
  virtual ~Object() = default;

  /// The plain name of the object's type, without a namespace ("Collection").
  virtual std::string TypeName() const = 0;

  /// Calls `visit` with each element in order and returns true. Returns false, without a call, where the
  /// object has no elements to enumerate by nature.
  virtual bool Enumerate(const std::function<void(const Variant&)>& /*visit*/) const { return false; }

 protected:
  Object() = default;
  Object(const Object&) = default;
  Object& operator=(const Object&) = default;
};

}  // namespace kestrel
