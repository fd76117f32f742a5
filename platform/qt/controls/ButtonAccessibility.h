#pragma once

#include <QAbstractButton>

namespace kestrel::qt {

// How assistive technology sees a button whose class does not say what it is for. Call them when the button
// is made, before its state is asked for.

/// One of several alternatives: a radio button, checked while the button is.
void presentAsChoice(QAbstractButton& button);

/// A button that opens a list to choose a value from. The value is its accessible description.
void presentAsList(QAbstractButton& button);

}  // namespace kestrel::qt
