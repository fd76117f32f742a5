#pragma once

#include <string>

#include "apps/common/program/CommandLine.h"

namespace kestrel::app {

/// The parsed command line.
struct Arguments : RunArguments {
  std::string file;          ///< absolute path of the picture to open; empty for none
  std::string outputFolder;  ///< created if needed before the first write
  std::string saveAs;        ///< path to save the picture to after the steps
};

/// See `readCommandLine`.
bool readArguments(int count, char** values, const char* program, Arguments& arguments, int& exitCode);

}  // namespace kestrel::app
