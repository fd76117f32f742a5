#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "DesktopParts.h"
#include "imaging/contract/Control.h"
#include "imaging/contract/Platform.h"

namespace kestrel::qt {

/// A desktop program: the toolkit's application and the platform on it. The interface for programs; it
/// includes no header of the toolkit. One per process, on the main thread.
class Desktop {
 public:
  /// The arguments must outlive this object; the toolkit's own arguments are removed. `language` is a locale,
  /// such as "de"; empty means the user's.
  Desktop(int& argumentCount, char** arguments, const std::string& desktopName,
          const std::string& language = {});
  ~Desktop();
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  /// Creates the platform. Call once, before the first use of `platform`.
  void assemble(DesktopParts parts);
  kestrel::Platform& platform();
  /// Full path of the running program.
  std::string programFile() const;

  /// Runs the event loop until `quit` is called; returns the exit code.
  int run();
  void quit(int exitCode = 0);
  /// Calls `work` at this interval while it is needed and events are processed, until the returned object
  /// ends. `needed` is called often and must be cheap.
  [[nodiscard]] std::shared_ptr<void> repeat(std::chrono::milliseconds interval, std::function<bool()> needed,
                                             std::function<void()> work);
  /// Calls `work` once, when control is back in the event loop.
  void later(std::function<void()> work);
  /// Adds an entry of the program to the context menu that a control of ours shows for its items. The text
  /// may have an "&" before an access key.
  void addContextEntry(const Control& control, const std::string& text, std::function<void()> chosen);
  /// Processes pending events; shown windows are painted afterwards.
  void settle();

  /// Writes a screenshot of the form's window; false on failure.
  bool saveScreenshot(Form& form, const std::string& filename);
  /// Runs `open`, writes a screenshot of the window that it opens (a modal dialog or a window that stays),
  /// and closes that window. `opened` is false if no window appeared. False if no file was written.
  bool saveOpenedWindow(const std::function<void()>& open, const std::string& filename, bool& opened);
  /// Runs `open`, and `use` with the form of the modal dialog that it opens, once that has appeared. A dialog
  /// that is still open afterwards is canceled. Any other modal window is closed as by Escape. False if no
  /// form opened. Errors of `use` are raised again.
  bool useOpenedDialog(const std::function<void()>& open, const std::function<void(Form&)>& use);

  /// Moves the pointer to a position of the control, or drags it along the path with the left button; a path
  /// of one point is a click. Positions are relative to the control.
  void movePointer(const Control& control, Point to);
  void drag(const Control& control, const std::vector<Point>& path);

 private:
  struct Inside;
  std::unique_ptr<Inside> inside_;
};

}  // namespace kestrel::qt
