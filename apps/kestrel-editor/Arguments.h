#pragma once

#include <string>
#include <vector>

namespace kestrel::app {

/// The parsed command line.
struct Arguments {
  std::string file;                ///< absolute path of the picture to open; empty for none
  std::vector<std::string> steps;  ///< lines of a script (Steps.h), run in order after opening
  std::string outputFolder;        ///< created if needed before the first write
  std::string saveAs;              ///< path to save the picture to after the steps
  std::string screenshot;          ///< path of a PNG screenshot of the window
  bool quit = false;               ///< quit at the end; never wait for input
};

/// Reads the command line. Returns false if the program has to exit at once with `exitCode`: after help or
/// version, or after an error, which has been written to standard error.
bool readArguments(int count, char** values, Arguments& arguments, int& exitCode);

}  // namespace kestrel::app
