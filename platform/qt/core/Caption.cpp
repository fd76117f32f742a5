#include "Caption.h"

namespace kestrel::qt {
namespace {

/// The toolkit's placeholder for the "modified" mark; doubled, it is literal.
const QString kPlace = QStringLiteral("[*]");
const QString kText = kPlace + kPlace;

}  // namespace

void setCaption(QWidget& window, const QString& caption) {
  QString title = caption;
  window.setWindowTitle(title.replace(kPlace, kText));
}

QString captionOf(const QWidget& window) { return window.windowTitle().replace(kText, kPlace); }

}  // namespace kestrel::qt
