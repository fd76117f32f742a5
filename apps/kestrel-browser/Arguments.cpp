#include "Arguments.h"

#include "apps/common/program/Program.h"
#include "platform/os/Paths.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <utility>

namespace kestrel::app {

bool readArguments(int count, char** values, BrowserArguments& arguments, int& exitCode) {
  CLI::App parser("Shows the pictures of a folder.", "kestrel-browser");
  parser.add_option("FOLDER", arguments.folder, "The folder to show; without it your home folder");
  parser.add_option("--command", arguments.steps, "Runs a command, by its key (\"viewsingle\"), or a step")
      ->type_name("KEY")
      ->take_all()
      ->expected(1);
  std::string script;
  parser.add_option("--script", script, "Then runs the steps of a script file, one per line")
      ->type_name("TXT")
      ->check(CLI::ExistingFile);
  parser.add_option("--screenshot", arguments.screenshot, "Writes a picture of the window")->type_name("PNG");
  parser.add_flag("--quit", arguments.quit, "Quits after that; never waits for input");
  parser.set_version_flag("--version", versionText());
  try {
    parser.parse(count, values);
  } catch (const CLI::ParseError& error) {
    exitCode = parser.exit(error, std::cout, std::cerr);
    return false;
  }
  if (!arguments.folder.empty()) {
    arguments.folder = os::textOf(std::filesystem::absolute(os::pathOf(arguments.folder)).lexically_normal());
  }
  if (!script.empty()) {
    for (std::string& step : readScript(script)) arguments.steps.push_back(std::move(step));
  }
  return true;
}

}  // namespace kestrel::app
