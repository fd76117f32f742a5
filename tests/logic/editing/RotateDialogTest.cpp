#include "EditingTest.h"
#include "dialogs/frmRotate.h"
#include "engine/effects/Rotate.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/Frame.h"
#include "imaging/contract/controls/Label.h"
#include "imaging/contract/controls/OptionButton.h"
#include "imaging/contract/controls/TextBox.h"

namespace kestrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// The controls of the rotate dialog.
class Dialog {
 public:
  explicit Dialog(Form& form) : form_(form) {}

  OptionButton& left() { return Bind<OptionButton>(form_, "optDirection", 0); }
  OptionButton& right() { return Bind<OptionButton>(form_, "optDirection", 1); }
  OptionButton& degree(std::int32_t index) { return Bind<OptionButton>(form_, "optDegree", index); }
  TextBox& text() { return Bind<TextBox>(form_, "txtDegrees"); }
  CheckBox& useOriginal() { return Bind<CheckBox>(form_, "chkUseOriginalImage"); }
  void ok() { Bind<CommandButton>(form_, "cmdAction", 0).Press(); }
  void cancel() { Bind<CommandButton>(form_, "cmdAction", 1).Press(); }
  headless::ImageView& pane(const char* name) {
    return Bind<headless::ImageView>(Bind<Site>(form_, "Preview"), name);
  }
  engine::Bitmap before() { return engine::bitmapOf(*pane("igxOriginal").Image()); }
  engine::Bitmap after() { return engine::bitmapOf(*pane("igxPreview").Image()); }
  /// Index of the chosen angle button; -1 if none.
  std::int32_t chosen() {
    for (std::int32_t index = 0; index < 4; ++index) {
      if (degree(index).Value()) return index;
    }
    return -1;
  }
  Form& form() { return form_; }

 private:
  Form& form_;
};

class EditingRotateDialog : public EditingTest {
 protected:
  /// Sets what the user does in the dialog.
  void plan(std::function<void(Dialog&)> doing) {
    user().uses("frmRotate", [doing = std::move(doing)](Form& form) {
      Dialog dialog(form);
      doing(dialog);
    });
  }
  std::int32_t show(std::function<void(Dialog&)> doing) {
    plan(std::move(doing));
    return editor().ShowRotateDialog();
  }
  static engine::Bitmap rotated(const engine::Bitmap& picture, double angle) {
    return engine::rotate(picture, angle, {});
  }
  void set(std::int32_t angle, ImageProcessingDirectionConstants direction) {
    options().RotateAngle(angle);
    options().RotateDirection(direction);
  }
};

TEST_P(EditingRotateDialog, HasTheCaptionsAndStoredValuesOfItsControls) {
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.form().Caption(), "Rotate");
    EXPECT_EQ(dialog.left().Caption(), "&Left");
    EXPECT_EQ(dialog.right().Caption(), "&Right");
    EXPECT_EQ(dialog.degree(0).Caption(), "&90");
    EXPECT_EQ(dialog.degree(0).Tag(), "90");
    EXPECT_EQ(dialog.degree(1).Caption(), "&180");
    EXPECT_EQ(dialog.degree(1).Tag(), "180");
    EXPECT_EQ(dialog.degree(2).Caption(), "&270");
    EXPECT_EQ(dialog.degree(2).Tag(), "270");
    EXPECT_EQ(dialog.degree(3).Caption(), "&Free:");
    EXPECT_EQ(Bind<Label>(dialog.form(), "lblHdr").Caption(), "(1-359)");
    EXPECT_EQ(dialog.useOriginal().Caption(), "Use &Original Image");
    EXPECT_EQ(Bind<CommandButton>(dialog.form(), "cmdAction", 1).Caption(), "Cancel");
    EXPECT_EQ(Bind<Frame>(dialog.form(), "fraRotate").Caption(), "Direction");
    EXPECT_EQ(Bind<Frame>(dialog.form(), "FramePlus1").Caption(), "Degrees");
    EXPECT_EQ(Bind<Frame>(dialog.form(), "fraPreview").Caption(), "Preview");
    dialog.cancel();
  });
}

