#include "EditingTest.h"
#include "ShadowDialog.h"
#include "dialogs/frmGetThumnail.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/ColorPicker.h"
#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/FormHeader.h"
#include "imaging/contract/controls/Frame.h"
#include "imaging/contract/controls/Label.h"
#include "imaging/contract/controls/OptionButton.h"
#include "imaging/contract/controls/TextBox.h"

namespace kestrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// The controls of the thumbnail dialog.
class Dialog {
 public:
  explicit Dialog(Form& form) : form_(form) {}

  Form& form() { return form_; }
  FormHeader& header() { return Bind<FormHeader>(form_, "FormHeader"); }
  OptionButton& type(std::int32_t index) { return Bind<OptionButton>(form_, "optSizeType", index); }
  TextBox& size(std::int32_t index) { return Bind<TextBox>(form_, "txtField", index); }
  CheckBox& shadow() { return Bind<CheckBox>(form_, "chkAddDropShadow"); }
  CommandButton& shadowOptions() { return Bind<CommandButton>(form_, "cmdOptions"); }
  Label& label(std::int32_t index) { return Bind<Label>(form_, "lblHdr", index); }
  ColorPicker& background() { return Bind<ColorPicker>(form_, "cpkColor", 0); }
  CheckBox& saveAsDefault() { return Bind<CheckBox>(form_, "chkSaveAsDefault"); }
  CheckBox& useOriginal() { return Bind<CheckBox>(form_, "chkUseOriginalImage"); }
  Control& preview() { return Bind<Control>(form_, "Preview"); }
  Frame& frame(const char* name) { return Bind<Frame>(form_, name); }
  void ok() { header().PressOK(); }
  void cancel() { header().PressCancel(); }
  headless::ImageView& pane(const char* name) {
    return Bind<headless::ImageView>(Bind<Site>(form_, "Preview"), name);
  }
  engine::Bitmap before() { return engine::bitmapOf(*pane("igxOriginal").Image()); }
  engine::Bitmap after() { return engine::bitmapOf(*pane("igxPreview").Image()); }

 private:
  Form& form_;
};

Rectangle placeOf(const Control& control) {
  return {control.Left(), control.Top(), control.Width(), control.Height()};
}

class EditingThumbnailDialog : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    open(200, 100);
    options().ThumbnailBackgroundColor(0x00FF00);
    options().ThumbnailAddDropShadow(false);
  }
  void plan(std::function<void(Dialog&)> doing) {
    user().uses("frmGetThumnail", [doing = std::move(doing)](Form& form) {
      Dialog dialog(form);
      doing(dialog);
    });
  }
  PicturePtr show(std::function<void(Dialog&)> doing) {
    plan(std::move(doing));
    return editor().ShowGetThumnailDialog();
  }
  /// The thumbnail that the editor makes without a dialog.
  engine::Bitmap thumbnail(ThumbnailSizeTypeEnum type, std::int32_t size, OLE_COLOR background, bool shadow) {
    return engine::bitmapOf(*editor().GetThumbnailEx(type, size, background, shadow));
  }
  void setShadow() {
    options().DropShadowHorizontalOffset(3);
    options().DropShadowVerticalOffset(2);
    options().DropShadowColor(0x0000FF);
    options().DropShadowOpacity(200);
    options().DropShadowBlur(8);
  }
  /// The stored place of the dialog, by a window of another name that loads it.
  std::optional<Rectangle> storedPlace() {
    const auto probe = platform().CreateForm("frmExport");
    probe->Move(1, 2, 3, 4);
    platform().WindowPositions().LoadPosition(*probe, "GetThumbnail");
    if (probe->Width() == 3) return std::nullopt;
    return placeOf(*probe);
  }
  void expectUntouched() {
    EXPECT_TRUE(same(shown(), gradient(200, 100)));
    EXPECT_FALSE(editor().Changed());
    EXPECT_EQ(view().UndoName(), "");
    EXPECT_FALSE(view().Modified());
  }
};

