#include "Script.h"

#include <iostream>

#include "base/DescribedError.h"

namespace kestrel::app {

bool succeeds(const std::string& what, const BoxScript& boxes, const std::function<bool()>& step) {
  const int before = boxes.unexpected;
  try {
    if (step() && boxes.unexpected == before) return true;
    if (boxes.unexpected == before) reportFailure(boxes.program, what + " failed.");
  } catch (...) {
    reportFailure(boxes.program, what + " failed: " + DescribeCurrentError().Description);
  }
  return false;
}

bool playScript(const std::vector<std::string>& lines, const Stage& stage, const std::vector<Step>& own) {
  for (const std::string& line : lines) {
    if (!succeeds("The step \"" + line + "\"", stage.boxes, [&] { return runStep(line, stage, own); })) {
      return false;
    }
  }
  return true;
}

bool saveScreenshot(const std::string& file, const Stage& stage) {
  if (file.empty()) return true;
  if (!succeeds("Saving the screenshot \"" + file + "\"", stage.boxes,
                [&] { return stage.desktop.saveScreenshot(stage.form, file); })) {
    return false;
  }
  std::cout << "Screenshot: " << file << '\n';
  return true;
}

}  // namespace kestrel::app