TEST_P(EditingRotateDialog, LoadsWithoutAnIconAndAppliesTheSkinLast) {
  show([this](Dialog& dialog) {
    EXPECT_FALSE(dynamic_cast<headless::Form&>(dialog.form()).hasIcon());
    EXPECT_EQ(platform().WindowFunctions().styles(dialog.text().hWnd()), 8192);
    EXPECT_EQ(platform().FormSkin().applied().back().name, "frmRotate");
    dialog.cancel();
  });
}

TEST_P(EditingRotateDialog, AFailingSkinIsIgnored) {
  frmRotate dialog;
  platform().FormSkin().failing = true;
  plan([](Dialog& user) { user.cancel(); });
  dialog.ShowModal();
  platform().FormSkin().failing = false;
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditingRotateDialog, SelectsTheWholeTextOnFocus) {
  show([this](Dialog& dialog) {
    dialog.text().Text("33");
    platform().FormUtility().SetFocusTo(dialog.text());
    EXPECT_EQ(dialog.text().SelectedText(), "33");
    dialog.cancel();
  });
}

// -- Defaults ---------------------------------------------------------------------------------------------

TEST_P(EditingRotateDialog, OpensOnTheFixedAnglesAndTheDirectionOfTheOptions) {
  const std::int32_t angles[] = {90, 180, 270};
  for (std::int32_t index = 0; index < 3; ++index) {
    for (const auto direction : {ipDirectionLeft, ipDirectionRight}) {
      set(angles[index], direction);
      show([&](Dialog& dialog) {
        EXPECT_EQ(dialog.chosen(), index);
        EXPECT_EQ(dialog.left().Value(), direction == ipDirectionLeft);
        EXPECT_EQ(dialog.right().Value(), direction == ipDirectionRight);
        dialog.cancel();
      });
    }
  }
}

TEST_P(EditingRotateDialog, OpensWithADirectionForAnInvalidStoredNumber) {
  for (const std::int32_t stored : {-1, 2, 7}) {
    set(90, static_cast<ImageProcessingDirectionConstants>(stored));
    show([](Dialog& dialog) {
      EXPECT_TRUE(dialog.right().Value());
      EXPECT_EQ(dialog.chosen(), 0) << "the other defaults apply";
      dialog.ok();
    });
    EXPECT_EQ(options().RotateDirection(), ipDirectionRight);
  }
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditingRotateDialog, OpensOnAnyOtherAngleWithFreeAndItsText) {
  for (const std::int32_t angle : {45, 0, 400, 360}) {
    set(angle, ipDirectionRight);
    show([&](Dialog& dialog) {
      EXPECT_EQ(dialog.chosen(), 3);
      EXPECT_EQ(dialog.text().Text(), ToText(angle));
      dialog.cancel();
    });
  }
}

TEST_P(EditingRotateDialog, AnAngleOf0IsRefusedWithABoxAndTheDialogStays) {
  set(0, ipDirectionRight);
  user().uses("frmRotate", [this](Form& form) {
    Dialog dialog(form);
    user().answers(kAnswerOK);
    dialog.ok();
    EXPECT_TRUE(form.Visible());
    dialog.cancel();
  });
  EXPECT_EQ(editor().ShowRotateDialog(), 0);
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_EQ(user().boxes()[0].text, "Please enter or select an angle");
  EXPECT_EQ(user().boxes()[0].style, 48);
  EXPECT_EQ(user().boxes()[0].title, "Rotate");
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
}

TEST_P(EditingRotateDialog, FreeWithAnEmptyBoxIsRefused) {
  set(90, ipDirectionRight);
  show([this](Dialog& dialog) {
    dialog.degree(3).Value(true);
    user().answers(kAnswerOK);
    dialog.ok();
    EXPECT_TRUE(dialog.form().Visible());
    dialog.cancel();
  });
  EXPECT_EQ(user().boxes().size(), 1u);
  EXPECT_EQ(options().RotateAngle(), 90);
}

// -- The answer -------------------------------------------------------------------------------------------

TEST_P(EditingRotateDialog, NinetyRightRotatesThePicture) {
  set(180, ipDirectionLeft);
  options().MaterialBackColor(-1);
  EXPECT_EQ(show([](Dialog& dialog) {
              dialog.degree(0).Value(true);
              dialog.right().Value(true);
              dialog.ok();
            }),
            90);
  EXPECT_TRUE(same(shown(), rotated(gradient(kWidth, kHeight), 90)));
  EXPECT_EQ(options().RotateAngle(), 90);
  EXPECT_EQ(options().RotateDirection(), ipDirectionRight);
}

