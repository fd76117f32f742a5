#include "Script.h"

#include <filesystem>
#include <iostream>

#include "Steps.h"
#include "apps/common/program/Script.h"

namespace kestrel::app {

bool runScript(const Arguments& arguments, EditorWindow& window, qt::Desktop& desktop, BoxScript& boxes) {
  IImageProcessingCtl& editor = window.editor();
  if (!arguments.file.empty() && !succeeds("Opening \"" + arguments.file + "\"", boxes,
                                           [&] { return editor.OpenImage(arguments.file); })) {
    return false;
  }
  const Stage stage{window.form(), desktop, boxes,
                    [&window](const std::string& key) { runKey(window, key); }};
  if (!playScript(arguments.steps, stage, editorSteps(window, desktop))) return false;
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
  return saveScreenshot(arguments.screenshot, stage);
}

}  // namespace kestrel::app