TEST_P(EditingThumbnailDialog, HasTheCaptionsOfItsControls) {
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.form().Caption(), "Create Thumbnail");
    EXPECT_EQ(dialog.header().Title(), "Create Thumbnail");
    EXPECT_EQ(dialog.frame("fraGeneral").Caption(), "Thumbnail Size");
    EXPECT_EQ(dialog.type(0).Caption(), "&Percentage of original:");
    EXPECT_EQ(dialog.label(4).Caption(), "%");
    EXPECT_EQ(dialog.type(1).Caption(), "Specific &Width:");
    EXPECT_EQ(dialog.label(3).Caption(), "pixels");
    EXPECT_EQ(dialog.frame("fraShadow").Caption(), "Drop Shadow");
    EXPECT_EQ(dialog.shadow().Caption(), "Add &drop shadow");
    EXPECT_EQ(dialog.shadowOptions().Caption(), "&Options...");
    EXPECT_EQ(dialog.label(5).Caption(), "Background &Color:");
    EXPECT_EQ(dialog.saveAsDefault().Caption(), "Save as &default");
    EXPECT_EQ(dialog.useOriginal().Caption(), "Preview with &Original Image");
    dialog.cancel();
  });
}

// -- Loading ----------------------------------------------------------------------------------------------

TEST_P(EditingThumbnailDialog, OpensOnAPercentageOfTheOptions) {
  options().ThumbnailSize(25);
  show([](Dialog& dialog) {
    EXPECT_TRUE(dialog.type(0).Value());
    EXPECT_FALSE(dialog.type(1).Value());
    EXPECT_EQ(dialog.size(0).Text(), "25");
    EXPECT_EQ(dialog.size(1).Text(), "");
    EXPECT_EQ(dialog.shadow().Value(), 0);
    EXPECT_EQ(dialog.background().Value(), 0x00FF00);
    EXPECT_EQ(dialog.saveAsDefault().Value(), 0);
    dialog.cancel();
  });
}

TEST_P(EditingThumbnailDialog, OpensOnAWidthOfTheOptionsForAnyOtherType) {
  options().ThumbnailSize(80);
  options().ThumbnailAddDropShadow(true);
  for (const std::int32_t type : {1, 7}) {
    options().ThumbnailSizeType(static_cast<ThumbnailSizeTypeEnum>(type));
    show([this](Dialog& dialog) {
      EXPECT_TRUE(dialog.type(1).Value());
      EXPECT_EQ(dialog.size(0).Text(), "");
      EXPECT_EQ(dialog.size(1).Text(), "80");
      EXPECT_EQ(dialog.shadow().Value(), 1);
      EXPECT_EQ(platform().desktop().focus, dialog.size(1).hWnd());
      dialog.cancel();
    });
  }
}

TEST_P(EditingThumbnailDialog, OpensOnTheUsersPictureWithTheFocusOnTheSize) {
  platform().Screen().MousePointer(kBusyHourglass);
  show([this](Dialog& dialog) {
    EXPECT_EQ(dialog.useOriginal().Value(), 1);
    EXPECT_TRUE(same(dialog.before(), gradient(200, 100)));
    EXPECT_EQ(platform().desktop().focus, dialog.size(0).hWnd());
    EXPECT_EQ(dialog.size(0).SelectedText(), "30");
    EXPECT_EQ(platform().Screen().MousePointer(), kBusyDefault);
    EXPECT_EQ(platform().FormSkin().applied().back().name, "frmGetThumnail");
    EXPECT_EQ(platform().WindowFunctions().styles(dialog.size(0).hWnd()), 8192);
    dialog.cancel();
  });
}

TEST_P(EditingThumbnailDialog, ItsPanesScrollIndependently) {
  open(1000, 900);
  options().ThumbnailSize(90);
  show([](Dialog& dialog) {
    dialog.pane("igxOriginal").ScrollLeft(70);
    EXPECT_NE(dialog.pane("igxPreview").ScrollLeft(), 70);
    dialog.cancel();
  });
}

// -- Preview ----------------------------------------------------------------------------------------------

