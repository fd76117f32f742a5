// Bars, panels and dock windows, and the notifications for the view.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestMoorage.h"

namespace kestrel::docking {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class BarsTest : public testing::Test {
 protected:
  TestMoorage suite;
  std::vector<std::string> events;
  bool cancelled = false;

  void write(const char* what, const std::string& name, std::int32_t reason, CancelValue& cancel) {
    events.push_back(what + name + ' ' + std::to_string(reason));
    cancel.Value = cancelled;
  }
  Connection barHiding =
      suite.CommandBarHiding.Connect([this](CommandBar& bar, std::int32_t reason, CancelValue& c) {
        write("hiding ", bar.Name(), reason, c);
      });
  Connection barShowing =
      suite.CommandBarShowing.Connect([this](CommandBar& bar, std::int32_t reason, CancelValue& c) {
        write("showing ", bar.Name(), reason, c);
      });
  Connection windowHiding =
      suite.DockWindowHiding.Connect([this](DockWindow& window, std::int32_t reason, CancelValue& c) {
        write("hiding ", window.Name(), reason, c);
      });
  Connection windowShowing =
      suite.DockWindowShowing.Connect([this](DockWindow& window, std::int32_t reason, CancelValue& c) {
        write("showing ", window.Name(), reason, c);
      });
  Connection commandUpdated =
      suite.CommandUpdated.Connect([this](CommandModel& one) { events.push_back("update " + one.Name()); });
  Connection barUpdated =
      suite.BarUpdated.Connect([this](CommandBarModel& one) { events.push_back("update " + one.Name()); });
  Connection windowUpdated = suite.DockWindowUpdated.Connect(
      [this](DockWindowModel& one) { events.push_back("update " + one.Name()); });

