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

constexpr char kName[] = "kestrel-browser";
constexpr char kTitle[] = "KestrelLib2 Image Browser";

std::string homeFolder() {
  const char* const home = std::getenv("HOME");
  return home && *home ? home : "/";
}

/// What the command line asks for.
struct Wanted {
  std::string folder;
  std::string file;       ///< the name of a file to select; empty for none
  std::string objection;  ///< why the folder cannot be shown; empty if it can
};

Wanted wantedAt(const std::string& place) {
  namespace fs = std::filesystem;
  if (place.empty()) return {homeFolder(), {}, {}};
  std::error_code error;
  const fs::path path = os::pathOf(place);
  switch (fs::status(path, error).type()) {
    case fs::file_type::directory:
      return {place, {}, {}};
    case fs::file_type::regular:
      return {os::textOf(path.parent_path()), os::textOf(path.filename()), {}};
    case fs::file_type::not_found:
      return {homeFolder(), {}, "The folder or file \"" + place + "\" does not exist."};
    default:
      return {homeFolder(), {}, "\"" + place + "\" cannot be shown: it is no folder and no picture file."};
  }
}

/// The program ends when its last window is closed.
class Browser {
 public:
  Browser(qt::Desktop& desktop, RecoveryStore* store)
      : desktop_(desktop),
        editors_({.later = [this](std::function<void()> work) { desktop_.later(std::move(work)); },
                  .closed = [this] { endWithoutWindow(); },
                  .store = store}),
        window_(
            kTitle, [this] { desktop_.later([this] { endWithoutWindow(); }); },
            [this](const std::string& file) { editors_.open(file); }) {
    desktop_.addContextEntry(window_.control(), "Open in &Editor",
                             [this] { editors_.open(window_.selectedFiles(), window_.control()); });
    if (store) {
      ticks_ = desktop_.repeat(
          Recovery::kInterval, [this] { return editors_.needsTicks(); },
          [this] { editors_.tick(std::chrono::steady_clock::now()); });
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
  std::shared_ptr<void> ticks_;
};

/// Shows the window on that folder or file. If that cannot be shown: on the user's home with a message, and
/// returns false.
bool showPlace(Browser& browser, const std::string& place, Platform& platform) {
  const Wanted wanted = wantedAt(place);
  browser.window().show(wanted.folder, wanted.file);
  if (wanted.objection.empty()) return true;
  platform.UserInterface().MessageBox(wanted.objection + "\r\nYour home folder is shown instead.",
                                      kBoxExclamation, {}, browser.window().form().hWnd());
  return false;
}

int run(const BrowserArguments& arguments, qt::Desktop& desktop, BoxScript& boxes) {
  const std::unique_ptr<RecoveryStore> kept = arguments.quit ? nullptr : recoveryStore();
  Browser browser(desktop, kept.get());
  BrowserWindow& window = browser.window();
  const bool shown = showPlace(browser, arguments.place, desktop.platform());
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
  BrowserArguments arguments;
  return runProgram(
      count, values,
      {.name = kName,
       .title = kTitle,
       .readArguments =
           [&](int& exitCode) { return readArguments(count, values, kName, arguments, exitCode); },
       .arguments = arguments,
       .run = [&](kestrel::qt::Desktop& desktop,
                  BoxScript& boxes) { return run(arguments, desktop, boxes); }});
}
