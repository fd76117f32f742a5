#include "Objects.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Status.h"
#include "Text.h"
#include "base/RuntimeError.h"
#include "host/dispatch/Classes.h"
#include "host/dispatch/Errors.h"
#include "host/dispatch/Registry.h"

namespace kestrel::c {
namespace {

[[noreturn]] void RaiseNoHandle() {
  throw RuntimeError(err::kObjectNotSet, "The object is Nothing, or was released.");
}

std::shared_ptr<Item> ItemOf(HandleKind kind, const void* handle) {
  auto item = Handles::All().Find(kind, NumberOf(handle));
  if (!item) RaiseNoHandle();
  return item;
}

/// False if there is no such handle.
bool ReleaseHere(HandleKind kind, Handles::Number number) {
  std::shared_ptr<Item> last;
  if (!Handles::All().Release(kind, number, last)) return false;
  if (last) last->End();
  return true;
}

std::shared_ptr<Apartment> Usable(std::shared_ptr<Apartment> apartment) {
  if (apartment->IsEnding()) RaiseInvalidCall("The thread is being stopped.");
  apartment->DoPosted();
  return apartment;
}

}  // namespace

const dispatch::Reference::Pointer& ObjectItem::Reference() const {
  if (!reference_) dispatch::RaiseObjectGone(class_);
  return reference_;
}

std::shared_ptr<ObjectItem> ItemOf(const kestrel_object* object) {
  auto item = std::static_pointer_cast<ObjectItem>(ItemOf(HandleKind::kObject, object));
  if (item->Owner() != Apartment::Current()) {
    // After a stop there is no thread that could use the object.
    if (item->Owner()->HasEnded()) dispatch::RaiseObjectGone(item->Class());
    dispatch::RaiseWrongThread(item->Class());
  }
  return item;
}

const dispatch::ClassDescription& ClassOf(const kestrel_object* object) {
  return static_cast<const ObjectItem&>(*ItemOf(HandleKind::kObject, object)).Class();
}

kestrel_object* NewHandle(dispatch::Reference::Pointer reference) {
  auto item = std::make_shared<ObjectItem>(Apartment::Current(), std::move(reference));
  return reinterpret_cast<kestrel_object*>(Handles::All().Add(HandleKind::kObject, std::move(item)));
}

void ReleaseHandle(HandleKind kind, const void* handle) {
  const Handles::Number number = NumberOf(handle);
  const auto owner = ItemOf(kind, handle)->Owner();
  std::optional<Apartment::Call> call;
  if (owner && owner == Apartment::Current()) {
    call.emplace(owner);
  } else if (owner && owner->Post([kind, number] { ReleaseHere(kind, number); })) {
    return;
  }
  if (!ReleaseHere(kind, number)) RaiseNoHandle();
}

ObjectCall::ObjectCall(const kestrel_object* object) : ObjectCall(ItemOf(object)) {}

ObjectCall::ObjectCall(const std::shared_ptr<ObjectItem>& item)
    : call_(Usable(item->Owner())), reference_(item->Reference()) {}

ThreadCall::ThreadCall(std::shared_ptr<kestrel::c::Apartment> apartment)
    : apartment_(Usable(std::move(apartment))), call_(apartment_) {}

}  // namespace kestrel::c

using namespace kestrel::c;
using kestrel::dispatch::Describe;
using kestrel::dispatch::Reference;

namespace {

bool IsNamed(const char* name, const kestrel::dispatch::ClassDescription& description) {
  return kestrel::dispatch::CompareNames(TextOrEmpty(name), description.name) == 0;
}

/// Gives the host a control with its widget.
template <typename Control>
void HandOver(const Embedded<Control>& made, Apartment& apartment, kestrel_object** object, void** widget,
              std::uint64_t* window) {
  kestrel_object* const handle = NewHandle(Reference::Watch(Describe<Control>(), made.control, made.life));
  if (window) *window = apartment.WindowOf(made.widget);
  *widget = made.widget;
  *object = handle;
}

}  // namespace

kestrel_status kestrel_create(const char* class_name, kestrel_object** object) {
  return Guarded([&] {
    Require(object, "There is no place for the object.");
    const std::string_view name = TextOrEmpty(class_name);
    // A class that there is not starts no desktop.
    const auto* const known = kestrel::dispatch::FindClass(name);
    std::optional<ThreadCall> call;
    if (known && known->create) call.emplace();
    *object = NewHandle(kestrel::dispatch::Create(name));
  });
}

kestrel_status kestrel_embed(const char* class_name, void* parent, kestrel_object** object, void** widget,
                             std::uint64_t* window) {
  return Guarded([&] {
    Require(object, "There is no place for the object.");
    Require(widget, "There is no place for the widget.");
    const bool isBrowser = IsNamed(class_name, Describe<kestrel::IImageBrowserCtl>());
    if (!isBrowser && !IsNamed(class_name, Describe<kestrel::IImageProcessingCtl>())) {
      throw kestrel::RuntimeError(kestrel::err::kCannotCreateObject,
                                  "There is no class \"" + std::string(TextOrEmpty(class_name)) +
                                      "\" of controls for a host's window.");
    }
    const ThreadCall call;
    Apartment& apartment = call.Apartment();
    if (isBrowser) {
      HandOver(apartment.EmbedBrowser(parent), apartment, object, widget, window);
    } else {
      HandOver(apartment.EmbedEditor(parent), apartment, object, widget, window);
    }
  });
}

kestrel_status kestrel_unembed(kestrel_object* object) {
  return Guarded([&] {
    const ObjectCall call(object);
    if (!Apartment::Current()->DestroyWidget(call.Target().Target())) {
      RaiseInvalidCall("The object was not made with a widget.");
    }
  });
}

kestrel_status kestrel_retain(kestrel_object* object) {
  return Guarded([&] {
    if (!Handles::All().Retain(HandleKind::kObject, NumberOf(object))) RaiseNoHandle();
  });
}

kestrel_status kestrel_release(kestrel_object* object) {
  return Guarded([&] {
    if (object) ReleaseHandle(HandleKind::kObject, object);
  });
}

kestrel_status kestrel_is_same(kestrel_object* object, kestrel_object* other, std::int32_t* same) {
  return Guarded([&] {
    Require(same, "There is no place for the result.");
    const ObjectCall call(object);
    *same = call.Target().IsSame(*ItemOf(other)->Reference()) ? 1 : 0;
  });
}
