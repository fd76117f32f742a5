#include "EditingTest.h"
#include "ShadowDialog.h"
#include "SkinOrder.h"
#include "dialogs/frmDropShadow.h"
#include "engine/effects/DropShadow.h"
#include "engine/effects/ReplaceColor.h"
#include "imaging/contract/controls/Frame.h"
#include "imaging/contract/controls/Label.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr engine::Pixel kTransparentBlack{0, 0, 0, 0};
constexpr double kMaskTolerance = 1.0;

engine::Pixel opaque(OLE_COLOR color) {
  const Colour colour(color);
  return {colour.Red(), colour.Green(), colour.Blue(), 255};
}

class EditingShadowDialog : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    // A small shadow, so that previews are quick to compare.
    set(3, 2, 32, 200, 0x00204060);
    options().DropShadowAutomaticMask(true);
    options().DropShadowMaskColor(0x00445566);
  }
  void set(std::int32_t horizontal, std::int32_t vertical, std::int32_t blur, std::int32_t opacity,
           OLE_COLOR color) {
    options().DropShadowHorizontalOffset(horizontal);
    options().DropShadowVerticalOffset(vertical);
    options().DropShadowBlur(blur);
    options().DropShadowOpacity(opacity);
    options().DropShadowColor(color);
  }
  void plan(std::function<void(ShadowDialog&)> doing) {
    user().uses("frmDropShadow", [doing = std::move(doing)](Form& form) {
      ShadowDialog dialog(form);
      doing(dialog);
    });
  }
  bool showPlain(std::function<void(ShadowDialog&)> doing) {
    plan(std::move(doing));
    return editor().ShowDropShadowDialog();
  }
  bool showContoured(std::function<void(ShadowDialog&)> doing) {
    plan(std::move(doing));
    return editor().ShowMaskedDropShadowDialog();
  }
  static engine::Bitmap shadowed(const engine::Bitmap& picture, std::int32_t x, std::int32_t y, double blur,
                                 std::uint8_t opacity, OLE_COLOR color) {
    engine::Pixel tint = opaque(color);
    tint.a = opacity;
    return engine::dropShadow(picture, x, y, tint, blur);
  }
  static engine::Bitmap masked(const engine::Bitmap& picture, engine::Pixel mask) {
    mask.a = 255;
    return engine::replaceColor(picture, mask, kTransparentBlack, kMaskTolerance);
  }
  /// A green square on a ground of nearly the same reds, which only a tolerance of one level unites.
  static engine::Bitmap subjectOnGround() {
    engine::Bitmap bitmap = engine::Bitmap::filled(20, 16, {200, 10, 10, 255});
    const engine::Pixels pixels = bitmap.writable();
    for (std::int32_t y = 0; y < 16; ++y) {
      for (std::int32_t x = 0; x < 20; ++x) {
        auto& pixel = reinterpret_cast<engine::Pixel*>(pixels.row(y))[x];
        if (x % 3 == 1) pixel.r = 201;
        if (x % 5 == 2 && y == 0) pixel.r = 202;
        if (x >= 6 && x < 14 && y >= 4 && y < 12) pixel = {10, 200, 10, 255};
      }
    }
    return bitmap;
  }
  void expectOneReport(const char* procedure, const char* number) {
    ASSERT_EQ(user().boxes().size(), 1u);
    EXPECT_EQ(user().boxes()[0].title, "Application Error");
    EXPECT_THAT(user().boxes()[0].text, HasSubstr("Module: frmDropShadow\r\n"));
    EXPECT_THAT(user().boxes()[0].text, HasSubstr(std::string("Procedure: ") + procedure + "\r\n"));
    EXPECT_THAT(user().boxes()[0].text, HasSubstr(number));
  }
};

// -- Loading ----------------------------------------------------------------------------------------------

