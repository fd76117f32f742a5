#include <chrono>
#include <filesystem>
#include <memory>

#include "Arguments.h"
#include "Script.h"
#include "apps/kestrel-editor/script/ScriptBoxes.h"
#include "apps/kestrel-editor/window/EditorWindow.h"
#include "base/DescribedError.h"
#include "base/RuntimeError.h"
#include "engine/recovery/RecoveryFolder.h"
#include "platform/os/Paths.h"
#include "platform/posix/LineTable.h"
#include "platform/posix/SharedLibraryFactory.h"
#include "platform/qt/app/Desktop.h"
#include "platform/sqlite/SqliteStore.h"
#include "platform/sqlite/StorePath.h"
#include "settings/modProcessing.h"

namespace kestrel::app {
namespace {

qt::DesktopParts partsFor(const std::string& programFile) {
  qt::DesktopParts parts;
  parts.version = {"KestrelLib2 Image Editor", KESTREL_VERSION_MAJOR, KESTREL_VERSION_MINOR,
                   KESTREL_VERSION_REVISION};
  parts.store = std::make_unique<sqlite::SqliteStore>(sqlite::storePath());
  parts.objectFactory = std::make_unique<posix::SharedLibraryFactory>(*parts.store);
  parts.stackResolver = std::make_unique<posix::LineTable>();
  parts.helpFolder = os::textOf(os::pathOf(programFile).parent_path() / "help");
  return parts;
}

/// Beside the key store; null if the user has no place for it.
std::unique_ptr<RecoveryStore> recoveryStore() {
  const std::filesystem::path folder = sqlite::recoveryPath();
  return folder.empty() ? nullptr : std::make_unique<engine::RecoveryFolder>(folder);
}

/// The apartment of the main thread during the editor's lifetime.
struct Apartment {
  explicit Apartment(Platform& platform) {
    modProcessing::Attach(platform);
    modProcessing::Main();
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  ~Apartment() { modProcessing::Detach(); }
};

int run(const Arguments& arguments, qt::Desktop& desktop, BoxScript& boxes) {
  boxes.unattended = arguments.quit;
  qt::DesktopParts parts = partsFor(desktop.programFile());
  parts.wrapBoxes = [&boxes](std::unique_ptr<UserInterface> own) {
    return std::make_unique<ScriptBoxes>(boxes, std::move(own));
  };
  const Connection storeTrouble =
      parts.store->Unavailable.Connect([](const RuntimeError& error) { reportFailure(error.Description()); });
  desktop.assemble(std::move(parts));
  const Apartment apartment(desktop.platform());

  std::unique_ptr<RecoveryStore> kept = recoveryStore();
  EditorWindow window([&desktop] { desktop.quit(); });
  if (arguments.quit) {
    window.declineFileRequests();
  } else if (kept) {
    window.keepChanges(*kept);
    desktop.repeat(Recovery::kInterval,
                   [&window] { window.recovery()->Tick(std::chrono::steady_clock::now()); });
  }
  window.form().Show();
  desktop.settle();
  const bool done = runScript(arguments, window, desktop, boxes);
  if (arguments.quit) return done ? 0 : 1;
  return desktop.run();
}

}  // namespace
}  // namespace kestrel::app

int main(int count, char** values) {
  using namespace kestrel;
  try {
    app::Arguments arguments;
    int exitCode = 0;
    if (!app::readArguments(count, values, arguments, exitCode)) return exitCode;
    app::BoxScript boxes;
    qt::Desktop desktop(count, values, "kestrel-editor");
    return app::run(arguments, desktop, boxes);
  } catch (...) {
    const DescribedError error = DescribeCurrentError();
    if (error.Number != err::kReported) app::reportFailure(error.Description);
    return 1;
  }
}
