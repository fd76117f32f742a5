#include "SizeDialogTest.h"
#include "SkinOrder.h"
#include "dialogs/frmResizeCanvas.h"
#include "engine/effects/Canvas.h"
#include "imaging/contract/controls/ColorPicker.h"
#include "imaging/contract/controls/Frame.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Dialog : public SizeControls {
 public:
  using SizeControls::SizeControls;

  CommandButton& placement(std::int32_t index) { return Bind<CommandButton>(form(), "btnPlacement", index); }
  ColorPicker& color() { return Bind<ColorPicker>(form(), "cpkColor"); }
  /// The texts of both offset boxes: "5,-3".
  std::string offsets() { return field(2).Text() + "," + field(3).Text(); }
  /// The offsets of each placement, in reading order.
  std::vector<std::string> allOffsets() {
    std::vector<std::string> result;
    for (std::int32_t i = 0; i < 9; ++i) {
      placement(i).Press();
      result.push_back(offsets());
    }
    return result;
  }
  /// The indices of the pressed buttons.
  std::vector<std::int32_t> pressed() {
    std::vector<std::int32_t> result;
    for (std::int32_t i = 0; i < 9; ++i) {
      if (placement(i).Pressed()) result.push_back(i);
    }
    return result;
  }
  void enter(const char* newWidth, const char* newHeight) {
    aspect().Value(0);
    width().Text(newWidth);
    height().Text(newHeight);
  }
};

class EditingResizeCanvasDialog : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    set(kWidth, kHeight, 4, 0x00FF00, false);
  }
  void show(std::function<void(Dialog&)> doing) {
    user().uses("frmResizeCanvas", [doing = std::move(doing)](Form& form) {
      Dialog dialog(form);
      doing(dialog);
    });
    click("btnImageResizeCanvas");
  }
  void set(std::int32_t width, std::int32_t height, std::int32_t placement, OLE_COLOR color, bool lock) {
    options().ResizeCanvasWidth(width);
    options().ResizeCanvasHeight(height);
    options().ResizeCanvasPlacement(placement);
    options().ResizeCanvasColor(color);
    options().ResizeCanvasLockAspectRatio(lock);
  }
  void expectOptions(std::int32_t width, std::int32_t height, std::int32_t placement, OLE_COLOR color,
                     bool lock) {
    EXPECT_EQ(options().ResizeCanvasWidth(), width);
    EXPECT_EQ(options().ResizeCanvasHeight(), height);
    EXPECT_EQ(options().ResizeCanvasPlacement(), placement);
    EXPECT_EQ(options().ResizeCanvasColor(), color);
    EXPECT_EQ(options().ResizeCanvasLockAspectRatio(), lock);
  }
  std::string refusalOf(const std::function<void(Dialog&)>& entering) {
    user().forget();
    show([&](Dialog& dialog) {
      entering(dialog);
      user().answers(kAnswerOK);
      dialog.ok();
      EXPECT_TRUE(dialog.form().Visible());
      dialog.cancel();
    });
    EXPECT_EQ(user().boxes().size(), 1u);
    if (user().boxes().empty()) return {};
    EXPECT_EQ(user().boxes()[0].style, kBoxExclamation);
    EXPECT_EQ(user().boxes()[0].title, "Resize Canvas");
    return user().boxes()[0].text;
  }
};

// -- The form ---------------------------------------------------------------------------------------------

TEST_P(EditingResizeCanvasDialog, HasTheCaptionsOfItsControls) {
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.form().Caption(), "Resize Canvas");
    EXPECT_EQ(Bind<Frame>(dialog.form(), "fraOptions", 0).Caption(), "Original Dimensions");
    EXPECT_EQ(Bind<Frame>(dialog.form(), "fraOptions", 1).Caption(), "New Dimensions");
    EXPECT_EQ(Bind<Frame>(dialog.form(), "FramePlus1").Caption(), "Placement");
    const char* const headers[] = {
        "Width:", "Height:", "&Width:", "&Height:", "B&ackground:", "&Left:", "&Top:"};
    for (std::int32_t i = 0; i < 7; ++i) EXPECT_EQ(dialog.header(i), headers[i]);
    EXPECT_EQ(dialog.aspect().Caption(), "Lock &aspect ratio");
    EXPECT_EQ(dialog.form().UBound("btnPlacement"), 8);
    EXPECT_EQ(Bind<CommandButton>(dialog.form(), "cmdAction", 0).Caption(), "OK");
    EXPECT_EQ(Bind<CommandButton>(dialog.form(), "cmdAction", 1).Caption(), "Cancel");
    dialog.cancel();
  });
}