TEST_P(EditingThumbnailDialog, ShowsThePercentage) {
  show([this](Dialog& dialog) {
    EXPECT_TRUE(same(dialog.after(), thumbnail(tstPercentage, 30, 0x00FF00, false)));
    dialog.size(0).Text("50");
    EXPECT_TRUE(same(dialog.after(), thumbnail(tstPercentage, 50, 0x00FF00, false)));
    EXPECT_EQ(dialog.after().width(), 100);
    EXPECT_EQ(dialog.after().height(), 50);
    dialog.cancel();
  });
}

TEST_P(EditingThumbnailDialog, ThePercentageIsRoundedDown) {
  open(199, 100);
  show([](Dialog& dialog) {
    dialog.size(0).Text("33");
    EXPECT_EQ(dialog.after().width(), 65) << "65.67";
    dialog.size(0).Text("12.5");
    EXPECT_EQ(dialog.after().width(), 24) << "24.875";
    dialog.cancel();
  });
}

TEST_P(EditingThumbnailDialog, TypingInABoxSelectsItsTypeAndShowsIt) {
  show([this](Dialog& dialog) {
    dialog.size(1).Text("80");
    EXPECT_TRUE(dialog.type(1).Value());
    EXPECT_TRUE(same(dialog.after(), thumbnail(tstWidthInPixels, 80, 0x00FF00, false)));
    dialog.size(0).Text("40");
    EXPECT_TRUE(dialog.type(0).Value());
    EXPECT_EQ(dialog.after().width(), 80);
    dialog.type(1).Value(true);
    EXPECT_EQ(dialog.after().width(), 80);
    dialog.cancel();
  });
}

TEST_P(EditingThumbnailDialog, AWidthOf0OrAnEmptyBoxShowsThePictureAsItIs) {
  show([](Dialog& dialog) {
    dialog.size(1).Text("80");
    for (const char* text : {"0", "", "-5", "abc"}) {
      dialog.size(1).Text(text);
      EXPECT_TRUE(same(dialog.after(), gradient(200, 100))) << text;
      EXPECT_TRUE(dialog.header().OKEnabled()) << text;
    }
    dialog.cancel();
  });
}

TEST_P(EditingThumbnailDialog, AddsTheShadowOfTheOptions) {
  setShadow();
  show([this](Dialog& dialog) {
    dialog.shadow().Value(1);
    EXPECT_TRUE(same(dialog.after(), thumbnail(tstPercentage, 30, 0x00FF00, true)));
    EXPECT_GT(dialog.after().width(), 60);
    dialog.shadow().Value(0);
    EXPECT_EQ(dialog.after().width(), 60);
    dialog.cancel();
  });
}

TEST_P(EditingThumbnailDialog, TheShadowSettingsNeedTheShadow) {
  show([](Dialog& dialog) {
    const auto expectEnabled = [&](bool on) {
      EXPECT_EQ(dialog.label(5).Enabled(), on);
      EXPECT_EQ(dialog.shadowOptions().Enabled(), on);
      EXPECT_EQ(dialog.background().Enabled(), on);
    };
    expectEnabled(false);
    dialog.shadow().Value(1);
    expectEnabled(true);
    dialog.shadow().Value(0);
    expectEnabled(false);
    dialog.cancel();
  });
  options().ThumbnailAddDropShadow(true);
  show([](Dialog& dialog) {
    EXPECT_TRUE(dialog.shadowOptions().Enabled()) << "the stored box is ticked during the load";
    dialog.cancel();
  });
}

