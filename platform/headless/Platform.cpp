#include "Platform.h"

#include <algorithm>
#include <utility>

#include "Canvas.h"
#include "Form.h"
#include "FreePicture.h"
#include "base/RuntimeError.h"
#include "engine/imgx/ColorsObject.h"
#include "services/HelpViewer.h"
#include "services/SinkHolder.h"

namespace kestrel::headless {

Platform::Platform(Setup setup)
    : setup_(std::move(setup)),
      user_(Calls),
      files_(setup_.pathStyle, setup_.scratch, setup_.drives),
      formUtility_(desktop_, files_),
      windowFunctions_(desktop_),
      windowPositions_(store_, windowFunctions_),
      fileHelpers_(files_, user_),
      userInterface_(user_, app_.title),
      shell_(desktop_, files_) {}

Platform::~Platform() = default;

std::unique_ptr<Site> Platform::createSite(const std::string& name, bool userMode) {
  return std::make_unique<Site>(desktop_, nullptr, name, userMode);
}

std::unique_ptr<Site> Platform::createEditorSite(bool userMode) {
  return makeEditorSite(desktop_, nullptr, "ImageProcessingCtl", userMode, surroundings());
}

std::unique_ptr<Site> Platform::createFolderTreeSite(bool userMode) {
  return makeFolderTreeSite(desktop_, nullptr, "FolderTreeView", userMode);
}

std::unique_ptr<Site> Platform::createBrowserSite(bool userMode) {
  return makeBrowserSite(desktop_, nullptr, "ImageBrowserCtl", userMode, surroundings());
}

std::unique_ptr<headless::Form> Platform::createForm(const FormDescription& description) {
  return std::make_unique<headless::Form>(desktop_, user_, surroundings(), description);
}

void Platform::pointerRestsAt(const Point& screen) {
  desktop_.pointer = screen;
  // A handler may make and release trackers.
  for (headless::MouseTracker* tracker : std::vector(trackers_)) {
    if (std::find(trackers_.begin(), trackers_.end(), tracker) == trackers_.end()) continue;
    const Window* window = desktop_.find(tracker->hWnd());
    if (!window || !window->isShown()) continue;
    const Point corner = window->origin();
    const bool inside = screen.X >= corner.X && screen.Y >= corner.Y &&
                        screen.X < corner.X + window->place().Width &&
                        screen.Y < corner.Y + window->place().Height;
    if (inside) {
      tracker->pointerRests();
    } else {
      tracker->pointerLeaves();
    }
  }
}

std::shared_ptr<ImgX> Platform::CreateImgX() { return std::make_shared<FreePicture>(clipboard_, files_); }

std::shared_ptr<Colors> Platform::CreateColors() { return std::make_shared<engine::ColorsObject>(); }

std::unique_ptr<ImgXDialog> Platform::CreateImgXDialog() {
  return std::make_unique<FileDialog>(desktop_, user_, files_);
}

std::unique_ptr<kestrel::Form> Platform::CreateForm(const std::string& name) {
  const auto found = std::find_if(setup_.forms.begin(), setup_.forms.end(),
                                  [&](const FormDescription& form) { return form.name == name; });
  if (found == setup_.forms.end()) {
    throw RuntimeError(err::kCannotCreateObject, "There is no form \"" + name + "\".");
  }
  return createForm(*found);
}

std::unique_ptr<kestrel::HelpViewer> Platform::CreateHelpViewer() {
  return std::make_unique<headless::HelpViewer>(setup_.helpFolder, helpShown_);
}

std::unique_ptr<kestrel::SinkHolder> Platform::CreateSinkHolder() {
  return std::make_unique<headless::SinkHolder>();
}

std::unique_ptr<kestrel::MouseTracker> Platform::CreateMouseTracker() {
  auto tracker = std::make_unique<headless::MouseTracker>(
      [this](headless::MouseTracker& dying) { std::erase(trackers_, &dying); });
  trackers_.push_back(tracker.get());
  return tracker;
}

std::unique_ptr<kestrel::Canvas> Platform::CreateCanvas(std::int32_t width, std::int32_t height) {
  return std::make_unique<headless::Canvas>(width, height);
}

void Platform::Retire(std::shared_ptr<void> object) {
  retired_.push_back(std::move(object));
  // Outside of all calls none of our frames is on the stack. The field is empty while they end.
  if (!Calls.Any()) std::exchange(retired_, {}).clear();
}

}  // namespace kestrel::headless