TEST_P(EditingShadowDialog, HasTheCaptionsOfItsControls) {
  showContoured([](ShadowDialog& dialog) {
    const char* const labels[] = {"&Horizontal:", "&Vertical:", "&Blur:", "&Color:", "&Opacity:", "&Mask:"};
    for (std::int32_t i = 0; i < 6; ++i)
      EXPECT_EQ(Bind<Label>(dialog.form(), "lblHdr", i).Caption(), labels[i]);
    EXPECT_EQ(Bind<Frame>(dialog.form(), "fraOptions", 0).Caption(), "Attributes");
    EXPECT_EQ(Bind<Frame>(dialog.form(), "fraOptions", 1).Caption(), "Offset");
    EXPECT_EQ(Bind<Frame>(dialog.form(), "fraPreview").Caption(), "Preview");
    EXPECT_EQ(dialog.useOriginal().Caption(), "Use &Original Image");
    EXPECT_EQ(Bind<CommandButton>(dialog.form(), "cmdAction", 0).Caption(), "OK");
    EXPECT_EQ(Bind<CommandButton>(dialog.form(), "cmdAction", 1).Caption(), "Cancel");
    EXPECT_EQ(dialog.form().UBound("txtField"), 3);
    EXPECT_FALSE(dialog.shadow().EnhancedVisible());
    EXPECT_TRUE(dialog.mask().EnhancedVisible());
    EXPECT_EQ(dialog.mask().EnhancedCaption(), "Automatic");
    dialog.cancel();
  });
}

TEST_P(EditingShadowDialog, LoadsWithoutAnIconWithDigitBoxesAndTheSkinLast) {
  showPlain([this](ShadowDialog& dialog) {
    EXPECT_FALSE(dynamic_cast<headless::Form&>(dialog.form()).hasIcon());
    for (std::int32_t i = 0; i < 4; ++i) {
      EXPECT_EQ(platform().WindowFunctions().styles(dialog.field(i).hWnd()), 8192) << i;
    }
    EXPECT_EQ(platform().FormSkin().applied().back().name, "frmDropShadow");
    dialog.cancel();
  });
}

TEST_P(EditingShadowDialog, WritesItsBoxesBeforeItAppliesTheSkin) {
  frmDropShadow dialog;
  expectWrittenBeforeSkin(platform(), dialog, 4);
}

TEST_P(EditingShadowDialog, InPlainModeHidesTheMaskAndLoadsItsValuesAllTheSame) {
  options().DropShadowAutomaticMask(false);
  showPlain([](ShadowDialog& dialog) {
    EXPECT_EQ(dialog.form().Caption(), "Drop Shadow");
    EXPECT_FALSE(dialog.mask().Visible());
    EXPECT_FALSE(Bind<Label>(dialog.form(), "lblHdr", 5).Visible());
    EXPECT_TRUE(Bind<Label>(dialog.form(), "lblHdr", 3).Visible());
    EXPECT_EQ(dialog.mask().Value(), 0x00445566);
    EXPECT_FALSE(dialog.mask().EnhancedIsSelected());
    dialog.cancel();
  });
}

TEST_P(EditingShadowDialog, InContouredModeShowsTheMaskUnderAnotherCaption) {
  showContoured([](ShadowDialog& dialog) {
    EXPECT_EQ(dialog.form().Caption(), "Contoured Drop Shadow");
    EXPECT_TRUE(dialog.mask().Visible());
    EXPECT_TRUE(Bind<Label>(dialog.form(), "lblHdr", 5).Visible());
    EXPECT_EQ(dialog.mask().Value(), 0x00445566) << "kept under the extra button";
    EXPECT_TRUE(dialog.mask().EnhancedIsSelected());
    dialog.cancel();
  });
}

