#pragma once

#include "Arguments.h"
#include "apps/common/script/ScriptBoxes.h"
#include "apps/common/window/EditorWindow.h"
#include "platform/qt/app/Desktop.h"

namespace kestrel::app {

/// Executes the command line in order: opens, runs the steps, saves, takes the screenshot. Each failure is a
/// line on standard error; the first one ends the script. An unexpected box in `boxes` is a failure too. True
/// if every step succeeded.
bool runScript(const Arguments& arguments, EditorWindow& window, qt::Desktop& desktop, BoxScript& boxes);

}  // namespace kestrel::app
