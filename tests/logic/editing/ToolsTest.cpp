#include "EditingTest.h"

namespace kestrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

struct ToolFacts {
  ImageProcessingToolConstants tool;
  const char* key;
  std::int32_t viewTool;
  std::int32_t mousePointer;
};
constexpr ToolFacts kTools[] = {
    {ipToolPan, "btnDrawPan", 2, 0},          {ipToolSelect, "btnDrawSelect", 1, 0},
    {ipToolLine, "btnDrawLine", 7, 0},        {ipToolRectangle, "btnDrawRectangle", 9, 0},
    {ipToolEllipse, "btnDrawEllipse", 10, 0}, {ipToolFreehand, "btnDrawFreehand", 11, 0},
    {ipToolZoom, "btnDrawZoom", 0, 99},       {ipToolDropper, "btnDrawPicker", 0, 0},
};

class EditingTools : public EditingTest {
 protected:
  /// The menu that a right click on a pixel opens. It is identified by picking an entry that no menu has.
  std::string menuAt(Point pixel) {
    std::string complaint;
    const auto before = std::exchange(user().onComplaint, [&](const std::string& text) { complaint = text; });
    user().picks("btnNone");
    view().click(position(pixel.X, pixel.Y), kRightButton);
    user().onComplaint = before;
    const std::size_t begin = complaint.find("mnu");
    return begin == std::string::npos ? complaint
                                      : complaint.substr(begin, complaint.find(' ', begin) - begin);
  }
};

TEST_P(EditingTools, HaveTheNumbersOfTheInterface) {
  EXPECT_EQ(ipToolNone, 0);
  EXPECT_EQ(ipToolSelect, 1);
  EXPECT_EQ(ipToolPan, 2);
  EXPECT_EQ(ipToolZoom, 5);
  EXPECT_EQ(ipToolLine, 7);
  EXPECT_EQ(ipToolRectangle, 9);
  EXPECT_EQ(ipToolEllipse, 10);
  EXPECT_EQ(ipToolFreehand, 11);
  EXPECT_EQ(ipToolDropper, 100);
}

TEST_P(EditingTools, EachCommandSetsItsToolButtonAndTheViewsTool) {
  for (const ToolFacts& facts : kTools) {
    click(facts.key);
    EXPECT_EQ(editor().Tool(), facts.tool) << facts.key;
    EXPECT_EQ(view().Tool(), facts.viewTool) << facts.key;
    EXPECT_EQ(view().MousePointer(), facts.mousePointer) << facts.key;
    EXPECT_EQ(suite().CommandBars()("Zoom").Visible(), facts.tool == ipToolZoom) << facts.key;
    for (const ToolFacts& other : kTools) {
      EXPECT_EQ(pressed(other.key), other.tool == facts.tool) << other.key << " with " << facts.key;
    }
  }
}

TEST_P(EditingTools, NoneReleasesAllButtonsAndTakesTheViewsTool) {
  editor().Tool(ipToolNone);
  for (const ToolFacts& facts : kTools) EXPECT_FALSE(pressed(facts.key)) << facts.key;
  EXPECT_EQ(view().Tool(), 0);
  EXPECT_EQ(view().MousePointer(), 0);
}

TEST_P(EditingTools, NumbersFrom100GiveTheViewTool0AndOthersPassThrough) {
  editor().Tool(static_cast<ImageProcessingToolConstants>(101));
  EXPECT_EQ(view().Tool(), 0);
  editor().Tool(static_cast<ImageProcessingToolConstants>(99));
  EXPECT_EQ(view().Tool(), 99);
  editor().Tool(static_cast<ImageProcessingToolConstants>(6));
  EXPECT_EQ(view().Tool(), 6);
  for (const ToolFacts& facts : kTools) EXPECT_FALSE(pressed(facts.key)) << facts.key;
}

TEST_P(EditingTools, AChangeSetsToolPointerAndSelectionThenRaisesToolChange) {
  editor().SetSelection(5, 6, 7, 8);
  log().clear();
  when(editor().ToolChange, [this](ImageProcessingToolConstants tool) {
    log().add("ToolChange " + ToText(std::int32_t{tool}));
    EXPECT_EQ(editor().Tool(), tool);
    EXPECT_EQ(panel("pnlSize"), "40, 30") << "the selection is gone already";
  });
  editor().Tool(ipToolZoom);
  EXPECT_THAT(calls(), ElementsAre("Tool=0", "MousePointer=99", "SelectionHeight=0", "SelectionWidth=0",
                                   "SelectionVisible=False", "ToolChange 5"));
}