TEST_P(EditingRotateDialog, NinetyLeftUses270AndTheOptionsKeepNinetyAndLeft) {
  set(180, ipDirectionRight);
  options().MaterialBackColor(-1);
  EXPECT_EQ(show([](Dialog& dialog) {
              dialog.degree(0).Value(true);
              dialog.left().Value(true);
              EXPECT_TRUE(same(dialog.after(), rotated(dialog.before(), 270)));
              dialog.ok();
            }),
            270);
  EXPECT_TRUE(same(shown(), rotated(gradient(kWidth, kHeight), 270)));
  EXPECT_EQ(options().RotateAngle(), 90);
  EXPECT_EQ(options().RotateDirection(), ipDirectionLeft);
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.chosen(), 0) << "the next opening shows the same choice";
    EXPECT_TRUE(dialog.left().Value());
    dialog.cancel();
  });
}

TEST_P(EditingRotateDialog, TheRangeIsNotEnforced) {
  set(90, ipDirectionRight);
  EXPECT_EQ(show([](Dialog& dialog) {
              dialog.text().Text("400");
              dialog.ok();
            }),
            400);
  EXPECT_EQ(show([](Dialog& dialog) {
              dialog.left().Value(true);
              dialog.ok();
            }),
            -40);
}

TEST_P(EditingRotateDialog, ThreeHundredAndSixtyLeftGivesZeroAndIsAccepted) {
  set(90, ipDirectionLeft);
  const std::int32_t answer = show([](Dialog& dialog) {
    dialog.text().Text("360");
    dialog.ok();
  });
  EXPECT_EQ(answer, 0);
  EXPECT_THAT(user().boxes(), IsEmpty());
  EXPECT_EQ(options().RotateAngle(), 360);
  EXPECT_TRUE(editor().Changed()) << "a rotation by 0 is an edit";
}

TEST_P(EditingRotateDialog, PastedTextCountsByItsLeadingNumber) {
  set(90, ipDirectionRight);
  EXPECT_EQ(show([](Dialog& dialog) {
              dialog.text().Text("30abc");
              dialog.ok();
            }),
            30);
}

TEST_P(EditingRotateDialog, APartOfADegreeIsRoundedToTheNearestTiesToEven) {
  set(90, ipDirectionRight);
  const std::pair<const char*, std::int32_t> roundings[] = {
      {"44.4", 44}, {"44.5", 44}, {"45.5", 46}, {"45.6", 46}};
  for (const auto& [text, angle] : roundings) {
    EXPECT_EQ(show([text = text](Dialog& dialog) {
                dialog.text().Text(text);
                dialog.ok();
              }),
              angle);
    EXPECT_EQ(options().RotateAngle(), angle);
  }
}

TEST_P(EditingRotateDialog, AComplementBeyond32BitsAtOKKeepsTheDialogOpen) {
  set(90, ipDirectionRight);
  frmRotate dialog;
  plan([this](Dialog& user) {
    user.text().Text("-2147483648");
    EditingTest::user().answers(kAnswerOK);
    user.left().Value(true);  // fails in the preview
    EditingTest::user().answers(kAnswerOK);
    user.ok();
    EXPECT_TRUE(user.form().Visible());
    user.cancel();
  });
  dialog.ShowModal();
  EXPECT_FALSE(dialog.Success);
  EXPECT_EQ(dialog.ResultData, "");
  EXPECT_EQ(options().RotateAngle(), -2147483647 - 1) << "stored before the sign is changed";
  EXPECT_EQ(options().RotateDirection(), ipDirectionRight);
  ASSERT_EQ(user().boxes().size(), 2u);
  EXPECT_THAT(user().boxes()[1].text, testing::HasSubstr("Procedure: cmdAction_Click\r\n"));
}

