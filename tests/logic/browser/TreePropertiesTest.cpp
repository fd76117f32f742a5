#include "../diagnostics/FakeDebugClient.h"
#include "FolderTreeTest.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

class TreeProperties : public FolderTreeTest {
 protected:
  template <typename Call>
  void expect380(Call call) {
    try {
      call();
      ADD_FAILURE() << "no error";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.Number(), 380);
      EXPECT_EQ(error.Description(), "Invalid property value");
      EXPECT_EQ(error.Source(), platform().App().Title() + ".FolderTreeView");
    }
  }
};

TEST_F(TreeProperties, OfANewControlAreTrue) {
  start();
  EXPECT_TRUE(control().AutoSelect());
  EXPECT_TRUE(control().IncludeDesktop());
  EXPECT_TRUE(control().IncludeMyDocuments());
  EXPECT_TRUE(control().IncludeMyComputer());
  EXPECT_TRUE(control().ActAsBrowseDialog());
}

TEST_F(TreeProperties, GiveAccessToTheTree) {
  start();
  EXPECT_EQ(&control().TreeView(), &tree());
  EXPECT_EQ(&control().Nodes(), &tree().Nodes());
  EXPECT_EQ(control().hWnd(), tree().hWnd());
}

TEST_F(TreeProperties, ArePassedToTheTreeAndAnnounced) {
  start();
  control().BorderStyle(0);
  control().Checkboxes(true);
  control().Enabled(false);
  control().Font("Serif, 12");
  control().HideSelection(true);
  control().Indentation(31.5F);
  control().LineStyle(0);
  control().SingleSel(true);
  control().Style(3);
  EXPECT_EQ(tree().BorderStyle(), 0);
  EXPECT_TRUE(tree().Checkboxes());
  EXPECT_FALSE(tree().Enabled());
  EXPECT_EQ(tree().Font(), "Serif, 12");
  EXPECT_TRUE(tree().HideSelection());
  EXPECT_EQ(tree().Indentation(), 31.5F);
  EXPECT_EQ(tree().LineStyle(), 0);
  EXPECT_TRUE(tree().SingleSel());
  EXPECT_EQ(tree().Style(), 3);
  EXPECT_THAT(site().changedProperties(),
              ElementsAre("BorderStyle", "Checkboxes", "Enabled", "Font", "HideSelection", "Indentation",
                          "LineStyle", "SingleSel", "Style"));
}

TEST_F(TreeProperties, SetToTheirPresentValuesChangeNothing) {
  start();
  control().AutoSelect(true);
  control().IncludeDesktop(true);
  control().ActAsBrowseDialog(true);
  control().IncludeMyDocuments(true);
  control().IncludeMyComputer(true);
  control().BorderStyle(tree().BorderStyle());
  control().Checkboxes(tree().Checkboxes());
  control().Enabled(tree().Enabled());
  control().Font(tree().Font());
  control().HideSelection(tree().HideSelection());
  control().Indentation(tree().Indentation());
  control().LineStyle(tree().LineStyle());
  control().SingleSel(tree().SingleSel());
  control().Style(tree().Style());
  EXPECT_THAT(site().changedProperties(), ElementsAre());
}

TEST_F(TreeProperties, ThatAreInvalidRaise380AndReachNoTree) {
  start();
  expect380([&] { control().Font(""); });
  for (const std::int32_t value : {-1, 2}) {
    expect380([&] { control().BorderStyle(value); });
    expect380([&] { control().LineStyle(value); });
  }
  for (const std::int32_t value : {-1, 8}) expect380([&] { control().Style(value); });
  EXPECT_EQ(tree().BorderStyle(), kTreeBorderStyle);
  EXPECT_EQ(tree().LineStyle(), kTreeLineStyle);
  EXPECT_EQ(tree().Style(), kTreeStyle);
  EXPECT_NE(tree().Font(), "");
  EXPECT_THAT(site().changedProperties(), ElementsAre());
}

