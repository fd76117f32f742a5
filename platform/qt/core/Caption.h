#pragma once

#include <QString>
#include <QWidget>

namespace kestrel::qt {

/// The window's caption, shown exactly as it is: the toolkit by itself takes "[*]" out of a title, where a
/// file may well have it in its name.
void setCaption(QWidget& window, const QString& caption);
QString captionOf(const QWidget& window);

}  // namespace kestrel::qt
