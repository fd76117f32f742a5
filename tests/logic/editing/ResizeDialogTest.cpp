#include "SizeDialogTest.h"
#include "SkinOrder.h"
#include "dialogs/frmResize.h"
#include "engine/effects/resample/Resize.h"
#include "engine/pixels/Memory.h"
#include "imaging/contract/controls/ComboBox.h"
#include "imaging/contract/controls/Frame.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::int32_t kPixels = 0;
constexpr std::int32_t kPercent = 1;

class Dialog : public SizeControls {
 public:
  using SizeControls::SizeControls;

  ComboBox& scale() { return Bind<ComboBox>(form(), "cboScale"); }
  ComboBox& method() { return Bind<ComboBox>(form(), "cboResample"); }
  std::string units() {
    return Bind<Label>(form(), "lblUnit", 0).Caption() + " " + Bind<Label>(form(), "lblUnit", 1).Caption();
  }
  /// Writes both boxes with the aspect ratio unlocked.
  void enter(const char* newWidth, const char* newHeight) {
    aspect().Value(0);
    width().Text(newWidth);
    height().Text(newHeight);
  }
};

class EditingResizeDialog : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    set(kWidth, kHeight, kPixels, 2, true);
  }
  /// Clicks the command and runs the user's actions in the dialog.
  void show(std::function<void(Dialog&)> doing) {
    user().uses("frmResize", [doing = std::move(doing)](Form& form) {
      Dialog dialog(form);
      doing(dialog);
    });
    click("btnImageResize");
  }
  void set(std::int32_t width, std::int32_t height, std::int32_t scale, std::int32_t mode, bool lock) {
    options().ResizeWidth(width);
    options().ResizeHeight(height);
    options().ResizeScale(scale);
    options().ResizeMode(mode);
    options().ResizeLockAspectRatio(lock);
  }
  void expectOptions(std::int32_t width, std::int32_t height, std::int32_t scale, std::int32_t mode,
                     bool lock) {
    EXPECT_EQ(options().ResizeWidth(), width);
    EXPECT_EQ(options().ResizeHeight(), height);
    EXPECT_EQ(options().ResizeScale(), scale);
    EXPECT_EQ(options().ResizeMode(), mode);
    EXPECT_EQ(options().ResizeLockAspectRatio(), lock);
  }
  /// The sentence of the box that OK shows; the dialog stays open and is canceled.
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
    EXPECT_EQ(user().boxes()[0].title, "Resize");
    return user().boxes()[0].text;
  }
};

constexpr char kTooSmall[] = "Sorry, the minimum value for width and height is 1.";

// -- The form ---------------------------------------------------------------------------------------------

TEST_P(EditingResizeDialog, HasTheCaptionsAndStoredValuesOfItsControls) {
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.form().Caption(), "Resize");
    EXPECT_EQ(Bind<Frame>(dialog.form(), "fraOptions", 0).Caption(), "Original Dimensions");
    EXPECT_EQ(Bind<Frame>(dialog.form(), "fraOptions", 1).Caption(), "New Dimensions");
    const char* const headers[] = {"Width:", "Height:", "&Width:", "&Height:", "&Scale:", "&Resample type:"};
    for (std::int32_t i = 0; i < 6; ++i) EXPECT_EQ(dialog.header(i), headers[i]);
    EXPECT_EQ(dialog.aspect().Caption(), "Lock &aspect ratio");
    ASSERT_EQ(dialog.scale().ListCount(), 2);
    EXPECT_EQ(dialog.scale().List(0), "Pixels");
    EXPECT_EQ(dialog.scale().List(1), "Percent");
    const std::pair<const char*, std::int32_t> methods[] = {
        {"Pixel", 2}, {"Bilinear", 0}, {"Bicubic", 1}, {"Decimate", 3}, {"Lanczos", 13}};
    ASSERT_EQ(dialog.method().ListCount(), 5);
    for (std::int32_t i = 0; i < 5; ++i) {
      EXPECT_EQ(dialog.method().List(i), methods[i].first);
      EXPECT_EQ(dialog.method().ItemData(i), methods[i].second);
    }
    EXPECT_EQ(Bind<CommandButton>(dialog.form(), "cmdAction", 0).Caption(), "OK");
    EXPECT_EQ(Bind<CommandButton>(dialog.form(), "cmdAction", 1).Caption(), "Cancel");
    dialog.cancel();
  });
}

