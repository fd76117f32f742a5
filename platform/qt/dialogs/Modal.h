#pragma once

#include <QDialog>

#include "base/OpenCalls.h"
#include "imaging/contract/Types.h"

namespace kestrel::qt {

/// What to make the parent of a dialog: the owner's widget, so that the dialog lives and ends with it and not
/// with the host's window. For an owner of 0 it is the editor that is active. Null if there is none.
QWidget* dialogParent(WindowHandle owner);

/// Shows the dialog until the user is done with it, or its owner is destroyed: then it is rejected. The
/// dialog must not be used by anything that can outlive this call's caller.
int execModal(QDialog& dialog, OpenCalls& calls);

/// Rejects all dialogs below the widget, the innermost first, and hides its other windows. Calls of
/// `execModal` return once control is back in their event loops.
void closeWindowsOf(const QWidget& widget);

}  // namespace kestrel::qt
