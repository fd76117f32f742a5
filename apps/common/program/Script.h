#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Steps.h"

namespace kestrel::app {

/// Runs one step of the program's command line. A failure is a line on standard error: an error, an
/// unexpected box in `boxes`, or false. True if the step succeeded.
bool succeeds(const std::string& what, const BoxScript& boxes, const std::function<bool()>& step);

/// Runs the lines in order; the first failure ends the script. True if every line succeeded.
bool playScript(const std::vector<std::string>& lines, const Stage& stage, const std::vector<Step>& own);

/// Saves a screenshot of the program's window and reports its name; does nothing for an empty name.
bool saveScreenshot(const std::string& file, const Stage& stage);

}  // namespace kestrel::app
