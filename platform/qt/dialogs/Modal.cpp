#include "Modal.h"

#include <QApplication>
#include <QWindow>

#include "platform/qt/core/Handles.h"
#include "platform/qt/core/PlainButtons.h"
#include "platform/qt/site/SiteWidget.h"

namespace kestrel::qt {
namespace {

SiteWidget* enclosingSite(QWidget* widget) {
  while (widget && !qobject_cast<SiteWidget*>(widget)) widget = widget->parentWidget();
  return static_cast<SiteWidget*>(widget);
}

/// The active window if it is a dialog or dock window of an editor; else the editor in the active window.
QWidget* activeEditor() {
  QWidget* const window = QApplication::activeWindow();
  if (!window) return nullptr;
  if (enclosingSite(window->parentWidget())) return window;
  QWidget* const focus = window->focusWidget();
  SiteWidget* const focused = enclosingSite(focus);
  return focused ? focused : window->findChild<SiteWidget*>();
}

}  // namespace

QWidget* dialogParent(WindowHandle owner) {
  QWidget* const widget = widgetOf(owner);
  if (!widget) return activeEditor();
  QWidget* const modal = QApplication::activeModalWidget();
  for (QWidget* below = modal; below; below = below->parentWidget()) {
    if (below == widget) return modal;
  }
  return widget;
}

int execModal(QDialog& dialog, OpenCalls& calls) {
  const OpenCalls::Call call(calls);
  const QWidget* const active = QApplication::activeWindow();
  if (!dialog.parentWidget() && active && active != &dialog) {
    dialog.winId();  // creates the window handle
    dialog.windowHandle()->setTransientParent(active->windowHandle());
  }
  usePlainButtons(dialog);
  return dialog.exec();
}

void closeWindowsOf(QWidget& widget) {
  if (auto* const site = qobject_cast<SiteWidget*>(&widget)) site->closeMenus();
  for (SiteWidget* const site : widget.findChildren<SiteWidget*>()) site->closeMenus();
  const auto below = widget.findChildren<QWidget*>();
  for (auto last = below.crbegin(); last != below.crend(); ++last) {
    QWidget* const child = *last;
    if (!child->isWindow() || !child->isVisible()) continue;
    if (auto* const dialog = qobject_cast<QDialog*>(child)) {
      dialog->reject();
    } else {
      child->hide();
    }
  }
}

}  // namespace kestrel::qt