TEST_P(EditingResizeDialog, LoadsWithoutAnIconMakesDigitBoxesAndAppliesTheSkinLast) {
  platform().Screen().MousePointer(kBusyHourglass);
  show([this](Dialog& dialog) {
    EXPECT_FALSE(dynamic_cast<headless::Form&>(dialog.form()).hasIcon());
    for (std::int32_t i = 0; i < 2; ++i) {
      EXPECT_EQ(platform().WindowFunctions().styles(dialog.field(i).hWnd()), 8192);
    }
    EXPECT_EQ(platform().FormSkin().applied().back().name, "frmResize");
    EXPECT_EQ(platform().Screen().MousePointer(), kBusyDefault);
    dialog.cancel();
  });
}

TEST_P(EditingResizeDialog, WritesItsBoxesBeforeItAppliesTheSkin) {
  frmResize dialog(editor());
  expectWrittenBeforeSkin(platform(), dialog, 2);
}

TEST_P(EditingResizeDialog, ShowsTheUnitOfTheScale) {
  set(kWidth, kHeight, kPercent, 2, true);
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.units(), "percent percent");
    dialog.scale().ListIndex(kPixels);
    EXPECT_EQ(dialog.units(), "pixels pixels");
    dialog.cancel();
  });
}

TEST_P(EditingResizeDialog, ShowsTheSizeOfThePictureAndTheOptions) {
  set(70, 80, kPercent, 4, false);
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.data(0), "40 Pixels");
    EXPECT_EQ(dialog.data(1), "30 Pixels");
    EXPECT_EQ(dialog.size(), "70x80");
    EXPECT_EQ(dialog.scale().ListIndex(), 1);
    EXPECT_EQ(dialog.method().ListIndex(), 4);
    EXPECT_EQ(dialog.aspect().Value(), 0);
    dialog.cancel();
  });
}

TEST_P(EditingResizeDialog, OpensWithTheDefaultsForStoredNumbersWithoutAnEntry) {
  for (const std::int32_t stored : {-1, 5, 99}) {
    set(40, 30, stored, stored, false);
    show([](Dialog& dialog) {
      EXPECT_EQ(dialog.scale().ListIndex(), 0);
      EXPECT_EQ(dialog.method().ListIndex(), 2);
      EXPECT_EQ(dialog.size(), "40x30");
      dialog.cancel();
    });
  }
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditingResizeDialog, SelectsTheWholeTextOnFocus) {
  show([this](Dialog& dialog) {
    for (std::int32_t i : {1, 0}) {
      platform().FormUtility().SetFocusTo(dialog.field(i));
      EXPECT_EQ(dialog.field(i).SelectedText(), i == 0 ? "40" : "30");
    }
    dialog.cancel();
  });
}

// -- The aspect ratio -------------------------------------------------------------------------------------

TEST_P(EditingResizeDialog, WithTheRatioLockedEachBoxSetsTheOther) {
  show([](Dialog& dialog) {
    dialog.width().Text("20");
    EXPECT_EQ(dialog.size(), "20x15");
    dialog.height().Text("60");
    EXPECT_EQ(dialog.size(), "80x60");
    dialog.width().Text("21");
    EXPECT_EQ(dialog.size(), "21x15") << "15.75 is rounded down";
    dialog.cancel();
  });
}

TEST_P(EditingResizeDialog, ComputesTheRatioInSinglePrecision) {
  open(3, 3);
  show([](Dialog& dialog) {
    dialog.width().Text("1");
    EXPECT_EQ(dialog.size(), "1x0") << "33.33333 percent of 3 is less than 1";
    dialog.width().Text("3");
    EXPECT_EQ(dialog.size(), "3x3");
    dialog.cancel();
  });
}

