#pragma once

#include "Arguments.h"
#include "apps/kestrel-editor/window/EditorWindow.h"
#include "platform/qt/app/Desktop.h"

namespace kestrel::app {

/// Does in order what the command line asks for: opens, does the steps, saves, pictures the window. Each
/// failure is a line on standard error; the first ends the script. `boxes` counts the boxes that were shown
/// to nobody, which are failures too. True if every step succeeded.
bool runScript(const Arguments& arguments, EditorWindow& window, qt::Desktop& desktop, const int& boxes);

}  // namespace kestrel::app