TEST_P(EditingRotateDialog, UnloadsOnlyIfItIsSafe) {
  for (const bool isSafe : {false, true}) {
    frmRotate dialog;
    dialog.SafeToUnload = isSafe;
    int unloaded = 0;
    plan([&](Dialog& user) {
      const Connection noting = user.form().Unloaded.Connect([&] { ++unloaded; });
      user.cancel();
      EXPECT_FALSE(user.form().Visible());
    });
    dialog.ShowModal();
    EXPECT_EQ(unloaded, isSafe ? 1 : 0);
  }
}

TEST_P(EditingRotateDialog, CancelReturns0AndLeavesOptionsAndPicture) {
  set(90, ipDirectionRight);
  EXPECT_EQ(show([](Dialog& dialog) {
              dialog.text().Text("30");
              dialog.left().Value(true);
              dialog.cancel();
            }),
            0);
  EXPECT_EQ(options().RotateAngle(), 90);
  EXPECT_EQ(options().RotateDirection(), ipDirectionRight);
  EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
  EXPECT_FALSE(editor().Changed());
}

TEST_P(EditingRotateDialog, TheCloseBoxCancels) {
  set(90, ipDirectionRight);
  EXPECT_EQ(show([](Dialog& dialog) { dynamic_cast<headless::Form&>(dialog.form()).pressCloseBox(); }), 0);
  EXPECT_FALSE(editor().Changed());
}

TEST_P(EditingRotateDialog, RotatesTheSelectionIfThereIsOne) {
  set(90, ipDirectionRight);
  options().MaterialBackColor(-1);
  editor().SetSelection(5, 6, 10, 8);
  plan([](Dialog& dialog) { dialog.ok(); });
  click("btnRotateFree");
  EXPECT_EQ(shown().width(), kWidth);
  EXPECT_EQ(at(5, 6), pixelOf(5, 13)) << "the section's lower left corner is its upper left now";
  EXPECT_FALSE(view().SelectionVisible());
}

TEST_P(EditingRotateDialog, KeepsItsFieldsReadableAfterHiding) {
  set(90, ipDirectionLeft);
  frmRotate dialog;
  EXPECT_FALSE(dialog.Success);
  EXPECT_FALSE(dialog.SafeToUnload);
  EXPECT_EQ(dialog.ResultData, "");
  plan([](Dialog& user) { user.ok(); });
  EXPECT_TRUE(dialog.ShowModal());
  EXPECT_TRUE(dialog.Success);
  EXPECT_EQ(dialog.ResultData, "270");
}

TEST_P(EditingRotateDialog, ReportsNothingWhenItIsCanceledOrClosed) {
  set(90, ipDirectionLeft);
  for (const bool byCloseBox : {false, true}) {
    frmRotate dialog;
    plan([&](Dialog& user) { byCloseBox ? user.form().Unload() : user.cancel(); });
    EXPECT_FALSE(dialog.ShowModal());
    EXPECT_FALSE(dialog.Success);
  }
}

// -- Preview ----------------------------------------------------------------------------------------------

TEST_P(EditingRotateDialog, ComputesTheFirstPreviewOnceTheWindowIsShown) {
  platform().Screen().MousePointer(kBusyHourglass);
  set(90, ipDirectionRight);
  show([this](Dialog& dialog) {
    EXPECT_TRUE(same(dialog.after(), rotated(dialog.before(), 90)));
    EXPECT_EQ(platform().Screen().MousePointer(), kBusyDefault);
    EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(13, 0)) << "once, not during the load";
    dialog.cancel();
  });
}

TEST_P(EditingRotateDialog, HandlesItsActivationOnce) {
  show([this](Dialog& dialog) {
    platform().FormUtility().forgetPointers();
    platform().Screen().MousePointer(kBusyHourglass);
    dialog.form().Activate();
    EXPECT_THAT(platform().FormUtility().pointers(), IsEmpty());
    EXPECT_EQ(platform().Screen().MousePointer(), kBusyHourglass);
    platform().Screen().MousePointer(kBusyDefault);
    dialog.cancel();
  });
}

