#pragma once

#include <string>
#include <vector>

#include "apps/common/program/Steps.h"
#include "apps/common/window/EditorWindow.h"

namespace kestrel::app {

/// The steps of a script that the editor adds to those of all programs:
///
/// - `colors FORE BACK`: sets the materials, as RRGGBB; BACK may be "none"
/// - `point X Y`: moves the pointer to a position of the view
/// - `drag X Y X Y ...`: drags along the positions; a single one is a click
std::vector<Step> editorSteps(EditorWindow& window, qt::Desktop& desktop);

/// Runs a command by its key, or opens the thumbnail dialog for "thumbnail": hosts open it and no command
/// does. Its thumbnail is dropped.
void runKey(EditorWindow& window, const std::string& key);

}  // namespace kestrel::app
