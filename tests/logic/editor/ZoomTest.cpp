#include "EditorTest.h"
#include "engine/imgx/PictureObject.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EditorZoom : public EditorTest {
 protected:
  void SetUp() override {
    EditorTest::SetUp();
    startWithPicture();
  }
  std::string comboText() { return dynamic_cast<docking::CommandModel&>(command("cboZoom")).comboText(); }
  bool enabled(const char* key) { return command(key).Enabled(); }
};

TEST_P(EditorZoom, StepsAreATenthBelowActualSizeAndOneFromItUpwards) {
  editor().ZoomIn();
  EXPECT_EQ(view().Zoom(), 2.0);
  editor().ZoomIn();
  EXPECT_EQ(view().Zoom(), 3.0);
  editor().ZoomOut();
  editor().ZoomOut();
  EXPECT_EQ(view().Zoom(), 1.0);
  editor().ZoomOut();
  EXPECT_EQ(view().Zoom(), static_cast<double>(static_cast<float>(1.0 - 0.1))) << "down from 1.0 by a tenth";
  editor().ZoomOut();
  EXPECT_NEAR(view().Zoom(), 0.8, 1e-6);
}

TEST_P(EditorZoom, TheSumIsDoubleAndStoredInSinglePrecision) {
  float level = 1.0F;
  for (int i = 0; i < 9; ++i) {
    editor().ZoomOut();
    level = static_cast<float>(static_cast<double>(level) - 0.1);
    EXPECT_EQ(view().Zoom(), static_cast<double>(level)) << "step " << i;
  }
}

TEST_P(EditorZoom, ZoomInFromNineTenthsGivesActualSize) {
  editor().ZoomOut();
  editor().ZoomIn();
  EXPECT_NEAR(view().Zoom(), 1.0, 1e-6);
  const double before = view().Zoom();
  editor().ZoomIn();
  EXPECT_NEAR(view().Zoom() - before, before < 1.0 ? 0.1 : 1.0, 1e-6);
}

TEST_P(EditorZoom, RepeatedZoomOutStopsAtAboutOneTenth) {
  const char* const texts[] = {".9:1 (90%)", ".8:1 (80%)", ".7:1 (70%)", ".6:1 (60%)", ".5:1 (50%)",
                               ".4:1 (40%)", ".3:1 (30%)", ".2:1 (20%)", ".1:1 (10%)"};
  for (const char* text : texts) {
    EXPECT_TRUE(enabled("btnZoomOut")) << text;
    editor().ZoomOut();
    EXPECT_EQ(panel("pnlZoom"), text);
  }
  EXPECT_EQ(comboText(), ".1:1");
  EXPECT_FALSE(enabled("btnZoomOut"));
}

TEST_P(EditorZoom, ZoomOutIsEnabledAbove0Point1AndZoomInBelow9Point9) {
  const auto at = [&](const char* text) {
    suite().typeComboText("cboZoom", text);
    return std::pair(enabled("btnZoomOut"), enabled("btnZoomIn"));
  };
  EXPECT_EQ(at(".1:1"), std::pair(false, true));
  EXPECT_EQ(at(".11:1"), std::pair(true, true));
  EXPECT_EQ(at("9.8:1"), std::pair(true, true));
  EXPECT_EQ(at("9.9:1"), std::pair(true, false));
  EXPECT_EQ(at("10:1"), std::pair(true, false));
}

TEST_P(EditorZoom, ZoomInFromNineGivesTenAndDisablesTheButton) {
  suite().typeComboText("cboZoom", "9:1");
  EXPECT_TRUE(enabled("btnZoomIn"));
  click("btnZoomIn");
  EXPECT_EQ(view().Zoom(), 10.0);
  EXPECT_FALSE(enabled("btnZoomIn"));
  EXPECT_FALSE(suite().click("btnZoomIn"));
  click("btnZoomOut");
  EXPECT_EQ(view().Zoom(), 9.0);
  EXPECT_TRUE(enabled("btnZoomIn"));
}

TEST_P(EditorZoom, AHostsCallsIgnoreTheBounds) {
  suite().typeComboText("cboZoom", "10:1");
  editor().ZoomIn();
  EXPECT_EQ(view().Zoom(), 11.0);
}

TEST_P(EditorZoom, ActualSizeIsEnabledAtOtherLevelsOnly) {
  EXPECT_FALSE(enabled("btnZoomActualSize"));
  click("btnZoomIn");
  EXPECT_TRUE(enabled("btnZoomActualSize"));
  click("btnZoomActualSize");
  EXPECT_EQ(view().Zoom(), 1.0);
  EXPECT_FALSE(enabled("btnZoomActualSize"));
  EXPECT_EQ(panel("pnlZoom"), "1:1 (100%)");
}

