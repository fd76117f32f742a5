// An editor that the user moves to a screen with another scale factor.

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>
#include <fstream>
#include <string>

#include "HostProgram.h"

namespace kestrel::desktop {
namespace {

/// Whether the picture is in the shown image pixel by pixel.
bool contains(const QImage& shown, const QImage& picture) {
  for (int top = 0; top + picture.height() <= shown.height(); ++top) {
    for (int left = 0; left + picture.width() <= shown.width(); ++left) {
      if ((shown.pixel(left, top) ^ picture.pixel(0, 0)) & 0xFFFFFF) continue;
      const QImage part = shown.copy(left, top, picture.width(), picture.height());
      if (part.convertToFormat(QImage::Format_RGB888) == picture.convertToFormat(QImage::Format_RGB888))
        return true;
    }
  }
  return false;
}

class TwoScreens : public HostProgram {
 protected:
  static void moveTo(QWidget& window, QScreen* screen) {
    window.windowHandle()->setScreen(screen);
    window.move(screen->geometry().topLeft() + QPoint(10, 10));
    settle();
  }
  /// What the widget with the focus shows, in device pixels.
  static QImage shownView(qt::ImageEditor& editor) {
    editor.setFocus();
    return QApplication::focusWidget()->grab().toImage();
  }
};

TEST_F(TwoScreens, ThePictureIsSharpAndTheBarsFitOnEach) {
  const QList<QScreen*> screens = QApplication::screens();
  ASSERT_EQ(screens.size(), 2);
  ASSERT_EQ(screens[0]->devicePixelRatio(), 1);
  ASSERT_EQ(screens[1]->devicePixelRatio(), 2);
  QWidget window;
  new QVBoxLayout(&window);
  qt::ImageEditor& editor = addEditor(window);
  auto* const browser = new qt::ImageBrowser(component_, nullptr, &window);
  window.layout()->addWidget(browser);
  show(window);
  const QSize size = window.size();
  for (const int screen : {0, 1, 0}) {
    SCOPED_TRACE(screen);
    moveTo(window, screens[screen]);
    EXPECT_EQ(editor.devicePixelRatio(), screen + 1);
    EXPECT_EQ(window.size(), size);
    EXPECT_LE(editor.minimumSizeHint().height(), editor.height());
    const QImage shown = shownView(editor);
    EXPECT_EQ(shown.devicePixelRatio(), screen + 1);
    EXPECT_TRUE(contains(shown, motley(40, 30))) << "one picture pixel is one device pixel";
    mirror(editor);
    EXPECT_FALSE(contains(shownView(editor), motley(40, 30)));
    EXPECT_TRUE(contains(shownView(editor), motley(40, 30).mirrored(true, false)));
    mirror(editor);
  }
}

}  // namespace
}  // namespace kestrel::desktop

/// A display without a real screen that has two: one of scale factor 1, and right of it one of factor 2.
int main(int count, char** values) {
  const QTemporaryDir folder;
  const std::string screens = folder.filePath(QStringLiteral("screens.json")).toStdString();
  std::ofstream(screens) << R"({"screens": [
    {"name": "Left", "x": 0, "y": 0, "width": 1600, "height": 1200, "dpr": 1},
    {"name": "Right", "x": 1600, "y": 0, "width": 1600, "height": 1200, "dpr": 2}]})";
  qputenv("KESTREL_STORE", folder.filePath(QStringLiteral("settings.store")).toUtf8());
  qputenv("XDG_CACHE_HOME", folder.path().toUtf8());
  qputenv("QT_QPA_PLATFORM", QByteArray::fromStdString("offscreen:configfile=" + screens));
  testing::InitGoogleTest(&count, values);
  QApplication application(count, values);
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
