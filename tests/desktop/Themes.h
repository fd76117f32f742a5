#pragma once

#include <QApplication>
#include <QPalette>

namespace kestrel::desktop {

inline QPalette darkPalette() {
  QPalette dark;
  dark.setColor(QPalette::Window, QColor(45, 47, 51));
  dark.setColor(QPalette::WindowText, QColor(232, 234, 237));
  dark.setColor(QPalette::Base, QColor(32, 33, 36));
  dark.setColor(QPalette::AlternateBase, QColor(45, 47, 51));
  dark.setColor(QPalette::Text, QColor(232, 234, 237));
  dark.setColor(QPalette::Button, QColor(53, 55, 60));
  dark.setColor(QPalette::ButtonText, QColor(232, 234, 237));
  dark.setColor(QPalette::ToolTipBase, QColor(53, 55, 60));
  dark.setColor(QPalette::ToolTipText, QColor(232, 234, 237));
  dark.setColor(QPalette::Highlight, QColor(51, 136, 224));
  dark.setColor(QPalette::HighlightedText, Qt::white);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    dark.setColor(QPalette::Disabled, role, QColor(128, 131, 136));
  }
  return dark;
}

/// Sets a theme while it lives.
class Theme {
 public:
  explicit Theme(const QPalette& palette) : before_(QApplication::palette()) {
    QApplication::setPalette(palette);
  }
  Theme(const Theme&) = delete;
  Theme& operator=(const Theme&) = delete;
  ~Theme() { QApplication::setPalette(before_); }

 private:
  QPalette before_;
};

}  // namespace kestrel::desktop
