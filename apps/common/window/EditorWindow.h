#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "diagnostics/CountedForm.h"
#include "editor/ImageProcessingCtl.h"
#include "recovery/Recovery.h"

namespace kestrel::app {

/// The editor's title in captions, also in a program of another title.
inline constexpr char kEditorTitle[] = "KestrelLib2 Image Editor";

/// A window for the editor control: shows the file's name in its caption, reports unsaved changes to the
/// desktop and asks about them, and restores its position.
class EditorWindow {
 public:
  /// The thread must be attached to a platform. `closed` is called after the window was unloaded.
  explicit EditorWindow(std::function<void()> closed);
  ~EditorWindow();

  Form& form() { return *form_; }
  IImageProcessingCtl& editor() { return *editor_; }

  /// Runs the command of that dispatch key ("fileopen"). Raises RuntimeError 5 for an unknown or disabled
  /// command.
  void runCommand(const std::string& key);

  /// Keeps unsaved changes in the store, and offers those in it. Call it before the window is shown, and then
  /// `recovery()->Tick` at its interval. The store must outlive the window.
  void keepChanges(RecoveryStore& store);
  /// Null without a store.
  Recovery* recovery() { return recovery_.get(); }

  /// For unattended runs: cancels requests for a file name, so no file dialog opens.
  void declineFileRequests();

 private:
  void Form_Load();
  void Form_QueryUnload(bool& Cancel);
  void Processing_ExitRequest();
  void Processing_ImageOpen();
  void Processing_ImageSave();
  void igxImage_ModifiedChanged();
  void showName();
  std::string qdkDumpModuleVariables() const;

  CountedForm form_;
  std::unique_ptr<ImageProcessingCtl> editor_;
  std::unique_ptr<Recovery> recovery_;
  std::vector<Connection> connections_;
};

}  // namespace kestrel::app