TEST_P(EditingResizeCanvasDialog, LoadsWithoutAnIconMakesDigitBoxesAndAppliesTheSkinLast) {
  platform().Screen().MousePointer(kBusyHourglass);
  show([this](Dialog& dialog) {
    EXPECT_FALSE(dynamic_cast<headless::Form&>(dialog.form()).hasIcon());
    for (std::int32_t i = 0; i < 4; ++i) {
      EXPECT_EQ(platform().WindowFunctions().styles(dialog.field(i).hWnd()), 8192);
    }
    EXPECT_EQ(platform().FormSkin().applied().back().name, "frmResizeCanvas");
    EXPECT_EQ(platform().Screen().MousePointer(), kBusyDefault);
    dialog.cancel();
  });
}

TEST_P(EditingResizeCanvasDialog, WritesItsBoxesBeforeItAppliesTheSkin) {
  frmResizeCanvas dialog(editor());
  expectWrittenBeforeSkin(platform(), dialog, 4);
}

TEST_P(EditingResizeCanvasDialog, TheCenterIsStoredPressed) {
  frmResizeCanvas dialog(editor());
  EXPECT_THAT(Dialog(dialog.Form()).pressed(), ElementsAre(4));
}

TEST_P(EditingResizeCanvasDialog, ShowsTheSizeOfThePictureAndTheOptions) {
  set(50, 60, 8, 0x123456, false);
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.data(0), "40 Pixels");
    EXPECT_EQ(dialog.data(1), "30 Pixels");
    EXPECT_EQ(dialog.size(), "50x60");
    EXPECT_EQ(dialog.color().Value(), 0x123456);
    EXPECT_EQ(dialog.aspect().Value(), 0);
    EXPECT_THAT(dialog.pressed(), ElementsAre(8));
    EXPECT_EQ(dialog.offsets(), "10,30");
    dialog.cancel();
  });
}

TEST_P(EditingResizeCanvasDialog, OpensInTheCenterForAStoredNumberWithoutAButton) {
  for (const std::int32_t stored : {-1, 9, 77}) {
    set(50, 60, stored, 0, false);
    show([](Dialog& dialog) {
      EXPECT_THAT(dialog.pressed(), ElementsAre(4));
      EXPECT_EQ(dialog.offsets(), "5,15");
      dialog.ok();
    });
    EXPECT_EQ(options().ResizeCanvasPlacement(), 4);
    open(kWidth, kHeight);
  }
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditingResizeCanvasDialog, AtLoadTheStoredHeightSurvivesAndTheWidthIsRecomputed) {
  set(77, 60, 8, 0, true);
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.size(), "80x60");
    EXPECT_EQ(dialog.offsets(), "40,30");
    dialog.cancel();
  });
}

TEST_P(EditingResizeCanvasDialog, SelectsTheWholeTextOnFocus) {
  show([this](Dialog& dialog) {
    for (std::int32_t i : {3, 2, 1, 0}) {
      platform().FormUtility().SetFocusTo(dialog.field(i));
      EXPECT_EQ(dialog.field(i).SelectedText(), dialog.field(i).Text());
      EXPECT_NE(dialog.field(i).Text(), "");
    }
    dialog.cancel();
  });
}

// -- Placements -------------------------------------------------------------------------------------------

TEST_P(EditingResizeCanvasDialog, EachPlacementHasItsOffsets) {
  show([](Dialog& dialog) {
    dialog.enter("50", "70");
    EXPECT_THAT(dialog.allOffsets(),
                ElementsAre("0,0", "5,0", "10,0", "0,20", "5,20", "10,20", "0,40", "5,40", "10,40"));
    dialog.cancel();
  });
}

TEST_P(EditingResizeCanvasDialog, ASmallerCanvasHasNegativeOffsets) {
  show([](Dialog& dialog) {
    dialog.enter("30", "10");
    EXPECT_THAT(dialog.allOffsets(), ElementsAre("0,0", "-5,0", "-10,0", "0,-10", "-5,-10", "-10,-10",
                                                 "0,-20", "-5,-20", "-10,-20"));
    dialog.cancel();
  });
}

TEST_P(EditingResizeCanvasDialog, AnEqualSizeHasOffsetsOfZero) {
  show([](Dialog& dialog) {
    for (const std::string& offsets : dialog.allOffsets()) EXPECT_EQ(offsets, "0,0");
    dialog.cancel();
  });
}

TEST_P(EditingResizeCanvasDialog, CenteringRoundsDownForAnOddDifference) {
  show([](Dialog& dialog) {
    dialog.placement(4).Press();
    const std::pair<std::int32_t, const char*> offsets[] = {{1, "0"},   {3, "1"},   {5, "2"},  {7, "3"},
                                                            {-1, "-1"}, {-3, "-2"}, {-5, "-3"}};
    for (const auto& [difference, offset] : offsets) {
      dialog.width().Text(ToText(kWidth + difference));
      EXPECT_EQ(dialog.field(2).Text(), offset) << difference;
      dialog.height().Text(ToText(kHeight + difference));
      EXPECT_EQ(dialog.field(3).Text(), offset) << difference;
    }
    dialog.cancel();
  });
}

