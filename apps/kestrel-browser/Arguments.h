#pragma once

#include <string>
#include <vector>

namespace kestrel::app {

/// The parsed command line.
struct BrowserArguments {
  std::string folder;              ///< absolute path of the folder to show; empty for the user's home
  std::vector<std::string> steps;  ///< lines of a script (Steps.h), run in order
  std::string screenshot;          ///< path of a PNG screenshot of the window
  bool quit = false;               ///< quit at the end; never wait for input
};

/// Reads the command line. Returns false if the program has to exit at once with `exitCode`: after help or
/// version, or after an error, which has been written to standard error.
bool readArguments(int count, char** values, BrowserArguments& arguments, int& exitCode);

}  // namespace kestrel::app
