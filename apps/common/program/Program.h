#pragma once

#include <functional>
#include <memory>
#include <string>

#include "CommandLine.h"
#include "apps/common/script/ScriptBoxes.h"
#include "imaging/contract/Recovery.h"
#include "platform/qt/app/Desktop.h"

namespace kestrel::app {

/// One of our programs with a window, without its window.
struct Program {
  const char* name;   ///< "kestrel-editor"
  const char* title;  ///< for the about box
  /// Reads the command line; see `readCommandLine`.
  std::function<bool(int& exitCode)> readArguments;
  /// What that has read.
  const RunArguments& arguments;
  /// Shows the window, plays the script and, unless the arguments say to quit, runs the desktop. Returns the
  /// exit code. The desktop is assembled: version, settings, help, error reports, and boxes that the script
  /// answers. The main thread is attached to it.
  std::function<int(qt::Desktop& desktop, BoxScript& boxes)> run;
};

/// The body of `main`. An error is a line on standard error and exit code 1.
int runProgram(int count, char** values, const Program& program);

/// Where unsaved changes are kept: next to the key store. Null if the user has no place for it.
std::unique_ptr<RecoveryStore> recoveryStore();

}  // namespace kestrel::app
