#include <chrono>
#include <memory>

#include "Arguments.h"
#include "Script.h"
#include "apps/common/program/Program.h"
#include "apps/common/window/EditorWindow.h"

namespace kestrel::app {
namespace {

constexpr char kProgram[] = "kestrel-editor";

int run(const Arguments& arguments, qt::Desktop& desktop, BoxScript& boxes) {
  boxes.unattended = arguments.quit;
  const Connection storeTrouble = assemble(desktop, kEditorTitle, boxes);
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
  using namespace kestrel::app;
  return runProgram(kProgram, [&] {
    Arguments arguments;
    int exitCode = 0;
    if (!readArguments(count, values, arguments, exitCode)) return exitCode;
    BoxScript boxes{.program = kProgram};
    kestrel::qt::Desktop desktop(count, values, kProgram);
    return run(arguments, desktop, boxes);
  });
}