TEST_F(TreeProperties, AreStoredUnderTheirNames) {
  start();
  control().IncludeDesktop(false);
  control().AutoSelect(false);
  control().Style(5);
  control().Font("Serif, 12");
  headless::BagOfProperties bag;
  site().WriteProperties(bag);
  std::vector<std::string> names;
  for (const auto& entry : bag.entries()) names.push_back(entry.name);
  EXPECT_THAT(names,
              UnorderedElementsAre("AutoSelect", "IncludeMyComputer", "IncludeMyDocuments", "IncludeDesktop",
                                   "Font", "BorderStyle", "Checkboxes", "Enabled", "HideSelection",
                                   "Indentation", "LineStyle", "SingleSel", "Style", "ActAsBrowseDialog"));
  EXPECT_FALSE(bag.ReadProperty("IncludeDesktop", true).ToBoolean());
  EXPECT_EQ(bag.ReadProperty("Style", 0).ToInt32(), 5);

  create();
  site().ReadProperties(bag);
  EXPECT_FALSE(control().IncludeDesktop());
  EXPECT_FALSE(control().AutoSelect());
  EXPECT_TRUE(control().IncludeMyComputer());
  EXPECT_EQ(control().Style(), 5);
  EXPECT_EQ(control().Font(), "Serif, 12");
  EXPECT_THAT(tree().childKeys(""), ElementsAre("My Computer"));
}

TEST_F(TreeProperties, AreStoredAndReadWithTheirValues) {
  start();
  control().AutoSelect(false);
  control().IncludeMyComputer(false);
  control().IncludeMyDocuments(false);
  control().IncludeDesktop(false);
  control().Font("Serif, 12");
  control().BorderStyle(0);
  control().Checkboxes(true);
  control().Enabled(false);
  control().HideSelection(true);
  control().Indentation(31.5F);
  control().LineStyle(0);
  control().SingleSel(true);
  control().Style(3);
  control().ActAsBrowseDialog(false);
  headless::BagOfProperties bag;
  site().WriteProperties(bag);

  create();
  site().ReadProperties(bag);
  EXPECT_FALSE(control().AutoSelect());
  EXPECT_FALSE(control().IncludeMyComputer());
  EXPECT_FALSE(control().IncludeMyDocuments());
  EXPECT_FALSE(control().IncludeDesktop());
  EXPECT_EQ(control().Font(), "Serif, 12");
  EXPECT_EQ(control().BorderStyle(), 0);
  EXPECT_TRUE(control().Checkboxes());
  EXPECT_FALSE(control().Enabled());
  EXPECT_TRUE(control().HideSelection());
  EXPECT_EQ(control().Indentation(), 31.5F);
  EXPECT_EQ(control().LineStyle(), 0);
  EXPECT_TRUE(control().SingleSel());
  EXPECT_EQ(control().Style(), 3);
  EXPECT_FALSE(control().ActAsBrowseDialog());
}

TEST_F(TreeProperties, AreReadWithTheirDefaultsFromAnEmptyBag) {
  create();
  const headless::BagOfProperties empty;
  site().ReadProperties(empty);
  EXPECT_TRUE(control().IncludeDesktop());
  EXPECT_TRUE(control().Enabled());
  EXPECT_FALSE(control().Checkboxes());
  EXPECT_EQ(control().Style(), kTreeStyle);
  EXPECT_NE(control().Font(), "");
}

TEST_F(TreeProperties, AnInstanceIsCountedFromItsStartToItsEnd) {
  fakes::DebugTool tool;
  auto& state = modTollgarthSupport::State();
  state.qdkEnableInstanceCounts = true;
  state.qdkInstanceCountsMemory = std::make_unique<fakes::Counters>(tool);
  constexpr auto kTree = static_cast<std::size_t>(modTollgarthSupport::Counted::kFolderTreeView);
  state.qdkInstanceCountComponentNames[kTree] = 77;
  {
    const auto container = platform().createFolderTreeSite();
    const FolderTreeView counted(*container);
    EXPECT_EQ(tool.counters, "77+1;");
  }
  EXPECT_EQ(tool.counters, "77+1;77-1;");
  state.qdkInstanceCountsMemory.reset();
  state.qdkEnableInstanceCounts = false;
}

}  // namespace
}  // namespace kestrel
