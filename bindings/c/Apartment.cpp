#include "Apartment.h"

#include <utility>

#include "DesktopApartment.h"
#include "Handles.h"
#include "HeadlessApartment.h"
#include "Status.h"

namespace kestrel::c {
namespace {

/// A plain pointer, which is left as it is when a thread ends without a stop: the objects of the apartment
/// could not end any more after the thread's other variables.
std::shared_ptr<Apartment>*& CurrentOfThread() {
  static thread_local std::shared_ptr<Apartment>* current = nullptr;
  return current;
}

void EndItems(const Apartment& apartment, HandleKind kind) {
  for (const auto& item : Handles::All().Of(apartment, kind)) item->End();
}

}  // namespace

std::shared_ptr<Apartment> Apartment::Current() {
  const auto* const current = CurrentOfThread();
  return current ? *current : nullptr;
}

std::shared_ptr<Apartment> Apartment::Started() {
  if (!CurrentOfThread()) Start(KESTREL_DESKTOP);
  return Current();
}

void Apartment::Start(std::int32_t platform) {
  if (const auto current = Current()) {
    if (current->Kind() != platform) RaiseInvalidCall("This thread was started with another platform.");
    return;
  }
  std::shared_ptr<Apartment> made;
  if (platform == KESTREL_DESKTOP) {
    made = std::make_shared<DesktopApartment>();
  } else if (platform == KESTREL_HEADLESS) {
    made = std::make_shared<HeadlessApartment>();
  } else {
    RaiseInvalidCall("There is no such platform.");
  }
  CurrentOfThread() = new std::shared_ptr<Apartment>(std::move(made));
}

void Apartment::Stop() {
  const auto current = Current();
  if (!current) return;
  if (current->HasCalls() || current->Platform().Calls.Any()) {
    RaiseInvalidCall("A thread cannot be stopped within a call or a handler of the library.");
  }
  current->End();
}

void Apartment::End() {
  ending_ = true;
  EndItems(*this, HandleKind::kConnection);
  EndItems(*this, HandleKind::kObject);
  std::vector<std::function<void()>> left;
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    left.swap(posted_);
  }
  left.clear();
  Close();
  delete std::exchange(CurrentOfThread(), nullptr);
}

bool Apartment::Post(std::function<void()> work) {
  const std::lock_guard lock(mutex_);
  if (ended_) return false;
  posted_.push_back(std::move(work));
  hasPosted_ = true;
  Wake();
  return true;
}

void Apartment::DoPosted() {
  if (!hasPosted_) return;
  std::vector<std::function<void()>> posted;
  {
    const std::lock_guard lock(mutex_);
    posted.swap(posted_);
    hasPosted_ = false;
  }
  for (const auto& work : posted) work();
}

}  // namespace kestrel::c
