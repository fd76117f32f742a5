#pragma once

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "apps/common/window/EditorWindow.h"
#include "imaging/contract/Recovery.h"

namespace kestrel::app {

/// The editors that the browser has opened, each in a window of its own.
class EditorWindows {
 public:
  struct Surroundings {
    /// Runs work once control is back in the event loop.
    std::function<void(std::function<void()>)> later;
    /// Called after an editor's window was closed and destroyed.
    std::function<void()> closed;
    /// Where unsaved changes are kept; null for nowhere. Must outlive the windows.
    RecoveryStore* store = nullptr;
  };

  explicit EditorWindows(Surroundings surroundings);
  EditorWindows(const EditorWindows&) = delete;
  EditorWindows& operator=(const EditorWindows&) = delete;
  ~EditorWindows();

  /// Opens a picture in a window, or shows the window that has it. False if the picture could not be opened,
  /// which the editor has reported.
  bool open(const std::string& file);
  /// Opens several pictures; of a large number only the first ones, with a notice to the user. `owner` is the
  /// window of the notice.
  void open(const std::vector<std::string>& files, const Control& owner);

  bool any() const { return !windows_.empty(); }
  /// The window that was opened last, null if there is none.
  EditorWindow* latest() { return windows_.empty() ? nullptr : windows_.back().get(); }
  /// Keeps unsaved changes; call it at the interval of `Recovery`, while it is needed.
  void tick(std::chrono::steady_clock::time_point now);
  bool needsTicks() const;

 private:
  EditorWindow& make();
  void close(const EditorWindow* window);

  Surroundings surroundings_;
  std::list<std::unique_ptr<EditorWindow>> windows_;
  /// Ends with this object, so that later work does not use it.
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace kestrel::app