TEST_P(EditingRotateDialog, FollowsEachChangeOfASetting) {
  set(90, ipDirectionRight);
  show([](Dialog& dialog) {
    dialog.degree(1).Value(true);
    EXPECT_TRUE(same(dialog.after(), rotated(dialog.before(), 180)));
    dialog.text().Text("30");
    EXPECT_EQ(dialog.chosen(), 3) << "typing chooses Free";
    EXPECT_TRUE(same(dialog.after(), rotated(dialog.before(), 30)));
    dialog.left().Value(true);
    EXPECT_TRUE(same(dialog.after(), rotated(dialog.before(), 330)));
    dialog.degree(2).Value(true);
    EXPECT_TRUE(same(dialog.after(), rotated(dialog.before(), 90)));
    dialog.degree(3).Value(true);
    EXPECT_TRUE(same(dialog.after(), rotated(dialog.before(), 330))) << "the box's text takes effect";
    dialog.cancel();
  });
}

TEST_P(EditingRotateDialog, ShowsTheArrowWithHourglassDuringEachPreview) {
  set(90, ipDirectionRight);
  show([this](Dialog& dialog) {
    platform().FormUtility().forgetPointers();
    dialog.degree(1).Value(true);
    EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(13, 0));
    dialog.cancel();
  });
}

TEST_P(EditingRotateDialog, WithoutASelectionShowsTheStockPictureOrTheUsers) {
  set(90, ipDirectionRight);
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.useOriginal().Value(), 0);
    EXPECT_EQ(dialog.before().width(), 360);
    dialog.useOriginal().Value(1);
    EXPECT_TRUE(same(dialog.before(), gradient(kWidth, kHeight)));
    EXPECT_TRUE(same(dialog.after(), rotated(gradient(kWidth, kHeight), 90)));
    dialog.useOriginal().Value(0);
    EXPECT_EQ(dialog.before().width(), 360);
    EXPECT_TRUE(same(dialog.after(), rotated(dialog.before(), 90)));
    dialog.cancel();
  });
}

TEST_P(EditingRotateDialog, WithASelectionOpensOnTheSectionWithTheBoxTicked) {
  set(90, ipDirectionRight);
  editor().SetSelection(5, 6, 10, 8);
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.useOriginal().Value(), 1);
    EXPECT_EQ(dialog.before().width(), 10);
    EXPECT_EQ(dialog.before().at(0, 0), pixelOf(5, 6));
    EXPECT_TRUE(same(dialog.after(), rotated(dialog.before(), 90)));
    dialog.cancel();
  });
}

TEST_P(EditingRotateDialog, LinksTheScrollingOfItsPanes) {
  open(1000, 900);
  set(90, ipDirectionRight);
  show([](Dialog& dialog) {
    dialog.useOriginal().Value(1);
    dialog.pane("igxOriginal").ScrollLeft(70);
    dialog.pane("igxOriginal").ScrollTop(40);
    EXPECT_EQ(dialog.pane("igxPreview").ScrollLeft(), 70);
    EXPECT_EQ(dialog.pane("igxPreview").ScrollTop(), 40);
    dialog.cancel();
  });
}

TEST_P(EditingRotateDialog, AnAngleBeyond32BitsIsReportedAndTheDialogStays) {
  set(90, ipDirectionLeft);
  show([this](Dialog& dialog) {
    dialog.degree(3).Value(true);
    user().answers(kAnswerOK);
    dialog.text().Text("99999999999");  // beyond 32 bits
    EXPECT_TRUE(dialog.form().Visible());
    dialog.cancel();
  });
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_EQ(user().boxes()[0].title, "Application Error");
}

TEST_P(EditingRotateDialog, AComplementBeyond32BitsIsReportedBeforeTheReset) {
  set(90, ipDirectionLeft);
  show([this](Dialog& dialog) {
    dialog.text().Text("90");
    platform().FormUtility().forgetPointers();
    user().answers(kAnswerOK);
    dialog.text().Text("-2147483648");  // 360 less that
    EXPECT_THAT(platform().FormUtility().pointers(), IsEmpty());
    EXPECT_TRUE(same(dialog.after(), rotated(dialog.before(), 270))) << "the previous preview";
    dialog.cancel();
  });
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_THAT(user().boxes()[0].text, testing::HasSubstr("Procedure: UpdatePreview\r\n"));
  EXPECT_THAT(user().boxes()[0].text, testing::HasSubstr("(6)"));
}

KESTREL_WITH_BOTH_PATHS(EditingRotateDialog);

}  // namespace
}  // namespace kestrel