  CommandModel& command(const std::string& key) { return suite.Commands().Item(key); }
};

TEST_F(BarsTest, AreFoundByNameInAnyCase) {
  EXPECT_EQ(suite.CommandBars().Count(), 3);
  EXPECT_EQ(suite.CommandBars()("status bar").Name(), "Status Bar");
  EXPECT_EQ(errorOf([&] { suite.CommandBars().Item("Nothing"); }), 5);
  EXPECT_EQ(errorOf([&] { suite.CommandBars().Item(4); }), 9);
}

TEST_F(BarsTest, StartAsTheLayoutSays) {
  const CommandBarModel& bar = suite.CommandBars().Item("Standard");
  EXPECT_FALSE(bar.Visible());
  EXPECT_EQ(bar.kind(), BarKind::ToolBar);
  EXPECT_EQ(bar.edge(), Edge::Left);
  EXPECT_EQ(bar.row(), 1);
}

TEST_F(BarsTest, NotifyBeforeHidingOrShowingWithTheCause) {
  CommandBarModel& bar = suite.CommandBars().Item("Status Bar");
  bar.Visible(false);
  bar.show(true, kReasonUser);
  EXPECT_THAT(events, ElementsAre("hiding Status Bar 0", "update Status Bar", "showing Status Bar 1",
                                  "update Status Bar"));
}

TEST_F(BarsTest, StayUnchangedWhenAHandlerCancels) {
  cancelled = true;
  CommandBarModel& bar = suite.CommandBars().Item("Status Bar");
  bar.show(false, kReasonUser);
  EXPECT_TRUE(bar.Visible());
  EXPECT_THAT(events, ElementsAre("hiding Status Bar 1"));
}

TEST_F(BarsTest, RaiseNothingWhenAlreadyInThatState) {
  suite.CommandBars().Item("Status Bar").Visible(true);
  suite.CommandBars().Item("Standard").Visible(false);
  EXPECT_THAT(events, IsEmpty());
}

TEST_F(BarsTest, AreListedForTheUserUnlessExcluded) {
  CommandBarModel& bar = suite.CommandBars().Item("Status Bar");
  EXPECT_TRUE(bar.Listed());
  bar.Listed(false);
  EXPECT_FALSE(bar.Listed());
  EXPECT_TRUE(bar.Visible());
}

TEST_F(BarsTest, ReturnTheirEntriesByIndexAndByKey) {
  BarEntriesModel& entries = command("mnuFile").Bar().Entries();
  EXPECT_EQ(entries.Count(), 4);
  EXPECT_EQ(entries.Item(3).Key(), "mnuRecent");
  EXPECT_TRUE(entries.Item("BTNCLOSE").BeginGroup());
  EXPECT_EQ(errorOf([&] { entries.Item(5); }), 9);
  EXPECT_EQ(errorOf([&] { entries.Item("cboZoom"); }), 5);
}

std::string shown(const CommandBarModel& bar) {
  std::string text;
  for (const ShownEntry& entry : bar.shownEntries()) {
    text += (entry.separatorBefore ? "+" : " ") + entry.command->Name();
  }
  return text;
}

TEST_F(BarsTest, ShowVisibleEntriesAndASeparatorOnlyWithItsEntry) {
  CommandBarModel& menu = command("mnuFile").Bar();
  EXPECT_EQ(shown(menu), " btnOpen+mnuRecent+btnClose");
  command("mnuRecent").Visible(false);
  EXPECT_EQ(shown(menu), " btnOpen+btnClose");
  command("btnOpen").Visible(false);
  EXPECT_EQ(shown(menu), " btnClose");
}

TEST_F(BarsTest, PutASeparatorBeforeAnEntryThatBeginsAGroup) {
  CommandBarModel& menu = command("mnuFile").Bar();
  menu.Entries().Item("btnClose").BeginGroup(false);
  EXPECT_EQ(shown(menu), " btnOpen+mnuRecent btnClose");
  menu.Entries().Item("btnClose").BeginGroup(true);
  menu.Entries().Item("btnClose").BeginGroup(true);
  EXPECT_EQ(shown(menu), " btnOpen+mnuRecent+btnClose");
  EXPECT_THAT(events, ElementsAre("update mnuFile", "update mnuFile"));
}

TEST_F(BarsTest, DockWindowsNotifyBeforeHidingOrShowing) {
  DockWindow& window = suite.DockWindows()("DKWZOOM");
  EXPECT_EQ(window.Caption(), "Zoom");
  EXPECT_TRUE(window.Visible());
  window.Visible(false);
  suite.DockWindows().Item("dkwZoom").show(true, kReasonUser);
  EXPECT_THAT(events,
              ElementsAre("hiding dkwZoom 0", "update dkwZoom", "showing dkwZoom 1", "update dkwZoom"));
  EXPECT_EQ(errorOf([&] { suite.DockWindows().Item("dkwNone"); }), 5);
}

TEST_F(BarsTest, DockWindowsStayWhenAHandlerCancels) {
  cancelled = true;
  suite.DockWindows().Item("dkwOther").Visible(true);
  EXPECT_FALSE(suite.DockWindows().Item("dkwOther").Visible());
  EXPECT_THAT(events, ElementsAre("showing dkwOther 0"));
}

TEST_F(BarsTest, DockWindowsKnowTheirEdge) {
  EXPECT_EQ(suite.DockWindows().Item("dkwZoom").edge(), Edge::Right);
  EXPECT_EQ(suite.DockWindows().Item("dkwZoom").size(), 200);
}

TEST_F(BarsTest, PanelsShowTheCaptionOfTheirCommand) {
  kestrel::StatusPanel& panel = suite.StatusPanel("PNLSTATUS");
  panel.Caption("Ready");
  EXPECT_EQ(panel.Caption(), "Ready");
  EXPECT_EQ(command("pnlStatus").Caption(), "Ready");
  panel.Visible(false);
  EXPECT_FALSE(command("pnlStatus").Visible());
  EXPECT_THAT(events, ElementsAre("update pnlStatus", "update pnlStatus"));
  EXPECT_EQ(errorOf([&] { suite.StatusPanel("pnlNone"); }), 5);
  EXPECT_EQ(errorOf([&] { suite.StatusPanel("btnOpen"); }), 5);
}

TEST_F(BarsTest, ProgressPanelsClampTheirProgress) {
  StatusPanelModel& panel = suite.StatusPanel("Progress");
  panel.ProgressMin(1);
  panel.ProgressMax(101);
  panel.ProgressValue(26);
  EXPECT_DOUBLE_EQ(panel.progress(), 0.25);
  panel.ProgressValue(2000);
  EXPECT_DOUBLE_EQ(panel.progress(), 1.0);
  panel.ProgressValue(-5);
  EXPECT_DOUBLE_EQ(panel.progress(), 0.0);
  panel.ProgressMax(1);
  EXPECT_DOUBLE_EQ(panel.progress(), 0.0);
  EXPECT_TRUE(command("Progress").showsProgress());
}

TEST_F(BarsTest, ChangesAreNotifiedOnceWhenRedrawResumes) {
  suite.Redraw(false);
  command("btnClose").Enabled(false);
  command("btnOpen").Enabled(false);
  command("btnClose").Caption("x");
  EXPECT_THAT(events, IsEmpty());
  EXPECT_FALSE(command("btnOpen").Enabled()) << "the change itself does not wait";
  suite.Redraw(true);
  EXPECT_THAT(events, ElementsAre("update btnClose", "update btnOpen"));
  suite.Redraw(true);
  EXPECT_EQ(events.size(), 2u);
}

TEST_F(BarsTest, SettingTheCurrentValueNotifiesNobody) {
  command("btnOpen").Enabled(true);
  command("btnOpen").Caption("&Open...");
  suite.DockFunctions().SetChecked(command("btnClose"), true);
  suite.SetComboText(command("cboZoom"), "1:1");
  EXPECT_THAT(events, IsEmpty());
}

TEST_F(BarsTest, TheStyleIsOneOfThree) {
  int calls = 0;
  const Connection style = suite.StyleUpdated.Connect([&] { ++calls; });
  suite.DockFunctions().SetStyle(suite, 2);
  suite.DockFunctions().SetStyle(suite, 2);
  EXPECT_EQ(suite.style(), 2);
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(errorOf([&] { suite.DockFunctions().SetStyle(suite, 3); }), 5);
  EXPECT_EQ(errorOf([&] { suite.DockFunctions().SetStyle(suite, -1); }), 5);
}

TEST_F(BarsTest, FormsAreAttachedByThePlatform) {
  Form* form = reinterpret_cast<Form*>(&suite);  // only its address is used
  suite.DockFunctions().AttachForm(suite.DockWindows().Item("dkwZoom"), *form);
  EXPECT_THAT(suite.attached, ElementsAre(std::pair(std::string("dkwZoom"), form)));
}

}  // namespace
}  // namespace kestrel::docking
