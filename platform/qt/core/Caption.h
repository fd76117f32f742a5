#pragma once

#include <QString>
#include <QWidget>

namespace kestrel::qt {

/// Sets the window's caption literally: the toolkit removes "[*]" from a title, but a file's name may contain
/// it.
void setCaption(QWidget& window, const QString& caption);
QString captionOf(const QWidget& window);

}  // namespace kestrel::qt
