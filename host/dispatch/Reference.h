#pragma once

#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "Description.h"
#include "base/Object.h"
#include "base/Variant.h"

namespace kestrel::dispatch {

/// An object of the public interface as a late-bound host holds it: also as an object inside a Variant.
///
/// A reference can outlive its object. Each use checks it and raises RuntimeError 91 if the object is gone.
/// A reference belongs to the thread that made it: `Target` raises `err::kWrongThread` on any other.
class Reference final : public Object, public std::enable_shared_from_this<Reference> {
 public:
  using Pointer = std::shared_ptr<const Reference>;
  /// Finds an object again by its key in the object that handed it out. Returns null if it is gone.
  using Finder = void* (*)(void* parent, const std::string& key);

  /// Keeps the object alive.
  static Pointer Owner(const ClassDescription& description, std::shared_ptr<void> object);
  /// An object that its owner ends by releasing the token.
  static Pointer Watch(const ClassDescription& description, void* object, std::weak_ptr<const void> token);
  /// An object that lives as long as the one that handed it out. Keeps that reference.
  static Pointer Part(const ClassDescription& description, void* object, Pointer parent);
  /// An object that can vanish before the one that handed it out. It is found again on each use.
  static Pointer Located(const ClassDescription& description, Finder finder, std::string key, Pointer parent);

  /// The name of the class.
  std::string TypeName() const override { return std::string(class_.name); }
  bool Enumerate(const std::function<void(const Variant&)>& visit) const override;

  const ClassDescription& Class() const { return class_; }
  /// The object, checked; of the C++ type that the class describes. Valid until the next call of a host.
  void* Target() const;
  /// The object if this reference owns it, otherwise null.
  const std::shared_ptr<void>& Owned() const { return owner_; }

  /// Whether both are references to one object. References to objects that are gone are equal only to
  /// themselves.
  bool IsSame(const Reference& other) const;

  /// A reference to the same object that does not keep it alive. Raises RuntimeError 91 if the object is
  /// gone.
  Pointer Weakened() const;
  /// Of a located object: one of the same class, found by its key in the same parent.
  Pointer Sibling(std::string key) const;

 private:
  class Key {};  // Keeps the constructor to the functions above.

 public:
  Reference(Key, const ClassDescription& description) : class_(description) {}

 private:
  static std::shared_ptr<Reference> Make(const ClassDescription& description, const Pointer& parent);
  void* ParentTarget() const;

  const ClassDescription& class_;
  std::thread::id thread_ = std::this_thread::get_id();
  // One of owner, token and parent is set.
  std::shared_ptr<void> owner_;
  std::weak_ptr<const void> token_;
  Pointer parent_;
  void* object_ = nullptr;  // null with a finder
  Finder finder_ = nullptr;
  std::string key_;
};

/// Whether the value is an object, or Nothing.
bool IsObject(const Variant& value);

/// The reference in a Variant. Raises RuntimeError 424 for other values and for objects that are no
/// references, 91 for Nothing.
const Reference& ReferenceIn(const Variant& value);
/// The same, but null for Nothing.
const Reference* ReferenceOrNothing(const Variant& value);
/// The same, to be kept.
Reference::Pointer SharedReferenceIn(const Variant& value);

/// Visits the elements of a collection; they are counted from 1. Raises RuntimeError 438 for an object that
/// is no collection.
void VisitElements(const Reference& collection, const std::function<void(const Variant&)>& visit);

}  // namespace kestrel::dispatch
