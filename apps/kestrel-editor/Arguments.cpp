#include "Arguments.h"

#include "apps/common/program/Program.h"
#include "platform/os/Paths.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <utility>

namespace kestrel::app {
namespace {

namespace fs = std::filesystem;

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

bool readArguments(int count, char** values, Arguments& arguments, int& exitCode) {
  CLI::App parser("Opens a picture in the image editor.", "kestrel-editor");
  std::string demo;
  parser.add_option("FILE", arguments.file, "The picture to open");
  parser.add_option("--command", arguments.steps, "Runs a command after opening, by its key (\"zoomin\")")
      ->type_name("KEY")
      ->take_all()
      ->expected(1);
  std::string script;
  parser.add_option("--script", script, "Then runs the steps of a script file, one per line")
      ->type_name("TXT")
      ->check(CLI::ExistingFile);
  parser.add_option("--save-as", arguments.saveAs, "Saves the picture under another name")->type_name("OUT");
  parser.add_option("--screenshot", arguments.screenshot, "Writes a picture of the window")->type_name("PNG");
  parser.add_flag("--quit", arguments.quit, "Quits after that; never waits for input");
  parser.add_option("--demo", demo, "Runs a few commands and writes picture and screenshot to the folder")
      ->type_name("DIR");
  parser.set_version_flag("--version", versionText());
  try {
    parser.parse(count, values);
  } catch (const CLI::ParseError& error) {
    exitCode = parser.exit(error, std::cout, std::cerr);
    return false;
  }
  if (!arguments.file.empty())
    arguments.file = os::textOf(fs::absolute(os::pathOf(arguments.file)).lexically_normal());
  if (!script.empty()) {
    for (std::string& step : readScript(script)) arguments.steps.push_back(std::move(step));
  }
  if (!demo.empty()) planDemo(demo, arguments);
  return true;
}

}  // namespace kestrel::app
