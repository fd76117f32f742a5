#include <chrono>
#include <memory>

#include "Arguments.h"
#include "Script.h"
#include "apps/common/program/Program.h"
#include "apps/common/window/EditorWindow.h"

namespace kestrel::app {
namespace {

constexpr char kName[] = "kestrel-editor";

int run(const Arguments& arguments, qt::Desktop& desktop, BoxScript& boxes) {
  std::unique_ptr<RecoveryStore> kept = recoveryStore();
  EditorWindow window([&desktop] { desktop.quit(); });
  std::shared_ptr<void> ticks;
  if (arguments.quit) {
    window.declineFileRequests();
  } else if (kept) {
    window.keepChanges(*kept);
    ticks = desktop.repeat(
        Recovery::kInterval, [&window] { return window.recovery()->NeedsTicks(); },
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
  Arguments arguments;
  return runProgram(
      count, values,
      {.name = kName,
       .title = kEditorTitle,
       .readArguments =
           [&](int& exitCode) { return readArguments(count, values, kName, arguments, exitCode); },
       .arguments = arguments,
       .run = [&](kestrel::qt::Desktop& desktop,
                  BoxScript& boxes) { return run(arguments, desktop, boxes); }});
}
