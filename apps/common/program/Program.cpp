#include "Program.h"

#include <filesystem>
#include <utility>

#include "base/DescribedError.h"
#include "base/RuntimeError.h"
#include "engine/recovery/RecoveryFolder.h"
#include "platform/os/Paths.h"
#include "platform/posix/LineTable.h"
#include "platform/posix/SharedLibraryFactory.h"
#include "platform/qt/app/HelpFolder.h"
#include "platform/sqlite/SqliteStore.h"
#include "platform/sqlite/StorePath.h"
#include "settings/modProcessing.h"

namespace kestrel::app {
namespace {

/// Trouble with the settings is reported as the program's. `boxes` and `desktop` must outlive the result.
Connection assemble(qt::Desktop& desktop, const std::string& title, BoxScript& boxes) {
  qt::DesktopParts parts;
  parts.version = {title, KESTREL_VERSION_MAJOR, KESTREL_VERSION_MINOR, KESTREL_VERSION_REVISION};
  parts.store = std::make_unique<sqlite::SqliteStore>(sqlite::storePath());
  parts.objectFactory = std::make_unique<posix::SharedLibraryFactory>(*parts.store);
  parts.stackResolver = std::make_unique<posix::LineTable>();
  parts.helpFolder = qt::helpFolder(desktop.programFile());
  parts.wrapBoxes = [&boxes](std::unique_ptr<UserInterface> own) {
    return std::make_unique<ScriptBoxes>(boxes, std::move(own));
  };
  Connection trouble = parts.store->Unavailable.Connect(
      [&boxes](const RuntimeError& error) { reportFailure(boxes.program, error.Description()); });
  desktop.assemble(std::move(parts));
  return trouble;
}

/// The apartment of the main thread during the lifetime of the program's windows.
class Apartment {
 public:
  explicit Apartment(Platform& platform) {
    modProcessing::Attach(platform);
    modProcessing::Main();
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  ~Apartment() { modProcessing::Detach(); }
};

int runOnDesktop(int count, char** values, const Program& program) {
  int exitCode = 0;
  if (!program.readArguments(exitCode)) return exitCode;
  BoxScript boxes{.program = program.name, .unattended = program.arguments.quit};
  qt::Desktop desktop(count, values, program.name, program.arguments.language);
  const Connection storeTrouble = assemble(desktop, program.title, boxes);
  const Apartment apartment(desktop.platform());
  return program.run(desktop, boxes);
}

}  // namespace

int runProgram(int count, char** values, const Program& program) {
  try {
    return runOnDesktop(count, values, program);
  } catch (...) {
    const DescribedError error = DescribeCurrentError();
    if (error.Number != err::kReported) reportFailure(program.name, error.Description);
    return 1;
  }
}

std::unique_ptr<RecoveryStore> recoveryStore() {
  const std::filesystem::path folder = sqlite::recoveryPath();
  return folder.empty() ? nullptr : std::make_unique<engine::RecoveryFolder>(folder);
}

}  // namespace kestrel::app