TEST_P(EditingResizeCanvasDialog, ThePlacementsAreOneGroup) {
  show([](Dialog& dialog) {
    for (const std::int32_t index : {0, 8, 3, 3}) {
      dialog.placement(index).Press();
      EXPECT_THAT(dialog.pressed(), ElementsAre(index));
    }
    dialog.cancel();
  });
}

TEST_P(EditingResizeCanvasDialog, TypedOffsetsLastUntilTheSizeOrThePlacementChanges) {
  show([](Dialog& dialog) {
    dialog.enter("50", "60");
    dialog.field(2).Text("33");
    dialog.field(3).Text("44");
    EXPECT_EQ(dialog.size(), "50x60");
    EXPECT_EQ(dialog.offsets(), "33,44");
    EXPECT_THAT(dialog.pressed(), ElementsAre(4));
    dialog.width().Text("52");
    EXPECT_EQ(dialog.offsets(), "6,15");
    dialog.field(2).Text("33");
    dialog.placement(4).Press();
    EXPECT_EQ(dialog.offsets(), "6,15");
    dialog.cancel();
  });
}

TEST_P(EditingResizeCanvasDialog, AnEmptySizeBoxHasTheOffsetsOfASizeOfZero) {
  show([](Dialog& dialog) {
    dialog.width().Text("");
    EXPECT_EQ(dialog.offsets(), "-20,0");
    dialog.cancel();
  });
}

// -- The aspect ratio -------------------------------------------------------------------------------------

TEST_P(EditingResizeCanvasDialog, WithTheRatioLockedBothBoxesAndTheOffsetsFollowEachEdit) {
  show([](Dialog& dialog) {
    dialog.aspect().Value(1);
    EXPECT_EQ(dialog.size(), "40x30") << "the lock alone computes nothing";
    dialog.placement(8).Press();
    dialog.width().Text("8");
    EXPECT_EQ(dialog.size(), "8x6");
    EXPECT_EQ(dialog.offsets(), "-32,-24");
    dialog.width().Text("80");
    EXPECT_EQ(dialog.size(), "80x60");
    EXPECT_EQ(dialog.offsets(), "40,30");
    dialog.height().Text("31");
    EXPECT_EQ(dialog.size(), "41x31") << "41.33 is rounded down";
    EXPECT_EQ(dialog.offsets(), "1,1");
    dialog.height().Text("");
    EXPECT_EQ(dialog.size(), "0x0");
    EXPECT_EQ(dialog.offsets(), "-40,-30");
    dialog.cancel();
  });
}

TEST_P(EditingResizeCanvasDialog, WithTheRatioLockedAnEditOfAnOffsetRewritesTheSizeAsItIs) {
  show([](Dialog& dialog) {
    dialog.enter("50.7", "60");
    dialog.aspect().Value(1);
    dialog.field(2).Text("7");
    EXPECT_EQ(dialog.size(), "50x60") << "the whole parts, without regard to the ratio";
    EXPECT_EQ(dialog.offsets(), "5,15") << "the rewritten width computes the position";
    dialog.field(2).Text("7");
    EXPECT_EQ(dialog.offsets(), "7,15");
    dialog.cancel();
  });
}

TEST_P(EditingResizeCanvasDialog, AWidthBeyond32BitsIsReportedAndTheDialogStays) {
  show([this](Dialog& dialog) {
    user().answers(kAnswerOK);
    dialog.width().Text("99999999999");
    EXPECT_TRUE(dialog.form().Visible());
    dialog.width().Text("50");
    EXPECT_EQ(dialog.offsets(), "5,0");
    dialog.cancel();
  });
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_EQ(user().boxes()[0].title, "Application Error");
  EXPECT_THAT(user().boxes()[0].text, HasSubstr("Procedure: zCalcPosition\r\n"));
}

// -- OK ---------------------------------------------------------------------------------------------------

TEST_P(EditingResizeCanvasDialog, PutsThePictureOnANewCanvas) {
  show([this](Dialog& dialog) {
    dialog.enter("50", "60");
    dialog.placement(6).Press();
    dialog.color().Value(0x0000FF);
    platform().FormUtility().forgetPointers();
    log().clear();
    dialog.ok();
    EXPECT_FALSE(dialog.form().Visible());
  });
  EXPECT_THAT(engineCalls(), ElementsAre("view.Effects.ResizeCanvas(50, 60, #255/255, 0, 30, \"\")"));
  EXPECT_THAT(platform().FormUtility().pointers(), IsEmpty()) << "no hourglass";
  EXPECT_TRUE(
      same(shown(), engine::resizeCanvas(gradient(kWidth, kHeight), 50, 60, {255, 0, 0, 255}, 0, 30)));
  expectOptions(50, 60, 6, 0x0000FF, false);
  EXPECT_TRUE(editor().Changed());
  click("btnEditUndo");
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
}