TEST_P(EditingShadowDialog, OpensOnTheOptions) {
  set(-7, 123, 64, 300, 0x00FEDCBA);
  user().answers(kAnswerOK);  // the opacity 300 fails in the first preview
  showPlain([](ShadowDialog& dialog) {
    EXPECT_EQ(dialog.horizontal().Text(), "-7");
    EXPECT_EQ(dialog.vertical().Text(), "123");
    EXPECT_EQ(dialog.blur().Text(), "64");
    EXPECT_EQ(dialog.opacity().Text(), "300");
    EXPECT_EQ(dialog.shadow().Value(), 0x00FEDCBA);
    dialog.cancel();
  });
}

TEST_P(EditingShadowDialog, SelectsTheWholeTextOfEachBoxOnFocus) {
  showPlain([this](ShadowDialog& dialog) {
    for (std::int32_t i = 0; i < 4; ++i) {
      const std::string text = dialog.field(i).Text();
      platform().FormUtility().SetFocusTo(dialog.field(i));
      EXPECT_EQ(dialog.field(i).SelectedText(), text) << i;
    }
    dialog.cancel();
  });
}

// -- Preview ----------------------------------------------------------------------------------------------

TEST_P(EditingShadowDialog, ComputesTheFirstPreviewOnceTheWindowIsShown) {
  platform().Screen().MousePointer(kBusyHourglass);
  showPlain([this](ShadowDialog& dialog) {
    EXPECT_TRUE(same(dialog.after(), shadowed(dialog.before(), 3, 2, 32, 200, 0x00204060)));
    EXPECT_EQ(platform().Screen().MousePointer(), kBusyDefault);
    EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(13, 0)) << "once, not during the load";
    dialog.cancel();
  });
}

TEST_P(EditingShadowDialog, FollowsEachChangeOfASettingOnce) {
  editor().SetSelection(5, 6, 20, 12);
  showPlain([this](ShadowDialog& dialog) {
    const auto expect = [&](std::int32_t x, std::int32_t y, double blur, std::uint8_t opacity,
                            OLE_COLOR color) {
      EXPECT_TRUE(same(dialog.after(), shadowed(dialog.before(), x, y, blur, opacity, color)));
      EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(13, 0));
      platform().FormUtility().forgetPointers();
    };
    platform().FormUtility().forgetPointers();
    dialog.horizontal().Text("11");
    expect(11, 2, 32, 200, 0x00204060);
    dialog.vertical().Text("-4");
    expect(11, -4, 32, 200, 0x00204060);
    dialog.blur().Text("0");
    expect(11, -4, 0, 200, 0x00204060);
    dialog.opacity().Text("255");
    expect(11, -4, 0, 255, 0x00204060);
    dialog.shadow().pick(0x000000FF);
    expect(11, -4, 0, 255, 0x000000FF);
    dialog.cancel();
  });
}

TEST_P(EditingShadowDialog, TakesTheLeadingNumberOfATextAndAnEmptyBoxAs0) {
  editor().SetSelection(5, 6, 20, 12);
  showPlain([](ShadowDialog& dialog) {
    dialog.horizontal().Text("");
    EXPECT_TRUE(same(dialog.after(), shadowed(dialog.before(), 0, 2, 32, 200, 0x00204060)));
    dialog.vertical().Text("abc");
    EXPECT_TRUE(same(dialog.after(), shadowed(dialog.before(), 0, 0, 32, 200, 0x00204060)));
    dialog.blur().Text("12.75px");
    EXPECT_TRUE(same(dialog.after(), shadowed(dialog.before(), 0, 0, 12.75, 200, 0x00204060)))
        << "the blur is not rounded";
    dialog.opacity().Text("");
    EXPECT_TRUE(same(dialog.after(), shadowed(dialog.before(), 0, 0, 12.75, 0, 0x00204060)));
    dialog.cancel();
  });
}

