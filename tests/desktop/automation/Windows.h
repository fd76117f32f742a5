#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <string>

#include "../HostWindows.h"
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

}  // namespace kestrel::desktop
