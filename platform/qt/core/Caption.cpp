#include "Caption.h"

namespace kestrel::qt {
namespace {

/// The toolkit's place for the mark of a changed document. Twice in a row it is the text itself.
const QString kPlace = QStringLiteral("[*]");
const QString kText = kPlace + kPlace;

}  // namespace

void setCaption(QWidget& window, const QString& caption) {
  QString title = caption;
  window.setWindowTitle(title.replace(kPlace, kText));
}

QString captionOf(const QWidget& window) { return window.windowTitle().replace(kText, kPlace); }

}  // namespace kestrel::qt
