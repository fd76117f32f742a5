#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "apps/common/script/ScriptBoxes.h"
#include "imaging/contract/Platform.h"
#include "imaging/contract/Recovery.h"
#include "platform/qt/app/Desktop.h"

namespace kestrel::app {

/// Assembles the desktop of one of our programs: version, settings, help, error reports, and boxes that the
/// script answers. Trouble with the settings is reported as the program's. `boxes` and `desktop` must outlive
/// the result.
Connection assemble(qt::Desktop& desktop, const std::string& title, BoxScript& boxes);

/// The apartment of the main thread during the lifetime of the program's windows.
class Apartment {
 public:
  explicit Apartment(Platform& platform);
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  ~Apartment();
};

/// Where unsaved changes are kept: next to the key store. Null if the user has no place for it.
std::unique_ptr<RecoveryStore> recoveryStore();

/// The lines of a script file without blank lines and comments, which begin with "#".
std::vector<std::string> readScript(const std::string& file);

/// The version as `--version` prints it.
std::string versionText();

/// Runs the body of `main`. An error is a line on standard error and exit code 1.
int runProgram(const std::string& program, const std::function<int()>& body);

}  // namespace kestrel::app
