#include <functional>
#include <memory>

#include "TreeContract.h"

namespace kestrel::contract {
namespace {

class LivesOfTreeNodes : public Trees {};

TEST_P(LivesOfTreeNodes, LastUntilAllHandlersOfTheirEventHaveReturned) {
  struct Row {
    Event<TreeNode&>& event;
    std::function<void()> cause;
    std::string key;
  };
  const Row rows[] = {
      {tree().NodeClick, [this] { hand().click("b"); }, "b"},
      {tree().NodeClick, [this] { node("b").Selected(true); }, "b"},
      {tree().Expand, [this] { hand().clickSign("a"); }, "a"},
      {tree().Expand, [this] { node("a").Expanded(true); }, "a"},
      {tree().Collapse, [this] { hand().clickSign("a"); }, "a"},
      {tree().NodeCheck, [this] { hand().clickCheckBox("b"); }, "b"},
  };
  tree().Checkboxes(true);
  const std::function<void()> removals[] = {[this] { nodes().Clear(); },
                                            [this] {
                                              nodes().Remove({"a", "b"});
                                            }};
  for (const auto& [event, cause, key] : rows) {
    for (const std::function<void()>& removal : removals) {
      nodes().Clear();
      addSome();
      if (&event == &tree().Collapse) node("a").Expanded(true);
      std::weak_ptr<TreeNode> raised;
      int calls = 0;
      const Connection first = event.Connect([&](TreeNode& removed) {
        raised = removed.weak_from_this();
        removed.Tag("tag");
        removal();
      });
      const Connection second = event.Connect([&, wanted = key](TreeNode& removed) {
        ASSERT_FALSE(raised.expired()) << wanted;
        ++calls;
        EXPECT_EQ(removed.Key(), wanted);
        EXPECT_EQ(removed.Tag(), "tag");
        removed.Text("changed");
        EXPECT_EQ(removed.Text(), "changed");
        EXPECT_EQ(removed.Parent(), nullptr);
        EXPECT_EQ(removed.Child(), nullptr);
        EXPECT_EQ(removed.Children(), 0);
        for (const bool value : {true, false}) {
          removed.Expanded(value);
          EXPECT_FALSE(removed.Expanded());
          removed.Selected(value);
          EXPECT_FALSE(removed.Selected());
          removed.Checked(value);
          removed.Sorted(value);
        }
        removed.ExpandedImage("open");
        removed.SelectedImage("selected");
        removed.EnsureVisible();
      });
      cause();
      EXPECT_EQ(calls, 1) << key;
      EXPECT_TRUE(raised.expired()) << key;
      EXPECT_EQ(nodes().Count(), 0) << key;
    }
  }
}

KESTREL_ON_ALL_PLATFORMS(LivesOfTreeNodes);

}  // namespace
}  // namespace kestrel::contract
