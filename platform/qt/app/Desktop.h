#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "DesktopParts.h"
#include "imaging/contract/Control.h"
#include "imaging/contract/Platform.h"

namespace kestrel::qt {

/// A desktop program: the toolkit's application and the platform on it. The face that programs see; no header
/// of the toolkit comes with it. One per process, on the main thread.
class Desktop {
 public:
  /// The arguments must stay where they are for as long as this lives; the toolkit's own are taken out.
  Desktop(int& argumentCount, char** arguments, const std::string& desktopName);
  ~Desktop();
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  /// Makes the platform; once, before the first use of `platform`.
  void assemble(DesktopParts parts);
  kestrel::Platform& platform();
  /// Full path of the running program.
  std::string programFile() const;

  /// Works until `quit` is called; the result is the program's exit code.
  int run();
  void quit(int exitCode = 0);
  /// Works until nothing is left to do at once: windows that were shown are then painted.
  void settle();

  /// Writes a picture of the form's window; false if that failed.
  bool saveScreenshot(Form& form, const std::string& filename);
  /// Runs `open`, writes a picture of the window that it opens, be it a dialog that it waits for or a window
  /// that stays, and closes that window; false if none came, or the file could not be written.
  bool saveOpenedWindow(const std::function<void()>& open, const std::string& filename);

  /// Moves the pointer over the control, or draws it along the path with the left button held; a path of one
  /// point is a click. Positions are those of the control.
  void movePointer(const Control& control, Point to);
  void drag(const Control& control, const std::vector<Point>& path);

 private:
  struct Inside;
  std::unique_ptr<Inside> inside_;
};

}  // namespace kestrel::qt
