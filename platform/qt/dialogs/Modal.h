#pragma once

#include <QDialog>

#include "base/OpenCalls.h"
#include "imaging/contract/Types.h"

namespace kestrel::qt {

/// The parent for a dialog: the owner's widget, so that the dialog is destroyed with it and not with the
/// host's window; or the open modal dialog of that owner, above which the new one must stay. For an owner of
/// 0 it is the active editor. Null if there is none.
QWidget* dialogParent(WindowHandle owner);

/// Shows the dialog until the user closes it, or until its owner is destroyed, which rejects it. Nothing that
/// outlives the caller may use the dialog.
int execModal(QDialog& dialog, OpenCalls& calls);

/// Closes the menus of our controls in the widget, rejects all dialogs that are children of it, the innermost
/// first, and hides its other windows. Calls of `execModal` return once control is back in their event loops.
void closeWindowsOf(QWidget& widget);

}  // namespace kestrel::qt
