#pragma once

#include <QApplication>

#include "../EditorBench.h"
#include "platform/qt/core/Language.h"

namespace kestrel::desktop {

/// The application in another language; afterwards in English again.
class UsedLanguage {
 public:
  explicit UsedLanguage(const char* locale) { use(locale); }
  UsedLanguage(const UsedLanguage&) = delete;
  UsedLanguage& operator=(const UsedLanguage&) = delete;
  ~UsedLanguage() { use("en"); }

  static void use(const char* locale) {
    qt::useLanguage(QLatin1String(locale));
    settle();
  }
};

}  // namespace kestrel::desktop