TEST_P(EditingShadowDialog, RoundsOffsetsAndOpacityToTheNearestTiesToEven) {
  editor().SetSelection(5, 6, 20, 12);
  showPlain([](ShadowDialog& dialog) {
    dialog.horizontal().Text("2.5");
    dialog.vertical().Text("3.5");
    dialog.opacity().Text("254.5");
    EXPECT_TRUE(same(dialog.after(), shadowed(dialog.before(), 2, 4, 32, 254, 0x00204060)));
    dialog.cancel();
  });
}

TEST_P(EditingShadowDialog, AnOpacityOf0StillRunsTheEffect) {
  editor().SetSelection(5, 6, 20, 12);
  showPlain([](ShadowDialog& dialog) {
    dialog.opacity().Text("0");
    EXPECT_GT(dialog.after().width(), dialog.before().width());
    EXPECT_TRUE(same(dialog.after(), shadowed(dialog.before(), 3, 2, 32, 0, 0x00204060)));
    dialog.cancel();
  });
}

TEST_P(EditingShadowDialog, AnOpacityAbove255LeavesTheHourglassUntilTheNextChange) {
  editor().SetSelection(5, 6, 20, 12);
  showPlain([this](ShadowDialog& dialog) {
    for (const char* const text : {"256", "1e9", "-5"}) {
      user().answers(kAnswerOK);
      platform().FormUtility().forgetPointers();
      dialog.opacity().Text(text);
      EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(13)) << text;
      EXPECT_TRUE(same(dialog.after(), dialog.before())) << "reset, without a shadow";
      platform().FormUtility().forgetPointers();
      dialog.opacity().Text("25");
      EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(13, 0));
      EXPECT_TRUE(same(dialog.after(), shadowed(dialog.before(), 3, 2, 32, 25, 0x00204060)));
    }
    dialog.cancel();
  });
  ASSERT_EQ(user().boxes().size(), 3u);
  EXPECT_THAT(user().boxes()[0].text, HasSubstr("Procedure: UpdatePreview\r\n"));
  EXPECT_THAT(user().boxes()[0].text, HasSubstr("(6)"));
}

TEST_P(EditingShadowDialog, BadNumbersAreReportedAndTheDialogGoesOn) {
  editor().SetSelection(5, 6, 20, 12);
  const std::pair<std::int32_t, const char*> bad[] = {
      {0, "99999999999"}, {1, "-99999999999"}, {2, "-5"}, {0, "1e9"}, {1, "1e999"}};
  for (const auto& [field, text] : bad) {
    showPlain([&, field = field, text = text](ShadowDialog& dialog) {
      user().answers(kAnswerOK);
      dialog.field(field).Text(text);
      EXPECT_TRUE(dialog.form().Visible()) << text;
      EXPECT_TRUE(same(dialog.after(), dialog.before())) << text;
      dialog.field(field).Text("1");
      EXPECT_FALSE(same(dialog.after(), dialog.before())) << "the next change works again";
      dialog.cancel();
    });
  }
  EXPECT_EQ(user().boxes().size(), std::size(bad));
}

TEST_P(EditingShadowDialog, ContouredMakesTheCornerPixelsColorTransparentFirst) {
  show(subjectOnGround());
  showContoured([](ShadowDialog& dialog) {
    dialog.useOriginal().Value(1);
    const engine::Bitmap outline = masked(dialog.before(), dialog.before().at(0, 0));
    EXPECT_EQ(outline.at(1, 0).a, 0) << "one level away";
    EXPECT_EQ(outline.at(2, 0).a, 255) << "two levels away";
    EXPECT_TRUE(same(dialog.after(), shadowed(outline, 3, 2, 32, 200, 0x00204060)));
    dialog.cancel();
  });
}

TEST_P(EditingShadowDialog, ContouredAutomaticTakesTheSubjectsColorIfItIsInTheCorner) {
  engine::Bitmap picture = subjectOnGround();
  reinterpret_cast<engine::Pixel*>(picture.writable().row(0))[0] = {10, 200, 10, 255};
  show(std::move(picture));
  showContoured([](ShadowDialog& dialog) {
    dialog.useOriginal().Value(1);
    const engine::Bitmap outline = masked(dialog.before(), {10, 200, 10, 255});
    EXPECT_EQ(outline.at(8, 8).a, 0);
    EXPECT_TRUE(same(dialog.after(), shadowed(outline, 3, 2, 32, 200, 0x00204060)));
    dialog.cancel();
  });
}

