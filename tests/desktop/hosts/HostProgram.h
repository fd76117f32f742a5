#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>
#include <fstream>
#include <memory>
#include <string>

#include "../HostWindows.h"
#include "imaging/contract/Image.h"
#include "imaging/contract/ImageView.h"
#include "platform/qt/embed/ImageBrowser.h"
#include "platform/qt/embed/ImageEditor.h"

namespace kestrel::desktop {

/// A picture in which every pixel differs from its neighbors.
inline QImage motley(int width, int height) {
  QImage picture(width, height, QImage::Format_RGBA8888);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) picture.setPixelColor(x, y, QColor(x * 37 % 256, y * 53 % 256, 90));
  }
  return picture;
}

/// A program that contains editors and browsers and sees what hosts see, with a folder of its own. It has the
/// picture "open.png", and "damaged.png", which is none.
class HostProgram : public testing::Test {
 protected:
  HostProgram() {
    motley(40, 30).save(path("open.png"));
    std::ofstream(file("damaged.png")) << "no picture";
  }
  ~HostProgram() override { settle(); }

  QString path(const char* name) const { return folder_.filePath(QLatin1String(name)); }
  std::string file(const char* name) const { return path(name).toStdString(); }

  /// An editor with the picture "open.png" in the layout of a host's widget.
  qt::ImageEditor& addEditor(QWidget& parent) {
    auto* const editor = new qt::ImageEditor(component_, nullptr, &parent);
    if (parent.layout()) parent.layout()->addWidget(editor);
    editor->control().Initialize();
    EXPECT_TRUE(editor->control().OpenImage(file("open.png")));
    return *editor;
  }

  static void show(QWidget& window) {
    window.resize(1200, 700);
    window.show();
    activate(window);
  }
  static void activate(QWidget& window) {
    QApplication::setActiveWindow(&window);
    settle();
  }

  /// A key as the window system reports it: it goes to the widget that has the focus in the window.
  static void press(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(window.window()->windowHandle(), key, modifiers);
    settle();
  }

  /// Changes the picture by the key of the command Mirror, in the window that has the editor.
  static void mirror(qt::ImageEditor& editor) {
    editor.setFocus();
    press(editor, Qt::Key_M, Qt::ControlModifier);
  }

  static void settle() {
    for (int round = 0; round < 3; ++round) QTest::qWait(5);
  }

  const QTemporaryDir folder_;
  qt::Component component_;
};

}  // namespace kestrel::desktop
