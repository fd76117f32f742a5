#include "DesktopApartment.h"

#include <atomic>
#include <utility>

#include "Status.h"
#include "base/RuntimeError.h"
#include "host/dispatch/Errors.h"

namespace kestrel::c {
namespace {

std::atomic<bool> taken = false;

template <typename Control>
Embedded<Control> ToEmbedded(qt::ForeignDesktop::Embedded<Control> made) {
  return {made.control, made.widget, std::move(made.life)};
}

}  // namespace

DesktopApartment::Claim::Claim() {
  if (taken.exchange(true)) throw RuntimeError(err::kWrongThread, "Another thread has the desktop.");
}
DesktopApartment::Claim::~Claim() { taken = false; }

DesktopApartment::DesktopApartment()
    : desktop_(std::make_unique<qt::ForeignDesktop>([this] {
        const auto kept = Current();
        End();
      })) {}

DesktopApartment::~DesktopApartment() = default;

void DesktopApartment::ProcessEvents(std::chrono::milliseconds wait) {
  desktop_->processEvents(wait, IsOutermostCall());
}

std::int32_t DesktopApartment::Run(const std::function<bool()>& isClosed,
                                   std::optional<std::chrono::milliseconds> limit) {
  const auto isDone = isClosed ? isClosed : [] { return !qt::ForeignDesktop::showsWindows(); };
  switch (desktop_->run(isDone, limit)) {
    case qt::ForeignDesktop::Reason::kDone:
      return KESTREL_RUN_CLOSED;
    case qt::ForeignDesktop::Reason::kTimedOut:
      return KESTREL_RUN_TIMED_OUT;
    case qt::ForeignDesktop::Reason::kQuit:
      break;
  }
  return KESTREL_RUN_QUIT;
}

void DesktopApartment::Quit() {
  if (!desktop_->quit()) RaiseInvalidCall("There is no run to end.");
}

Embedded<IImageProcessingCtl> DesktopApartment::EmbedEditor(void* parent) {
  return ToEmbedded(desktop_->embedEditor(parent));
}

Embedded<IImageBrowserCtl> DesktopApartment::EmbedBrowser(void* parent) {
  return ToEmbedded(desktop_->embedBrowser(parent));
}

std::uint64_t DesktopApartment::WindowOf(void* widget) { return qt::ForeignDesktop::windowOf(widget); }

bool DesktopApartment::DestroyWidget(const void* control) { return desktop_->destroy(control); }

void DesktopApartment::Close() {
  desktop_.reset();
  // Handles that are left keep this object, not the desktop.
  claim_.reset();
}

void DesktopApartment::Wake() {
  desktop_->post([this] { DoPosted(); });
}

}  // namespace kestrel::c