TEST_P(EditingResizeDialog, WithTheRatioLockedTheEditedBoxIsRewrittenToo) {
  show([](Dialog& dialog) {
    dialog.width().Text("0");
    EXPECT_EQ(dialog.size(), "0x0");
    dialog.width().Text("");
    EXPECT_EQ(dialog.size(), "0x0") << "an empty box counts as 0";
    dialog.width().Text("020");
    EXPECT_EQ(dialog.size(), "20x15");
    dialog.width().Text("44abc");
    EXPECT_EQ(dialog.size(), "44x33");
    dialog.height().Text("1.9");
    EXPECT_EQ(dialog.size(), "2x1");
    dialog.width().Text("-5");
    EXPECT_EQ(dialog.size(), "-5x-4") << "-3.75 is rounded down";
    dialog.width().Text("1e9");
    EXPECT_EQ(dialog.size(), "1000000000x750000000");
    dialog.width().Text("99999999999");
    EXPECT_EQ(dialog.width().Text(), "99999997952") << "the nearest number of single precision";
    dialog.cancel();
  });
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditingResizeDialog, InPercentWithTheRatioLockedBothBoxesHaveTheSameNumber) {
  set(50, 50, kPercent, 2, true);
  show([](Dialog& dialog) {
    dialog.width().Text("25");
    EXPECT_EQ(dialog.size(), "25x25");
    dialog.height().Text("70");
    EXPECT_EQ(dialog.size(), "70x70");
    dialog.cancel();
  });
}

TEST_P(EditingResizeDialog, UnlockedTheBoxesAreIndependentAndKeepTheirTexts) {
  show([](Dialog& dialog) {
    dialog.enter("017", "");
    EXPECT_EQ(dialog.size(), "017x");
    dialog.cancel();
  });
}

TEST_P(EditingResizeDialog, ScaleAndLockConvertNothingUntilTheNextEdit) {
  set(70, 80, kPixels, 2, false);
  show([](Dialog& dialog) {
    dialog.scale().ListIndex(kPercent);
    EXPECT_EQ(dialog.size(), "70x80");
    dialog.aspect().Value(1);
    EXPECT_EQ(dialog.size(), "70x80");
    dialog.width().Text("71");
    EXPECT_EQ(dialog.size(), "71x71");
    dialog.scale().ListIndex(kPixels);
    EXPECT_EQ(dialog.size(), "71x71");
    dialog.cancel();
  });
}

TEST_P(EditingResizeDialog, AtLoadTheStoredHeightSurvivesAndTheWidthIsRecomputed) {
  set(77, 60, kPixels, 2, true);
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.size(), "80x60");
    dialog.cancel();
  });
  set(77, 60, kPercent, 2, true);
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.size(), "60x60");
    dialog.cancel();
  });
}

TEST_P(EditingResizeDialog, ANumberBeyondSinglePrecisionIsReportedAndTheNextEditWorks) {
  show([this](Dialog& dialog) {
    user().answers(kAnswerOK);
    dialog.width().Text("1e39");
    dialog.width().Text("20");
    EXPECT_EQ(dialog.size(), "20x15");
    dialog.cancel();
  });
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_THAT(user().boxes()[0].text, HasSubstr("Procedure: txtField_Change\r\n"));
}

// -- OK ---------------------------------------------------------------------------------------------------

TEST_P(EditingResizeDialog, ConvertsAndResizesByTheMethodOfTheList) {
  const std::int32_t methods[] = {2, 0, 1, 3, 13};
  for (std::int32_t i = 0; i < 5; ++i) {
    open(kWidth, kHeight);
    show([this, i](Dialog& dialog) {
      dialog.method().ListIndex(i);
      dialog.enter("20", "10");
      log().clear();
      dialog.ok();
      EXPECT_FALSE(dialog.form().Visible());
    });
    const std::string resize = "view.Effects.Resize(20, 10, " + ToText(methods[i]) + ", \"\")";
    if (i == 0) {
      EXPECT_THAT(engineCalls(), ElementsAre(resize)) << "no conversion for Pixel";
    } else {
      EXPECT_THAT(engineCalls(), ElementsAre("view.Image.Convert(Nothing, 5)", resize));
    }
    EXPECT_TRUE(same(shown(), engine::resize(gradient(kWidth, kHeight), 20, 10,
                                             static_cast<engine::ResampleMethod>(methods[i]))));
    expectOptions(20, 10, kPixels, i, false);
  }
  EXPECT_EQ(undoCaption(), "&Undo");
}

