#include "Arguments.h"

#include <string>
#include <vector>

#include "platform/os/Paths.h"

namespace kestrel::app {
namespace {

/// The demo: the picture is fitted into the window, mirrored and rotated.
const std::vector<std::string> kDemoCommands = {"zoomout",     "zoomout",     "zoomout",    "zoomout",
                                                "zoomout",     "zoomout",     "zoomout",    "zoomout",
                                                "imagemirror", "rotateright", "rotateleft", "drawselect"};

void planDemo(const std::string& folder, Arguments& arguments) {
  arguments.steps = kDemoCommands;
  arguments.outputFolder = folder;
  // A saved picture keeps its format, so the name keeps its extension.
  arguments.saveAs =
      os::textOf(os::pathOf(folder) / "result") + os::textOf(os::pathOf(arguments.file).extension());
  arguments.screenshot = os::textOf(os::pathOf(folder) / "screenshot.png");
  arguments.quit = true;
}

}  // namespace

bool readArguments(int count, char** values, const char* program, Arguments& arguments, int& exitCode) {
  std::string demo;
  const CommandLine line{
      program,
      "Opens a picture in the image editor.",
      {{"FILE", "The picture to open", nullptr, &arguments.file},
       {"--save-as", "Saves the picture under another name", "OUT", &arguments.saveAs},
       {"--demo", "Runs a few commands and writes picture and screenshot to the folder", "DIR", &demo}}};
  if (!readCommandLine(count, values, line, arguments, exitCode)) return false;
  arguments.file = absolutePath(arguments.file);
  if (!demo.empty()) planDemo(demo, arguments);
  return true;
}

}  // namespace kestrel::app