TEST_P(EditingThumbnailDialog, TheShadowsOptionsAreSetInTheirOwnDialogAndShown) {
  setShadow();
  show([this](Dialog& dialog) {
    dialog.shadow().Value(1);
    const engine::Bitmap before = dialog.after();
    user().uses("frmDropShadow", [](Form& form) {
      ShadowDialog shadow(form);
      EXPECT_EQ(form.Caption(), "Drop Shadow") << "not the contoured one";
      EXPECT_FALSE(shadow.mask().Visible());
      shadow.useOriginal().Value(1);
      EXPECT_TRUE(same(shadow.before(), gradient(200, 100))) << "the user's picture";
      shadow.horizontal().Text("9");
      shadow.ok();
    });
    dialog.shadowOptions().Press();
    EXPECT_EQ(options().DropShadowHorizontalOffset(), 9) << "stored though this dialog may be canceled";
    EXPECT_FALSE(same(dialog.after(), before));
    EXPECT_TRUE(same(dialog.after(), thumbnail(tstPercentage, 30, 0x00FF00, true)));
    dialog.cancel();
  });
  EXPECT_EQ(options().DropShadowHorizontalOffset(), 9);
}

TEST_P(EditingThumbnailDialog, TheShadowsOptionsThatAreCanceledChangeNothing) {
  setShadow();
  show([this](Dialog& dialog) {
    dialog.shadow().Value(1);
    platform().FormUtility().forgetPointers();
    user().uses("frmDropShadow", [this](Form& form) {
      ShadowDialog shadow(form);
      shadow.horizontal().Text("9");
      platform().FormUtility().forgetPointers();
      shadow.cancel();
    });
    dialog.shadowOptions().Press();
    EXPECT_THAT(platform().FormUtility().pointers(), IsEmpty()) << "no new preview";
    dialog.cancel();
  });
  EXPECT_EQ(options().DropShadowHorizontalOffset(), 3);
}

TEST_P(EditingThumbnailDialog, TheBackgroundAppliesWithoutAShadowToo) {
  EditingTest::show(engine::Bitmap::filled(50, 40, {0, 0, 0, 0}));
  EditingThumbnailDialog::show([](Dialog& dialog) {
    EXPECT_EQ(dialog.after().at(3, 3), (engine::Pixel{0, 255, 0, 255}));
    dialog.background().Value(0x0000FF);
    EXPECT_EQ(dialog.after().at(3, 3), (engine::Pixel{255, 0, 0, 255}));
    dialog.cancel();
  });
}

TEST_P(EditingThumbnailDialog, CanShowTheStockPicture) {
  show([](Dialog& dialog) {
    dialog.useOriginal().Value(0);
    EXPECT_EQ(dialog.before().width(), 360);
    EXPECT_EQ(dialog.after().width(), 108) << "30 %";
    dialog.cancel();
  });
}

TEST_P(EditingThumbnailDialog, ASettingThatTheEngineRefusesDisablesOKUntilALaterChange) {
  show([](Dialog& dialog) {
    const std::pair<std::int32_t, const char*> refused[] = {
        {0, "0"}, {0, ""}, {0, "-5"}, {0, "99999999999"}, {0, "1e999"}, {1, "99999999999"}, {1, "0.4"}};
    for (const auto& [type, text] : refused) {
      dialog.size(type).Text("40");
      EXPECT_TRUE(dialog.header().OKEnabled()) << text;
      dialog.size(type).Text(text);
      EXPECT_FALSE(dialog.header().OKEnabled()) << text;
      dialog.ok();
      EXPECT_TRUE(dialog.form().Visible());
    }
    dialog.size(0).Text("10");
    EXPECT_TRUE(dialog.header().OKEnabled());
    dialog.cancel();
  });
  EXPECT_THAT(user().boxes(), IsEmpty()) << "neither message nor report";
}

TEST_P(EditingThumbnailDialog, APercentageOfLessThanOnePixelDisablesOK) {
  open(50, 40);
  show([](Dialog& dialog) {
    dialog.size(0).Text("1");
    EXPECT_FALSE(dialog.header().OKEnabled());
    dialog.size(0).Text("2");
    EXPECT_TRUE(dialog.header().OKEnabled());
    EXPECT_EQ(dialog.after().width(), 1);
    dialog.cancel();
  });
}