TEST_P(EditingTools, AChangeSwitchesZoomBarThenButtonsThenView) {
  std::vector<std::string> order;
  when(suite().CommandBarShowing, [&](CommandBar& bar, std::int32_t, CancelValue&) {
    order.push_back(bar.Name());
    EXPECT_FALSE(pressed("btnDrawZoom"));
    EXPECT_EQ(view().Tool(), 1) << "the view is set later";
  });
  editor().Tool(ipToolZoom);
  EXPECT_THAT(order, ElementsAre("Zoom"));
}

TEST_P(EditingTools, AChangeSetsTheButtonsFromPanToPicker) {
  std::vector<std::string> order;
  when(suite().CommandUpdated, [&](docking::CommandModel& updated) { order.push_back(updated.Name()); });
  const auto change = [&](ImageProcessingToolConstants from, ImageProcessingToolConstants to) {
    editor().Tool(from);
    order.clear();
    editor().Tool(to);
    return order;
  };
  EXPECT_THAT(change(ipToolSelect, ipToolPan), ElementsAre("btnDrawPan", "btnDrawSelect"));
  EXPECT_THAT(change(ipToolZoom, ipToolLine), ElementsAre("btnDrawLine", "btnDrawZoom"));
  // Each of the eight tools to the next one.
  for (std::size_t i = 1; i < std::size(kTools); ++i) {
    EXPECT_THAT(change(kTools[i].tool, kTools[i - 1].tool), ElementsAre(kTools[i - 1].key, kTools[i].key));
  }
}

TEST_P(EditingTools, TheCurrentToolKeepsTheSelectionAndRaisesNothing) {
  editor().SetSelection(5, 6, 7, 8);
  log().clear();
  when(editor().ToolChange, [](ImageProcessingToolConstants) { FAIL() << "ToolChange"; });
  editor().Tool(ipToolSelect);
  EXPECT_THAT(calls(), IsEmpty());
  EXPECT_TRUE(view().SelectionVisible());
  EXPECT_EQ(view().SelectionWidth(), 7);
}

TEST_P(EditingTools, DropperAndZoomLeaveTheViewWithoutARubberRectangle) {
  for (const auto tool : {ipToolDropper, ipToolZoom, ipToolNone}) {
    editor().Tool(tool);
    dragSelection({5, 5}, {15, 12});
    EXPECT_FALSE(view().SelectionVisible()) << tool;
    EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight))) << tool;
  }
}

// -- Status panels ----------------------------------------------------------------------------------------

TEST_P(EditingTools, ThePositionPanelShowsTheViewsOwnPixelNumbers) {
  view().move(0, 0, position(12, 20));
  EXPECT_EQ(panel("pnlPosition"), "12, 20");
  open(1000, 900);
  suite().typeComboText("cboZoom", "2:1");
  view().ScrollLeft(100);
  view().ScrollTop(50);
  std::string pixel;
  when(view().MouseMovePixel, [&](std::int32_t, std::int32_t, std::int32_t x, std::int32_t y) {
    pixel = ToText(x) + ", " + ToText(y);
  });
  view().move(0, 0, {61, 41});
  EXPECT_EQ(pixel, "130, 70") << "here the zoom counts";
  EXPECT_EQ(panel("pnlPosition"), pixel);
}

TEST_P(EditingTools, OutsideThePictureThePositionPanelShowsASingleSpace) {
  view().move(0, 0, position(12, 20));
  view().move(0, 0, position(-1, 20));
  EXPECT_EQ(panel("pnlPosition"), " ");
  view().move(0, 0, position(12, 20));
  view().move(0, 0, position(12, kHeight + 1));
  EXPECT_EQ(panel("pnlPosition"), " ");
}

TEST_P(EditingTools, OnePixelBeyondThePictureStillCountsAsInside) {
  view().move(0, 0, position(12, 20));
  view().move(0, 0, position(kWidth, 20));
  EXPECT_EQ(panel("pnlPosition"), "12, 20") << "inside for the editor, not over the picture for the view";
  view().move(0, 0, position(12, kHeight));
  EXPECT_EQ(panel("pnlPosition"), "12, 20");
  view().move(0, 0, position(kWidth + 1, 20));
  EXPECT_EQ(panel("pnlPosition"), " ");
}

TEST_P(EditingTools, TheSizePanelFollowsADragAndShowsTheFinalSize) {
  std::vector<std::string> sizes;
  when(view().SelectChanged,
       [&](std::int32_t, std::int32_t, std::int32_t, std::int32_t) { sizes.push_back(panel("pnlSize")); });
  EXPECT_EQ(panel("pnlSize"), "40, 30");
  dragSelection({4, 6}, {24, 18});
  EXPECT_THAT(sizes, ElementsAre("5, 3", "10, 6", "15, 9", "20, 12"));
  EXPECT_EQ(panel("pnlSize"), "20, 12");
}

