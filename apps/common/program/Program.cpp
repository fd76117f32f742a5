#include "Program.h"

#include <filesystem>
#include <fstream>
#include <utility>

#include "base/DescribedError.h"
#include "base/RuntimeError.h"
#include "engine/recovery/RecoveryFolder.h"
#include "platform/os/Paths.h"
#include "platform/posix/LineTable.h"
#include "platform/posix/SharedLibraryFactory.h"
#include "platform/sqlite/SqliteStore.h"
#include "platform/sqlite/StorePath.h"
#include "settings/modProcessing.h"

namespace kestrel::app {

Connection assemble(qt::Desktop& desktop, const std::string& title, BoxScript& boxes) {
  qt::DesktopParts parts;
  parts.version = {title, KESTREL_VERSION_MAJOR, KESTREL_VERSION_MINOR, KESTREL_VERSION_REVISION};
  parts.store = std::make_unique<sqlite::SqliteStore>(sqlite::storePath());
  parts.objectFactory = std::make_unique<posix::SharedLibraryFactory>(*parts.store);
  parts.stackResolver = std::make_unique<posix::LineTable>();
  parts.helpFolder = os::textOf(os::pathOf(desktop.programFile()).parent_path() / "help");
  parts.wrapBoxes = [&boxes](std::unique_ptr<UserInterface> own) {
    return std::make_unique<ScriptBoxes>(boxes, std::move(own));
  };
  Connection trouble = parts.store->Unavailable.Connect(
      [&boxes](const RuntimeError& error) { reportFailure(boxes.program, error.Description()); });
  desktop.assemble(std::move(parts));
  return trouble;
}

Apartment::Apartment(Platform& platform) {
  modProcessing::Attach(platform);
  modProcessing::Main();
}

Apartment::~Apartment() { modProcessing::Detach(); }

std::unique_ptr<RecoveryStore> recoveryStore() {
  const std::filesystem::path folder = sqlite::recoveryPath();
  return folder.empty() ? nullptr : std::make_unique<engine::RecoveryFolder>(folder);
}

std::vector<std::string> readScript(const std::string& file) {
  std::vector<std::string> steps;
  std::ifstream lines(os::pathOf(file));
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line.front() != '#') steps.push_back(line);
  }
  return steps;
}

std::string versionText() {
  return std::to_string(KESTREL_VERSION_MAJOR) + "." + std::to_string(KESTREL_VERSION_MINOR) + "." +
         std::to_string(KESTREL_VERSION_REVISION);
}

int runProgram(const std::string& program, const std::function<int()>& body) {
  try {
    return body();
  } catch (...) {
    const DescribedError error = DescribeCurrentError();
    if (error.Number != err::kReported) reportFailure(program, error.Description);
    return 1;
  }
}

}  // namespace kestrel::app
