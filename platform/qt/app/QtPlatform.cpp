#include "QtPlatform.h"

#include <chrono>

#include "base/RuntimeError.h"
#include "engine/imgx/ColorsObject.h"
#include "engine/imgx/ImgXObject.h"
#include "engine/pixels/Memory.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/dialogs/QtHelpViewer.h"
#include "platform/qt/dialogs/QtImgXDialog.h"
#include "platform/qt/dialogs/QtUserInterface.h"
#include "platform/qt/forms/FormFactory.h"
#include "platform/qt/forms/QtForm.h"
#include "platform/qt/services/QtCanvas.h"
#include "platform/qt/services/QtMouseTracker.h"
#include "platform/qt/services/WeakSinkHolder.h"

namespace kestrel::qt {

namespace {

/// Pixel buffers unused for this time are returned to the system.
constexpr std::chrono::seconds kIdleBeforeRelease(5);

std::unique_ptr<UserInterface> boxesFor(const DesktopParts& parts, OpenCalls& calls) {
  auto own = std::make_unique<QtUserInterface>(parts.version.title, calls);
  if (!parts.wrapBoxes) return own;
  return parts.wrapBoxes(std::move(own));
}

}  // namespace

QtPlatform::QtPlatform(DesktopParts parts)
    : parts_(std::move(parts)),
      boxes_(boxesFor(parts_, Calls)),
      appInfo_(parts_.version),
      clipboard_(clipboardPort_),
      windowPositions_(*parts_.store, windowFunctions_),
      fileHelpers_(*boxes_, Calls),
      siteServices_{clipboardPort_, fileHelpers_, Calls},
      memoryRelease_(
          kIdleBeforeRelease, [] { return engine::keptMemory() > 0; },
          [] { engine::releaseKeptMemory(kIdleBeforeRelease); }) {}

QtPlatform::~QtPlatform() = default;

std::shared_ptr<ImgX> QtPlatform::CreateImgX() {
  return std::make_shared<engine::ImgXObject>(clipboardPort_);
}

std::shared_ptr<Colors> QtPlatform::CreateColors() { return std::make_shared<engine::ColorsObject>(); }

std::unique_ptr<ImgXDialog> QtPlatform::CreateImgXDialog() {
  return std::make_unique<QtImgXDialog>(Calls, *parts_.store, windowPositions_);
}

std::unique_ptr<Form> QtPlatform::CreateForm(const std::string& name) {
  std::unique_ptr<FormWindow> window = buildForm(name);
  if (!window) throw RuntimeError(err::kCannotCreateObject, "There is no form \"" + name + "\".");
  return std::make_unique<QtForm>(std::move(window), name, siteServices_);
}

std::unique_ptr<HelpViewer> QtPlatform::CreateHelpViewer() {
  return std::make_unique<QtHelpViewer>(toQt(parts_.helpFolder));
}

std::unique_ptr<SinkHolder> QtPlatform::CreateSinkHolder() { return std::make_unique<WeakSinkHolder>(); }

std::unique_ptr<MouseTracker> QtPlatform::CreateMouseTracker() { return std::make_unique<QtMouseTracker>(); }

std::unique_ptr<Canvas> QtPlatform::CreateCanvas(std::int32_t width, std::int32_t height) {
  return std::make_unique<QtCanvas>(width, height);
}

}  // namespace kestrel::qt
