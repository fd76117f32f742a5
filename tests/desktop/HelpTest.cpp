// The help window with the book that is installed with the program.

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QPalette>
#include <QPixmap>
#include <QScrollBar>
#include <QTest>
#include <algorithm>
#include <stdexcept>

#include "EditorBench.h"
#include "platform/qt/dialogs/HelpWindow.h"

namespace kestrel::desktop {
namespace {

const QString kBook = QStringLiteral(KESTREL_HELP_BOOK);

/// Sets a theme while it lives.
class Theme {
 public:
  Theme(const QColor& page, const QColor& text) : before_(QApplication::palette()) {
    QPalette palette = before_;
    for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button}) palette.setColor(role, page);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
      palette.setColor(role, text);
    }
    palette.setColor(QPalette::Link, QColor(120, 180, 255));
    QApplication::setPalette(palette);
  }
  Theme(const Theme&) = delete;
  Theme& operator=(const Theme&) = delete;
  ~Theme() { QApplication::setPalette(before_); }

 private:
  QPalette before_;
};

class Help : public testing::Test {
 protected:
  void show(const char* page) {
    window.showPage(kBook, QString::fromLatin1(page));
    settle();
  }
  QString shown() const { return window.browser().source().fileName(); }

  QAction& action(const char* text) {
    for (QAction* const one : window.findChildren<QAction*>()) {
      if (one->text() == QLatin1String(text)) return *one;
    }
    throw std::out_of_range(text);
  }

  /// An image of the page as it was loaded.
  QImage imageOfPage(const char* name) const {
    const QUrl url(QString::fromLatin1(name));
    return window.browser()
        .document()
        ->resource(QTextDocument::ImageResource, url)
        .value<QPixmap>()
        .toImage();
  }

  qt::HelpWindow window;
};

int lightestOf(const QImage& image) {
  int lightest = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor color = image.pixelColor(x, y);
      if (color.alpha() == 255 && color.saturation() < 60) lightest = std::max(lightest, color.lightness());
    }
  }
  return lightest;
}

TEST_F(Help, ShowsThePageUnderItsTitle) {
  show("line.html");
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(window.windowTitle(), "Line - Image Editor Help");
  EXPECT_TRUE(window.browser().toPlainText().contains(QStringLiteral("Draws a straight line.")));
}

TEST_F(Help, NavigatesBackForwardAndToTheContents) {
  show("default.html");
  show("line.html");
  ASSERT_TRUE(action("Back").isEnabled());
  EXPECT_FALSE(action("Forward").isEnabled());
  action("Back").trigger();
  EXPECT_EQ(shown(), "default.html");
  action("Forward").trigger();
  EXPECT_EQ(shown(), "line.html");
  action("Contents").trigger();
  EXPECT_EQ(shown(), "default.html");
}

TEST_F(Help, KeepsEveryPictureWithinThePage) {
  for (const QString& page : QDir(kBook).entryList({QStringLiteral("*.html")})) {
    show(page.toLatin1().constData());
    EXPECT_EQ(window.browser().horizontalScrollBar()->maximum(), 0) << page.toStdString();
  }
  show("zoom.html");
  writeScreenshot(window, "help");
}

TEST_F(Help, DrawsIconsInTheColorsOfTheTheme) {
  show("line.html");
  const int onLight = lightestOf(imageOfPage("icons/line.svg"));
  const Theme dark(QColor(32, 33, 36), QColor(232, 234, 237));
  settle();
  writeScreenshot(window, "help-dark");
  EXPECT_LT(onLight, 128);
  EXPECT_GT(lightestOf(imageOfPage("icons/line.svg")), 128);
}

TEST_F(Help, ClosesByEscape) {
  show("default.html");
  QTest::keyClick(&window, Qt::Key_Escape);
  EXPECT_FALSE(window.isVisible());
}

}  // namespace
}  // namespace kestrel::desktop
