#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "editor/ImageProcessingCtl.h"
#include "imaging/contract/Form.h"

namespace kestrel::app {

/// A window of its own for the editor control: shows the file's name in its caption, asks before changes are
/// lost, and comes back where it stood.
class EditorWindow {
 public:
  /// The thread must be attached to a platform. `closed` is called once the window has gone.
  explicit EditorWindow(std::function<void()> closed);
  ~EditorWindow();

  Form& form() { return *form_; }
  ImageProcessingCtl& editor() { return *editor_; }

  /// The user chooses the command of that dispatch key ("fileopen"). Raises RuntimeError 5 for one that is
  /// not there or cannot be chosen now.
  void runCommand(const std::string& key);

  /// Nobody is there to choose a file: requests for a name that stays empty are given up.
  void expectNobody();

 private:
  void showName();
  void close(bool& cancel);

  std::unique_ptr<Form> form_;
  std::unique_ptr<ImageProcessingCtl> editor_;
  std::vector<Connection> connections_;
};

}  // namespace kestrel::app
