// The platform of a thread and its event loop.

#include <chrono>
#include <optional>
#include <utility>

#include "Apartment.h"
#include "Objects.h"
#include "Status.h"
#include "host/dispatch/Errors.h"
#include "host/dispatch/Invoke.h"

using namespace kestrel::c;
using std::chrono::milliseconds;

namespace {

std::optional<milliseconds> LimitOf(std::int32_t time) {
  return time < 0 ? std::nullopt : std::optional<milliseconds>(time);
}

/// Also one that is gone, or raises an error, has no window that a host could wait for.
bool IsClosed(const kestrel::dispatch::Reference& window) {
  try {
    return !kestrel::dispatch::Get(window, "Visible").ToBoolean();
  } catch (...) {
    return true;
  }
}

std::int32_t RunUntilClosed(kestrel_object* window, std::optional<milliseconds> limit) {
  const auto item = ItemOf(window);
  if (!item->Class().FindMember("Visible")) kestrel::dispatch::RaiseNoSuchMember(item->Class(), "Visible");
  // A handler may release the host's last handle, which ends the wait.
  const auto weak = item->Reference()->Weakened();
  const ThreadCall call(item->Owner());
  return call.Apartment().Run([&] { return IsClosed(*weak); }, limit);
}

std::int32_t RunUntilNoWindow(std::optional<milliseconds> limit) {
  auto current = Apartment::Current();
  if (!current) RaiseInvalidCall("The thread was not started.");
  const ThreadCall call(std::move(current));
  return call.Apartment().Run(nullptr, limit);
}

}  // namespace

kestrel_status kestrel_start(std::int32_t platform) {
  return Guarded([&] { Apartment::Start(platform); });
}

kestrel_status kestrel_stop() {
  return Guarded([] { Apartment::Stop(); });
}

kestrel_status kestrel_process_events(std::int32_t time) {
  return Guarded([&] {
    // A thread that was not started has none.
    if (auto current = Apartment::Current()) {
      const ThreadCall call(std::move(current));
      call.Apartment().ProcessEvents(milliseconds(time));
    }
  });
}

kestrel_status kestrel_run(kestrel_object* window, std::int32_t time, std::int32_t* reason) {
  return Guarded([&] {
    const auto limit = LimitOf(time);
    const std::int32_t why = window ? RunUntilClosed(window, limit) : RunUntilNoWindow(limit);
    if (reason) *reason = why;
  });
}

kestrel_status kestrel_quit() {
  return Guarded([] {
    const auto current = Apartment::Current();
    if (!current) RaiseInvalidCall("There is no run to end.");
    current->Quit();
  });
}