TEST_P(EditingResizeCanvasDialog, PassesTypedOffsetsWithoutRegardToThePlacement) {
  show([this](Dialog& dialog) {
    dialog.enter("50", "60");
    dialog.field(2).Text("-3");
    dialog.field(3).Text("7.5");
    log().clear();
    dialog.ok();
  });
  EXPECT_THAT(engineCalls(), ElementsAre("view.Effects.ResizeCanvas(50, 60, #65280/255, -3, 8, \"\")"));
  EXPECT_EQ(options().ResizeCanvasPlacement(), 4) << "still pressed";
}

TEST_P(EditingResizeCanvasDialog, RoundsTheSizeTiesToEven) {
  show([this](Dialog& dialog) {
    dialog.enter("50.5", "61.5abc");
    dialog.placement(0).Press();
    log().clear();
    dialog.ok();
  });
  EXPECT_THAT(engineCalls(), ElementsAre("view.Effects.ResizeCanvas(50, 62, #65280/255, 0, 0, \"\")"));
  expectOptions(50, 62, 0, 0x00FF00, false);
}

TEST_P(EditingResizeCanvasDialog, RefusesASizeBelowOne) {
  for (const auto& size : {std::pair{"0", "30"},
                           {"40", "0"},
                           {"", "30"},
                           {"abc", "30"},
                           {"-5", "30"},
                           {"40", "-5"},
                           {"0.9", "30"}}) {
    EXPECT_EQ(refusalOf([&](Dialog& dialog) { dialog.enter(size.first, size.second); }),
              "Sorry, the minimum value for width and height is 1.")
        << size.first << "x" << size.second;
  }
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
  expectOptions(kWidth, kHeight, 4, 0x00FF00, false);
}

TEST_P(EditingResizeCanvasDialog, ASizeBeyondTheEnginesLimitsIsRefusedWithItsSentence) {
  EXPECT_THAT(refusalOf([](Dialog& dialog) { dialog.enter("1e9", "1e9"); }),
              HasSubstr("1000000000 x 1000000000 pixels"));
  expectOptions(kWidth, kHeight, 4, 0x00FF00, false);
}

TEST_P(EditingResizeCanvasDialog, AnOffsetBeyond32BitsIsRefusedInABox) {
  EXPECT_EQ(refusalOf([](Dialog& dialog) { dialog.field(2).Text("99999999999"); }),
            "The number is too large.");
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
}

TEST_P(EditingResizeCanvasDialog, AnOffsetBeyondTheCanvasLeavesOnlyTheBackground) {
  show([](Dialog& dialog) {
    dialog.enter("10", "10");
    dialog.field(2).Text("2147483647");
    dialog.field(3).Text("-2147483648");
    dialog.ok();
  });
  EXPECT_TRUE(same(shown(), engine::Bitmap::filled(10, 10, {0, 255, 0, 255})));
}

// -- The answer -------------------------------------------------------------------------------------------

TEST_P(EditingResizeCanvasDialog, CancelAndTheCloseBoxChangeNothing) {
  for (const bool byCloseBox : {false, true}) {
    user().uses("frmResizeCanvas", [&](Form& form) {
      Dialog dialog(form);
      dialog.enter("8", "6");
      dialog.placement(0).Press();
      dialog.color().Value(1);
      log().clear();
      byCloseBox ? dynamic_cast<headless::Form&>(form).pressCloseBox() : dialog.cancel();
    });
    EXPECT_FALSE(editor().ShowResizeCanvasDialog());
    EXPECT_THAT(engineCalls(), IsEmpty());
    expectOptions(kWidth, kHeight, 4, 0x00FF00, false);
    EXPECT_FALSE(editor().Changed());
  }
}

TEST_P(EditingResizeCanvasDialog, KeepsItsFieldsReadableAfterHiding) {
  frmResizeCanvas dialog(editor());
  EXPECT_EQ(&dialog.Source, &editor());
  user().uses("frmResizeCanvas", [](Form& form) { Dialog(form).ok(); });
  EXPECT_TRUE(dialog.ShowModal());
  EXPECT_TRUE(dialog.Success);
  EXPECT_FALSE(dialog.SafeToUnload);
  EXPECT_EQ(dialog.ResultData, "") << "not used";
}

KESTREL_WITH_BOTH_PATHS(EditingResizeCanvasDialog);

}  // namespace
}  // namespace kestrel