TEST_P(EditingThumbnailDialog, AfterAnErrorTheNextStepsAreCarriedOut) {
  EditingTest::show(engine::Bitmap::filled(50, 40, {0, 0, 0, 0}));
  EditingThumbnailDialog::show([this](Dialog& dialog) {
    platform().FormUtility().forgetPointers();
    dialog.size(0).Text("0");
    EXPECT_FALSE(dialog.header().OKEnabled());
    EXPECT_EQ(dialog.after().width(), 50) << "not resized";
    EXPECT_EQ(dialog.after().at(3, 3), (engine::Pixel{0, 255, 0, 255})) << "flattened";
    EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(13, 0)) << "and the pointer is restored";
    dialog.cancel();
  });
}

TEST_P(EditingThumbnailDialog, AnOpacityBeyondAByteDisablesOKAndTheRestIsShown) {
  setShadow();
  options().DropShadowOpacity(256);
  show([this](Dialog& dialog) {
    dialog.shadow().Value(1);
    EXPECT_FALSE(dialog.header().OKEnabled());
    EXPECT_TRUE(same(dialog.after(), thumbnail(tstPercentage, 30, 0x00FF00, false)));
    dialog.shadow().Value(0);
    EXPECT_TRUE(dialog.header().OKEnabled());
    dialog.cancel();
  });
}

// -- OK and Cancel ----------------------------------------------------------------------------------------

TEST_P(EditingThumbnailDialog, TheResultHasFourFields) {
  frmGetThumnail dialog;
  dialog.Preview().OriginalPicture(&view());
  EXPECT_FALSE(dialog.Success);
  EXPECT_EQ(dialog.ResultData, "");
  plan([](Dialog& user) {
    user.shadow().Value(1);
    user.size(1).Text("64");
    user.background().Value(0x010203);
    user.ok();
    EXPECT_FALSE(user.form().Visible());
  });
  EXPECT_TRUE(dialog.ShowModal());
  EXPECT_TRUE(dialog.Success);
  EXPECT_EQ(dialog.ResultData, "1|1|64|66051");
}

TEST_P(EditingThumbnailDialog, TheResultHasTheTextOfTheSelectedBoxUnconverted) {
  for (const auto& [text, result] :
       {std::pair("007", "0|0|007|65280"), std::pair("40abc", "0|0|40abc|65280")}) {
    frmGetThumnail dialog;
    dialog.Preview().OriginalPicture(&view());
    plan([text = text](Dialog& user) {
      user.size(1).Text("64");
      user.size(0).Text(text);
      user.ok();
    });
    dialog.ShowModal();
    EXPECT_EQ(dialog.ResultData, result);
  }
}

TEST_P(EditingThumbnailDialog, OKReturnsTheThumbnailOfItsSettings) {
  setShadow();
  const PicturePtr result = show([](Dialog& dialog) {
    dialog.shadow().Value(1);
    dialog.size(1).Text("64");
    dialog.background().Value(0x0000FF);
    dialog.ok();
  });
  ASSERT_NE(result, nullptr);
  EXPECT_TRUE(same(engine::bitmapOf(*result), thumbnail(tstWidthInPixels, 64, 0x0000FF, true)));
  expectUntouched();
}

TEST_P(EditingThumbnailDialog, CancelAndTheCloseBoxReturnNothing) {
  for (const bool byCloseBox : {false, true}) {
    log().clear();
    EXPECT_EQ(show([&](Dialog& dialog) {
                dialog.saveAsDefault().Value(1);
                dialog.size(0).Text("64");
                byCloseBox ? dynamic_cast<headless::Form&>(dialog.form()).pressCloseBox() : dialog.cancel();
              }),
              nullptr);
    EXPECT_THAT(calls(), testing::Not(Contains(testing::HasSubstr("scratch.Effects"))));
    EXPECT_EQ(options().ThumbnailSize(), 30);
    expectUntouched();
  }
}

TEST_P(EditingThumbnailDialog, SaveAsDefaultStoresTheSettings) {
  show([](Dialog& dialog) {
    dialog.shadow().Value(1);
    dialog.size(1).Text("64");
    dialog.background().Value(0x010203);
    dialog.saveAsDefault().Value(1);
    dialog.ok();
  });
  EXPECT_TRUE(options().ThumbnailAddDropShadow());
  EXPECT_EQ(options().ThumbnailSizeType(), tstWidthInPixels);
  EXPECT_EQ(options().ThumbnailSize(), 64);
  EXPECT_EQ(options().ThumbnailBackgroundColor(), 0x010203);
}

