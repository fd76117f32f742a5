#include "Script.h"

#include <filesystem>
#include <functional>
#include <iostream>

#include "Steps.h"
#include "base/DescribedError.h"

namespace kestrel::app {
namespace {

/// Runs one step; an error or a message box is a failure.
bool succeeds(const std::string& what, const BoxScript& boxes, const std::function<bool()>& step) {
  const int before = boxes.unexpected;
  try {
    if (step() && boxes.unexpected == before) return true;
    if (boxes.unexpected == before) reportFailure(what + " failed.");
  } catch (...) {
    reportFailure(what + " failed: " + DescribeCurrentError().Description);
  }
  return false;
}

}  // namespace

bool runScript(const Arguments& arguments, EditorWindow& window, qt::Desktop& desktop, BoxScript& boxes) {
  IImageProcessingCtl& editor = window.editor();
  if (!arguments.file.empty() && !succeeds("Opening \"" + arguments.file + "\"", boxes,
                                           [&] { return editor.OpenImage(arguments.file); })) {
    return false;
  }
  for (const std::string& line : arguments.steps) {
    if (!succeeds("The step \"" + line + "\"", boxes,
                  [&] { return runStep(line, window, desktop, boxes); })) {
      return false;
    }
  }
  if (!arguments.outputFolder.empty() &&
      !succeeds("Creating the folder \"" + arguments.outputFolder + "\"", boxes, [&] {
        std::filesystem::create_directories(arguments.outputFolder);
        return true;
      })) {
    return false;
  }
  if (!arguments.saveAs.empty()) {
    if (!succeeds("Saving \"" + arguments.saveAs + "\"", boxes,
                  [&] { return editor.SaveImageAs(arguments.saveAs); })) {
      return false;
    }
    std::cout << "Picture: " << arguments.saveAs << '\n';
  }
  if (!arguments.screenshot.empty()) {
    if (!succeeds("Saving the screenshot \"" + arguments.screenshot + "\"", boxes,
                  [&] { return desktop.saveScreenshot(window.form(), arguments.screenshot); })) {
      return false;
    }
    std::cout << "Screenshot: " << arguments.screenshot << '\n';
  }
  return true;
}

}  // namespace kestrel::app