TEST_P(EditingResizeDialog, APercentageIsOfThePictureAndIsStoredAsEntered) {
  show([](Dialog& dialog) {
    dialog.scale().ListIndex(kPercent);
    dialog.enter("50", "200");
    dialog.ok();
  });
  EXPECT_EQ(shown().width(), 20);
  EXPECT_EQ(shown().height(), 60);
  expectOptions(50, 200, kPercent, 2, false);
}

TEST_P(EditingResizeDialog, HalfOfThreePixelsIsTwoTiesToEven) {
  open(3, 3);
  show([](Dialog& dialog) {
    dialog.scale().ListIndex(kPercent);
    dialog.enter("50", "50");
    dialog.ok();
  });
  EXPECT_EQ(shown().width(), 2);
  EXPECT_EQ(shown().height(), 2);
}

TEST_P(EditingResizeDialog, APercentageThatGivesLessThanOnePixelIsRefusedAfterTheConversion) {
  open(3, 3);
  EXPECT_EQ(refusalOf([this](Dialog& dialog) {
              dialog.scale().ListIndex(kPercent);
              dialog.enter("10", "50");
              log().clear();
            }),
            kTooSmall);
  EXPECT_THAT(engineCalls(), ElementsAre("view.Image.Convert(Nothing, 5)"));
  EXPECT_EQ(shown().width(), 3);
  expectOptions(kWidth, kHeight, kPixels, 2, true);
}

TEST_P(EditingResizeDialog, RefusesASizeBelowOne) {
  for (const auto& size : {std::pair{"0", "30"},
                           {"40", "0"},
                           {"", "30"},
                           {"40", ""},
                           {"abc", "30"},
                           {"-5", "30"},
                           {"40", "-5"},
                           {"0.9", "30"},
                           {"1e-9", "30"}}) {
    EXPECT_EQ(refusalOf([&](Dialog& dialog) { dialog.enter(size.first, size.second); }), kTooSmall)
        << size.first << "x" << size.second;
  }
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
  EXPECT_FALSE(editor().Changed());
}

TEST_P(EditingResizeDialog, TakesTheLeadingNumberOfATextRounded) {
  show([](Dialog& dialog) {
    dialog.enter("10.5px", "3.5 and more");
    dialog.ok();
  });
  EXPECT_EQ(shown().width(), 10) << "ties to even";
  EXPECT_EQ(shown().height(), 4);
  expectOptions(10, 4, kPixels, 2, false);
}

TEST_P(EditingResizeDialog, ASizeBeyond32BitsIsRefusedInABox) {
  EXPECT_EQ(refusalOf([](Dialog& dialog) { dialog.enter("99999999999", "30"); }), "The number is too large.");
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
}

TEST_P(EditingResizeDialog, ASizeBeyondTheEnginesLimitsIsRefusedWithItsSentence) {
  EXPECT_THAT(refusalOf([](Dialog& dialog) { dialog.enter("1e9", "1e9"); }),
              HasSubstr("1000000000 x 1000000000 pixels"));
  expectOptions(kWidth, kHeight, kPixels, 2, true);
}

TEST_P(EditingResizeDialog, ASizeThatTheMemoryCannotHoldIsRefusedBeforeItIsAskedFor) {
  // The largest picture, 2 gigapixels, has 8 GB; where those are no more than a quarter of the memory, the
  // limit itself refuses the next size.
  const bool isMuch = engine::machineMemory() / 4 >= std::size_t{8'000'000'000};
  const std::string text =
      refusalOf([&](Dialog& dialog) { dialog.enter(isMuch ? "50001" : "50000", "40000"); });
  EXPECT_THAT(text, HasSubstr(isMuch ? "50001 x 40000 pixels" : "50000 x 40000 pixels needs"));
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
}

TEST_P(EditingResizeDialog, AfterARefusalTheUserCanCorrectTheSize) {
  user().uses("frmResize", [this](Form& form) {
    Dialog dialog(form);
    dialog.enter("0", "0");
    user().answers(kAnswerOK);
    dialog.ok();
    dialog.enter("8", "6");
    dialog.ok();
  });
  EXPECT_TRUE(editor().ShowResizeDialog());
  EXPECT_EQ(shown().width(), 8);
  expectOptions(8, 6, kPixels, 2, false);
}

TEST_P(EditingResizeDialog, ShowsTheHourglassDuringOKAndCancel) {
  show([this](Dialog& dialog) {
    platform().FormUtility().forgetPointers();
    dialog.enter("0", "0");
    user().answers(kAnswerOK);
    dialog.ok();
    EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(11, 0));
    dialog.enter("8", "6");
    dialog.ok();
    EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(11, 0, 11, 0));
  });
  show([this](Dialog& dialog) {
    platform().FormUtility().forgetPointers();
    dialog.cancel();
    EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(11, 0));
  });
}

