#include "Caption.h"

#include "Text.h"
#include "base/VisibleText.h"

namespace kestrel::qt {
namespace {

/// The toolkit's placeholder for the "modified" mark; doubled, it is literal.
const QString kPlace = QStringLiteral("[*]");
const QString kText = kPlace + kPlace;
/// The property of a window that keeps a caption which the title shows otherwise.
constexpr char kLiteral[] = "kestrelCaption";

QString titleOf(const QString& caption) {
  QString title = toQt(VisibleText(fromQt(caption)));
  return title.replace(kPlace, kText);
}

}  // namespace

void setCaption(QWidget& window, const QString& caption) {
  window.setProperty(kLiteral, caption);
  window.setWindowTitle(titleOf(caption));
}

QString captionOf(const QWidget& window) {
  const QString caption = window.property(kLiteral).toString();
  const QString title = window.windowTitle();
  // The toolkit may have set the title since.
  return titleOf(caption) == title ? caption : QString(title).replace(kText, kPlace);
}

}  // namespace kestrel::qt
