#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QMenuBar>
#include <QTest>
#include <QTimer>

#include "EditorBench.h"

namespace kestrel::desktop {
namespace {

using testing::ElementsAre;

/// The captions of a menu as it opens, without hot keys; "-" is a separator.
std::vector<std::string> captions(QMenu& menu) {
  Q_EMIT menu.aboutToShow();
  std::vector<std::string> result;
  for (const QAction* action : menu.actions()) {
    if (!action->isVisible()) continue;
    result.push_back(action->isSeparator() ? "-" : action->text().section(u'\t', 0, 0).toStdString());
  }
  return result;
}

class Menus : public testing::Test {
 protected:
  QMenuBar& bar() { return *bench.window().findChild<QMenuBar*>(); }
  QMenu& menu(const std::string& key) {
    return *bench.moorage().actions().actionOf(bench.command(key)).menu();
  }
  std::string status() { return bench.moorage().StatusPanel("pnlStatus").Caption(); }

  EditorBench bench;
};

TEST_F(Menus, AreInTheBarWithTheirCaptions) {
  std::vector<std::string> texts;
  for (const QAction* action : bar().actions()) texts.push_back(action->text().toStdString());
  EXPECT_THAT(texts, ElementsAre("&File", "&Edit", "&View", "&Image", "&Tools", "&Selections", "&Help"));
  EXPECT_TRUE(bar().isVisible());
}

TEST_F(Menus, HoldTheEntriesOfTheLayoutWithTheirSeparators) {
  EXPECT_THAT(captions(menu("mnuEdit")),
              ElementsAre("&Undo", "&Redo", "-", "Cu&t", "&Copy", "&Paste", "Paste &Special..."));
  EXPECT_THAT(captions(menu("mnuView")),
              ElementsAre("&Materials Window", "&Zoom Window", "-", "&Status Bar"));
  EXPECT_THAT(captions(menu("mnuTools")),
              ElementsAre("&Drawing Tools", "&Zoom", "-", "&Flatten Transparency...", "-", "&Options..."));
}

TEST_F(Menus, OmitInvisibleEntries) {
  EXPECT_THAT(captions(menu("mnuZoom")), ElementsAre("&Actual Size", "-", "Zoom &In", "Zoom &Out"));
  bench.editor().UseSimpleTools(true);
  EXPECT_THAT(captions(menu("mnuEdit")), ElementsAre("&Undo", "&Redo", "-", "&Copy"));
}

TEST_F(Menus, ShowHotKeysNextToTheCaptions) {
  const auto hotKey = [this](const std::string& key) {
    return bench.moorage().actions().actionOf(bench.command(key)).text().section(u'\t', 1);
  };
  EXPECT_EQ(hotKey("btnFileOpen"), "Ctrl+O");
  EXPECT_EQ(hotKey("btnImageResize"), "Shift+S");
  EXPECT_EQ(hotKey("btnFileClose"), "Alt+F4");
  EXPECT_EQ(hotKey("btnZoomIn"), "Num++");
  EXPECT_EQ(hotKey("btnFileSaveAs"), "");
}

TEST_F(Menus, ListTheRecentFilesInTheFileMenu) {
  docking::CommandModel& list = bench.command("mnuFileMRU");
  list.Items().Clear();
  list.Items().Add("/pictures/a & b.png", "1");
  list.Items().Add("/pictures/c.jpg", "2");
  EXPECT_THAT(captions(menu("mnuFile")),
              testing::IsSupersetOf({"&1 /pictures/a && b.png", "&2 /pictures/c.jpg"}));

  std::string chosen;
  const Connection connection =
      bench.moorage().CommandClick.Connect([&](Command& command) { chosen = command.SelectedItem().Text; });
  bench.editor().ShowMRU(false);  // so that choosing an entry opens nothing
  bench.moorage().chooseItem(list, 2);
  EXPECT_EQ(chosen, "");
}

TEST_F(Menus, ShowThePressedStateWithoutTogglingIt) {
  QAction& select = bench.moorage().actions().actionOf(bench.command("btnDrawSelect"));
  EXPECT_TRUE(select.isChecked());
  bench.showPicture(noise(64, 64));
  select.trigger();
  EXPECT_TRUE(select.isChecked());
}

TEST_F(Menus, ShowTheDescriptionOfTheEntryUnderThePointer) {
  QAction& open = bench.moorage().actions().actionOf(bench.command("btnFileOpen"));
  open.hover();
  EXPECT_EQ(status(), "Opens en existing image");
  Q_EMIT menu("mnuFile").aboutToHide();
  EXPECT_EQ(status(), "");
}

TEST_F(Menus, RestoreTheStatusWhenThePointerLeavesTheirBar) {
  bench.editor().Status("Ready", false, true);
  bar().actions().at(1)->hover();
  EXPECT_EQ(status(), "") << "the menu has no description";
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(&bar(), &leave);
  EXPECT_EQ(status(), "Ready");
}

TEST_F(Menus, RestoreTheStatusWhenEscapeLeavesTheirBar) {
  bench.editor().Status("Ready", false, true);
  pressKey(bench.window(), Qt::Key_E, Qt::AltModifier);
  ASSERT_NE(QApplication::activePopupWidget(), nullptr);
  QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
  ASSERT_EQ(QApplication::activePopupWidget(), nullptr);
  pressKey(bench.window(), Qt::Key_Escape);
  EXPECT_EQ(QApplication::focusWidget(), &bench.canvas());
  EXPECT_EQ(status(), "Ready");
}

TEST_F(Menus, OpenAtThePointerAndReturnWhenClosed) {
  bool seen = false;
  QTimer::singleShot(20, [&] {
    QWidget* const popup = QApplication::activePopupWidget();
    seen = popup != nullptr;
    if (popup) popup->close();
  });
  bench.moorage().ShowPopup(bench.command("mnuSelectionContext"));
  EXPECT_TRUE(seen);
}

}  // namespace
}  // namespace kestrel::desktop
