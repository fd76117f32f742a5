// Commands: their properties, and the effect of clicks and keys.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestMoorage.h"

namespace kestrel::docking {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A suite whose events are recorded as texts.
class CommandsTest : public testing::Test {
 protected:
  TestMoorage suite;
  std::vector<std::string> events;
  Connection click =
      suite.CommandClick.Connect([this](Command& command) { events.push_back("click " + command.Name()); });
  Connection highlight = suite.CommandHighlight.Connect([this](Command& command, std::int32_t state) {
    events.push_back("highlight " + command.Name() + ' ' + std::to_string(state));
  });
  Connection hotKey = suite.CommandHotKeyPress.Connect([this](Command& command, HotKey& key, CancelValue&) {
    events.push_back("key " + command.Name() + ' ' + std::to_string(key.Shift()) + ' ' +
                     std::to_string(key.KeyCode()));
  });

  CommandModel& command(const std::string& key) { return suite.Commands().Item(key); }
};

TEST_F(CommandsTest, AreFoundByKeyInAnyCaseAndByIndexFromOne) {
  EXPECT_EQ(suite.Commands().Count(), 8);
  EXPECT_EQ(suite.Commands().Item("BTNopen").Name(), "btnOpen");
  EXPECT_EQ(&suite.Commands()("btnopen"), &suite.Commands().Item(1));
  EXPECT_EQ(errorOf([&] { suite.Commands().Item("btnNone"); }), 5);
  EXPECT_EQ(errorOf([&] { suite.Commands().Item(0); }), 9);
  EXPECT_EQ(errorOf([&] { suite.Commands().Item(9); }), 9);
}

TEST_F(CommandsTest, StartAsTheLayoutSays) {
  const CommandModel& open = command("btnOpen");
  EXPECT_EQ(open.CommandType(), 0);
  EXPECT_EQ(open.Caption(), "&Open...");
  EXPECT_EQ(open.ShortCaption(), "Open");
  EXPECT_EQ(open.Category(), "File");
  EXPECT_EQ(open.ImageName(), "Open");
  EXPECT_TRUE(open.Enabled());
  EXPECT_TRUE(open.Visible());
  EXPECT_FALSE(open.Checked());
  EXPECT_TRUE(command("btnClose").Checked());
  EXPECT_FALSE(command("btnHidden").Visible());
}

TEST_F(CommandsTest, RaiseCommandClickWhenTheUserChoosesThem) {
  EXPECT_TRUE(suite.click(command("btnOpen")));
  EXPECT_THAT(events, ElementsAre("click btnOpen"));
}

TEST_F(CommandsTest, DoNothingWhenDisabledInvisibleOrNoButton) {
  command("btnOpen").Enabled(false);
  EXPECT_FALSE(suite.click(command("btnOpen")));
  EXPECT_FALSE(suite.click(command("btnHidden")));
  EXPECT_FALSE(suite.click(command("mnuFile")));
  EXPECT_FALSE(suite.click(command("pnlStatus")));
  EXPECT_THAT(events, IsEmpty());
}

TEST_F(CommandsTest, EndAHighlightBeforeTheNextBegins) {
  suite.highlight(&command("btnOpen"));
  suite.highlight(&command("btnOpen"));
  suite.highlight(&command("btnClose"));
  suite.highlight(nullptr);
  EXPECT_THAT(events, ElementsAre("highlight btnOpen 1", "highlight btnOpen 0", "highlight btnClose 1",
                                  "highlight btnClose 0"));
}

TEST_F(CommandsTest, AreHighlightedEvenWhenDisabled) {
  command("btnOpen").Enabled(false);
  suite.highlight(&command("btnOpen"));
  EXPECT_THAT(events, ElementsAre("highlight btnOpen 1"));
}

TEST_F(CommandsTest, RaiseCommandHotKeyPressBeforeTheClick) {
  EXPECT_TRUE(suite.pressHotKey(kCtrlMask, 'O'));
  EXPECT_THAT(events, ElementsAre("key btnOpen 2 79", "click btnOpen"));
}

TEST_F(CommandsTest, IgnoreAHotKeyThatAHandlerCancels) {
  const Connection cancel =
      suite.CommandHotKeyPress.Connect([](Command&, HotKey&, CancelValue& value) { value.Value = true; });
  EXPECT_FALSE(suite.pressHotKey(kCtrlMask, 'O'));
  EXPECT_THAT(events, ElementsAre("key btnOpen 2 79"));
}

TEST_F(CommandsTest, ReactToHotKeysWithExactlyTheirModifiers) {
  EXPECT_FALSE(suite.pressHotKey(0, 'O'));
  EXPECT_FALSE(suite.pressHotKey(kCtrlMask | kShiftMask, 'O'));
  EXPECT_FALSE(suite.pressHotKey(kAltMask, 'O'));
  EXPECT_FALSE(suite.pressHotKey(kCtrlMask, 'P'));
  EXPECT_THAT(events, IsEmpty());
}

TEST_F(CommandsTest, ReactToEachOfTheirHotKeys) {
  EXPECT_TRUE(suite.pressHotKey(0, 112));
  EXPECT_THAT(events, ElementsAre("key btnOpen 0 112", "click btnOpen"));
}

TEST_F(CommandsTest, IgnoreHotKeysWhenDisabledOrInvisible) {
  command("btnOpen").Enabled(false);
  EXPECT_FALSE(suite.pressHotKey(kCtrlMask, 'O'));
  EXPECT_FALSE(suite.pressHotKey(kCtrlMask, 'H'));
  EXPECT_THAT(events, IsEmpty());
}

TEST_F(CommandsTest, ReportTheirHotKeysWithoutAnEvent) {
  EXPECT_TRUE(suite.hasHotKey(kCtrlMask, 'O'));
  EXPECT_FALSE(suite.hasHotKey(kCtrlMask, 'P'));
  EXPECT_TRUE(suite.hasHotKey(0, 'C'));
  suite.Commands().HotKeyOptions().AllowUnmodified(0);
  EXPECT_FALSE(suite.hasHotKey(0, 'C'));
  command("btnOpen").Enabled(false);
  EXPECT_FALSE(suite.hasHotKey(kCtrlMask, 'O'));
  EXPECT_THAT(events, IsEmpty());
}

TEST_F(CommandsTest, ReactToUnmodifiedHotKeysOnlyWhileAllowed) {
  EXPECT_TRUE(suite.pressHotKey(0, 'C'));
  suite.Commands().HotKeyOptions().AllowUnmodified(0);
  EXPECT_FALSE(suite.pressHotKey(0, 'C'));
  EXPECT_FALSE(suite.pressHotKey(0, 112));
  EXPECT_TRUE(suite.pressHotKey(kCtrlMask, 'O'));
  suite.Commands().HotKeyOptions().AllowUnmodified(1);
  EXPECT_TRUE(suite.pressHotKey(0, 'C'));
  EXPECT_EQ(suite.Commands().HotKeyOptions().AllowUnmodified(), 1);
}

TEST_F(CommandsTest, CountShiftAloneAsUnmodified) {
  StoredLayout layout = smallLayout();
  layout.commands[1].hotKeys = {{kShiftMask, 'S'}, {kAltMask, 115}};
  TestMoorage other(layout);
  other.Commands().HotKeyOptions().AllowUnmodified(0);
  EXPECT_FALSE(other.pressHotKey(kShiftMask, 'S'));
  EXPECT_TRUE(other.pressHotKey(kAltMask, 115));
  other.Commands().HotKeyOptions().AllowUnmodified(1);
  EXPECT_TRUE(other.pressHotKey(kShiftMask, 'S'));
}

TEST_F(CommandsTest, LoseARemovedHotKeyForGood) {
  HotKeysModel& keys = command("btnOpen").HotKeys();
  EXPECT_EQ(keys.Count(), 2);
  EXPECT_EQ(keys.Item(1).Shift(), 2);
  keys.Item(1).Remove();
  EXPECT_EQ(keys.Count(), 1);
  EXPECT_EQ(keys.Item(1).KeyCode(), 112);
  EXPECT_FALSE(suite.pressHotKey(kCtrlMask, 'O'));
  EXPECT_EQ(errorOf([&] { keys.Item(2); }), 9);
  EXPECT_EQ(errorOf([&] { keys.Item(0); }), 9);
}

TEST_F(CommandsTest, AreNotClickedWhenAHandlerOfTheirHotKeyDisablesThem) {
  const Connection disable = suite.CommandHotKeyPress.Connect(
      [](Command& command, HotKey&, CancelValue&) { command.Enabled(false); });
  EXPECT_FALSE(suite.pressHotKey(kCtrlMask, 'O'));
  EXPECT_THAT(events, ElementsAre("key btnOpen 2 79"));
}

TEST_F(CommandsTest, ShowThePressedStateThatDockFunctionsSets) {
  suite.DockFunctions().SetChecked(command("btnOpen"), true);
  EXPECT_TRUE(command("btnOpen").Checked());
  suite.DockFunctions().SetChecked(command("btnOpen"), false);
  EXPECT_FALSE(command("btnOpen").Checked());
  EXPECT_THAT(events, IsEmpty());
}

TEST_F(CommandsTest, HaveCaptionsWithoutAccessKeyMarks) {
  EXPECT_EQ(command("btnOpen").plainCaption(), "Open...");
  command("btnOpen").Caption("Save && &Close&");
  EXPECT_EQ(command("btnOpen").plainCaption(), "Save & Close");
}

TEST_F(CommandsTest, HaveABarAsMenusAndItemsAsCombosOrLists) {
  EXPECT_EQ(command("mnuFile").Bar().Entries().Count(), 4);
  EXPECT_EQ(errorOf([&] { command("btnOpen").Bar(); }), 5);
  EXPECT_EQ(command("cboZoom").Items().Count(), 0);
  EXPECT_EQ(command("mnuRecent").Items().Count(), 0);
  EXPECT_EQ(errorOf([&] { command("btnOpen").Items(); }), 5);
}

class ComboTest : public CommandsTest {
 protected:
  CommandModel& combo = command("cboZoom");
  Connection change = suite.CommandChange.Connect([this](Command& changed, Combo& box, CancelValue& cancel) {
    events.push_back("change " + changed.Name() + ' ' + box.Text());
    cancel.Value = cancelled;
  });
  bool cancelled = false;
};

TEST_F(ComboTest, RaisesCommandChangeWhenTheUserTypesAnotherText) {
  EXPECT_EQ(combo.comboText(), "1:1");
  EXPECT_TRUE(suite.typeComboText(combo, "3.3:1"));
  EXPECT_FALSE(suite.typeComboText(combo, "3.3:1"));
  EXPECT_THAT(events, ElementsAre("change cboZoom 3.3:1"));
  EXPECT_EQ(combo.comboText(), "3.3:1");
}

TEST_F(ComboTest, RaisesNothingWhenAProgramSetsItsText) {
  suite.SetComboText(combo, "2:1");
  EXPECT_EQ(combo.comboText(), "2:1");
  EXPECT_THAT(events, IsEmpty());
  EXPECT_EQ(errorOf([&] { suite.SetComboText(command("btnOpen"), "2:1"); }), 5);
}

TEST_F(ComboTest, RestoresItsTextWhenAHandlerCancels) {
  cancelled = true;
  EXPECT_FALSE(suite.typeComboText(combo, "x"));
  EXPECT_EQ(combo.comboText(), "1:1");
}

TEST_F(ComboTest, KeepsTheTextThatAHandlerSetsWhileItChanges) {
  const Connection rewrite = suite.CommandChange.Connect([&](Command& changed, Combo&, CancelValue& cancel) {
    suite.SetComboText(changed, "4:1");
    cancel.Value = true;
  });
  suite.typeComboText(combo, "4.0:1");
  EXPECT_EQ(combo.comboText(), "4:1");
}

TEST_F(ComboTest, CannotBeTypedInWhenDisabled) {
  combo.Enabled(false);
  EXPECT_FALSE(suite.typeComboText(combo, "2:1"));
  EXPECT_EQ(combo.comboText(), "1:1");
  EXPECT_EQ(errorOf([&] { suite.typeComboText(command("btnOpen"), "x"); }), 5);
}

TEST_F(ComboTest, TakesTheTextOfTheChosenItem) {
  for (int i = 1; i <= 25; ++i) combo.Items().Add(std::to_string(i) + ":1", std::to_string(i));
  EXPECT_EQ(combo.Items().Count(), 25);
  EXPECT_EQ(combo.Items().Item(25).Key, "25");
  EXPECT_TRUE(suite.chooseItem(combo, 4));
  EXPECT_THAT(events, ElementsAre("change cboZoom 4:1"));
  EXPECT_EQ(errorOf([&] { suite.chooseItem(combo, 26); }), 9);
  EXPECT_EQ(errorOf([&] { combo.Items().Item(0); }), 9);
}

TEST_F(CommandsTest, ListsReportTheChosenItem) {
  CommandModel& list = command("mnuRecent");
  EXPECT_EQ(errorOf([&] { list.SelectedItem(); }), 91);
  list.Items().Add("/a.png", {});
  list.Items().Add("/b.png", {});
  EXPECT_TRUE(suite.chooseItem(list, 2));
  EXPECT_EQ(list.SelectedItem().Text, "/b.png");
  EXPECT_THAT(events, ElementsAre("click mnuRecent"));
  list.Enabled(false);
  EXPECT_FALSE(suite.chooseItem(list, 1));
  EXPECT_EQ(list.SelectedItem().Text, "/b.png");
}

TEST_F(CommandsTest, ListsKeepTheChosenItemWhenCleared) {
  CommandModel& list = command("mnuRecent");
  list.Items().Add("/a.png", {});
  const Connection empty = suite.CommandClick.Connect([&](Command&) {
    list.Items().Clear();
    EXPECT_EQ(list.SelectedItem().Text, "/a.png");
  });
  suite.chooseItem(list, 1);
  EXPECT_EQ(list.Items().Count(), 0);
}

TEST_F(CommandsTest, MenusPopUpOnRequest) {
  suite.ShowPopup(command("mnuFile"));
  EXPECT_THAT(suite.popups, ElementsAre("mnuFile"));
  EXPECT_EQ(errorOf([&] { suite.ShowPopup(command("btnOpen")); }), 5);
}

}  // namespace
}  // namespace kestrel::docking
