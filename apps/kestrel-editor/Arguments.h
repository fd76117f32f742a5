#pragma once

#include <string>
#include <vector>

namespace kestrel::app {

/// What the command line asks for.
struct Arguments {
  std::string file;                ///< absolute path of the picture to open; empty for none
  std::vector<std::string> steps;  ///< lines of a script (Steps.h), done in order after opening
  std::string outputFolder;        ///< made before anything is written, if it is not there
  std::string saveAs;              ///< then the picture is saved under this name
  std::string screenshot;          ///< and the window pictured in this PNG file
  bool quit = false;               ///< and the program ends; nothing is asked on the way
};

/// Reads the command line. Returns false where the program has to end at once, with `exitCode`: help or the
/// version was asked for, or there is something wrong, which then has been written to standard error.
bool readArguments(int count, char** values, Arguments& arguments, int& exitCode);

}  // namespace kestrel::app
