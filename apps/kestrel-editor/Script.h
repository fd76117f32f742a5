#pragma once

#include "Arguments.h"
#include "apps/kestrel-editor/window/EditorWindow.h"
#include "platform/qt/app/Desktop.h"

namespace kestrel::app {

/// Executes the command line in order: opens, runs the steps, saves, takes the screenshot. Each failure is a
/// line on standard error; the first one ends the script. `boxes` counts the suppressed boxes, which are
/// failures too. True if every step succeeded.
bool runScript(const Arguments& arguments, EditorWindow& window, qt::Desktop& desktop, const int& boxes);

}  // namespace kestrel::app
