#pragma once

#include <vector>

#include "apps/common/program/Steps.h"
#include "apps/kestrel-browser/window/BrowserWindow.h"
#include "apps/kestrel-browser/window/EditorWindows.h"

namespace kestrel::app {

/// The steps of a script that the browser adds to those of all programs:
///
/// - `path FOLDER`: selects a folder
/// - `view 0|1|2`: the thumbnails, the film strip or the single picture
/// - `loaded`: waits until the folder is loaded and its thumbnails are made
/// - `select N...`: selects the thumbnails of these numbers, counted from 1
/// - `open N`: opens a picture in the editor
/// - `editor PNG`: saves a screenshot of the editor's window that was opened last
/// - `imagecopy`, `imagemove`: run these commands; an unattended run cancels their question for a folder and
///   fails
///
/// The steps refer to all three arguments.
std::vector<Step> browserSteps(BrowserWindow& window, EditorWindows& editors, const Stage& stage);

}  // namespace kestrel::app