TEST_P(EditingShadowDialog, ContouredFollowsTheChosenMaskAndTheExtraButton) {
  show(subjectOnGround());
  showContoured([](ShadowDialog& dialog) {
    dialog.useOriginal().Value(1);
    dialog.mask().pick(0x000AC80A);
    EXPECT_TRUE(same(dialog.after(),
                     shadowed(masked(dialog.before(), {10, 200, 10, 255}), 3, 2, 32, 200, 0x00204060)));
    dialog.mask().pressEnhanced();
    EXPECT_TRUE(same(dialog.after(),
                     shadowed(masked(dialog.before(), {200, 10, 10, 255}), 3, 2, 32, 200, 0x00204060)));
    dialog.cancel();
  });
}

TEST_P(EditingShadowDialog, ContouredMasksBeforeItReadsTheNumbers) {
  show(subjectOnGround());
  showContoured([this](ShadowDialog& dialog) {
    dialog.useOriginal().Value(1);
    user().answers(kAnswerOK);
    dialog.opacity().Text("256");
    EXPECT_TRUE(same(dialog.after(), masked(dialog.before(), {200, 10, 10, 255})));
    dialog.cancel();
  });
  expectOneReport("UpdatePreview", "(6)");
}

TEST_P(EditingShadowDialog, PlainNeverMasks) {
  show(subjectOnGround());
  showPlain([](ShadowDialog& dialog) {
    dialog.useOriginal().Value(1);
    EXPECT_TRUE(same(dialog.after(), shadowed(dialog.before(), 3, 2, 32, 200, 0x00204060)));
    dialog.cancel();
  });
}

TEST_P(EditingShadowDialog, WithASelectionOpensOnTheSectionWithTheBoxTicked) {
  editor().SetSelection(5, 6, 10, 8);
  showPlain([](ShadowDialog& dialog) {
    EXPECT_EQ(dialog.useOriginal().Value(), 1);
    EXPECT_EQ(dialog.before().width(), 10);
    EXPECT_EQ(dialog.before().at(0, 0), pixelOf(5, 6));
    dialog.useOriginal().Value(0);
    EXPECT_EQ(dialog.before().width(), 360) << "the stock picture";
    EXPECT_TRUE(same(dialog.after(), shadowed(dialog.before(), 3, 2, 32, 200, 0x00204060)));
    dialog.cancel();
  });
}

// -- The answer -------------------------------------------------------------------------------------------

TEST_P(EditingShadowDialog, OKStoresTheSettingsAndTheEditorAppliesThem) {
  EXPECT_TRUE(showPlain([this](ShadowDialog& dialog) {
    dialog.horizontal().Text("4");
    dialog.vertical().Text("6");
    dialog.blur().Text("16");
    dialog.opacity().Text("90");
    dialog.shadow().pick(0x00112233);
    log().clear();
    dialog.ok();
  }));
  EXPECT_THAT(engineCalls(), ElementsAre("view.Effects.DropShadow(4, 6, #1122867/90, 16, True, \"\")"));
  EXPECT_TRUE(same(shown(), shadowed(gradient(kWidth, kHeight), 4, 6, 16, 90, 0x00112233)));
  EXPECT_EQ(options().DropShadowHorizontalOffset(), 4);
  EXPECT_EQ(options().DropShadowVerticalOffset(), 6);
  EXPECT_EQ(options().DropShadowBlur(), 16);
  EXPECT_EQ(options().DropShadowOpacity(), 90);
  EXPECT_EQ(options().DropShadowColor(), 0x00112233);
}

