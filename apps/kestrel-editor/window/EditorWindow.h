#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "diagnostics/CountedForm.h"
#include "editor/ImageProcessingCtl.h"

namespace kestrel::app {

/// A window of its own for the editor control: shows the file's name in its caption, asks before changes are
/// lost, and comes back where it stood.
class EditorWindow {
 public:
  /// The thread must be attached to a platform. `closed` is called once the window has gone.
  explicit EditorWindow(std::function<void()> closed);
  ~EditorWindow();

  Form& form() { return *form_; }
  IImageProcessingCtl& editor() { return *editor_; }

  /// The user chooses the command of that dispatch key ("fileopen"). Raises RuntimeError 5 for one that is
  /// not there or cannot be chosen now.
  void runCommand(const std::string& key);

  /// Nobody is there to choose a file: requests for a name that stays empty are given up.
  void expectNobody();

 private:
  void Form_Load();
  void Form_QueryUnload(bool& Cancel);
  void Processing_ExitRequest();
  void Processing_ImageOpen();
  void Processing_ImageSave();
  void showName();
  std::string qdkDumpModuleVariables() const;

  CountedForm form_;
  std::unique_ptr<ImageProcessingCtl> editor_;
  std::vector<Connection> connections_;
};

}  // namespace kestrel::app
