#include "Arguments.h"

namespace kestrel::app {

bool readArguments(int count, char** values, const char* program, BrowserArguments& arguments,
                   int& exitCode) {
  const CommandLine line{
      program,
      "Shows the pictures of a folder.",
      {{"FOLDER", "The folder to show, or a picture to select in its folder; without it your home folder",
        nullptr, &arguments.place}}};
  if (!readCommandLine(count, values, line, arguments, exitCode)) return false;
  arguments.place = absolutePath(arguments.place);
  return true;
}

}  // namespace kestrel::app