TEST_P(EditingShadowDialog, OKRoundsEachNumberAndTakesEmptyAs0) {
  showPlain([](ShadowDialog& dialog) {
    dialog.horizontal().Text("");
    dialog.vertical().Text("7.5");
    dialog.blur().Text("16.5");
    dialog.opacity().Text("12abc");
    dialog.ok();
  });
  EXPECT_EQ(options().DropShadowHorizontalOffset(), 0);
  EXPECT_EQ(options().DropShadowVerticalOffset(), 8);
  EXPECT_EQ(options().DropShadowBlur(), 16);
  EXPECT_EQ(options().DropShadowOpacity(), 12);
}

TEST_P(EditingShadowDialog, OKInPlainModeLeavesTheMask) {
  showPlain([](ShadowDialog& dialog) {
    dialog.mask().Value(0x00010203);
    dialog.ok();
  });
  EXPECT_EQ(options().DropShadowMaskColor(), 0x00445566);
  EXPECT_TRUE(options().DropShadowAutomaticMask());
}

TEST_P(EditingShadowDialog, OKInContouredModeStoresTheMaskColorAndSwitchesAutomaticOff) {
  show(subjectOnGround());
  EXPECT_TRUE(showContoured([this](ShadowDialog& dialog) {
    dialog.mask().pick(0x000AC80A);
    log().clear();
    dialog.ok();
  }));
  EXPECT_EQ(options().DropShadowMaskColor(), 0x000AC80A);
  EXPECT_FALSE(options().DropShadowAutomaticMask());
  EXPECT_THAT(engineCalls(),
              ElementsAre("CreateUndoPoint(\"Contoured Drop Shadow\")",
                          "view.Effects.ReplaceColor(#706570/255, #0/0, 1, 0, \"No Undo\")",
                          "view.Effects.DropShadow(3, 2, #2113632/200, 32, True, \"No Undo\")"));
}

TEST_P(EditingShadowDialog, OKInContouredModeWithAutomaticKeepsTheStoredColor) {
  show(subjectOnGround());
  options().DropShadowAutomaticMask(false);
  EXPECT_TRUE(showContoured([this](ShadowDialog& dialog) {
    dialog.mask().pick(0x00777777);
    dialog.mask().pressEnhanced();
    log().clear();
    dialog.ok();
  }));
  EXPECT_EQ(options().DropShadowMaskColor(), 0x00445566) << "not the color under the extra button";
  EXPECT_TRUE(options().DropShadowAutomaticMask());
  EXPECT_TRUE(
      same(shown(), shadowed(masked(subjectOnGround(), {200, 10, 10, 255}), 3, 2, 32, 200, 0x00204060)));
}

TEST_P(EditingShadowDialog, CancelAndTheCloseBoxLeaveOptionsAndPicture) {
  for (const bool byCloseBox : {false, true}) {
    EXPECT_FALSE(showContoured([&](ShadowDialog& dialog) {
      dialog.horizontal().Text("30");
      dialog.shadow().pick(0x00FFFFFF);
      dialog.mask().pick(0x00FFFFFF);
      byCloseBox ? dialog.pressCloseBox() : dialog.cancel();
    }));
  }
  EXPECT_EQ(options().DropShadowHorizontalOffset(), 3);
  EXPECT_EQ(options().DropShadowColor(), 0x00204060);
  EXPECT_EQ(options().DropShadowMaskColor(), 0x00445566);
  EXPECT_TRUE(options().DropShadowAutomaticMask());
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
  EXPECT_FALSE(editor().Changed());
}

TEST_P(EditingShadowDialog, ReportsSuccessAloneAndKeepsResultDataEmpty) {
  for (const bool contoured : {false, true}) {
    frmDropShadow dialog;
    dialog.AllowMaskSelection = contoured;
    EXPECT_FALSE(dialog.Success);
    EXPECT_FALSE(dialog.SafeToUnload);
    plan([](ShadowDialog& user) { user.ok(); });
    EXPECT_TRUE(dialog.ShowModal());
    EXPECT_TRUE(dialog.Success);
    EXPECT_EQ(dialog.ResultData, "");
  }
}