TEST_P(EditingTools, AClickThatDismissesTheRectangleShowsThePicturesSizeAgain) {
  dragSelection({4, 6}, {24, 18});
  view().click(position(35, 25));
  EXPECT_FALSE(view().SelectionVisible());
  EXPECT_EQ(view().SelectionWidth(), 0);
  EXPECT_EQ(view().SelectionHeight(), 0);
  EXPECT_EQ(panel("pnlSize"), "40, 30");
}

TEST_P(EditingTools, AClickIntoTheRectangleKeepsIt) {
  dragSelection({4, 6}, {34, 28});
  view().click(position(15, 15));
  EXPECT_TRUE(view().SelectionVisible());
  EXPECT_EQ(panel("pnlSize"), "30, 22");
}

TEST_P(EditingTools, TheRectangleCanBeMovedByDragging) {
  dragSelection({4, 6}, {34, 28});
  dragSelection({19, 17}, {25, 13});
  EXPECT_EQ(view().SelectionLeft(), 10);
  EXPECT_EQ(view().SelectionTop(), 2);
  EXPECT_EQ(view().SelectionWidth(), 30);
  EXPECT_EQ(view().SelectionHeight(), 22);
}

// -- Dropper ----------------------------------------------------------------------------------------------

TEST_P(EditingTools, TheDropperTakesTheForeColorWithTheLeftButton) {
  editor().Tool(ipToolDropper);
  const OLE_COLOR background = editor().BackColor();
  view().click(position(12, 20));
  EXPECT_EQ(editor().ForeColor(), colorOf(pixelOf(12, 20)));
  EXPECT_EQ(editor().BackColor(), background);
}

TEST_P(EditingTools, TheDropperTakesTheForeColorWithButtonsButTheRight) {
  editor().Tool(ipToolDropper);
  const Point at = position(13, 20);
  view().MouseUp(kMiddleButton, 0, static_cast<float>(at.X), static_cast<float>(at.Y));
  EXPECT_EQ(editor().ForeColor(), colorOf(pixelOf(13, 20)));
}

TEST_P(EditingTools, AClickOfTheMiddleButtonTakesNoColor) {
  editor().Tool(ipToolDropper);
  const OLE_COLOR foreground = editor().ForeColor();
  view().click(position(13, 20), kMiddleButton);
  EXPECT_EQ(editor().ForeColor(), foreground) << "the view uses this button itself";
}

TEST_P(EditingTools, ARightClickWithTheDropperTakesTheBackColorAndOpensTheMenu) {
  editor().Tool(ipToolDropper);
  const OLE_COLOR foreground = editor().ForeColor();
  user().picks("");
  view().click(position(12, 20), kRightButton);
  EXPECT_EQ(editor().BackColor(), colorOf(pixelOf(12, 20)));
  EXPECT_EQ(editor().ForeColor(), foreground);
  EXPECT_EQ(user().left(), "") << "the menu was open";
}

TEST_P(EditingTools, TheDropperPicksNothingOutsideThePicture) {
  editor().Tool(ipToolDropper);
  const OLE_COLOR foreground = editor().ForeColor();
  view().click(position(-1, 20));
  view().click(position(kWidth + 1, 20));
  EXPECT_EQ(editor().ForeColor(), foreground);
}

TEST_P(EditingTools, TheDropperWithoutAPicturePicksNothing) {
  editor().Picture(nullptr);
  editor().Tool(ipToolDropper);
  const OLE_COLOR foreground = editor().ForeColor();
  view().click({400, 300});
  EXPECT_EQ(editor().ForeColor(), foreground);
}

TEST_P(EditingTools, TheDropperBeyondTheLastColumnReportsAndKeepsTheColor) {
  editor().Tool(ipToolDropper);
  const OLE_COLOR foreground = editor().ForeColor();
  expectReport();
  view().click(position(kWidth, 20));
  EXPECT_EQ(editor().ForeColor(), foreground);
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_EQ(user().boxes()[0].title, "Application Error");
}

// -- Zoom tool --------------------------------------------------------------------------------------------

TEST_P(EditingTools, TheZoomToolZoomsInOnALeftClickAndOutWithTheModifier) {
  editor().Tool(ipToolZoom);
  view().click(position(12, 20));
  EXPECT_EQ(view().Zoom(), 2.0);
  platform().desktop().shift = kShiftMask;
  view().click({400, 300});
  EXPECT_EQ(view().Zoom(), 1.0);
  platform().desktop().shift = 0;
}

