#pragma once

#include <string>
#include <vector>

namespace kestrel::app {

/// What every program with a window takes from its command line.
struct RunArguments {
  std::vector<std::string> steps;  ///< lines of a script (Steps.h), run in order
  std::string screenshot;          ///< path of a PNG screenshot of the window
  std::string language;            ///< a locale for the texts, such as "de"; empty means the user's
  bool quit = false;               ///< quit at the end; never wait for input
};

/// A text on the command line of one program: the value of an option ("--save-as"), or the file to open if
/// the name has no hyphens ("FILE").
struct OwnArgument {
  const char* name;
  const char* help;
  const char* type;  ///< of an option's value in the help ("PNG")
  std::string* value;
};

struct CommandLine {
  const char* program;  ///< "kestrel-editor"
  const char* purpose;  ///< a sentence
  std::vector<OwnArgument> own;
};

/// Reads the command line. Returns false if the program has to exit at once with `exitCode`: after help or
/// version, or after an error, which has been written to standard error.
bool readCommandLine(int count, char** values, const CommandLine& line, RunArguments& arguments,
                     int& exitCode);

/// The absolute path of a file on the command line; empty for none.
std::string absolutePath(const std::string& file);

}  // namespace kestrel::app
