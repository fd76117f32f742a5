#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Desktop.h"
#include "FileDialog.h"
#include "FileSystem.h"
#include "Form.h"
#include "FormDescription.h"
#include "ImageView.h"
#include "Moorage.h"
#include "Site.h"
#include "Surfaces.h"
#include "User.h"
#include "imaging/contract/Platform.h"
#include "platform/posix/LineTable.h"
#include "platform/store/MemoryStore.h"
#include "platform/store/StoredPositions.h"
#include "services/AppInfo.h"
#include "services/Clipboard.h"
#include "services/FileHelpers.h"
#include "services/FormSkin.h"
#include "services/FormUtility.h"
#include "services/MouseTracker.h"
#include "services/ObjectFactory.h"
#include "services/Screen.h"
#include "services/Shell.h"
#include "services/UserInterface.h"
#include "services/WindowFunctions.h"

namespace kestrel::headless {

/// Parameters of a headless platform.
struct Setup {
  PathStyle pathStyle = PathStyle::kSlash;
  /// An existing folder on the machine for all written files.
  std::string scratch;
  /// The drives of the backslash style.
  std::vector<Drive> drives = {{'C', kDriveFixed, "System", {}, true}};
  /// The folder of the help books; see `HelpViewer`.
  std::string helpFolder = {};
  const std::vector<FormDescription>& forms = formDescriptions();
};

/// The platform without windows. Its services run in memory; user input is scripted by `user()` or simulated
/// on the objects that it returns.
class Platform final : public kestrel::Platform {
 public:
  explicit Platform(Setup setup);
  ~Platform() override;

  // Access for tests.
  User& user() { return user_; }
  Desktop& desktop() { return desktop_; }
  FileSystem& files() { return files_; }
  /// The pages of help that were shown.
  const std::vector<std::string>& helpShown() const { return helpShown_; }

  /// A container for a control, without the windows of its surface.
  std::unique_ptr<Site> createSite(const std::string& name, bool userMode);
  /// A container for an editor with its two windows: "mrgUI" with the stored layout "Dialog", and "igxImage".
  std::unique_ptr<Site> createEditorSite(bool userMode = true);
  /// A container for a browser with its windows; see `makeBrowserSite`.
  std::unique_ptr<Site> createBrowserSite(bool userMode = true);
  /// A container for a folder tree with its two windows "tvwFolders" and "picIcon".
  std::unique_ptr<Site> createFolderTreeSite(bool userMode = true);
  /// The surroundings for the windows of a surface that a test assembles itself.
  Surroundings surroundings() { return {clipboard_, files_, user_}; }
  /// A form that is not one of the desktop's.
  std::unique_ptr<headless::Form> createForm(const FormDescription& description);

  /// Moves the pointer to a screen position and rests there; notifies the trackers of the windows entered and
  /// left.
  void pointerRestsAt(const Point& screen);

  // The contract
  std::shared_ptr<ImgX> CreateImgX() override;
  std::shared_ptr<Colors> CreateColors() override;
  std::unique_ptr<ImgXDialog> CreateImgXDialog() override;
  std::unique_ptr<kestrel::Form> CreateForm(const std::string& name) override;
  std::unique_ptr<kestrel::HelpViewer> CreateHelpViewer() override;
  std::unique_ptr<kestrel::SinkHolder> CreateSinkHolder() override;
  std::unique_ptr<kestrel::MouseTracker> CreateMouseTracker() override;
  std::unique_ptr<kestrel::Canvas> CreateCanvas(std::int32_t width, std::int32_t height) override;

  headless::FormUtility& FormUtility() override { return formUtility_; }
  headless::FormSkin& FormSkin() override { return formSkin_; }
  headless::WindowFunctions& WindowFunctions() override { return windowFunctions_; }
  store::StoredPositions& WindowPositions() override { return windowPositions_; }
  store::MemoryStore& RegistryStore() override { return store_; }
  headless::FileHelpers& FileHelpers() override { return fileHelpers_; }
  headless::UserInterface& UserInterface() override { return userInterface_; }
  headless::Clipboard& Clipboard() override { return clipboard_; }
  headless::Shell& Shell() override { return shell_; }
  headless::Screen& Screen() override { return screen_; }
  headless::AppInfo& App() override { return app_; }

  std::unique_ptr<DebugClientLibrary> CreateDebugClientLibrary() override { return nullptr; }
  headless::ObjectFactory& ObjectFactory() override { return objectFactory_; }
  kestrel::StackResolver& StackResolver() override { return lineTable_; }

  /// Without an event loop: destroyed at once if no call is open, else by the next one that is retired then.
  void Retire(std::shared_ptr<void> object) override;

 private:
  Setup setup_;
  User user_;
  Desktop desktop_;
  FileSystem files_;
  std::vector<std::string> helpShown_;
  std::vector<headless::MouseTracker*> trackers_;

  headless::AppInfo app_;
  headless::FormUtility formUtility_;
  headless::FormSkin formSkin_;
  headless::WindowFunctions windowFunctions_;
  store::MemoryStore store_;
  store::StoredPositions windowPositions_;
  headless::FileHelpers fileHelpers_;
  headless::UserInterface userInterface_;
  headless::Clipboard clipboard_;
  headless::Shell shell_;
  headless::Screen screen_;
  headless::ObjectFactory objectFactory_;
  posix::LineTable lineTable_;

  std::vector<std::shared_ptr<void>> retired_;  // last: they use the services
};

}  // namespace kestrel::headless
