#include "ButtonFocus.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

namespace kestrel::qt {
namespace {

/// Distance of the mark from the button's edge, in logical pixels.
constexpr int kInset = 3;

}  // namespace

ButtonFocus::ButtonFocus(QPushButton& button) : QObject(&button), button_(button) {
  button_.installEventFilter(this);
}

bool ButtonFocus::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Paint || !button_.hasFocus()) return false;
  if (button_.style()->name().compare(QStringLiteral("fusion"), Qt::CaseInsensitive) != 0) return false;
  watched->event(event);
  paint();
  return true;
}

void ButtonFocus::paint() {
  QPainter painter(&button_);
  QPen pen(button_.palette().color(QPalette::ButtonText));
  pen.setStyle(Qt::DotLine);
  painter.setPen(pen);
  painter.drawRect(button_.rect().adjusted(kInset, kInset, -kInset - 1, -kInset - 1));
}

}  // namespace kestrel::qt
