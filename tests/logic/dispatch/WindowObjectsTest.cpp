// The file dialog, the tool windows and the browser's controls, late-bound.

#include "HostFixture.h"

namespace kestrel::dispatch {
namespace {

using testing::StartsWith;

const Variant kNothing = Variant::ObjectReference();

class LateBoundWindows : public HostFixture {
 protected:
  static bool same(const Variant& left, const Variant& right) {
    return ReferenceIn(left).IsSame(ReferenceIn(right));
  }
};

// -- The file dialog --------------------------------------------------------------------------------------

TEST_F(LateBoundWindows, AHandlerChangesTheSizeOfTheFileDialog) {
  const auto control = embedded();
  const Variant dialog = Get(*control, "BrowseDialog");
  const auto labelRect = [&] {
    std::vector<Variant> arguments = {1089, 0, 0, 0, 0};
    Invoke(ReferenceIn(dialog), "GetControlRect", Use::kGet, arguments);
    return arguments;
  };
  std::int32_t before = 0;
  std::int32_t after = 0;
  std::vector<Variant> rect;
  on(ReferenceIn(dialog), "InitDialog", [&](std::span<Variant> arguments) {
    before = arguments[0].ToInt32();
    arguments[0] = before + 100;
    rect = labelRect();
  });
  on(ReferenceIn(dialog), "InitDialog",
     [&](std::span<Variant> arguments) { after = arguments[0].ToInt32(); });
  platform().user().cancelsFileDialog();
  EXPECT_FALSE(Call(ReferenceIn(dialog), "ShowOpen").ToBoolean());
  EXPECT_GT(before, 0);
  EXPECT_EQ(after, before + 100);
  ASSERT_EQ(rect.size(), 5u);
  EXPECT_GT(rect[3].ToInt32(), 0) << "the width of the label";
  EXPECT_THAT(raised([&] { labelRect(); }), StartsWith("5 ")) << "only during the event";
}

TEST_F(LateBoundWindows, TheFileDialogKeepsItsSettings) {
  const auto control = embedded();
  const Variant dialog = Get(*control, "BrowseDialog");
  Put(ReferenceIn(dialog), "Filter", "Text|*.txt");
  Put(ReferenceIn(dialog), "Flags", 2);
  Put(ReferenceIn(dialog), "DefaultExt", "txt");
  EXPECT_EQ(get(dialog, "Filter").ToString(), "Text|*.txt");
  EXPECT_EQ(get(dialog, "Flags").ToInt32(), 2);
  EXPECT_EQ(get(dialog, "DefaultExt").ToString(), "txt");
  EXPECT_THAT(raisedByGet(dialog, "OwnerWindow"), StartsWith("394 "));
}

// -- The tool windows -------------------------------------------------------------------------------------

TEST_F(LateBoundWindows, AToolWindowBelongsToItsEditorOnly) {
  const auto control = embedded();
  Call(*control, "OpenImage", png());
  const auto processing = started();
  const Variant other = Get(*processing, "Control");
  for (const char* name : {"ZoomWindow", "MaterialsWindow"}) {
    const Variant window = Get(*control, name);
    EXPECT_TRUE(same(get(window, "Application"), ToVariant(control))) << name;
    EXPECT_EQ(raised([&] { Put(ReferenceIn(window), "Application", other); }),
              "5 The window belongs to another editor.")
        << name;
    EXPECT_TRUE(same(get(window, "Application"), ToVariant(control))) << name;

    Put(ReferenceIn(window), "Application", kNothing);
    EXPECT_EQ(get(window, "Application").AsObject(), nullptr) << name;
    Put(ReferenceIn(window), "Application", ToVariant(control));
    EXPECT_TRUE(same(get(window, "Application"), ToVariant(control))) << name;
  }
}

TEST_F(LateBoundWindows, TheWindowOfAToolWindowEndsWithIt) {
  const auto control = embedded();
  const Variant form = get(Get(*control, "ZoomWindow"), "Form");
  EXPECT_EQ(raisedByGet(form, "Caption"), "");
  Call(*control, "Terminate");
  EXPECT_THAT(raisedByGet(form, "Caption"), StartsWith("91 "));
}

// -- The browser ------------------------------------------------------------------------------------------

TEST_F(LateBoundWindows, ANodeIsGoneAfterClear) {
  const auto browser = browsing();
  const Variant tree = Get(*browser, "ObjectFolderBrowse");
  const Variant nodes = get(get(tree, "TreeView"), "Nodes");
  const auto add = [&](const char* relative, std::int32_t relationship, const char* key) {
    return Call(ReferenceIn(nodes), "Add", relative, relationship, key, "Text");
  };
  const Variant root = add("", 1, "Root");
  const Variant leaf = add("Root", 4, "Leaf");
  EXPECT_TRUE(same(get(root, "Child"), leaf));
  EXPECT_TRUE(same(get(leaf, "Parent"), root));
  EXPECT_TRUE(same(Call(ReferenceIn(get(tree, "Nodes")), "Item", "Leaf"), leaf));
  EXPECT_EQ(get(leaf, "Child").AsObject(), nullptr);

  Call(ReferenceIn(nodes), "Clear");
  EXPECT_EQ(raisedByGet(root, "Key"), "91 The object of class TreeNode no longer exists.");
  EXPECT_THAT(raisedByGet(leaf, "Parent"), StartsWith("91 "));

  add("", 1, "Leaf");
  EXPECT_EQ(get(leaf, "Key").ToString(), "Leaf") << "a node of that key exists again";
}

TEST_F(LateBoundWindows, ARemovedNodeIsGoneWithTheNodesBelow) {
  const auto browser = browsing();
  const Variant nodes = get(Get(*browser, "ObjectFolderBrowse"), "Nodes");
  const auto add = [&](const char* relative, const char* key) {
    return Call(ReferenceIn(nodes), "Add", relative, 4, key, key);
  };
  const Variant root = add("", "Root");
  const Variant branch = add("Root", "Branch");
  const Variant leaf = add("Branch", "Leaf");
  Call(ReferenceIn(nodes), "Remove", "Branch");
  EXPECT_EQ(raisedByGet(root, "Key"), "");
  EXPECT_THAT(raisedByGet(branch, "Key"), StartsWith("91 "));
  EXPECT_THAT(raisedByGet(leaf, "Key"), StartsWith("91 "));
  Call(ReferenceIn(nodes), "Remove", "Branch");
}

TEST_F(LateBoundWindows, ANodeOfAnEventIsANodeOfTheTree) {
  const auto browser = browsing();
  const Variant tree = Get(*browser, "ObjectFolderBrowse");
  const Variant nodes = get(tree, "Nodes");
  const Variant node = Call(ReferenceIn(nodes), "Add", "", 1, "Folder", "Text");
  Put(ReferenceIn(node), "Tag", platform().files().scratch());
  Variant clicked;
  on(ReferenceIn(tree), "NodeClick", [&](std::span<Variant> arguments) { clicked = arguments[0]; });
  Put(ReferenceIn(node), "Selected", true);
  ASSERT_TRUE(IsObject(clicked));
  EXPECT_TRUE(same(clicked, node));
  Call(ReferenceIn(nodes), "Clear");
  EXPECT_THAT(raisedByGet(clicked, "Text"), StartsWith("91 "));
}

TEST_F(LateBoundWindows, AHostNamesANewFolder) {
  const auto browser = browsing();
  const Variant tree = Get(*browser, "ObjectFolderBrowse");
  on(ReferenceIn(tree), "AskForNewFolder", [](std::span<Variant> arguments) { arguments[1] = true; });
  EXPECT_EQ(Call(ReferenceIn(tree), "NewFolder").ToString(), "") << "canceled, and the user is not asked";
}

TEST_F(LateBoundWindows, WhatABrowserHandedOutIs91AfterItsEnd) {
  const auto browser = browsing();
  const Variant moorage = Get(*browser, "ObjectMoorage");
  const Variant tree = Get(*browser, "ObjectFolderBrowse");
  const std::vector<Variant> parts = {moorage,
                                      tree,
                                      Get(*browser, "ObjectThumbnailView"),
                                      Get(*browser, "Thumbnails"),
                                      Get(*browser, "SelectedItems"),
                                      Call(ReferenceIn(moorage), "StatusPanel", "pnlStatus"),
                                      get(tree, "Nodes"),
                                      get(get(tree, "TreeView"), "ImageList")};
  endBrowser();
  for (const Variant& part : parts) {
    const Reference& reference = ReferenceIn(part);
    EXPECT_THAT(raised([&] { reference.Target(); }), StartsWith("91 ")) << reference.TypeName();
  }
}

TEST_F(LateBoundWindows, AStatusPanelShowsAText) {
  const auto browser = browsing();
  const Variant moorage = Get(*browser, "ObjectMoorage");
  const Variant panel = Call(ReferenceIn(moorage), "StatusPanel", "pnlStatus");
  Call(*browser, "Status", "Ready.");
  EXPECT_EQ(get(panel, "Caption").ToString(), "Ready.");
  EXPECT_THAT(raised([&] { Call(ReferenceIn(moorage), "StatusPanel", "pnlNone"); }), StartsWith("5 "));
}

}  // namespace
}  // namespace kestrel::dispatch
