#pragma once

#include <memory>
#include <utility>

#include "Apartment.h"
#include "Handles.h"
#include "host/dispatch/Reference.h"

namespace kestrel::c {

/// What a handle of an object refers to.
class ObjectItem final : public Item {
 public:
  ObjectItem(std::shared_ptr<Apartment> owner, dispatch::Reference::Pointer reference)
      : Item(std::move(owner)), class_(reference->Class()), reference_(std::move(reference)) {}

  void End() override { reference_.reset(); }

  const dispatch::ClassDescription& Class() const { return class_; }
  /// Raises KESTREL_OBJECT_GONE after the end of the apartment.
  const dispatch::Reference::Pointer& Reference() const;

 private:
  const dispatch::ClassDescription& class_;
  dispatch::Reference::Pointer reference_;
};

/// The object of a host's handle. Raises KESTREL_OBJECT_GONE for one that is none, KESTREL_WRONG_THREAD for
/// one of another thread.
std::shared_ptr<ObjectItem> ItemOf(const kestrel_object* object);

/// The class of a host's handle, on any thread. Raises KESTREL_OBJECT_GONE for one that is none.
const dispatch::ClassDescription& ClassOf(const kestrel_object* object);

/// A new handle, for a host of the calling thread.
kestrel_object* NewHandle(dispatch::Reference::Pointer reference);

/// Releases a handle of any kind. Raises KESTREL_OBJECT_GONE for one that is none.
void ReleaseHandle(HandleKind kind, const void* handle);

inline Handles::Number NumberOf(const void* handle) { return reinterpret_cast<Handles::Number>(handle); }

/// A call of a function of the interface that uses an object.
class ObjectCall {
 public:
  /// Raises as `ItemOf`.
  explicit ObjectCall(const kestrel_object* object);

  const dispatch::Reference& Target() const { return *reference_; }
  const dispatch::ClassDescription& Class() const { return reference_->Class(); }

 private:
  explicit ObjectCall(const std::shared_ptr<ObjectItem>& item);

  const Apartment::Call call_;
  const dispatch::Reference::Pointer reference_;
};

/// A call of a function of the interface that uses no object, on a thread that it starts if needed.
class ThreadCall {
 public:
  ThreadCall() : ThreadCall(kestrel::c::Apartment::Started()) {}
  /// On a thread that was started.
  explicit ThreadCall(std::shared_ptr<kestrel::c::Apartment> apartment);

  kestrel::c::Apartment& Apartment() const { return *apartment_; }

 private:
  const std::shared_ptr<kestrel::c::Apartment> apartment_;
  const kestrel::c::Apartment::Call call_;
};

}  // namespace kestrel::c
