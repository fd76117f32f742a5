#include "BarKeys.h"

#include <QAction>
#include <QFocusEvent>
#include <QKeyEvent>
#include <algorithm>

namespace kestrel::qt {
namespace {

std::vector<QToolButton*> buttonsOf(const QToolBar& bar) {
  std::vector<QToolButton*> buttons;
  for (QAction* const action : bar.actions()) {
    if (auto* const button = qobject_cast<QToolButton*>(bar.widgetForAction(action)))
      buttons.push_back(button);
  }
  return buttons;
}

bool isStop(const QToolButton* button) { return button->focusPolicy() != Qt::NoFocus; }

/// A bar may be hidden, and its layout not be done.
bool isUsable(const QToolButton* button) {
  const QAction* const action = button->defaultAction();
  return action && action->isVisible() && action->isEnabled();
}

void moveStop(const std::vector<QToolButton*>& buttons, QToolButton* to) {
  for (QToolButton* const button : buttons) {
    // A click leaves the focus where it is.
    button->setFocusPolicy(button == to ? Qt::TabFocus : Qt::NoFocus);
  }
}

}  // namespace

void BarKeys::add(QToolButton& button) {
  button.setFocusPolicy(Qt::NoFocus);
  button.installEventFilter(this);
}

void BarKeys::update(const QToolBar& bar) {
  const std::vector<QToolButton*> buttons = buttonsOf(bar);
  const auto stop = std::find_if(buttons.begin(), buttons.end(), isStop);
  if (stop != buttons.end() && isUsable(*stop)) return;
  const auto usable = std::find_if(buttons.begin(), buttons.end(), isUsable);
  if (usable != buttons.end()) moveStop(buttons, *usable);
}

bool BarKeys::eventFilter(QObject* watched, QEvent* event) {
  auto* const button = qobject_cast<QToolButton*>(watched);
  if (!button) return false;
  if (event->type() == QEvent::KeyPress) return press(*button, static_cast<QKeyEvent*>(event)->key());
  // The command is described as under the pointer.
  if (event->type() == QEvent::FocusIn && button->defaultAction()) button->defaultAction()->hover();
  return false;
}

bool BarKeys::press(QToolButton& button, int key) {
  const auto* const bar = qobject_cast<QToolBar*>(button.parentWidget());
  if (!bar) return false;
  std::vector<QToolButton*> usable = buttonsOf(*bar);
  std::erase_if(usable, [&](const QToolButton* each) {
    return each != &button && (!isUsable(each) || !each->isVisible());
  });
  if (bar->orientation() == Qt::Horizontal && bar->isRightToLeft()) {
    key = key == Qt::Key_Left ? Qt::Key_Right : key == Qt::Key_Right ? Qt::Key_Left : key;
  }
  const auto at = std::find(usable.begin(), usable.end(), &button);
  QToolButton* to = nullptr;
  switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      button.click();
      return true;
    case Qt::Key_Escape:
      control_.setFocus(Qt::OtherFocusReason);
      return false;  // it may also cancel something
    case Qt::Key_Left:
    case Qt::Key_Up:
      to = at == usable.begin() ? usable.back() : *(at - 1);
      break;
    case Qt::Key_Right:
    case Qt::Key_Down:
      to = at + 1 == usable.end() ? usable.front() : *(at + 1);
      break;
    case Qt::Key_Home:
      to = usable.front();
      break;
    case Qt::Key_End:
      to = usable.back();
      break;
    default:
      return false;
  }
  moveStop(buttonsOf(*bar), to);
  to->setFocus(Qt::TabFocusReason);
  return true;
}

}  // namespace kestrel::qt
