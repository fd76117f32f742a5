// The docking suite's commands, bars and events, late-bound.

#include "HostFixture.h"

namespace kestrel::dispatch {
namespace {

using testing::StartsWith;

class LateBoundCommands : public HostFixture {
 protected:
  void SetUp() override {
    HostFixture::SetUp();
    control_ = embedded();
    Call(*control_, "OpenImage", png());
    moorage_ = suiteReference();
  }
  void TearDown() override {
    control_.reset();
    moorage_.reset();
    HostFixture::TearDown();
  }

  Variant command(const std::string& name) { return Call(*control_, "Commands", name); }

  Reference::Pointer control_;
  Reference::Pointer moorage_;
};

// -- Hot keys ---------------------------------------------------------------------------------------------

TEST_F(LateBoundCommands, AHotKeyIsGoneAfterItsRemoval) {
  const Variant keys = get(command("btnFileOpen"), "HotKeys");
  const std::int32_t count = get(keys, "Count").ToInt32();
  ASSERT_GE(count, 1);
  const Variant key = Call(ReferenceIn(keys), "Item", 1);
  const Variant again = Call(ReferenceIn(keys), "Item", 1);
  EXPECT_EQ(get(key, "KeyCode").ToInt32(), 'O');
  EXPECT_EQ(get(key, "Shift").ToInt32(), kCtrlMask);
  EXPECT_TRUE(ReferenceIn(key).IsSame(ReferenceIn(again)));

  Call(ReferenceIn(key), "Remove");
  EXPECT_EQ(get(keys, "Count").ToInt32(), count - 1);
  EXPECT_EQ(raisedByGet(key, "KeyCode"), "91 The object of class HotKey no longer exists.");
  EXPECT_THAT(raisedByGet(again, "KeyCode"), StartsWith("91 "));
  EXPECT_THAT(raised([&] { Call(ReferenceIn(again), "Remove"); }), StartsWith("91 "));
}

TEST_F(LateBoundCommands, TheCancelValueOfAHandlerGoesBackToTheRaiser) {
  Variant key;
  Variant cancel;
  std::string name;
  on(*moorage_, "CommandHotKeyPress", [&](std::span<Variant> arguments) {
    name = get(arguments[0], "Name").ToString();
    key = arguments[1];
    cancel = arguments[2];
    EXPECT_FALSE(get(cancel, "Value").ToBoolean());
    Put(ReferenceIn(cancel), "Value", true);
  });
  EXPECT_FALSE(suite().pressHotKey(kCtrlMask, 'O')) << "no file dialog is shown";
  EXPECT_EQ(name, "btnFileOpen");
  EXPECT_EQ(get(key, "KeyCode").ToInt32(), 'O') << "the hot key exists after the event";
  EXPECT_TRUE(get(cancel, "Value").ToBoolean()) << "the host's own copy";
}

TEST_F(LateBoundCommands, AHotKeyMayBeRemovedByAHandlerOfItsEvent) {
  on(*moorage_, "CommandHotKeyPress",
     [](std::span<Variant> arguments) { Call(ReferenceIn(arguments[1]), "Remove"); });
  std::string second;
  on(*moorage_, "CommandHotKeyPress",
     [&](std::span<Variant> arguments) { second = raisedByGet(arguments[1], "KeyCode"); });
  platform().user().cancelsFileDialog();
  EXPECT_TRUE(suite().pressHotKey(kCtrlMask, 'O'));
  EXPECT_THAT(second, StartsWith("91 "));
  EXPECT_FALSE(suite().pressHotKey(kCtrlMask, 'O'));
}

TEST_F(LateBoundCommands, UnmodifiedHotKeysAreAnOptionOfAll) {
  const Variant options = get(Get(*control_, "Commands"), "HotKeyOptions");
  Put(ReferenceIn(options), "AllowUnmodified", 0);
  EXPECT_EQ(suite().Commands().HotKeyOptions().AllowUnmodified(), 0);
}

// -- Combos and lines -------------------------------------------------------------------------------------

TEST_F(LateBoundCommands, AComboEndsWithItsEvent) {
  Variant combo;
  std::string inside;
  on(*moorage_, "CommandChange", [&](std::span<Variant> arguments) {
    combo = arguments[1];
    inside = get(combo, "Text").ToString();
  });
  suite().typeComboText("cboZoom", "2:1");
  EXPECT_EQ(inside, "2:1");
  EXPECT_EQ(raisedByGet(combo, "Text"), "91 The object of class Combo no longer exists.");
}

TEST_F(LateBoundCommands, AHandlerCancelsAChangeOfACombo) {
  on(*moorage_, "CommandChange",
     [](std::span<Variant> arguments) { Put(ReferenceIn(arguments[2]), "Value", true); });
  EXPECT_FALSE(suite().typeComboText("cboZoom", "2:1"));
}

TEST_F(LateBoundCommands, ALineIsACopy) {
  const Variant items = get(command("cboZoom"), "Items");
  Call(ReferenceIn(items), "Add", "12:1", "twelve");
  const Variant line = Call(ReferenceIn(items), "Item", get(items, "Count").ToInt32());
  Call(ReferenceIn(items), "Clear");
  EXPECT_EQ(get(items, "Count").ToInt32(), 0);
  EXPECT_EQ(get(line, "Text").ToString(), "12:1");
  EXPECT_EQ(get(line, "Key").ToString(), "twelve");
  EXPECT_THAT(raised([&] { Call(ReferenceIn(items), "Item", 1); }), StartsWith("9 "));
}

TEST_F(LateBoundCommands, PartsOfAnotherTypeOfCommandAre5) {
  EXPECT_THAT(raisedByGet(command("btnFileOpen"), "Items"), StartsWith("5 "));
  EXPECT_THAT(raisedByGet(command("btnFileOpen"), "Bar"), StartsWith("5 "));
  EXPECT_THAT(raisedByGet(command("btnFileOpen"), "SelectedItem"), StartsWith("91 "));
}

// -- Bars, panels and the suite ---------------------------------------------------------------------------

TEST_F(LateBoundCommands, AnEntryOfAMenuIsFoundByItsCommand) {
  const Variant bar = get(command("mnuFile"), "Bar");
  const Variant entry = Call(ReferenceIn(bar), "Entries", "BTNFILEOPEN");
  EXPECT_EQ(get(entry, "Key").ToString(), "btnFileOpen");
  Put(ReferenceIn(entry), "BeginGroup", true);
  EXPECT_TRUE(get(entry, "BeginGroup").ToBoolean());
  std::int32_t visited = 0;
  VisitElements(ReferenceIn(get(bar, "Entries")), [&](const Variant& element) {
    EXPECT_EQ(raisedByGet(element, "Key"), "");
    ++visited;
  });
  EXPECT_GT(visited, 1);
}

TEST_F(LateBoundCommands, TheFunctionsOfTheSuiteTakeItsParts) {
  const Variant functions = Get(*moorage_, "DockFunctions");
  const Variant picked = command("btnFileOpen");
  Call(ReferenceIn(functions), "SetChecked", picked, true);
  EXPECT_TRUE(get(picked, "Checked").ToBoolean());
  Call(ReferenceIn(functions), "SetStyle", ToVariant(moorage_), 2);
  EXPECT_EQ(suite().style(), 2);
  EXPECT_THAT(raised([&] { Call(ReferenceIn(functions), "SetStyle", ToVariant(moorage_), 3); }),
              StartsWith("5 "));
}

TEST_F(LateBoundCommands, TheClientAreaHasACornerAndASize) {
  const Variant area = Get(*moorage_, "ClientArea");
  const Rectangle expected = suite().ClientArea();
  EXPECT_EQ(get(get(area, "Location"), "X").ToInt32(), expected.Left);
  EXPECT_EQ(get(get(area, "Location"), "Y").ToInt32(), expected.Top);
  EXPECT_EQ(get(get(area, "Size"), "Width").ToInt32(), expected.Width);
  EXPECT_EQ(get(get(area, "Size"), "Height").ToInt32(), expected.Height);
  EXPECT_EQ(get(area, "Left").ToInt32(), expected.Left);
  EXPECT_EQ(get(area, "Height").ToInt32(), expected.Height);
}

TEST_F(LateBoundCommands, ThePartsOfTheSuiteEndWithIt) {
  const Variant keys = get(command("btnFileOpen"), "HotKeys");
  const Variant key = Call(ReferenceIn(keys), "Item", 1);
  const Variant entries = get(get(command("mnuFile"), "Bar"), "Entries");
  const Variant functions = Get(*moorage_, "DockFunctions");
  endEditor();
  for (const Variant& part : {keys, key, entries, functions}) {
    const Reference& reference = ReferenceIn(part);
    EXPECT_THAT(raised([&] { reference.Target(); }), StartsWith("91 ")) << reference.TypeName();
  }
}

}  // namespace
}  // namespace kestrel::dispatch
