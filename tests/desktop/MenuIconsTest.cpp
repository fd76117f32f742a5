#include <gtest/gtest.h>

#include <QApplication>
#include <QMap>
#include <QMenu>

#include "EditorBench.h"
#include "Themes.h"
#include "platform/qt/core/SvgIcon.h"

namespace kestrel::desktop {
namespace {

QPalette contrasting(QColor window, QColor text, QColor highlight, QColor highlightedText, QColor base) {
  QPalette palette;
  for (const auto role : {QPalette::Window, QPalette::Button}) palette.setColor(role, window);
  palette.setColor(QPalette::Base, base);
  for (const auto role : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text}) {
    palette.setColor(role, text);
    palette.setColor(QPalette::Disabled, role, qt::contrastOf(text, Qt::black) > 5 ? Qt::gray : Qt::darkGray);
  }
  palette.setColor(QPalette::Highlight, highlight);
  palette.setColor(QPalette::HighlightedText, highlightedText);
  return palette;
}

struct NamedPalette {
  const char* name;
  QPalette palette;
};

std::vector<NamedPalette> palettes() {
  return {
      {"light", QPalette()},
      {"dark", darkPalette()},
      {"high contrast", contrasting(Qt::black, Qt::white, Qt::yellow, Qt::black, Qt::black)},
      {"dark selection", contrasting(Qt::white, Qt::black, QColor(20, 20, 20), Qt::white, Qt::white)},
      {"the icons' blue", contrasting(Qt::white, Qt::black, QColor(0x33, 0x88, 0xe0), Qt::white, Qt::white)},
      {"pale selection",
       contrasting(QColor(60, 60, 60), Qt::white, QColor(220, 230, 255), Qt::black, QColor(40, 40, 40))}};
}

/// How many pixels of an entry's icon differ from its ground by at least this contrast ratio.
int visiblePixels(const QMenu& menu, const QImage& shown, QAction* entry, double contrast) {
  const double ratio = menu.devicePixelRatioF();
  const QRect row = menu.actionGeometry(entry);
  const int inset = qRound(3 * ratio);
  const QRect place = QRect(qRound(row.x() * ratio), qRound(row.y() * ratio),
                            qRound(row.height() * 1.2 * ratio), qRound(row.height() * ratio))
                          .adjusted(inset, inset, 0, -inset);
  QMap<QRgb, int> colors;
  for (int y = place.top(); y <= place.bottom(); ++y) {
    for (int x = place.left(); x <= place.right(); ++x) ++colors[shown.pixel(x, y)];
  }
  QRgb ground = 0;
  for (auto color = colors.cbegin(); color != colors.cend(); ++color) {
    if (color.value() > colors.value(ground)) ground = color.key();
  }
  int count = 0;
  for (auto color = colors.cbegin(); color != colors.cend(); ++color) {
    if (qt::contrastOf(QColor(color.key()), QColor(ground)) >= contrast) count += color.value();
  }
  return count;
}

class MenuIcons : public testing::Test {
 protected:
  /// The menu of an access key, opened by it.
  QMenu& open(Qt::Key key) {
    pressKey(bench.window(), key, Qt::AltModifier);
    settle();
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!menu) throw std::runtime_error("No menu has opened.");
    return *menu;
  }
  QAction* entry(const char* command) { return &bench.moorage().actions().actionOf(bench.command(command)); }

  void highlight(QMenu& menu, const QAction* wanted) {
    for (int i = 0; i < 12 && menu.activeAction() != wanted; ++i) pressKey(bench.window(), Qt::Key_Down);
    ASSERT_EQ(menu.activeAction(), wanted);
  }

  EditorBench bench;
};

TEST_F(MenuIcons, AreVisibleInEveryPaletteHighlightedOrNot) {
  bench.showPicture(noise(64, 48));
  for (const NamedPalette& named : palettes()) {
    const Theme theme(named.palette);
    settle();
    QMenu& menu = open(Qt::Key_E);
    highlight(menu, entry("btnEditCopy"));
    settle();
    writeScreenshot(menu, std::string("menu-icons ") + named.name);
    const QImage shown = menu.grab().toImage();
    const int least = qRound(20 * menu.devicePixelRatioF());
    // Anti-aliased edges are fainter than the lines.
    EXPECT_GE(visiblePixels(menu, shown, entry("btnEditCopy"), 2.8), least) << named.name << ", highlighted";
    EXPECT_GE(visiblePixels(menu, shown, entry("btnEditPaste"), 2.8), least) << named.name;
    EXPECT_FALSE(entry("btnEditUndo")->isEnabled());
    EXPECT_GE(visiblePixels(menu, shown, entry("btnEditUndo"), 1.4), least) << named.name << ", disabled";
    menu.close();
    settle();
    pressKey(bench.window(), Qt::Key_Escape);
  }
}

TEST_F(MenuIcons, TakeTheTextColorOfAHighlightedEntry) {
  const QIcon icon = qt::svgIcon("Line");
  const QPixmap normal = qt::svgPixmap(icon, QSize(32, 32), Qt::black, Qt::white, true);
  const QPixmap selected = qt::svgPixmap(icon, QSize(32, 32), Qt::white, Qt::darkBlue, true);
  ASSERT_FALSE(normal.isNull());
  EXPECT_NE(normal.toImage(), selected.toImage());
  EXPECT_TRUE(qt::svgPixmap(QIcon(QPixmap(4, 4)), QSize(32, 32), Qt::black, Qt::white, true).isNull())
      << "not one of the program's icons";
}

TEST(Contrast, IsTheOneOfWcag) {
  EXPECT_NEAR(qt::contrastOf(Qt::black, Qt::white), 21.0, 0.01);
  EXPECT_NEAR(qt::contrastOf(Qt::white, Qt::white), 1.0, 0.01);
  EXPECT_NEAR(qt::contrastOf(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
}

}  // namespace
}  // namespace kestrel::desktop
