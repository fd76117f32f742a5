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

/// How a headless platform is made.
struct Setup {
  PathFlavour flavour = PathFlavour::kSlash;
  /// An existing folder of the machine for all that is written.
  std::string scratch;
  /// Of the backslash flavour.
  std::vector<Drive> drives = {{'C', kDriveFixed, "System", {}, true}};
  /// Where the help books are; see `HelpViewer`.
  std::string helpFolder = {};
  const std::vector<FormDescription>& forms = formDescriptions();
};

/// The platform without windows. Everything that the logic asks is answered from what stands here, and
/// everything a user would do is scripted or done by `user()` and the objects it hands out.
class Platform final : public kestrel::Platform {
 public:
  explicit Platform(Setup setup);
  ~Platform() override;

  // What a test plays with.
  User& user() { return user_; }
  Desktop& desktop() { return desktop_; }
  FileSystem& files() { return files_; }
  /// The pages of help that were shown.
  const std::vector<std::string>& helpShown() const { return helpShown_; }

  /// The container of a control, without the windows of its surface.
  std::unique_ptr<Site> createSite(const std::string& name, bool userMode);
  /// The container of an editor with its two windows, "mrgUI" with the stored layout "Dialog" and "igxImage".
  std::unique_ptr<Site> createEditorSite(bool userMode = true);
  /// What the windows on a surface need that a test puts together itself.
  Surroundings surroundings() { return {clipboard_, files_, user_}; }
  /// A form that is none of the desktop's.
  std::unique_ptr<headless::Form> createForm(const FormDescription& description);

  /// The pointer moves to a position of the screen and rests there: trackers of the windows that it is then
  /// over and no longer over are told.
  void pointerRestsAt(const Point& screen);

  // The contract.
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
};

}  // namespace kestrel::headless