TEST_P(EditingTools, TheRightButtonNeverZooms) {
  editor().Tool(ipToolZoom);
  user().picks("");
  view().click(position(12, 20), kRightButton);
  EXPECT_EQ(view().Zoom(), 1.0);
}

TEST_P(EditingTools, TheZoomToolZoomsOutsideThePictureToo) {
  editor().Tool(ipToolZoom);
  view().click({2, 2});
  EXPECT_EQ(view().Zoom(), 2.0);
}

TEST_P(EditingTools, ARightClickOutsideThePictureIsRecordedAndShowsNoMenu) {
  editor().Tool(ipToolZoom);
  view().click({2, 2}, kRightButton);
  EXPECT_EQ(view().Zoom(), 1.0) << "the click that follows carries the right button";
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditingTools, OtherToolsDoNotZoomOnAClick) {
  for (const auto tool : {ipToolSelect, ipToolPan, ipToolLine, ipToolDropper, ipToolNone}) {
    editor().Tool(tool);
    view().click(position(12, 20));
    EXPECT_EQ(view().Zoom(), 1.0) << tool;
  }
}

// -- Context menus ----------------------------------------------------------------------------------------

TEST_P(EditingTools, ARightClickInTheSelectionOpensItsMenu) {
  editor().SetSelection(5, 6, 20, 12);
  EXPECT_EQ(menuAt({12, 12}), "mnuSelectionContext");
  EXPECT_EQ(menuAt({5, 6}), "mnuSelectionContext");
  EXPECT_EQ(menuAt({25, 18}), "mnuSelectionContext");
}

TEST_P(EditingTools, ARightClickOutsideTheSelectionOpensTheImageMenu) {
  EXPECT_EQ(menuAt({12, 12}), "mnuImageContext");
  editor().SetSelection(5, 6, 20, 12);
  for (const Point outside : {Point{26, 18}, Point{25, 19}, Point{4, 6}, Point{5, 5}}) {
    EXPECT_EQ(menuAt(outside), "mnuImageContext") << recorded::text(outside);
  }
}

TEST_P(EditingTools, TheMenuOpensWithEveryTool) {
  for (const ToolFacts& facts : kTools) {
    editor().Tool(facts.tool);
    EXPECT_EQ(menuAt({12, 12}), "mnuImageContext") << facts.key;
  }
}

TEST_P(EditingTools, TheMenusCommandsAreDispatched) {
  editor().SetSelection(5, 6, 20, 12);
  user().picks("btnEditCopy");
  log().clear();
  view().click(position(12, 12), kRightButton);
  EXPECT_THAT(engineCalls(), Contains("scratch.Writer.ToClipboard()"));
}

TEST_P(EditingTools, PressAndReleaseUseOnlyTheScrollAtEveryZoom) {
  open(1000, 900);
  suite().typeComboText("cboZoom", "2:1");
  view().ScrollLeft(100);
  view().ScrollTop(50);
  editor().Tool(ipToolDropper);
  const Point click{61, 41};
  view().click(click);
  const std::int32_t x = click.X + view().ScrollLeft() - 1;
  const std::int32_t y = click.Y + view().ScrollTop() - 1;
  EXPECT_EQ(x, 160);
  EXPECT_EQ(y, 90);
  EXPECT_EQ(editor().ForeColor(), colorOf(pixelOf(x, y))) << "no division by the zoom";
}

TEST_P(EditingTools, ViewPositionsAreRoundedHalfToEven) {
  editor().Tool(ipToolDropper);
  const Point twelve = position(12, 20);
  const auto pick = [&](float x) {
    view().pointerDown(kLeftButton, 0, x, static_cast<float>(twelve.Y));
    view().pointerUp(kLeftButton, 0, x, static_cast<float>(twelve.Y));
    return editor().ForeColor();
  };
  const bool even = twelve.X % 2 == 0;
  const auto x = static_cast<float>(twelve.X);
  EXPECT_EQ(pick(x + 0.5F), colorOf(pixelOf(even ? 12 : 13, 20)));
  EXPECT_EQ(pick(x - 0.5F), colorOf(pixelOf(even ? 12 : 11, 20)));
}

// -- Materials --------------------------------------------------------------------------------------------

class EditingMaterials : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    editor().BackColor(0x102030);
    editor().ForeColor(0x405060);
    log().clear();
    when(editor().ForeColorChange,
         [this](OLE_COLOR color) { log().add("ForeColorChange " + ToText(color)); });
    when(editor().BackColorChange,
         [this](OLE_COLOR color) { log().add("BackColorChange " + ToText(color)); });
  }
  OLE_COLOR drawColor() { return view().Draw().Color().Value(); }
};