TEST_P(EditingThumbnailDialog, WithoutSaveAsDefaultTheOptionsStay) {
  show([](Dialog& dialog) {
    dialog.shadow().Value(1);
    dialog.size(1).Text("64");
    dialog.background().Value(0x010203);
    dialog.ok();
  });
  EXPECT_FALSE(options().ThumbnailAddDropShadow());
  EXPECT_EQ(options().ThumbnailSizeType(), tstPercentage);
  EXPECT_EQ(options().ThumbnailSize(), 30);
  EXPECT_EQ(options().ThumbnailBackgroundColor(), 0x00FF00);
}

TEST_P(EditingThumbnailDialog, AWidthOf0IsAcceptedAndTheEnginesErrorGoesToTheCaller) {
  plan([](Dialog& dialog) {
    dialog.size(1).Text("0");
    dialog.ok();
  });
  EXPECT_THROW(editor().ShowGetThumnailDialog(), RuntimeError);
  expectUntouched();
}

// -- The window -------------------------------------------------------------------------------------------

TEST_P(EditingThumbnailDialog, LaysItsPartsOutInTheHeadersArea) {
  // Strip 32, row 44, margins 8; both frames are 280 by 110.
  show([](Dialog& dialog) {
    dialog.form().Width(800);
    dialog.form().Height(600);
    EXPECT_EQ(placeOf(dialog.preview()), (Rectangle{8, 32, 784, 524 - 110 - 32}));
    EXPECT_EQ(placeOf(dialog.frame("fraGeneral")), (Rectangle{8, 32 + 524 - 110, 280, 110}));
    EXPECT_EQ(placeOf(dialog.frame("fraShadow")), (Rectangle{280 + 2 * 8, 32 + 524 - 110, 280, 110}));
    EXPECT_EQ(dialog.saveAsDefault().Top(), 568);
    EXPECT_EQ(dialog.useOriginal().Top(), 568);
    dialog.frame("fraShadow").Height(150);
    dialog.form().Width(700);
    EXPECT_EQ(placeOf(dialog.preview()), (Rectangle{8, 32, 684, 524 - 150 - 32}));
    EXPECT_EQ(dialog.frame("fraShadow").Top(), 32 + 524 - 150);
    EXPECT_EQ(dialog.frame("fraGeneral").Top(), 32 + 524 - 110);
    dialog.cancel();
  });
}

TEST_P(EditingThumbnailDialog, TheCheckBoxesAre32PixelsAboveTheBottomInUnitsOfTheContainer) {
  platform().Screen().twipsPerPixelY = 15;
  show([](Dialog& dialog) {
    dialog.form().Height(600);
    EXPECT_EQ(dialog.saveAsDefault().Top(), 568 * 15);
    EXPECT_EQ(dialog.useOriginal().Top(), 568 * 15);
    dialog.cancel();
  });
}

TEST_P(EditingThumbnailDialog, InAWindowTooSmallThePreviewStaysAsItIs) {
  show([](Dialog& dialog) {
    const Rectangle before = placeOf(dialog.preview());
    dialog.form().Height(200);
    EXPECT_EQ(placeOf(dialog.preview()), before) << "124 - 110 - 32 is less than 0";
    EXPECT_EQ(dialog.frame("fraGeneral").Top(), 32 + 124 - 110);
    dialog.form().Height(218);
    EXPECT_EQ(dialog.preview().Height(), 0);
    dialog.cancel();
  });
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditingThumbnailDialog, OpensInTheCenterOfTheScreenAndThenWhereItWas) {
  show([](Dialog& dialog) {
    EXPECT_EQ(placeOf(dialog.form()), (Rectangle{640, 280, 640, 480})) << "of a screen of 1920 by 1040";
    dialog.form().Move(100, 120, 700, 500);
    dialog.cancel();
  });
  show([](Dialog& dialog) {
    EXPECT_EQ(placeOf(dialog.form()), (Rectangle{100, 120, 700, 500}));
    EXPECT_EQ(dialog.preview().Width(), 700 - 2 * 8);
    dialog.cancel();
  });
}

