#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <string>
#include <utility>

#include "platform/qt/forms/FormWindow.h"
#include "platform/qt/forms/QtForm.h"

namespace kestrel::desktop {

/// How a host ends an object.
enum class Ends { kTerminate, kDestroy };

inline std::string nameOfEnds(const testing::TestParamInfo<Ends>& info) {
  return info.param == Ends::kTerminate ? "Terminate" : "Destructor";
}

/// The window of the form of that name; null if there is none.
inline qt::FormWindow* windowOfForm(const std::string& name) {
  for (QWidget* const each : QApplication::topLevelWidgets()) {
    auto* const window = dynamic_cast<qt::FormWindow*>(each);
    if (window && window->form && window->form->Name() == name) return window;
  }
  return nullptr;
}

/// The titles of the visible windows.
inline QStringList shownWindows() {
  QStringList shown;
  for (const QWidget* const each : QApplication::topLevelWidgets()) {
    if (each->isVisible()) shown += each->windowTitle() + QLatin1Char('/') + each->objectName();
  }
  return shown;
}

/// Runs `work` from a timer as soon as a menu is open.
inline void whenPopupOpens(std::function<void()> work) {
  auto* const watch = new QTimer(qApp);
  QObject::connect(watch, &QTimer::timeout, watch, [watch, work = std::move(work)] {
    const QWidget* const popup = QApplication::activePopupWidget();
    if (!popup || !popup->isVisible()) return;
    watch->stop();
    watch->deleteLater();
    const auto job = work;
    job();
  });
  watch->start(5);
}

}  // namespace kestrel::desktop
