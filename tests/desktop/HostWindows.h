#pragma once

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <set>
#include <string>
#include <utility>

namespace kestrel::desktop {

/// The visible windows of the program.
inline std::set<QWidget*> shownWindows() {
  std::set<QWidget*> shown;
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    if (window->isVisible()) shown.insert(window);
  }
  return shown;
}

/// Their titles and object names; empty if there are none.
inline std::string namesOfShownWindows() {
  QStringList names;
  for (const QWidget* const window : shownWindows()) {
    names += window->windowTitle() + QLatin1Char('/') + window->objectName();
  }
  return names.join(QLatin1Char(' ')).toStdString();
}

/// Runs `work` from a timer as soon as there is a window that `find` returns.
inline void whenWindowOpens(QWidget* (*find)(), std::function<void()> work) {
  auto* const watch = new QTimer(qApp);
  QObject::connect(watch, &QTimer::timeout, watch, [watch, find, work = std::move(work)] {
    const QWidget* const window = find();
    if (!window || !window->isVisible()) return;
    watch->stop();
    watch->deleteLater();
    const auto job = work;  // an event loop in it may destroy the timer
    job();
  });
  watch->start(5);
}

/// Runs `work` from a timer as soon as a menu is open.
inline void whenPopupOpens(std::function<void()> work) {
  whenWindowOpens(&QApplication::activePopupWidget, std::move(work));
}

/// Runs `work` from a timer as soon as a modal window is open.
inline void whenDialogOpens(std::function<void()> work) {
  whenWindowOpens(&QApplication::activeModalWidget, std::move(work));
}

}  // namespace kestrel::desktop
