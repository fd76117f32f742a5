#include "Steps.h"

#include <chrono>

namespace kestrel::app {
namespace {

constexpr std::chrono::seconds kPatience(120);

bool waitUntilLoaded(const BrowserWindow& window, qt::Desktop& desktop) {
  const auto end = std::chrono::steady_clock::now() + kPatience;
  desktop.settle();
  while (window.loading()) {
    if (std::chrono::steady_clock::now() > end) refuse("The folder is still being loaded.");
    desktop.settle();
  }
  return true;
}

bool setView(BrowserWindow& window, const std::string& word) {
  const std::int32_t view = numberOf(word);
  if (view < kViewThumbnail || view > kViewSingle) refuse("\"" + word + "\" is not a view: 0, 1 or 2.");
  window.browser().ObjectThumbnailView().View(view);
  return true;
}

/// A command that asks for a folder. Nobody answers in an unattended run: the question is canceled.
Step folderCommand(const char* key, BrowserWindow& window, const Stage& stage) {
  return {key, 0, [key, &window, &stage](const Words&) {
            if (!stage.boxes.unattended) {
              window.runCommand(key);
              return true;
            }
            stage.desktop.useOpenedDialog([&] { window.runCommand(key); }, [](Form&) {});
            refuse("The question for a folder was canceled, since nobody can answer it.");
          }};
}

}  // namespace

std::vector<Step> browserSteps(BrowserWindow& window, EditorWindows& editors, const Stage& stage) {
  qt::Desktop& desktop = stage.desktop;
  return {
      {"path", 1,
       [&window](const Words& words) {
         window.path(words[0]);
         return true;
       }},
      {"view", 1, [&window](const Words& words) { return setView(window, words[0]); }},
      {"loaded", 0, [&window, &desktop](const Words&) { return waitUntilLoaded(window, desktop); }},
      {"select", 1,
       [&window](const Words& words) {
         std::vector<std::int32_t> numbers;
         for (const std::string& word : words) numbers.push_back(numberOf(word));
         window.select(numbers);
         return true;
       }},
      {"open", 1,
       [&window, &editors](const Words& words) {
         return editors.open(window.browser().Thumbnails().Item(numberOf(words[0])).Filename());
       }},
      {"editor", 1,
       [&editors, &desktop](const Words& words) {
         if (!editors.latest()) refuse("No editor is open.");
         return desktop.saveScreenshot(editors.latest()->form(), words[0]);
       }},
      folderCommand("imagecopy", window, stage),
      folderCommand("imagemove", window, stage),
  };
}

}  // namespace kestrel::app
