#include "Blocking.h"

#include <QApplication>

namespace kestrel::qt {

bool isBlockedByDialog(const QWidget& widget) {
  const QWidget* const modal = QApplication::activeModalWidget();
  return modal && modal != &widget && !modal->isAncestorOf(&widget);
}

}  // namespace kestrel::qt
