#pragma once

#include <string>

#include "apps/common/program/CommandLine.h"

namespace kestrel::app {

/// The parsed command line.
struct BrowserArguments : RunArguments {
  std::string place;  ///< absolute path of the folder to show, or of a file in it; empty for the user's home
};

/// See `readCommandLine`.
bool readArguments(int count, char** values, const char* program, BrowserArguments& arguments, int& exitCode);

}  // namespace kestrel::app