TEST_P(EditorZoom, PanelAndComboShowOneDecimalUnlessWhole) {
  editor().ZoomIn();
  EXPECT_EQ(panel("pnlZoom"), "2:1 (200%)");
  EXPECT_EQ(comboText(), "2:1");
  suite().typeComboText("cboZoom", "0.5:1");
  EXPECT_EQ(panel("pnlZoom"), ".5:1 (50%)");
  EXPECT_EQ(comboText(), ".5:1");
  suite().typeComboText("cboZoom", "4:1");
  EXPECT_EQ(view().Zoom(), 4.0);
  EXPECT_EQ(panel("pnlZoom"), "4:1 (400%)");
}

TEST_P(EditorZoom, ATypedFactorIsNotRoundedToTheSteps) {
  suite().typeComboText("cboZoom", "3.3:1");
  EXPECT_EQ(view().Zoom(), static_cast<double>(3.3F));
  EXPECT_EQ(panel("pnlZoom"), "3.3:1 (330%)");
}

TEST_P(EditorZoom, AFactorWithAPointIsShownWithItsPoint) {
  suite().typeComboText("cboZoom", "1.04:1");
  EXPECT_EQ(view().Zoom(), static_cast<double>(1.04F));
  EXPECT_EQ(comboText(), "1.:1");
  EXPECT_EQ(panel("pnlZoom"), "1.:1 (100%)");
  EXPECT_TRUE(enabled("btnZoomActualSize")) << "it is not 1.0";
}

TEST_P(EditorZoom, ANegativeFactorIsUsedAndOnlyZoomInIsEnabled) {
  suite().typeComboText("cboZoom", "-2:1");
  EXPECT_THAT(log().entries(), ElementsAre("Zoom=-2"));
  EXPECT_EQ(panel("pnlZoom"), "-2:1 (-200%)");
  EXPECT_FALSE(enabled("btnZoomOut"));
  EXPECT_TRUE(enabled("btnZoomIn"));
}

TEST_P(EditorZoom, TheNumberEndsAtTheFirstColon) {
  suite().typeComboText("cboZoom", "3:7:1");
  EXPECT_EQ(view().Zoom(), 3.0);
  suite().typeComboText("cboZoom", "4");
  EXPECT_EQ(view().Zoom(), 3.0);
  suite().typeComboText("cboZoom", ":1");
  EXPECT_THAT(log().entries().back(), "Zoom=0") << "nothing before the colon is no number";
}

TEST_P(EditorZoom, AnEntryOfTheComboSetsItsFactor) {
  EXPECT_TRUE(suite().chooseItem("cboZoom", 25));
  EXPECT_EQ(view().Zoom(), 25.0);
  EXPECT_EQ(panel("pnlZoom"), "25:1 (2500%)");
}

TEST_P(EditorZoom, ATextWithoutAColonLeavesTheLevelAndIsNotReported) {
  suite().typeComboText("cboZoom", "3:1");
  log().clear();
  suite().typeComboText("cboZoom", "7");
  EXPECT_THAT(log().entries(), ElementsAre("Zoom=3")) << "written with the old value";
  EXPECT_EQ(view().Zoom(), 3.0);
  EXPECT_EQ(comboText(), "3:1");
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditorZoom, ANumberBeyondSinglePrecisionIsIgnored) {
  for (const char* text : {"1e39:1", "-1e39:1", "3.5e38:1", "1e400:1"}) {
    suite().typeComboText("cboZoom", "3:1");
    log().clear();
    suite().typeComboText("cboZoom", text);
    EXPECT_THAT(log().entries(), ElementsAre("Zoom=3")) << text << ": written with the old value";
    EXPECT_EQ(comboText(), "3:1");
    EXPECT_EQ(panel("pnlZoom"), "3:1 (300%)");
  }
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditorZoom, ATextWithoutALeadingNumberGivesZero) {
  suite().typeComboText("cboZoom", "abc:1");
  EXPECT_EQ(log().entries(), std::vector<std::string>{"Zoom=0"});
  EXPECT_FALSE(enabled("btnZoomOut"));
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditorZoom, AChangeOfTheComboIsHandledOnce) {
  log().clear();
  suite().typeComboText("cboZoom", "3:1");
  EXPECT_THAT(log().entries(), ElementsAre("Zoom=3"));
}

