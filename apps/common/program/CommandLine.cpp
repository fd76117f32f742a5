#include "CommandLine.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "apps/common/version/Version.h"
#include "platform/os/Paths.h"

namespace kestrel::app {
namespace {

/// Appends the lines of a script file without blank lines and comments, which begin with "#".
void readScript(const std::string& file, std::vector<std::string>& steps) {
  std::ifstream lines(os::pathOf(file));
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line.front() != '#') steps.push_back(line);
  }
}

}  // namespace

bool readCommandLine(int count, char** values, const CommandLine& line, RunArguments& arguments,
                     int& exitCode) {
  CLI::App parser(line.purpose, line.program);
  for (const OwnArgument& own : line.own) {
    CLI::Option* const option = parser.add_option(own.name, *own.value, own.help);
    if (own.type != nullptr) option->type_name(own.type);
  }
  parser
      .add_option("--command", arguments.steps,
                  "Runs a command of the menus, by its key (\"helpcontents\"), or another step of a script")
      ->type_name("KEY")
      ->take_all()
      ->expected(1);
  std::string script;
  parser.add_option("--script", script, "Then runs the steps of a script file, one per line")
      ->type_name("TXT")
      ->check(CLI::ExistingFile);
  parser.add_option("--screenshot", arguments.screenshot, "Writes a picture of the window")->type_name("PNG");
  parser.add_option("--language", arguments.language, "Shows texts in a language: ar, de, en, es or ja")
      ->type_name("LOCALE");
  parser.add_flag("--quit", arguments.quit, "Quits after that; never waits for input");
  parser.set_version_flag("--version", versionText(line.program));
  try {
    parser.parse(count, values);
  } catch (const CLI::ParseError& error) {
    exitCode = parser.exit(error, std::cout, std::cerr);
    return false;
  }
  if (!script.empty()) readScript(script, arguments.steps);
  return true;
}

std::string absolutePath(const std::string& file) {
  if (file.empty()) return {};
  return os::textOf(std::filesystem::absolute(os::pathOf(file)).lexically_normal());
}

}  // namespace kestrel::app
