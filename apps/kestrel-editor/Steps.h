#pragma once

#include <string>

#include "apps/kestrel-editor/script/ScriptBoxes.h"
#include "apps/kestrel-editor/window/EditorWindow.h"
#include "platform/qt/app/Desktop.h"

namespace kestrel::app {

/// Runs one line of a script: the key of a command ("zoomin"), or one of these, separated by blanks. A
/// word with blanks is in double quotes.
///
/// - `size WIDTH HEIGHT`: resizes the window
/// - `colors FORE BACK`: sets the materials, as RRGGBB; BACK may be "none"
/// - `point X Y`: moves the pointer to a position of the view
/// - `drag X Y X Y ...`: drags along the positions; a single one is a click
/// - `picture PNG`: saves a screenshot of the window
/// - `opened PNG KEY`: runs the command, saves a screenshot of the window that it opens, and closes that
/// - `dialog KEY WORD...`: runs the command, and carries out the words in the dialog that it opens
///   (script/DialogWords.h)
///
/// False if a file could not be written. Raises RuntimeError 5 for an invalid line and for a dialog that
/// does not take the words.
bool runStep(const std::string& line, EditorWindow& window, qt::Desktop& desktop, BoxScript& boxes);

}  // namespace kestrel::app