TEST_P(EditingShadowDialog, StoresWhatComesBeforeANumberBeyond32BitsAndStaysOpen) {
  showPlain([this](ShadowDialog& dialog) {
    dialog.blur().Text("17");
    user().answers(kAnswerOK);
    dialog.horizontal().Text("99999999999");
    user().answers(kAnswerOK);
    dialog.ok();
    EXPECT_TRUE(dialog.form().Visible());
    dialog.cancel();
  });
  EXPECT_EQ(options().DropShadowBlur(), 17);
  EXPECT_EQ(options().DropShadowHorizontalOffset(), 3);
  ASSERT_EQ(user().boxes().size(), 2u);
  EXPECT_THAT(user().boxes()[1].text, HasSubstr("Procedure: cmdAction_Click\r\n"));
}

TEST_P(EditingShadowDialog, ABlurBeyond32BitsIsShownAsTheStrongestAndStoresNothing) {
  editor().SetSelection(5, 6, 20, 12);
  EXPECT_FALSE(showPlain([this](ShadowDialog& dialog) {
    dialog.blur().Text("99999999999");
    EXPECT_TRUE(same(dialog.after(), shadowed(dialog.before(), 3, 2, 255, 200, 0x00204060)));
    dialog.horizontal().Text("4");
    user().answers(kAnswerOK);
    dialog.ok();
    EXPECT_TRUE(dialog.form().Visible());
    dialog.cancel();
  }));
  expectOneReport("cmdAction_Click", "(6)");
  EXPECT_EQ(options().DropShadowBlur(), 32);
  EXPECT_EQ(options().DropShadowHorizontalOffset(), 3) << "to be stored after the blur";
}

// -- The commands -----------------------------------------------------------------------------------------

TEST_P(EditingShadowDialog, TheCommandsOpenItsTwoModes) {
  plan([](ShadowDialog& dialog) {
    EXPECT_EQ(dialog.form().Caption(), "Drop Shadow");
    dialog.ok();
  });
  click("btnImageDropShadow");
  EXPECT_TRUE(editor().Changed());
  plan([](ShadowDialog& dialog) {
    EXPECT_EQ(dialog.form().Caption(), "Contoured Drop Shadow");
    dialog.cancel();
  });
  click("btnImageShapedDropShadow");
}

TEST_P(EditingShadowDialog, TheCommandReportsAShadowThatIsRefused) {
  plan([this](ShadowDialog& dialog) {
    user().answers(kAnswerOK);
    dialog.opacity().Text("256");
    user().answers(kAnswerOK);
    dialog.ok();
  });
  click("btnImageDropShadow");
  EXPECT_EQ(options().DropShadowOpacity(), 256) << "stored as entered";
  ASSERT_EQ(user().boxes().size(), 2u);
  EXPECT_THAT(user().boxes()[1].text, HasSubstr("Procedure: mrgUI_CommandClick\r\n"));
  EXPECT_THAT(user().boxes()[1].text, HasSubstr("(6)"));
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
}

TEST_P(EditingShadowDialog, WorksOnTheSelectionIfThereIsOne) {
  editor().SetSelection(5, 6, 10, 8);
  plan([this](ShadowDialog& dialog) {
    log().clear();
    dialog.ok();
  });
  click("btnImageDropShadow");
  EXPECT_THAT(calls(), testing::Contains(HasSubstr("scratch.Effects.DropShadow(3, 2, ")));
  EXPECT_FALSE(view().SelectionVisible());
  EXPECT_EQ(shown().width(), kWidth);
}

KESTREL_WITH_BOTH_PATHS(EditingShadowDialog);

}  // namespace
}  // namespace kestrel
