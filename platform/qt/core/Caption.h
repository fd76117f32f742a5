#pragma once

#include <QString>
#include <QWidget>

namespace kestrel::qt {

/// Sets the window's caption, which may contain the name of a file: "[*]", which the toolkit removes from a
/// title, is shown, and control characters as in `VisibleText`.
void setCaption(QWidget& window, const QString& caption);
/// The caption as it was set.
QString captionOf(const QWidget& window);

}  // namespace kestrel::qt
