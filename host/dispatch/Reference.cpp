#include "Reference.h"

#include <utility>

#include "Errors.h"
#include "Invoke.h"
#include "base/RuntimeError.h"

namespace kestrel::dispatch {

bool IsObject(const Variant& value) {
  return value.TypeCode() == static_cast<std::int32_t>(Variant::Type::kObject);
}

std::shared_ptr<Reference> Reference::Make(const ClassDescription& description, const Pointer& parent) {
  auto made = std::make_shared<Reference>(Key(), description);
  made->parent_ = parent;
  if (parent) made->thread_ = parent->thread_;
  return made;
}

Reference::Pointer Reference::Owner(const ClassDescription& description, std::shared_ptr<void> object) {
  auto made = Make(description, nullptr);
  made->object_ = object.get();
  made->owner_ = std::move(object);
  return made;
}

Reference::Pointer Reference::Watch(const ClassDescription& description, void* object,
                                    std::weak_ptr<const void> token) {
  auto made = Make(description, nullptr);
  made->object_ = object;
  made->token_ = std::move(token);
  return made;
}

Reference::Pointer Reference::Part(const ClassDescription& description, void* object, Pointer parent) {
  auto made = Make(description, parent);
  made->object_ = object;
  return made;
}

Reference::Pointer Reference::Located(const ClassDescription& description, Finder finder, std::string key,
                                      Pointer parent) {
  auto made = Make(description, parent);
  made->finder_ = finder;
  made->key_ = std::move(key);
  return made;
}

Reference::Pointer Reference::Sibling(std::string key) const {
  return Located(class_, finder_, std::move(key), parent_);
}

bool Reference::Enumerate(const std::function<void(const Variant&)>& visit) const {
  if (!class_.IsCollection()) return false;
  VisitElements(*this, visit);
  return true;
}

void* Reference::ParentTarget() const {
  void* parent = parent_->Target();
  if (parent_->class_.checkHandedOut) parent_->class_.checkHandedOut(parent);
  return parent;
}

void* Reference::Target() const {
  if (thread_ != std::this_thread::get_id()) RaiseWrongThread(class_);
  if (owner_) return object_;
  if (!parent_) {
    if (token_.expired()) RaiseObjectGone(class_);
    return object_;
  }
  void* parent = ParentTarget();
  if (!finder_) return object_;
  void* found = finder_(parent, key_);
  if (!found) RaiseObjectGone(class_);
  return found;
}

bool Reference::IsSame(const Reference& other) const {
  if (this == &other) return true;
  if (&class_ != &other.class_) return false;
  try {
    return Target() == other.Target();
  } catch (const RuntimeError& error) {
    if (error.Number() == err::kWrongThread) throw;
    return false;
  }
}

Reference::Pointer Reference::Weakened() const {
  if (owner_) return Watch(class_, object_, owner_);
  if (!parent_) return shared_from_this();
  auto made = Make(class_, parent_->Weakened());
  made->object_ = object_;
  made->finder_ = finder_;
  made->key_ = key_;
  return made;
}

const Reference* ReferenceOrNothing(const Variant& value) {
  if (!IsObject(value)) RaiseObjectRequired();
  const auto& object = value.AsObject();
  if (!object) return nullptr;
  const auto* reference = dynamic_cast<const Reference*>(object.get());
  if (!reference) RaiseObjectRequired();
  return reference;
}

const Reference& ReferenceIn(const Variant& value) {
  const Reference* reference = ReferenceOrNothing(value);
  if (!reference) RaiseNothing();
  return *reference;
}

Reference::Pointer SharedReferenceIn(const Variant& value) { return ReferenceIn(value).shared_from_this(); }

void VisitElements(const Reference& collection, const std::function<void(const Variant&)>& visit) {
  if (!collection.Class().IsCollection()) RaiseNoSuchMember(collection.Class(), "_NewEnum");
  for (std::int32_t i = 1; i <= Get(collection, "Count").ToInt32(); ++i) {
    Variant index = i;
    visit(Invoke(collection, 0, Use::kGet, {&index, 1}));
  }
}

}  // namespace kestrel::dispatch
