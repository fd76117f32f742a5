#pragma once

#include <string>

#include "apps/kestrel-editor/window/EditorWindow.h"
#include "platform/qt/app/Desktop.h"

namespace kestrel::app {

/// Does one line of a script: the key of a command ("zoomin"), or one of these, words parted by blanks.
///
/// - `size WIDTH HEIGHT`: the window is that large
/// - `colors FORE BACK`: the materials, as RRGGBB; BACK may be "none"
/// - `point X Y`: the pointer stands at a place of the view
/// - `drag X Y X Y ...`: and is drawn from place to place with the button held; a single one is a click
/// - `picture PNG`: the window is pictured
/// - `opened PNG KEY`: the command is run, the window that it opens pictured and closed
///
/// False where a file could not be written. Raises RuntimeError 5 for a line that says nothing sensible.
bool runStep(const std::string& line, EditorWindow& window, qt::Desktop& desktop);

}  // namespace kestrel::app