TEST_P(EditingMaterials, ABackColorFillsShapesInIt) {
  editor().BackColor(0x0A0B0C);
  EXPECT_EQ(drawColor(), 0x0A0B0C);
  EXPECT_THAT(calls(), ElementsAre("view.Draw.FillMode=6", "BackColorChange 658188"));
}

TEST_P(EditingMaterials, NoBackColorMakesOutlinesInTheForeColor) {
  editor().BackColor(-1);
  EXPECT_EQ(drawColor(), 0x405060);
  EXPECT_THAT(calls(), ElementsAre("view.Draw.FillMode=-1", "BackColorChange -1"));
  editor().ForeColor(0x010203);
  EXPECT_EQ(drawColor(), 0x010203);
}

TEST_P(EditingMaterials, WithABackColorTheForeColorDoesNotReachThePicture) {
  editor().ForeColor(0x010203);
  EXPECT_EQ(drawColor(), 0x102030);
  EXPECT_THAT(calls(), ElementsAre("ForeColorChange 66051"));
}

TEST_P(EditingMaterials, SettingTheCurrentColorsDoesNothing) {
  editor().ForeColor(0x405060);
  editor().BackColor(0x102030);
  EXPECT_THAT(calls(), IsEmpty());
}

TEST_P(EditingMaterials, WithoutAutoUpdateGlobalTheOptionsStayAndTheEventsAreRaised) {
  const OLE_COLOR fore = options().MaterialForeColor(), back = options().MaterialBackColor();
  editor().ForeColor(1);
  editor().BackColor(2);
  EXPECT_EQ(options().MaterialForeColor(), fore);
  EXPECT_EQ(options().MaterialBackColor(), back);
  EXPECT_THAT(calls(), Contains("ForeColorChange 1"));
  EXPECT_THAT(calls(), Contains("BackColorChange 2"));
}

TEST_P(EditingMaterials, WithAutoUpdateGlobalTheOptionsAreWrittenBeforeTheEvents) {
  editor().AutoUpdateGlobal(true);
  when(editor().ForeColorChange,
       [this](OLE_COLOR color) { EXPECT_EQ(options().MaterialForeColor(), color); });
  when(editor().BackColorChange,
       [this](OLE_COLOR color) { EXPECT_EQ(options().MaterialBackColor(), color); });
  editor().ForeColor(1);
  editor().BackColor(-1);
  EXPECT_EQ(options().MaterialForeColor(), 1);
  EXPECT_EQ(options().MaterialBackColor(), -1);
}

// -- Drawing ----------------------------------------------------------------------------------------------

TEST_P(EditingMaterials, ShapesAreFilledInTheBackColorAndNamedByTheView) {
  const struct {
    ImageProcessingToolConstants tool;
    const char* name;
  } shapes[] = {{ipToolLine, "Line"},
                {ipToolRectangle, "Rectangle"},
                {ipToolEllipse, "Ellipse"},
                {ipToolFreehand, "Freehand"}};
  for (const auto& shape : shapes) {
    open(kWidth, kHeight);
    editor().Tool(shape.tool);
    dragSelection({5, 5}, {25, 25});
    EXPECT_EQ(colorOf(at(15, 15)), 0x102030) << shape.name;
    EXPECT_EQ(undoCaption(), std::string("&Undo ") + shape.name);
    EXPECT_TRUE(editor().Changed());
  }
}

TEST_P(EditingMaterials, WithoutABackColorARectangleIsAnOutlineInTheForeColor) {
  editor().BackColor(-1);
  editor().Tool(ipToolRectangle);
  dragSelection({5, 5}, {25, 25});
  EXPECT_EQ(colorOf(at(5, 15)), 0x405060);
  EXPECT_EQ(at(15, 15), pixelOf(15, 15));
}

TEST_P(EditingMaterials, ThePanToolScrollsAndChangesNothing) {
  open(1000, 900);
  view().ScrollLeft(100);
  view().ScrollTop(100);
  editor().Tool(ipToolPan);
  view().drag({200, 200}, {190, 180});
  EXPECT_EQ(view().ScrollLeft(), 110);
  EXPECT_EQ(view().ScrollTop(), 120);
  EXPECT_FALSE(editor().Changed());
}

KESTREL_WITH_BOTH_PATHS(EditingTools);
KESTREL_WITH_BOTH_PATHS(EditingMaterials);

}  // namespace
}  // namespace kestrel