TEST_P(EditingResizeDialog, IgnoresTheSelection) {
  editor().SetSelection(5, 6, 10, 8);
  show([](Dialog& dialog) {
    dialog.enter("20", "15");
    dialog.ok();
  });
  EXPECT_EQ(shown().width(), 20);
}

TEST_P(EditingResizeDialog, IsUndoneInOneStep) {
  show([](Dialog& dialog) {
    dialog.enter("20", "15");
    dialog.ok();
  });
  EXPECT_TRUE(editor().Changed());
  click("btnEditUndo");
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
}

// -- The answer -------------------------------------------------------------------------------------------

TEST_P(EditingResizeDialog, CancelAndTheCloseBoxChangeNothing) {
  for (const bool byCloseBox : {false, true}) {
    user().uses("frmResize", [&](Form& form) {
      Dialog dialog(form);
      dialog.enter("8", "6");
      dialog.scale().ListIndex(kPercent);
      dialog.method().ListIndex(0);
      log().clear();
      byCloseBox ? dynamic_cast<headless::Form&>(form).pressCloseBox() : dialog.cancel();
    });
    EXPECT_FALSE(editor().ShowResizeDialog());
    EXPECT_THAT(engineCalls(), IsEmpty());
    expectOptions(kWidth, kHeight, kPixels, 2, true);
    EXPECT_FALSE(editor().Changed());
  }
}

TEST_P(EditingResizeDialog, KeepsItsFieldsReadableAfterHiding) {
  frmResize dialog(editor());
  EXPECT_EQ(&dialog.Source, &editor());
  EXPECT_FALSE(dialog.Success);
  user().uses("frmResize", [](Form& form) { Dialog(form).ok(); });
  EXPECT_TRUE(dialog.ShowModal());
  EXPECT_TRUE(dialog.Success);
  EXPECT_FALSE(dialog.SafeToUnload);
  EXPECT_EQ(dialog.ResultData, "") << "not used";
}

TEST_P(EditingResizeDialog, ReopensWithTheEnteredPercentage) {
  show([](Dialog& dialog) {
    dialog.scale().ListIndex(kPercent);
    dialog.width().Text("200");
    dialog.ok();
  });
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.data(0), "80 Pixels");
    EXPECT_EQ(dialog.size(), "200x200");
    EXPECT_EQ(dialog.scale().ListIndex(), kPercent);
    EXPECT_EQ(dialog.aspect().Value(), 1);
    dialog.cancel();
  });
}

TEST_P(EditingResizeDialog, WithoutAPictureReportsThatAndChangesNothing) {
  set(kWidth, kHeight, kPixels, 2, false);
  editor().Picture(nullptr);
  user().answers(kAnswerOK);
  user().uses("frmResize", [this](Form& form) {
    Dialog dialog(form);
    EXPECT_EQ(dialog.size(), "40x30");
    EXPECT_EQ(dialog.data(0), "") << "there is no original size";
    user().answers(kAnswerOK);
    dialog.ok();
    EXPECT_TRUE(form.Visible());
    dialog.cancel();
  });
  EXPECT_FALSE(editor().ShowResizeDialog());
  ASSERT_EQ(user().boxes().size(), 2u);
  EXPECT_THAT(user().boxes()[0].text, HasSubstr("Module: frmResize\r\nProcedure: Form_Load\r\n"));
  EXPECT_THAT(user().boxes()[1].text, HasSubstr("Module: frmResize\r\nProcedure: cmdAction_Click\r\n"));
  expectOptions(kWidth, kHeight, kPixels, 2, false);
}

KESTREL_WITH_BOTH_PATHS(EditingResizeDialog);

}  // namespace
}  // namespace kestrel
