#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/common/script/ScriptBoxes.h"
#include "apps/common/script/Words.h"
#include "platform/qt/app/Desktop.h"

namespace kestrel::app {

/// What the steps of a script work on.
struct Stage {
  Form& form;
  qt::Desktop& desktop;
  BoxScript& boxes;
  /// Runs a command by its key. Raises RuntimeError 5 for one that cannot be used.
  std::function<void(const std::string&)> runCommand;
};

/// A step that is not a command: its name, the minimum number of arguments, and its action, which returns
/// false if a file could not be written.
struct Step {
  std::string_view name;
  std::size_t words;
  std::function<bool(const Words& words)> run;
};

/// Runs one line of a script: a step of the program, the key of a command ("zoomin"), or one of these,
/// separated by blanks. A word with blanks is in double quotes.
///
/// - `size WIDTH HEIGHT`: resizes the window
/// - `picture PNG`: saves a screenshot of the window
/// - `opened PNG KEY`: runs the command, saves a screenshot of the window, dialog or box that it opens, and
///   closes that
/// - `dialog KEY WORD...`: runs the command, and carries out the words in the dialog that it opens
///   (script/DialogWords.h)
///
/// False if a file could not be written. Raises RuntimeError 5 for an invalid line, for a command that opens
/// nothing, and for a dialog that does not take the words.
bool runStep(const std::string& line, const Stage& stage, const std::vector<Step>& own);

}  // namespace kestrel::app
