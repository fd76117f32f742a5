#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <utility>

#include "Arguments.h"
#include "Steps.h"
#include "apps/common/program/Program.h"
#include "apps/common/program/Script.h"
#include "platform/os/Paths.h"

namespace kestrel::app {
namespace {

constexpr char kProgram[] = "kestrel-browser";

std::string homeFolder() {
  const char* const home = std::getenv("HOME");
  return home && *home ? home : "/";
}

/// Why a folder cannot be shown, empty if it can.
std::string objectionTo(const std::string& folder) {
  std::error_code error;
  const auto status = std::filesystem::status(os::pathOf(folder), error);
  if (!std::filesystem::exists(status)) return "The folder \"" + folder + "\" does not exist.";
  if (!std::filesystem::is_directory(status)) return "\"" + folder + "\" is not a folder.";
  return {};
}

/// The program ends when its last window is closed.
class Browser {
 public:
  Browser(qt::Desktop& desktop, RecoveryStore* store)
      : desktop_(desktop),
        editors_({.later = [this](std::function<void()> work) { desktop_.later(std::move(work)); },
                  .closed = [this] { endWithoutWindow(); },
                  .store = store}),
        window_([this] { desktop_.later([this] { endWithoutWindow(); }); },
                [this](const std::string& file) { editors_.open(file); }) {
    desktop_.addContextEntry(window_.control(), "Open in &Editor",
                             [this] { editors_.open(window_.selectedFiles(), window_.control()); });
    if (store) {
      desktop_.repeat(Recovery::kInterval, [this] { editors_.tick(std::chrono::steady_clock::now()); });
    }
  }

  BrowserWindow& window() { return window_; }
  EditorWindows& editors() { return editors_; }

 private:
  void endWithoutWindow() {
    if (!window_.form().Visible() && !editors_.any()) desktop_.quit();
  }

  qt::Desktop& desktop_;
  EditorWindows editors_;
  BrowserWindow window_;
};

/// Shows the window on the folder. If that cannot be shown: on the user's home with a message, and returns
/// false.
bool showFolder(Browser& browser, const std::string& folder, Platform& platform) {
  const std::string objection = folder.empty() ? std::string() : objectionTo(folder);
  browser.window().show(folder.empty() || !objection.empty() ? homeFolder() : folder);
  if (objection.empty()) return true;
  platform.UserInterface().MessageBox(objection + "\r\nYour home folder is shown instead.", kBoxExclamation,
                                      {}, browser.window().form().hWnd());
  return false;
}

int run(const BrowserArguments& arguments, qt::Desktop& desktop, BoxScript& boxes) {
  boxes.unattended = arguments.quit;
  const Connection storeTrouble = assemble(desktop, "KestrelLib2 Image Browser", boxes);
  const Apartment apartment(desktop.platform());

  const std::unique_ptr<RecoveryStore> kept = arguments.quit ? nullptr : recoveryStore();
  Browser browser(desktop, kept.get());
  BrowserWindow& window = browser.window();
  const bool shown = showFolder(browser, arguments.folder, desktop.platform());
  desktop.settle();
  const Stage stage{window.form(), desktop, boxes,
                    [&window](const std::string& key) { window.runCommand(key); }};
  const bool done = (shown || !arguments.quit) &&
                    playScript(arguments.steps, stage, browserSteps(window, browser.editors(), stage)) &&
                    saveScreenshot(arguments.screenshot, stage);
  if (arguments.quit) return done ? 0 : 1;
  return desktop.run();
}

}  // namespace
}  // namespace kestrel::app

int main(int count, char** values) {
  using namespace kestrel::app;
  return runProgram(kProgram, [&] {
    BrowserArguments arguments;
    int exitCode = 0;
    if (!readArguments(count, values, arguments, exitCode)) return exitCode;
    BoxScript boxes{.program = kProgram};
    kestrel::qt::Desktop desktop(count, values, kProgram);
    return run(arguments, desktop, boxes);
  });
}
