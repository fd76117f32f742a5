#include <gtest/gtest.h>

#include <QApplication>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <cmath>

#include "EditorBench.h"
#include "Themes.h"
#include "imaging/contract/controls/CommandButton.h"
#include "platform/qt/controls/ColorPickerWidget.h"

namespace kestrel::desktop {
namespace {

constexpr OLE_COLOR kListedColor = 0x00DB6F2A;

/// The swatches of the tool window and the list of colors that they open.
class MaterialsOnTheDesktop : public testing::Test {
 protected:
  Form& form() { return bench.editor().MaterialsWindow()->Form(); }
  QWidget& window() { return static_cast<qt::QtForm&>(form()).window(); }
  CommandButton& swatch(int index) { return Bind<CommandButton>(form(), "btnColors", index); }
  QMenu* open(int index) {
    QTest::mouseClick(window().findChild<QPushButton*>(QStringLiteral("btnColors_%1").arg(index)),
                      Qt::LeftButton);
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
  }
  static QAction* extraOf(const QMenu& list) {
    for (QAction* action : list.actions()) {
      if (action->text() == QStringLiteral("No Color")) return action;
    }
    return nullptr;
  }
  void choose(QMenu& list, OLE_COLOR color) {
    const QString name = QColor(color & 0xFF, color >> 8 & 0xFF, color >> 16 & 0xFF).name();
    for (QToolButton* entry : list.findChildren<QToolButton*>()) {
      if (entry->accessibleName() == name) return entry->click();
    }
    ADD_FAILURE() << "The list has no color " << name.toStdString() << ".";
    list.close();
  }

  EditorBench bench;
};

TEST_F(MaterialsOnTheDesktop, TheForegroundsListHasNoExtraButton) {
  QMenu* const list = open(0);
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(extraOf(*list), nullptr);
  choose(*list, kListedColor);
  EXPECT_EQ(bench.editor().ForeColor(), kListedColor);
  EXPECT_EQ(swatch(0).BackColor(), kListedColor);
}

TEST_F(MaterialsOnTheDesktop, TheBackgroundCanBeNone) {
  bench.editor().BackColor(0x00112233);
  QMenu* list = open(1);
  ASSERT_NE(list, nullptr);
  QAction* extra = extraOf(*list);
  ASSERT_NE(extra, nullptr);
  EXPECT_FALSE(extra->isChecked());
  extra->trigger();
  list->close();
  settle();
  EXPECT_EQ(bench.editor().BackColor(), -1);
  EXPECT_EQ(swatch(1).BackColor(), form().BackColor());

  list = open(1);
  ASSERT_NE(list, nullptr);
  extra = extraOf(*list);
  ASSERT_NE(extra, nullptr);
  EXPECT_TRUE(extra->isChecked()) << "it opens with no color set";
  choose(*list, kListedColor);
  EXPECT_EQ(bench.editor().BackColor(), kListedColor);
  EXPECT_EQ(swatch(1).BackColor(), kListedColor);
}

TEST_F(MaterialsOnTheDesktop, TheBackgroundNoneFollowsTheTheme) {
  bench.editor().BackColor(kNoColor);
  auto* const button = window().findChild<QPushButton*>(QStringLiteral("btnColors_1"));
  const auto shown = [button] {
    const QImage image = button->grab().toImage();
    return image.pixelColor(image.rect().center()).rgb();
  };
  EXPECT_EQ(shown(), window().palette().color(QPalette::Window).rgb());
  const Theme dark(darkPalette());
  settle();
  EXPECT_EQ(shown(), darkPalette().color(QPalette::Window).rgb());
}

TEST_F(MaterialsOnTheDesktop, ASwatchShowsItsColorWithTheFocusToo) {
  bench.editor().ForeColor(kListedColor);
  auto* const button = window().findChild<QPushButton*>(QStringLiteral("btnColors_0"));
  const auto shown = [button] {
    const QImage image = button->grab().toImage();
    return image.pixelColor(image.rect().center()).rgb() & 0xFFFFFF;
  };
  EXPECT_EQ(shown(), 0x2A6FDBU);
  button->setFocus(Qt::ShortcutFocusReason);  // by the keyboard: the style marks the focus only then
  settle();
  ASSERT_EQ(QApplication::focusWidget(), button);
  EXPECT_EQ(shown(), 0x2A6FDBU);
}

TEST_F(MaterialsOnTheDesktop, ASwatchHasNothingOfItsColorOutsideOfItsFrame) {
  bench.editor().ForeColor(kListedColor);
  const QImage image = window().findChild<QPushButton*>(QStringLiteral("btnColors_0"))->grab().toImage();
  const QPoint middle = image.rect().center();
  int rows = 0, columns = 0;  // each a run of pixels of the color
  const auto isColor = [&image](int x, int y) { return (image.pixel(x, y) & 0xFFFFFF) == 0x2A6FDB; };
  for (int x = 1; x < image.width(); ++x) rows += isColor(x, middle.y()) && !isColor(x - 1, middle.y());
  for (int y = 1; y < image.height(); ++y) columns += isColor(middle.x(), y) && !isColor(middle.x(), y - 1);
  EXPECT_EQ(rows, 1);
  EXPECT_EQ(columns, 1);
}

TEST_F(MaterialsOnTheDesktop, TheListOpensBelowTheSwatch) {
  for (const int index : {0, 1}) {
    QMenu* const list = open(index);
    ASSERT_NE(list, nullptr);
    const auto* const button = window().findChild<QPushButton*>(QStringLiteral("btnColors_%1").arg(index));
    EXPECT_EQ(list->parentWidget(), button->parentWidget());
    EXPECT_EQ(list->parentWidget()->findChild<qt::ColorPickerWidget*>()->geometry(), button->geometry());
    list->close();
    settle();
  }
}

TEST_F(MaterialsOnTheDesktop, TheSwatchesFollowTheWindowsWidth) {
  const auto width = static_cast<std::int32_t>(std::nearbyint(window().width() / 5.0 * 2.7));
  EXPECT_EQ(swatch(0).Width(), width);
  EXPECT_EQ(swatch(1).Width(), width);
  EXPECT_GT(swatch(1).Left(), swatch(0).Left());
  EXPECT_LE(swatch(1).Left() + width, window().width());
}

}  // namespace
}  // namespace kestrel::desktop
