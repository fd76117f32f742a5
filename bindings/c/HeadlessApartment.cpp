#include "HeadlessApartment.h"

#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "Status.h"
#include "Text.h"
#include "base/RuntimeError.h"
#include "platform/headless/Platform.h"
#include "platform/os/Paths.h"
#include "settings/modProcessing.h"

namespace kestrel::c {
namespace {

constexpr const char* kNoDisplay = "The thread has no display.";

std::string MakeScratchFolder() {
  std::string name = os::textOf(std::filesystem::temp_directory_path() / "kestrel-XXXXXX");
  if (!mkdtemp(name.data())) {
    throw RuntimeError(err::kPathFileAccess, "There is no folder for temporary files.");
  }
  return name;
}

/// Of another host of this process.
bool HasPlatform() {
  try {
    modProcessing::Platform();
    return true;
  } catch (const RuntimeError&) {
    return false;
  }
}

}  // namespace

HeadlessApartment::HeadlessApartment() {
  if (HasPlatform()) RaiseInvalidCall("This thread has a platform already.");
  scratch_ = MakeScratchFolder();
  headless::Setup setup;
  setup.scratch = scratch_;
  platform_ = std::make_unique<headless::Platform>(std::move(setup));
  platform_->user().onComplaint = [this](const std::string& text) {
    std::fprintf(stderr, "kestrel: %s\n", ValidUtf8(text).c_str());
    platform_->user().forget();  // the record would grow
  };
  modProcessing::Attach(*platform_);
  modProcessing::Main();
}

HeadlessApartment::~HeadlessApartment() = default;

kestrel::Platform& HeadlessApartment::Platform() { return *platform_; }

void HeadlessApartment::Close() {
  modProcessing::Detach();
  platform_.reset();
  // The trash of this platform would be lost with its folder.
  const std::filesystem::path scratch = os::pathOf(scratch_);
  std::error_code error;
  if (!std::filesystem::exists(scratch / ".trash", error)) std::filesystem::remove_all(scratch, error);
}

void HeadlessApartment::Wake() {
  // The waiting thread is before its look at the work, or in the wait.
  const std::lock_guard lock(mutex_);
  woken_.notify_one();
}

void HeadlessApartment::ProcessEvents(std::chrono::milliseconds wait) {
  {
    std::unique_lock lock(mutex_);
    woken_.wait_for(lock, wait, [this] { return HasPosted(); });
  }
  DoPosted();
}

std::int32_t HeadlessApartment::Run(const std::function<bool()>& /*isClosed*/,
                                    std::optional<std::chrono::milliseconds> /*limit*/) {
  RaiseInvalidCall("The thread has no display, and so no events.");
}

void HeadlessApartment::Quit() { RaiseInvalidCall("There is no run to end."); }

Embedded<IImageProcessingCtl> HeadlessApartment::EmbedEditor(void* /*parent*/) {
  RaiseInvalidCall(kNoDisplay);
}
Embedded<IImageBrowserCtl> HeadlessApartment::EmbedBrowser(void* /*parent*/) { RaiseInvalidCall(kNoDisplay); }
std::uint64_t HeadlessApartment::WindowOf(void* /*widget*/) { RaiseInvalidCall(kNoDisplay); }
bool HeadlessApartment::DestroyWidget(const void* /*control*/) { return false; }

}  // namespace kestrel::c