TEST_P(EditingThumbnailDialog, StoresItsPlaceWhenItsOwnerUnloadsItUnderTheOlderKey) {
  {
    frmGetThumnail dialog;
    dialog.Preview().OriginalPicture(&view());
    plan([](Dialog& user) {
      user.form().Move(100, 120, 700, 500);
      user.cancel();
    });
    dialog.ShowModal();
    EXPECT_EQ(platform().WindowPositions().RegistryKey(), "Software\\Brindlewick\\ImageProcessing2");
    EXPECT_EQ(storedPlace(), std::nullopt) << "it is only hidden";
  }
  EXPECT_EQ(storedPlace(), (Rectangle{100, 120, 700, 500}));
  EXPECT_EQ(platform()
                .RegistryStore()
                .ReadValue(HKEY_CURRENT_USER, "Software\\Brindlewick\\ImageProcessing2\\GetThumbnail", "Left")
                .ToInt32(),
            100);
  EXPECT_EQ(platform().WindowPositions().RegistryKey(), "Software\\Brindlewick\\ImageProcessing2")
      << "for the rest of the process";
}

TEST_P(EditingThumbnailDialog, ADialogThatWasNeverShownStoresNoPlace) {
  { const frmGetThumnail dialog; }
  platform().WindowPositions().RegistryKey("Software\\Brindlewick\\ImageProcessing2");
  EXPECT_EQ(storedPlace(), std::nullopt);
}

// -- Saving -----------------------------------------------------------------------------------------------

TEST_P(EditingThumbnailDialog, SaveImageThumbnailExWritesTheThumbnailInTheFormatOfTheName) {
  options().JPEGQuality(55);
  std::vector<std::string> texts;
  when(suite().CommandUpdated, [&](docking::CommandModel& changed) {
    if (changed.Name() == "pnlStatus") texts.push_back(panel("pnlStatus"));
  });
  const std::string file = path("b.jpg");
  for (int time = 0; time < 2; ++time) {
    plan([](Dialog& dialog) {
      dialog.size(1).Text("64");
      dialog.ok();
    });
    EXPECT_TRUE(editor().SaveImageThumbnailEx(file));
  }
  EXPECT_THAT(texts, ElementsAre("Saving thumbnail...", "", "Updating thumbnail...", ""));
  EXPECT_THAT(calls(), Contains("scratch.Writer.ToFile(\"" + file + "\", 1, 0, True)"));
  const auto saved = platform().CreateImgX();
  saved->Document().FromFile(file);
  EXPECT_EQ(saved->Image()->Width(), 64);
  EXPECT_EQ(saved->Image()->Format(), 1);
  expectUntouched();
}

TEST_P(EditingThumbnailDialog, SaveImageThumbnailExWritesNothingIfTheDialogIsCanceled) {
  plan([](Dialog& dialog) { dialog.cancel(); });
  EXPECT_FALSE(editor().SaveImageThumbnailEx(path("b.jpg")));
  EXPECT_FALSE(exists(path("b.jpg")));
  EXPECT_EQ(panel("pnlStatus"), "");
}

TEST_P(EditingThumbnailDialog, SaveImageThumbnailExGivesFalseForAFileThatCannotBeWritten) {
  const std::string file = path("nowhere") + platform().files().separator() + "b.png";
  plan([](Dialog& dialog) { dialog.ok(); });
  EXPECT_FALSE(editor().SaveImageThumbnailEx(file));
  EXPECT_EQ(panel("pnlStatus"), "");
  EXPECT_THAT(platform().FormUtility().pointers(), testing::SizeIs(testing::Ge(2u)));
  EXPECT_EQ(platform().FormUtility().pointers().back(), kBusyDefault);
}

KESTREL_WITH_BOTH_PATHS(EditingThumbnailDialog);

}  // namespace
}  // namespace kestrel
