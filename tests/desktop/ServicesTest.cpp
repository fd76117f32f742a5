#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QProgressBar>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <filesystem>
#include <fstream>

#include "../logic/docking/TestMoorage.h"
#include "EditorBench.h"
#include "imaging/contract/FormUtility.h"
#include "imaging/contract/WindowFunctions.h"
#include "platform/qt/core/Handles.h"
#include "platform/qt/docking/StatusPanels.h"

namespace kestrel::desktop {
namespace {

TEST(DigitsOnly, BlockOtherCharactersAndPassOtherKeys) {
  const auto platform = testPlatform();
  QLineEdit edit;
  edit.show();
  QTest::keyClicks(&edit, QStringLiteral("a1"));
  EXPECT_EQ(edit.text(), "a1");
  edit.clear();
  platform->WindowFunctions().AddWindowStyle(qt::handleOf(&edit), kStyleDigitsOnly);
  QTest::keyClicks(&edit, QStringLiteral("1a-2.b 3"));
  EXPECT_EQ(edit.text(), "123");
  QTest::keyClick(&edit, Qt::Key_Backspace);
  EXPECT_EQ(edit.text(), "12");
  QApplication::clipboard()->setText(QStringLiteral("cm"));
  QTest::keyClick(&edit, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(edit.text(), "12cm") << "the keyboard alone is restricted";
}

TEST(BusyPointer, HasTwoShapesAndOneResetEndsIt) {
  const auto platform = testPlatform();
  FormUtility& utility = platform->FormUtility();
  utility.SetPointer(kBusyArrowHourglass);
  EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::BusyCursor);
  utility.SetPointer(kBusyHourglass);
  EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
  utility.SetPointer(kBusyHourglass);
  utility.SetPointer(kBusyDefault);
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST(FileExists, FindsNamesThatAreNotValidText) {
  const auto platform = testPlatform();
  FormUtility& utility = platform->FormUtility();
  const QTemporaryDir folder;
  const std::string name = folder.path().toStdString() + "/latin \xE4.png";
  EXPECT_FALSE(utility.FileExists(name));
  std::ofstream(name) << "x";
  ASSERT_TRUE(std::filesystem::exists(name));
  EXPECT_TRUE(utility.FileExists(name));
  std::filesystem::remove(name);  // which the folder's destructor can't
}

TEST(LockWindowUpdate, SuspendsOneWindowUntilAnotherOrNone) {
  const auto platform = testPlatform();
  WindowFunctions& windows = platform->WindowFunctions();
  QWidget one, other;
  windows.LockWindowUpdate(qt::handleOf(&one));
  EXPECT_FALSE(one.updatesEnabled());
  windows.LockWindowUpdate(qt::handleOf(&other));
  EXPECT_TRUE(one.updatesEnabled());
  EXPECT_FALSE(other.updatesEnabled());
  windows.LockWindowUpdate(0);
  EXPECT_TRUE(other.updatesEnabled());
}

TEST(ProgressPanel, ShowsItsProgress) {
  docking::StoredLayout layout = docking::smallLayout();
  for (docking::StoredBar& bar : layout.bars) {
    if (bar.kind == docking::BarKind::StatusBar) bar.entries.push_back({"Progress", false});
  }
  docking::TestMoorage suite(layout);
  qt::CommandActions actions(suite, {});
  QStatusBar bar;
  qt::StatusPanels panels(suite, actions, bar);
  const Connection updated =
      suite.CommandUpdated.Connect([&](docking::CommandModel& command) { panels.refresh(command); });
  const auto* const shown = bar.findChild<QProgressBar*>();
  ASSERT_NE(shown, nullptr);
  StatusPanel& panel = suite.StatusPanel("Progress");
  panel.ProgressMin(10);
  panel.ProgressMax(30);
  panel.ProgressValue(15);
  EXPECT_EQ(shown->value() - shown->minimum(), (shown->maximum() - shown->minimum()) / 4);
  panel.ProgressValue(30);
  EXPECT_EQ(shown->value(), shown->maximum());
  panel.Visible(false);
  EXPECT_FALSE(shown->isVisibleTo(&bar));
}

}  // namespace
}  // namespace kestrel::desktop
