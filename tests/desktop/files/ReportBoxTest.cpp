#include <QScreen>
#include <QTextEdit>

#include "../Themes.h"
#include "FilesBench.h"

namespace kestrel::desktop {
namespace {

class ReportBox : public FilesBench {};

TEST_F(ReportBox, NamesAllThatFailedAtOnce) {
  write("from/b.png", "content");
  windows.then([&](QWidget& window) {
    EXPECT_EQ(boxText(window), "1 of 3 files was moved. Not moved:\n\n2 files in \"" + path("from") +
                                   "\" (it does not exist):\n\"a.png\"\n\"c.png\"");
    screenshot(window, "report");
    press(window, Qt::Key_Escape);
  });
  EXPECT_FALSE(move({"from/a.png", "from/b.png", "from/c.png"}));
  EXPECT_EQ(entries("to"), "b.png");
}

TEST_F(ReportBox, ScrollsALongListAndFitsTheScreen) {
  QStringList names;
  for (int i = 0; i < 300; ++i) names += QStringLiteral("from/%1.png").arg(i);
  windows.then([&](QWidget& window) {
    QTest::qWait(20);
    EXPECT_EQ(boxText(window), "None of the 300 files was copied. Not copied:");
    const auto* const list = window.findChild<QTextEdit*>();
    ASSERT_TRUE(list);
    EXPECT_TRUE(list->isVisible());
    EXPECT_TRUE(list->isReadOnly());
    for (const auto* button : window.findChildren<QPushButton*>()) {
      EXPECT_EQ(button->isVisible(), button->text() == QStringLiteral("OK")) << button->text().toStdString();
    }
    const QString text = list->toPlainText();
    EXPECT_TRUE(
        text.startsWith(QStringLiteral("300 files in \"%1\" (it does not exist):\n").arg(path("from"))));
    for (int i = 0; i < 300; ++i) EXPECT_TRUE(text.contains(QStringLiteral("\n\"%1.png\"").arg(i))) << i;
    EXPECT_LE(window.frameGeometry().height(), window.screen()->availableGeometry().height());
    screenshot(window, "long-report");
    {
      const Theme dark(darkPalette());
      QTest::qWait(20);
      screenshot(window, "long-report-dark");
    }
    press(window, Qt::Key_Escape);
  });
  EXPECT_FALSE(copy(names));
}

}  // namespace
}  // namespace kestrel::desktop
