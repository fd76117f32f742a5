#include "ContractTest.h"

namespace kestrel::contract {
namespace {

class DockingSuite : public ContractTest {
 protected:
  void SetUp() override {
    ContractTest::SetUp();
    suite_ = &Bind<Moorage>(user().editorSite(), "mrgUI");
  }
  Moorage& suite() { return *suite_; }

 private:
  Moorage* suite_ = nullptr;
};

TEST_P(DockingSuite, FindsItsPartsByKeyInAnyCaseAndRaises5ForOthers) {
  EXPECT_EQ(suite().Commands()("BTNFILEOPEN").Name(), "btnFileOpen");
  EXPECT_EQ(suite().CommandBars()("menu bar").Name(), "Menu Bar");
  EXPECT_EQ(suite().DockWindows()("DKWZOOM").Name(), "dkwZoom");
  EXPECT_EQ(errorOf([&] { suite().Commands()("btnNothing"); }), 5);
  EXPECT_EQ(errorOf([&] { suite().CommandBars()("Nothing"); }), 5);
  EXPECT_EQ(errorOf([&] { suite().DockWindows()("dkwNothing"); }), 5);
  EXPECT_EQ(errorOf([&] { suite().StatusPanel("pnlNothing"); }), 5);
}

TEST_P(DockingSuite, CountsItsPartsFrom1AndRaises9Outside) {
  ASSERT_EQ(suite().Commands().Count(), 63);
  EXPECT_EQ(errorOf([&] { suite().Commands().Item(0); }), 9);
  EXPECT_EQ(errorOf([&] { suite().Commands().Item(64); }), 9);
  EXPECT_EQ(suite().DockWindows().Count(), 2);
}

TEST_P(DockingSuite, ReadsItsStoredLayoutAtCreation) {
  Command& open = suite().Commands()("btnFileOpen");
  EXPECT_EQ(open.Caption(), "&Open...");
  EXPECT_EQ(open.ShortCaption(), "Open");
  EXPECT_EQ(open.Description(), "Opens en existing image");
  EXPECT_EQ(open.Category(), "File");
  EXPECT_EQ(open.CommandType(), kCommandButton);
  ASSERT_EQ(open.HotKeys().Count(), 1);
  EXPECT_EQ(open.HotKeys().Item(1).Shift(), kCtrlMask);
  EXPECT_EQ(open.HotKeys().Item(1).KeyCode(), 'O');
  EXPECT_TRUE(suite().Commands()("btnDrawSelect").Checked());
}

TEST_P(DockingSuite, WritesNothingBackToItsStoredLayout) {
  Command& open = suite().Commands()("btnFileOpen");
  open.Visible(false);
  open.Enabled(false);
  open.HotKeys().Item(1).Remove();
  suite().DockFunctions().SetChecked(suite().Commands()("btnDrawSelect"), false);
  suite().CommandBars()("Tools").Visible(false);
  suite().Commands()("mnuEdit").Bar().Entries().Item("btnEditCopy").BeginGroup(true);

  auto& next = Bind<Moorage>(user().editorSite(), "mrgUI");
  Command& again = next.Commands()("btnFileOpen");
  EXPECT_TRUE(again.Visible());
  EXPECT_TRUE(again.Enabled());
  EXPECT_EQ(again.HotKeys().Count(), 1);
  EXPECT_TRUE(next.Commands()("btnDrawSelect").Checked());
  EXPECT_TRUE(next.CommandBars()("Tools").Visible());
  EXPECT_FALSE(next.Commands()("mnuEdit").Bar().Entries().Item("btnEditCopy").BeginGroup());
}

TEST_P(DockingSuite, RaisesAClickOfAnEnabledAndVisibleButton) {
  std::string clicked;
  const Connection connection =
      suite().CommandClick.Connect([&](Command& command) { clicked += command.Name(); });
  EXPECT_TRUE(user().clickCommand(suite(), "btnFileOpen"));
  EXPECT_EQ(clicked, "btnFileOpen");
  suite().Commands()("btnFileOpen").Enabled(false);
  EXPECT_FALSE(user().clickCommand(suite(), "btnFileOpen"));
  EXPECT_EQ(clicked, "btnFileOpen");
}

TEST_P(DockingSuite, SetComboTextIsSilentAndTypingIsNot) {
  Command& combo = suite().Commands()("cboZoom");
  std::string typed;
  const Connection connection = suite().CommandChange.Connect(
      [&](Command& command, Combo& box, CancelValue&) { typed += command.Name() + '=' + box.Text() + ' '; });
  suite().SetComboText(combo, "2:1");
  EXPECT_EQ(typed, "");
  user().typeComboText(suite(), "cboZoom", "3.3:1");
  EXPECT_EQ(typed, "cboZoom=3.3:1 ");
}

TEST_P(DockingSuite, HotKeysRaiseTheirEventThenTheClick) {
  std::string log;
  bool cancel = false;
  const Connection pressed =
      suite().CommandHotKeyPress.Connect([&](Command&, HotKey& key, CancelValue& stop) {
        log += "key" + std::to_string(key.KeyCode()) + ' ';
        stop.Value = cancel;
      });
  const Connection clicked =
      suite().CommandClick.Connect([&](Command& command) { log += command.Name() + ' '; });
  user().pressHotKey(suite(), kCtrlMask, 'O');
  EXPECT_EQ(log, "key79 btnFileOpen ");
  cancel = true;
  user().pressHotKey(suite(), kCtrlMask, 'O');
  EXPECT_EQ(log, "key79 btnFileOpen key79 ");
}

TEST_P(DockingSuite, HotKeysWithoutCtrlOrAltMustBeAllowed) {
  std::string log;
  const Connection clicked = suite().CommandClick.Connect([&](Command& command) { log += command.Name(); });
  suite().Commands().HotKeyOptions().AllowUnmodified(0);
  user().pressHotKey(suite(), 0, 'L');
  EXPECT_EQ(log, "");
  suite().Commands().HotKeyOptions().AllowUnmodified(1);
  user().pressHotKey(suite(), 0, 'L');
  EXPECT_EQ(log, "btnDrawLine");
}

TEST_P(DockingSuite, ARemovedHotKeyIsGoneForGood) {
  Command& open = suite().Commands()("btnFileOpen");
  open.HotKeys().Item(1).Remove();
  EXPECT_EQ(open.HotKeys().Count(), 0);
  EXPECT_FALSE(user().pressHotKey(suite(), kCtrlMask, 'O'));
}

TEST_P(DockingSuite, BarsAndDockWindowsNotifyBeforeHidingAndShowing) {
  std::string log;
  bool cancel = true;
  const auto note = [&](const char* what, const std::string& name, std::int32_t reason, CancelValue& stop) {
    log += what + name + std::to_string(reason) + ' ';
    stop.Value = cancel;
  };
  const Connection hiding =
      suite().CommandBarHiding.Connect([&](CommandBar& bar, std::int32_t reason, CancelValue& stop) {
        note("hide ", bar.Name(), reason, stop);
      });
  const Connection showing =
      suite().CommandBarShowing.Connect([&](CommandBar& bar, std::int32_t reason, CancelValue& stop) {
        note("show ", bar.Name(), reason, stop);
      });
  CommandBar& bar = suite().CommandBars()("Status Bar");
  ASSERT_TRUE(bar.Visible());
  bar.Visible(false);
  EXPECT_TRUE(bar.Visible()) << "it was canceled";
  cancel = false;
  bar.Visible(false);
  EXPECT_FALSE(bar.Visible());
  bar.Visible(true);
  EXPECT_TRUE(bar.Visible());
  EXPECT_EQ(log, "hide Status Bar0 hide Status Bar0 show Status Bar0 ");

  log.clear();
  const Connection windows =
      suite().DockWindowHiding.Connect([&](DockWindow& window, std::int32_t reason, CancelValue& stop) {
        note("hide ", window.Name(), reason, stop);
      });
  const Connection shown =
      suite().DockWindowShowing.Connect([&](DockWindow& window, std::int32_t reason, CancelValue& stop) {
        note("show ", window.Name(), reason, stop);
      });
  DockWindow& window = suite().DockWindows()("dkwZoom");
  const bool before = window.Visible();
  window.Visible(!before);
  EXPECT_EQ(window.Visible(), !before);
  EXPECT_EQ(log, before ? "hide dkwZoom0 " : "show dkwZoom0 ");
  window.Visible(!before);
  EXPECT_EQ(log, before ? "hide dkwZoom0 " : "show dkwZoom0 ") << "nothing changed";
}

TEST_P(DockingSuite, HasAClientAreaAndReportsItsChanges) {
  suite().Move(0, 0, 700, 500);
  user().settle();
  suite().CommandBars()("Status Bar").Visible(true);
  user().settle();
  const Rectangle with = suite().ClientArea();
  EXPECT_GT(with.Width, 0);
  EXPECT_GT(with.Height, 0);
  int changes = 0;
  const Connection connection = suite().ClientAreaChanged.Connect([&] { ++changes; });
  suite().CommandBars()("Status Bar").Visible(false);
  user().settle();
  EXPECT_GE(changes, 1);
  EXPECT_GT(suite().ClientArea().Height, with.Height);
}

TEST_P(DockingSuite, KeepsAnAssignedPressedState) {
  Command& status = suite().Commands()("btnViewStatusBar");
  suite().DockFunctions().SetChecked(status, false);
  EXPECT_FALSE(status.Checked());
  suite().DockFunctions().SetChecked(status, true);
  EXPECT_TRUE(status.Checked());
}

TEST_P(DockingSuite, MenusHaveEntriesAndCombosHaveItems) {
  CommandBar& edit = suite().Commands()("mnuEdit").Bar();
  ASSERT_EQ(edit.Entries().Count(), 6);
  EXPECT_EQ(edit.Entries().Item(1).Key(), "btnEditUndo");
  EXPECT_TRUE(edit.Entries().Item("btneditcut").BeginGroup());
  edit.Entries().Item("btnEditCopy").BeginGroup(true);
  EXPECT_TRUE(edit.Entries().Item("btnEditCopy").BeginGroup());
  EXPECT_EQ(errorOf([&] { suite().Commands()("btnFileOpen").Bar(); }), 5);
  EXPECT_EQ(errorOf([&] { suite().Commands()("btnFileOpen").Items(); }), 5);

  Command& list = suite().Commands()("mnuFileMRU");
  EXPECT_EQ(errorOf([&] { list.SelectedItem(); }), 91);
  list.Items().Clear();
  list.Items().Add("a.png");
  list.Items().Add("b.png", "key");
  ASSERT_EQ(list.Items().Count(), 2);
  EXPECT_EQ(list.Items().Item(2).Text, "b.png");
  EXPECT_EQ(list.Items().Item(2).Key, "key");
  EXPECT_EQ(errorOf([&] { list.Items().Item(3); }), 9);
}

TEST_P(DockingSuite, StatusPanelsKeepTheirCaption) {
  suite().StatusPanel("pnlStatus").Caption("Opening image...");
  EXPECT_EQ(suite().StatusPanel("PNLSTATUS").Caption(), "Opening image...");
  suite().StatusPanel("pnlSize").Visible(false);
  EXPECT_FALSE(suite().StatusPanel("pnlSize").Visible());
}

KESTREL_ON_ALL_PLATFORMS(DockingSuite);

}  // namespace
}  // namespace kestrel::contract
