#include "SwatchLook.h"

#include <QEvent>
#include <QStyleOptionButton>
#include <QStylePainter>

#include "platform/qt/core/FramedFill.h"

namespace kestrel::qt {
namespace {

constexpr int kFrame = 4;

}  // namespace

SwatchLook::SwatchLook(QAbstractButton& button) : button_(button) { button_.installEventFilter(this); }

void SwatchLook::show(const QColor& color, bool pressed) {
  color_ = color;
  isColorOfWindow_ = color == button_.palette().color(QPalette::Window);
  pressed_ = pressed;
  // The color of the window means that there is none.
  if (color.isValid()) button_.setAccessibleDescription(isColorOfWindow_ ? QString() : color.name());
  button_.update();
}

bool SwatchLook::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() != QEvent::Paint || !color_.isValid()) return false;
  QStylePainter painter(&button_);
  QStyleOptionButton option;
  option.initFrom(&button_);
  option.state |= button_.isDown() || pressed_ ? QStyle::State_Sunken : QStyle::State_Raised;
  painter.drawControl(QStyle::CE_PushButtonBevel, option);
  // Below the color: some styles fill the frame of the focus, which would tint it.
  if (button_.hasFocus()) {
    QStyleOptionFocusRect focus;
    focus.initFrom(&button_);
    focus.rect = button_.rect().adjusted(2, 2, -2, -2);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
  }
  const QColor color = isColorOfWindow_ ? button_.palette().color(QPalette::Window) : color_;
  fillFramed(painter, button_.rect().adjusted(kFrame, kFrame, -kFrame, -kFrame), color,
             button_.palette().color(QPalette::Mid));
  return true;
}

}  // namespace kestrel::qt
