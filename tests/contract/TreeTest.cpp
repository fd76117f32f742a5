#include <gmock/gmock.h>

#include <algorithm>
#include <utility>

#include "TreeContract.h"
#include "imaging/contract/TreeErrors.h"

namespace kestrel::contract {
namespace {

using testing::ElementsAre;
using tree_errors::kKeyInUse;
using tree_errors::kNoSuchIndex;
using tree_errors::kNoSuchKey;

constexpr std::int32_t kEnd = 35;
constexpr std::int32_t kHome = 36;
constexpr std::int32_t kLeft = 37;
constexpr std::int32_t kUp = 38;
constexpr std::int32_t kRight = 39;
constexpr std::int32_t kDown = 40;
constexpr std::int32_t kSpace = 32;
constexpr std::int32_t kAsterisk = 106;
constexpr std::int32_t kAdd = 107;
constexpr std::int32_t kSubtract = 109;

// -- The nodes --------------------------------------------------------------------------------------------

TEST_P(Trees, HaveNodesByKeyAndInTheOrderOfAdding) {
  addSome();
  EXPECT_EQ(nodes().Count(), 5);
  EXPECT_EQ(nodes().Item(1).Key(), "a");
  EXPECT_EQ(nodes().Item(5).Key(), "b");
  EXPECT_EQ(&nodes().Item("a11"), &nodes().Item(4));
  EXPECT_EQ(nodes().Find("a2"), &nodes().Item(3));
  EXPECT_EQ(nodes().Find("A2"), nullptr) << "keys distinguish case";
}

TEST_P(Trees, RaiseAnErrorForMissingNodesAndKeysInUse) {
  addSome();
  EXPECT_EQ(errorOf([&] { nodes().Item("c"); }), kNoSuchKey);
  EXPECT_EQ(errorOf([&] { nodes().Item(0); }), kNoSuchIndex);
  EXPECT_EQ(errorOf([&] { nodes().Item(6); }), kNoSuchIndex);
  EXPECT_EQ(errorOf([&] { add("", "a11"); }), kKeyInUse);
  EXPECT_EQ(errorOf([&] { add("c", "c1"); }), kNoSuchKey);
  EXPECT_EQ(nodes().Count(), 5);
}

TEST_P(Trees, RaiseTheErrorsByTheseNumbers) {
  EXPECT_EQ(kNoSuchIndex, 35600);
  EXPECT_EQ(kNoSuchKey, 35601);
  EXPECT_EQ(kKeyInUse, 35602);
}

TEST_P(Trees, RemoveNodesWithAllBelowThem) {
  addSome();
  node("a").Expanded(true);
  record();
  nodes().Remove({"a1", "missing"});
  EXPECT_EQ(nodes().Count(), 3);
  EXPECT_EQ(nodes().Find("a1"), nullptr);
  EXPECT_EQ(nodes().Find("a11"), nullptr);
  EXPECT_EQ(nodes().Item(2).Key(), "a2");
  EXPECT_EQ(node("a").Child(), &node("a2"));
  EXPECT_EQ(node("a").Children(), 1);
  EXPECT_TRUE(node("a").Expanded());
  EXPECT_THAT(inOrder({"a", "a2", "b"}), ElementsAre("a", "a2", "b"));
  EXPECT_THAT(events(), ElementsAre());
  add("a", "a1");
  EXPECT_THAT(inOrder({"a1", "a2"}), ElementsAre("a2", "a1")) << "the key is free again";
}

TEST_P(Trees, RemoveSeveralNodesAtOnceAlsoBelowOneAnother) {
  addSome();
  nodes().Remove({"a11", "a", "a11", "b"});
  EXPECT_EQ(nodes().Count(), 0);
  add("", "c");
  EXPECT_TRUE(hand().isShown("c"));
}

TEST_P(Trees, KeepTheSelectionWhenOthersAreRemoved) {
  addSome();
  node("a2").Selected(true);
  node("a2").EnsureVisible();
  record();
  nodes().Remove({"a1"});
  EXPECT_EQ(selectedKey(), "a2");
  EXPECT_EQ(tree().SelectedItem(), &node("a2"));
  EXPECT_THAT(events(), ElementsAre());
  hand().click("a2");
  EXPECT_THAT(events(), ElementsAre("MouseDown 1 0", "NodeClick a2", "MouseUp 1 0", "Click"));
}

TEST_P(Trees, HaveNoSelectionAfterTheSelectedNodeIsRemoved) {
  addSome();
  node("a11").Selected(true);
  node("a11").EnsureVisible();
  record();
  nodes().Remove({"a1"});
  EXPECT_EQ(tree().SelectedItem(), nullptr);
  EXPECT_THAT(events(), ElementsAre()) << "no neighbor is selected in its place";
  hand().click("a2");
  EXPECT_THAT(events(), ElementsAre("MouseDown 1 0", "NodeClick a2", "MouseUp 1 0", "Click"));
}

TEST_P(Trees, RemoveNodesWhileTheyArePaused) {
  addSome();
  tree().Redraw(false);
  add("a", "a3");
  nodes().Remove({"a1", "a3"});
  add("a", "a4");
  tree().Redraw(true);
  node("a").Expanded(true);
  EXPECT_EQ(node("a").Children(), 2);
  EXPECT_THAT(inOrder({"a4", "a2"}), ElementsAre("a2", "a4"));
}

TEST_P(Trees, HaveParentsAndChildren) {
  addSome();
  EXPECT_EQ(node("a").Child(), &node("a1"));
  EXPECT_EQ(node("a").Children(), 2);
  EXPECT_EQ(node("a").Parent(), nullptr);
  EXPECT_EQ(node("a11").Parent(), &node("a1"));
  EXPECT_EQ(node("b").Child(), nullptr);
  EXPECT_EQ(node("b").Children(), 0);
}

TEST_P(Trees, KeepTextTagAndPicturesOfANode) {
  TreeNode& added = nodes().Add("", kTreeLast, "k", "text", "closed", "selected");
  EXPECT_EQ(added.Key(), "k");
  EXPECT_EQ(added.Text(), "text");
  EXPECT_EQ(added.Image(), "closed");
  EXPECT_EQ(added.SelectedImage(), "selected");
  EXPECT_EQ(added.ExpandedImage(), "");
  EXPECT_EQ(added.Tag(), "");
  added.Text("other");
  added.Tag("bytes \xFF and\nlines");
  added.ExpandedImage("expanded");
  added.SelectedImage("open");
  EXPECT_EQ(added.Text(), "other");
  EXPECT_EQ(added.Tag(), "bytes \xFF and\nlines");
  EXPECT_EQ(added.ExpandedImage(), "expanded");
  EXPECT_EQ(added.SelectedImage(), "open");
}

TEST_P(Trees, PlaceANodeInRelationToAnother) {
  add("", "middle");
  nodes().Add("middle", kTreeLast, "last", "last");
  nodes().Add("middle", kTreeFirst, "first", "first");
  nodes().Add("middle", kTreeNext, "next", "next");
  nodes().Add("middle", kTreePrevious, "previous", "previous");
  nodes().Add("middle", kTreeChild, "child", "child");
  node("middle").Expanded(true);
  EXPECT_THAT(inOrder({"last", "first", "next", "previous", "child", "middle"}),
              ElementsAre("first", "previous", "middle", "child", "next", "last"));
  EXPECT_EQ(node("next").Parent(), nullptr);
  EXPECT_EQ(node("child").Parent(), &node("middle"));
}

TEST_P(Trees, SortChildrenIgnoringCaseAndNumbersByValue) {
  add("", "top");
  for (const char* text : {"img10", "beta", "img2", "Alpha", "IMG1"}) add("top", text);
  node("top").Sorted(true);
  node("top").Expanded(true);
  EXPECT_THAT(inOrder({"img10", "beta", "img2", "Alpha", "IMG1"}),
              ElementsAre("Alpha", "beta", "IMG1", "img2", "img10"));
  add("top", "img9");
  EXPECT_THAT(inOrder({"img10", "img2", "img9"}), ElementsAre("img2", "img9", "img10")) << "a new one";
  node("beta").Text("zeta");
  EXPECT_THAT(inOrder({"img10", "beta", "Alpha"}), ElementsAre("Alpha", "img10", "beta")) << "a new text";
}

TEST_P(Trees, ClearedHaveNoNodesAndNoSelectionAndRaiseNothing) {
  addSome();
  node("a").Expanded(true);
  node("a1").Selected(true);
  record();
  nodes().Clear();
  EXPECT_EQ(nodes().Count(), 0);
  EXPECT_EQ(tree().SelectedItem(), nullptr);
  EXPECT_EQ(nodes().Find("a"), nullptr);
  addSome();
  EXPECT_FALSE(node("a").Expanded());
  EXPECT_THAT(events(), ElementsAre());
}

TEST_P(Trees, ShowManyNodesAtOnceWhenTheyAreRedrawn) {
  add("", "top");
  node("top").Sorted(true);
  tree().Redraw(false);
  tree().Redraw(false);
  for (int i = 0; i < 500; ++i) add("top", "n" + std::to_string((i * 7) % 500));
  EXPECT_EQ(node("top").Children(), 500);
  EXPECT_NE(node("top").Child(), nullptr);
  EXPECT_EQ(nodes().Count(), 501);
  EXPECT_EQ(node("n42").Parent(), &node("top"));
  tree().Redraw(true);
  node("n3").Text("n3");
  tree().Redraw(true);
  node("top").Expanded(true);
  EXPECT_EQ(node("top").Child()->Key(), "n0");
  EXPECT_THAT(inOrder({"n10", "n2", "n1"}), ElementsAre("n1", "n2", "n10"));
}

// -- Expansion and selection ------------------------------------------------------------------------------

TEST_P(Trees, AnnounceTheExpansionOfANodeThatHasChildren) {
  addSome();
  record();
  node("a").Expanded(true);
  EXPECT_TRUE(node("a").Expanded());
  node("a").Expanded(true);
  node("b").Expanded(true);
  EXPECT_FALSE(node("b").Expanded()) << "it has no children";
  node("a").Expanded(false);
  EXPECT_THAT(events(), ElementsAre("Expand a", "Collapse a"));
}

TEST_P(Trees, ShowChildrenThatAreAddedWhileTheirParentExpands) {
  addSome();
  const Connection connection = tree().Expand.Connect([this](TreeNode& expanded) {
    if (expanded.Key() != "a") return;
    tree().Redraw(false);
    expanded.Sorted(true);
    add("a", "a0");
    add("a", "a3");
    tree().Redraw(true);
  });
  hand().clickSign("a");
  EXPECT_THAT(inOrder({"a3", "a0", "a2", "a1", "b"}), ElementsAre("a0", "a1", "a2", "a3", "b"));
  EXPECT_TRUE(node("a").Expanded());
}

TEST_P(Trees, AnnounceTheSelectionOfAnotherNodeOnce) {
  addSome();
  record();
  node("b").Selected(true);
  EXPECT_EQ(selectedKey(), "b");
  EXPECT_TRUE(node("b").Selected());
  node("b").Selected(true);
  node("a").Selected(true);
  EXPECT_FALSE(node("b").Selected());
  EXPECT_THAT(events(), ElementsAre("NodeClick b", "NodeClick a"));
  node("b").Selected(false);
  EXPECT_EQ(selectedKey(), "a") << "another node's selection";
  node("a").Selected(false);
  EXPECT_EQ(tree().SelectedItem(), nullptr);
  EXPECT_THAT(events(), ElementsAre());
}

TEST_P(Trees, KeepTheSelectionWhenNodesAreAddedAndSorted) {
  addSome();
  node("a").Expanded(true);
  node("a2").Selected(true);
  record();
  nodes().Add("a", kTreeFirst, "0", "0");
  add("a", "a0");
  node("a").Sorted(true);
  EXPECT_EQ(selectedKey(), "a2");
  EXPECT_TRUE(node("a").Expanded());
  EXPECT_THAT(events(), ElementsAre());
}

TEST_P(Trees, ExpandTheNodesAboveOneThatMustBeVisible) {
  addSome();
  record();
  node("a11").EnsureVisible();
  EXPECT_TRUE(hand().isShown("a11"));
  EXPECT_THAT(events(), ElementsAre("Expand a", "Expand a1"));
}

TEST_P(Trees, ExpandTheSelectedNodeAloneWithSingleSelection) {
  addSome();
  add("b", "b1");
  tree().SingleSel(true);
  EXPECT_TRUE(tree().SingleSel());
  node("a").Selected(true);
  EXPECT_TRUE(node("a").Expanded());
  hand().click("a1");
  EXPECT_TRUE(node("a").Expanded()) << "above the selected one";
  EXPECT_TRUE(node("a1").Expanded());
  hand().click("b");
  EXPECT_TRUE(node("b").Expanded());
  EXPECT_FALSE(node("a1").Expanded());
}

TEST_P(Trees, BearAHandlerThatClearsThem) {
  addSome();
  const Connection connection = tree().NodeClick.Connect([this](TreeNode&) { nodes().Clear(); });
  const Connection expand = tree().Expand.Connect([this](TreeNode&) { nodes().Clear(); });
  hand().click("b");
  EXPECT_EQ(nodes().Count(), 0);
  addSome();
  hand().clickSign("a");
  EXPECT_EQ(nodes().Count(), 0);
  addSome();
  node("a11").EnsureVisible();
  EXPECT_EQ(nodes().Count(), 0);
  addSome();
  hand().doubleClick("b");
  EXPECT_EQ(nodes().Count(), 0);
}

// -- The user ---------------------------------------------------------------------------------------------

TEST_P(Trees, SelectTheNodeThatIsClicked) {
  addSome();
  record();
  hand().click("b");
  EXPECT_EQ(selectedKey(), "b");
  EXPECT_THAT(events(), ElementsAre("MouseDown 1 0", "NodeClick b", "MouseUp 1 0", "Click"));
  hand().click("b", kLeftButton, kCtrlMask);
  EXPECT_EQ(selectedKey(), "b");
  EXPECT_THAT(events(), ElementsAre("MouseDown 1 2", "NodeClick b", "MouseUp 1 2", "Click")) << "again";
}

TEST_P(Trees, SelectNothingWithTheRightButtonOrOnEmptySpace) {
  addSome();
  node("a").Selected(true);
  record();
  hand().click("b", kRightButton, kShiftMask);
  EXPECT_THAT(events(), ElementsAre("MouseDown 2 1", "MouseUp 2 1"));
  hand().clickBelowTheNodes(kRightButton);
  EXPECT_THAT(events(), ElementsAre("MouseDown 2 0", "MouseUp 2 0"));
  hand().clickBelowTheNodes(kLeftButton);
  EXPECT_THAT(events(), ElementsAre("MouseDown 1 0", "MouseUp 1 0", "Click"));
  EXPECT_EQ(selectedKey(), "a");
}

TEST_P(Trees, ExpandByTheSignWithoutSelecting) {
  addSome();
  record();
  hand().clickSign("a");
  EXPECT_THAT(events(), ElementsAre("MouseDown 1 0", "Expand a", "MouseUp 1 0", "Click"));
  hand().clickSign("a");
  EXPECT_THAT(events(), ElementsAre("MouseDown 1 0", "Collapse a", "MouseUp 1 0", "Click"));
  EXPECT_EQ(selectedKey(), "none");
}

TEST_P(Trees, ExpandByADoubleClick) {
  addSome();
  record();
  hand().doubleClick("a");
  EXPECT_THAT(events(), ElementsAre("MouseDown 1 0", "NodeClick a", "MouseUp 1 0", "Click", "DblClick",
                                    "Expand a", "MouseUp 1 0"));
  hand().doubleClick("a");
  EXPECT_FALSE(node("a").Expanded());
}

TEST_P(Trees, CheckByTheCheckBoxWithoutSelecting) {
  addSome();
  tree().Checkboxes(true);
  record();
  hand().clickCheckBox("b");
  EXPECT_TRUE(node("b").Checked());
  EXPECT_THAT(events(), ElementsAre("MouseDown 1 0", "NodeCheck b", "MouseUp 1 0", "Click"));
  hand().clickCheckBox("b");
  EXPECT_FALSE(node("b").Checked());
  EXPECT_EQ(selectedKey(), "none");
  events();
  node("a").Checked(true);
  EXPECT_TRUE(node("a").Checked());
  EXPECT_THAT(events(), ElementsAre()) << "by code";
  node("a").Selected(true);
  events();
  hand().pressKey(kSpace);
  EXPECT_FALSE(node("a").Checked());
  EXPECT_THAT(events(), ElementsAre("NodeCheck a"));
}

TEST_P(Trees, AreOperatedByKeys) {
  addSome();
  node("a").Selected(true);
  record();
  hand().pressKey(kRight);
  EXPECT_THAT(events(), ElementsAre("Expand a"));
  hand().pressKey(kRight);
  EXPECT_THAT(events(), ElementsAre("NodeClick a1"));
  hand().pressKey(kDown);
  EXPECT_THAT(events(), ElementsAre("NodeClick a2"));
  hand().pressKey(kUp);
  EXPECT_THAT(events(), ElementsAre("NodeClick a1"));
  hand().pressKey(kLeft);
  EXPECT_THAT(events(), ElementsAre("NodeClick a"));
  hand().pressKey(kLeft);
  EXPECT_THAT(events(), ElementsAre("Collapse a"));
  hand().pressKey(kAdd);
  EXPECT_THAT(events(), ElementsAre("Expand a"));
  hand().pressKey(kSubtract);
  EXPECT_THAT(events(), ElementsAre("Collapse a"));
  hand().pressKey(kEnd);
  EXPECT_THAT(events(), ElementsAre("NodeClick b"));
  hand().pressKey(kEnd);
  hand().pressKey(kAdd);
  EXPECT_THAT(events(), ElementsAre()) << "no other node, and no children";
  hand().pressKey(kHome);
  EXPECT_THAT(events(), ElementsAre("NodeClick a"));
  hand().typeLetter('b');
  EXPECT_THAT(events(), ElementsAre("NodeClick b"));
  EXPECT_EQ(selectedKey(), "b");
}

TEST_P(Trees, ExpandOneLevelByTheAsteriskOrNone) {
  addSome();
  node("a").Selected(true);
  hand().pressKey(kAsterisk);
  EXPECT_FALSE(node("a1").Expanded());
}

TEST_P(Trees, RaiseTheKeys) {
  addSome();
  node("a").Selected(true);
  std::vector<std::string> keys;
  const Connection down = tree().KeyDown.Connect([&](std::int32_t code, std::int32_t shift) {
    keys.push_back("down " + std::to_string(code) + " " + std::to_string(shift));
  });
  const Connection press = tree().KeyPress.Connect(
      [&](std::int32_t character) { keys.push_back("press " + std::to_string(character)); });
  const Connection up = tree().KeyUp.Connect([&](std::int32_t code, std::int32_t shift) {
    keys.push_back("up " + std::to_string(code) + " " + std::to_string(shift));
  });
  hand().pressKey(kDown, kCtrlMask);
  hand().typeLetter('q');
  EXPECT_THAT(keys, ElementsAre("down 40 2", "up 40 2", "down 81 0", "press 113", "up 81 0"));
}

TEST_P(Trees, FindTheNodeAtAPlace) {
  addSome();
  node("a").Expanded(true);
  for (const char* key : {"a", "a1", "a2", "b"}) {
    const TreeUser::Place place = hand().placeOf(key);
    EXPECT_EQ(tree().HitTest(place.x, place.y), &node(key));
  }
  const TreeUser::Place last = hand().placeOf("b");
  EXPECT_EQ(tree().HitTest(last.x, last.y + 60), nullptr);
  EXPECT_EQ(tree().HitTest(-5, last.y), nullptr);
}

// -- Pictures and properties ------------------------------------------------------------------------------

TEST_P(Trees, KeepPicturesByKeyAndInOrder) {
  kestrel::ImageList& images = tree().ImageList();
  EXPECT_EQ(images.Count(), 5) << "the stock pictures of the folder tree";
  EXPECT_EQ(images.Key(1), "My Computer");
  EXPECT_EQ(images.Key(5), "My Documents");
  images.Set("new", hand().icon().hWnd());
  EXPECT_EQ(images.Count(), 6);
  EXPECT_EQ(images.Key(6), "new");
  images.Set("Desktop", hand().icon().hWnd());
  EXPECT_EQ(images.Count(), 6) << "replaced";
  EXPECT_EQ(errorOf([&] { images.Key(0); }), kNoSuchIndex);
  EXPECT_EQ(errorOf([&] { images.Key(7); }), kNoSuchIndex);
}

TEST_P(Trees, HaveTheirPropertiesFromTheStart) {
  EXPECT_EQ(tree().BorderStyle(), kTreeBorderStyle);
  EXPECT_FALSE(tree().Checkboxes());
  EXPECT_FALSE(tree().HideSelection());
  EXPECT_EQ(tree().Indentation(), kTreeIndentation);
  EXPECT_EQ(tree().LineStyle(), kTreeLineStyle);
  EXPECT_FALSE(tree().SingleSel());
  EXPECT_EQ(tree().Style(), kTreeStyle);
  EXPECT_NE(tree().Font(), "");
}

TEST_P(Trees, KeepTheirProperties) {
  tree().BorderStyle(0);
  tree().Checkboxes(true);
  tree().HideSelection(true);
  tree().Indentation(32);
  tree().LineStyle(0);
  tree().Style(5);
  tree().Font("Serif, 13");
  EXPECT_EQ(tree().BorderStyle(), 0);
  EXPECT_TRUE(tree().Checkboxes());
  EXPECT_TRUE(tree().HideSelection());
  EXPECT_EQ(tree().Indentation(), 32);
  EXPECT_EQ(tree().LineStyle(), 0);
  EXPECT_EQ(tree().Style(), 5);
  EXPECT_EQ(tree().Font(), "Serif, 13");
}

TEST_P(Trees, RefuseInvalidProperties) {
  for (const std::int32_t value : {-1, 2}) {
    EXPECT_EQ(errorOf([&] { tree().BorderStyle(value); }), err::kInvalidPropertyValue);
    EXPECT_EQ(errorOf([&] { tree().LineStyle(value); }), err::kInvalidPropertyValue);
  }
  for (const std::int32_t value : {-1, 8}) {
    EXPECT_EQ(errorOf([&] { tree().Style(value); }), err::kInvalidPropertyValue);
  }
}

KESTREL_ON_ALL_PLATFORMS(Trees);

}  // namespace
}  // namespace kestrel::contract
