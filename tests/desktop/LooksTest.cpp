#include <gtest/gtest.h>

#include <QDockWidget>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QToolButton>

#include "EditorBench.h"
#include "Themes.h"
#include "platform/qt/core/SvgIcon.h"

namespace kestrel::desktop {
namespace {

int darkest(const QImage& image) {
  int least = 255;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor color = image.pixelColor(x, y);
      if (color.alpha() > 200) least = std::min(least, color.lightness());
    }
  }
  return least;
}

TEST(Icons, TakeTheTextColorOfTheTheme) {
  const QIcon icon = qt::svgIcon("Line");
  ASSERT_FALSE(icon.isNull());
  EXPECT_LT(darkest(icon.pixmap(32).toImage()), 100);
  const Theme dark(darkPalette());
  EXPECT_GT(darkest(icon.pixmap(32).toImage()), 100);
}

TEST(Icons, AreRenderedAtTheirShownSize) {
  const QIcon icon = qt::svgIcon("Open");
  for (const int size : {16, 24, 32, 48}) {
    EXPECT_EQ(icon.pixmap(QSize(size, size), 2.0).size(), QSize(2 * size, 2 * size));
  }
}

TEST(Icons, ExistForEveryImageOfACommand) {
  EditorBench bench;
  for (const auto& command : bench.moorage().Commands().all()) {
    if (command->ImageName().empty()) continue;
    EXPECT_FALSE(qt::svgIcon(command->ImageName()).isNull()) << command->ImageName();
  }
}

TEST(Names, ExistForScreenReaders) {
  EditorBench bench;
  for (const QToolButton* button : bench.window().findChildren<QToolButton*>()) {
    if (button->objectName().startsWith(QStringLiteral("qt_")) || !button->isVisible()) continue;
    const bool named = !button->accessibleName().isEmpty() || !button->text().isEmpty();
    EXPECT_TRUE(named) << button->objectName().toStdString();
  }
  EXPECT_FALSE(bench.canvas().accessibleName().isEmpty());
}

QImage sunset() {
  QImage picture(900, 600, QImage::Format_RGBA8888);
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      picture.setPixelColor(x, y, QColor::fromHsv((220 + y / 6) % 360, 140, 255 - y / 5));
    }
  }
  return picture;
}

TEST(Screenshots, OfTheWindowLightAndDark) {
  EditorBench bench;
  bench.showPicture(sunset());
  bench.editor().SetSelection(120, 100, 400, 260);
  settle();
  bench.screenshot("window-light");
  {
    const Theme dark(darkPalette());
    settle();
    bench.screenshot("window-dark");
    EXPECT_LT(bench.grabWindow().pixelColor(3, 3).lightness(), 90);
  }
  settle();
  EXPECT_GT(bench.grabWindow().pixelColor(3, 3).lightness(), 200);
}

TEST(Screenshots, OfMenusFloatingWindowsAndBarsWithText) {
  EditorBench bench;
  bench.showPicture(sunset());
  for (const char* key : {"mnuFile", "mnuView", "mnuDraw"}) {
    QMenu& menu = bench.moorage().actions().menuOf(bench.command(key));
    menu.popup(bench.window().mapToGlobal(QPoint(20, 40)));
    settle();
    writeScreenshot(menu, std::string("menu-") + key);
    menu.close();
  }
  auto* const materials = bench.window().findChild<QDockWidget*>(QStringLiteral("dkwMaterials"));
  materials->setFloating(true);
  settle();
  EXPECT_TRUE(materials->isVisible());
  writeScreenshot(*materials, "materials-floating");
  materials->setFloating(false);
  bench.editor().Tool(ipToolZoom);
  bench.editor().SetToolbarStyle(2);
  settle();
  bench.screenshot("bars-icons-above-text");
  bench.editor().SetToolbarStyle(1);
  settle();
  bench.screenshot("bars-icons-beside-text");
}

}  // namespace
}  // namespace kestrel::desktop