TEST_P(EditorZoom, SettingTheViewsZoomKeepsLevelAndPanel) {
  editor().ZoomIn();
  view().Zoom(5.0);
  EXPECT_EQ(panel("pnlZoom"), "2:1 (200%)");
  editor().ZoomIn();
  EXPECT_EQ(view().Zoom(), 3.0) << "continues from the editor's own level";
}

TEST_P(EditorZoom, TheWheelWithCtrlRunsTheZoomCommands) {
  view().turnWheel(1, kCtrlMask, {50, 50});
  EXPECT_EQ(view().Zoom(), 2.0);
  view().turnWheel(-1, kCtrlMask, {50, 50});
  view().turnWheel(-1, kCtrlMask, {50, 50});
  EXPECT_NEAR(view().Zoom(), 0.9, 1e-6);
}

TEST_P(EditorZoom, TheWheelStopsWhereTheButtonsDo) {
  suite().typeComboText("cboZoom", "10:1");
  view().turnWheel(1, kCtrlMask, {50, 50});
  EXPECT_EQ(view().Zoom(), 10.0);
}

TEST_P(EditorZoom, TheWheelKeepsThePixelUnderThePointer) {
  ASSERT_TRUE(editor().OpenImage(makePicture("large.png", 2, 3000, 2000)));
  view().ScrollLeft(400);
  view().ScrollTop(300);
  const Point pointer = {200, 100};
  const double columnBefore = view().ScrollLeft() + pointer.X / view().Zoom();
  const double rowBefore = view().ScrollTop() + pointer.Y / view().Zoom();
  view().turnWheel(1, kCtrlMask, pointer);
  ASSERT_EQ(view().Zoom(), 2.0);
  EXPECT_NEAR(view().ScrollLeft() + pointer.X / view().Zoom(), columnBefore, 1.0);
  EXPECT_NEAR(view().ScrollTop() + pointer.Y / view().Zoom(), rowBefore, 1.0);
}

TEST_P(EditorZoom, TheZoomBarIsVisibleOnlyWithTheZoomTool) {
  EXPECT_FALSE(suite().CommandBars()("Zoom").Visible());
  editor().Tool(ipToolZoom);
  EXPECT_TRUE(suite().CommandBars()("Zoom").Visible());
  editor().Tool(ipToolPan);
  EXPECT_FALSE(suite().CommandBars()("Zoom").Visible());
}

TEST_P(EditorZoom, TheZoomBarAloneIsNotOfferedInTheBarsMenu) {
  for (std::int32_t i = 1; i <= suite().CommandBars().Count(); ++i) {
    CommandBar& bar = suite().CommandBars().Item(i);
    EXPECT_EQ(bar.Listed(), bar.Name() != "Zoom") << bar.Name();
  }
}

TEST_P(EditorZoom, AtTheStartZoomInAndOutAreEnabledAndActualSizeIsNot) {
  endEditor();
  start();
  EXPECT_TRUE(enabled("btnZoomIn"));
  EXPECT_TRUE(enabled("btnZoomOut"));
  EXPECT_FALSE(enabled("btnZoomActualSize"));
  EXPECT_EQ(comboText(), "1:1");
}

TEST_P(EditorZoom, BehindTransparentPixelsTheTwoColorsAreVisible) {
  options().BackgroundGridColor1(0x0000FF);
  options().BackgroundGridColor2(0x00FF00);
  editor().ApplyOptions();
  editor().Picture(std::make_shared<engine::PictureObject>(engine::Bitmap::filled(300, 300, {0, 0, 0, 0})));
  const engine::Bitmap seen = view().painted();
  bool first = false, second = false;
  for (std::int32_t x = seen.width() / 2 - 100; x < seen.width() / 2 + 100; ++x) {
    first |= seen.at(x, seen.height() / 2) == engine::Pixel{255, 0, 0, 255};
    second |= seen.at(x, seen.height() / 2) == engine::Pixel{0, 255, 0, 255};
  }
  EXPECT_TRUE(first);
  EXPECT_TRUE(second);
}

TEST_P(EditorZoom, TheGridFollowsTheOptions) {
  options().BackgroundGridSize(3);
  editor().ApplyOptions();
  EXPECT_EQ(view().backgroundSize(), (Size{6, 6}));
  EXPECT_EQ(editor().Image()->Width(), 40) << "the picture is not disturbed";
  EXPECT_FALSE(view().Modified());
}

KESTREL_WITH_BOTH_PATHS(EditorZoom);

}  // namespace
}  // namespace kestrel
