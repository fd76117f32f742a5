#include "EditingTest.h"
#include "ShadowDialog.h"
#include "dialogs/frmPasteSpecial.h"
#include "engine/effects/ReplaceColor.h"
#include "imaging/contract/controls/Frame.h"
#include "imaging/contract/controls/Label.h"

namespace kestrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr char kPasteStatus[] = "Please select where to paste the image, or press Escape to cancel";
constexpr engine::Pixel kMagenta{255, 0, 255, 255};
constexpr engine::Pixel kNearlyMagenta{254, 0, 255, 255};
constexpr engine::Pixel kGreen{0, 200, 0, 255};

/// An editor with an open picture, and on the clipboard a picture of 12 by 10 pixels: magenta, with a green
/// field from (4, 4) on and one pixel of nearly magenta at (1, 0).
class EditingPasteSpecial : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    platform().Clipboard().offer(copied());
    options().PasteSpecialMaskColor(0x00FF00FF);
  }
  static engine::Bitmap copied() {
    engine::Bitmap bitmap = engine::Bitmap::filled(12, 10, kMagenta);
    const engine::Pixels pixels = bitmap.writable();
    for (std::int32_t y = 4; y < 10; ++y) {
      for (std::int32_t x = 4; x < 12; ++x) reinterpret_cast<engine::Pixel*>(pixels.row(y))[x] = kGreen;
    }
    reinterpret_cast<engine::Pixel*>(pixels.row(0))[1] = kNearlyMagenta;
    return bitmap;
  }
  static engine::Bitmap without(engine::Pixel color) {
    return engine::replaceColor(copied(), color, {0, 0, 0, 0}, 0.0);
  }
  void plan(std::function<void(ColorDialog&)> doing) {
    user().uses("frmPasteSpecial", [doing = std::move(doing)](Form& form) {
      ColorDialog dialog(form);
      doing(dialog);
    });
  }
  void pasteSpecial(std::function<void(ColorDialog&)> doing) {
    plan(std::move(doing));
    click("btnEditPasteSpecial");
  }
};

// -- The dialog -------------------------------------------------------------------------------------------

TEST_P(EditingPasteSpecial, HasTheCaptionsOfItsControlsAndNoBoxForTheOriginal) {
  pasteSpecial([this](ColorDialog& dialog) {
    EXPECT_EQ(dialog.form().Caption(), "Paste Special");
    EXPECT_EQ(Bind<Frame>(dialog.form(), "fraOptions").Caption(), "Attributes");
    EXPECT_EQ(Bind<Label>(dialog.form(), "lblHdr").Caption(), "&Mask:");
    EXPECT_EQ(Bind<CommandButton>(dialog.form(), "cmdAction", 0).Caption(), "OK");
    EXPECT_EQ(Bind<CommandButton>(dialog.form(), "cmdAction", 1).Caption(), "Cancel");
    EXPECT_EQ(dialog.form().Find("chkUseOriginalImage"), nullptr);
    EXPECT_FALSE(dialog.color().EnhancedVisible());
    EXPECT_FALSE(dynamic_cast<headless::Form&>(dialog.form()).hasIcon());
    EXPECT_EQ(platform().FormSkin().applied().back().name, "frmPasteSpecial");
    dialog.cancel();
  });
}

TEST_P(EditingPasteSpecial, ShowsTheClipboardsPictureWithAndWithoutTheMask) {
  platform().Screen().MousePointer(kBusyHourglass);
  pasteSpecial([this](ColorDialog& dialog) {
    EXPECT_EQ(dialog.color().Value(), 0x00FF00FF);
    EXPECT_TRUE(same(dialog.before(), copied()));
    EXPECT_TRUE(same(dialog.after(), without(kMagenta)));
    EXPECT_EQ(dialog.after().at(0, 0), (engine::Pixel{0, 0, 0, 0})) << "transparent black";
    EXPECT_EQ(dialog.after().at(1, 0), kNearlyMagenta) << "only exact matches";
    EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(13, 0)) << "once, not during the load";
    EXPECT_EQ(platform().Screen().MousePointer(), kBusyDefault);
    dialog.cancel();
  });
}

TEST_P(EditingPasteSpecial, FollowsEachChosenColor) {
  pasteSpecial([this](ColorDialog& dialog) {
    platform().FormUtility().forgetPointers();
    dialog.color().pick(0x0000C800);
    EXPECT_TRUE(same(dialog.after(), without(kGreen)));
    EXPECT_TRUE(same(dialog.before(), copied()));
    EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(13, 0));
    dialog.color().pick(0x00123456);
    EXPECT_TRUE(same(dialog.after(), copied())) << "a color that does not occur";
    dialog.cancel();
  });
}

TEST_P(EditingPasteSpecial, CopiesByHandSoAFailureIsItsOwn) {
  pasteSpecial([this](ColorDialog& dialog) {
    dynamic_cast<ImageView&>(dialog.pane("igxOriginal")).Picture(nullptr);
    platform().FormUtility().forgetPointers();
    expectReport();
    dialog.color().pick(0x0000C800);
    EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(13)) << "the hourglass stays";
    EXPECT_TRUE(dialog.form().Visible());
    dialog.cancel();
  });
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_THAT(user().boxes()[0].text, HasSubstr("Module: frmPasteSpecial\r\nProcedure: UpdatePreview\r\n"));
}

TEST_P(EditingPasteSpecial, OpenedOnAnEmptyClipboardTheDialogReportsIt) {
  platform().Clipboard().holdNoPicture();
  frmPasteSpecial dialog;
  expectReport();
  plan([](ColorDialog& user) {
    EXPECT_EQ(user.before().width(), 360) << "the left pane keeps the stock picture";
    user.cancel();
  });
  EXPECT_FALSE(dialog.ShowModal());
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_THAT(user().boxes()[0].text, HasSubstr("Module: frmPasteSpecial\r\nProcedure: Form_Load\r\n"));
}

TEST_P(EditingPasteSpecial, ReportsSuccessAloneAndKeepsResultDataEmpty) {
  for (const bool ok : {true, false}) {
    frmPasteSpecial dialog;
    plan([ok](ColorDialog& user) { ok ? user.ok() : user.cancel(); });
    EXPECT_EQ(dialog.ShowModal(), ok);
    EXPECT_EQ(dialog.Success, ok);
    EXPECT_EQ(dialog.ResultData, "");
  }
}

// -- The command ------------------------------------------------------------------------------------------

TEST_P(EditingPasteSpecial, WithoutABitmapOnTheClipboardShowsTheBoxOfPasteOnly) {
  platform().Clipboard().holdNoPicture();
  editor().Tool(ipToolLine);
  log().clear();
  user().answers(kAnswerOK);
  click("btnEditPasteSpecial");
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_EQ(user().boxes()[0].text, "Nothing to paste.");
  EXPECT_EQ(user().boxes()[0].title, "Paste");
  EXPECT_EQ(user().boxes()[0].style, kBoxExclamation);
  EXPECT_THAT(calls(), IsEmpty());
  EXPECT_EQ(editor().Tool(), ipToolLine);
}

TEST_P(EditingPasteSpecial, CanceledItChangesNothing) {
  editor().Tool(ipToolLine);
  log().clear();
  for (const bool byCloseBox : {false, true}) {
    pasteSpecial([&](ColorDialog& dialog) {
      dialog.color().pick(0x0000C800);
      byCloseBox ? dialog.pressCloseBox() : dialog.cancel();
    });
  }
  EXPECT_EQ(options().PasteSpecialMaskColor(), 0x00FF00FF);
  EXPECT_THAT(calls(), IsEmpty());
  EXPECT_EQ(editor().Tool(), ipToolLine);
  EXPECT_FALSE(pressed("btnEditPaste"));
}

TEST_P(EditingPasteSpecial, AcceptedItBeginsAPasteAsItsCommandDoes) {
  editor().Tool(ipToolLine);
  pasteSpecial([this](ColorDialog& dialog) {
    dialog.color().pick(0x0000C800);
    log().clear();
    dialog.ok();
  });
  EXPECT_EQ(options().PasteSpecialMaskColor(), 0x0000C800);
  const auto left = std::to_string(view().ScrollLeft()), top = std::to_string(view().ScrollTop());
  EXPECT_THAT(calls(),
              ElementsAre("scratch.Document.Paste(\"\")", "Tool=1", "MousePointer=0", "SelectionHeight=0",
                          "SelectionWidth=0", "SelectionVisible=False",
                          "SetSelectionRect(" + left + ", " + top + ", 12, 10)", "SelectionVisible=True",
                          "Refresh()", testing::StartsWith("scratch.Surface.DrawTo(")));
  EXPECT_TRUE(pressed("btnEditPaste"));
  EXPECT_EQ(panel("pnlStatus"), kPasteStatus);
  EXPECT_FALSE(command("btnEditPasteSpecial").Enabled());
  editor().Cancel();
}

TEST_P(EditingPasteSpecial, TheFloatingImageShowsTheMaskUntilItIsPlaced) {
  fillClipboard(60, 50, kMagenta);
  pasteSpecial([](ColorDialog& dialog) { dialog.ok(); });
  EXPECT_EQ(view().painted().at(25, 22), kMagenta);
  editor().Cancel();
}

TEST_P(EditingPasteSpecial, PlacedItLeavesThePictureWhereTheMaskIs) {
  pasteSpecial([](ColorDialog& dialog) { dialog.ok(); });
  log().clear();
  editor().Paste();
  EXPECT_THAT(engineCalls(), ElementsAre("view.Draw.Image(12x10 picture, 0, 0, #16711935/255, 1, True, "
                                         "\"Paste\")"));
  EXPECT_EQ(at(0, 0), pixelOf(0, 0));
  EXPECT_EQ(at(1, 0), kNearlyMagenta);
  EXPECT_EQ(at(3, 9), pixelOf(3, 9));
  EXPECT_EQ(at(4, 4), kGreen);
  EXPECT_EQ(undoCaption(), "&Undo Paste");
}

TEST_P(EditingPasteSpecial, ThePasteAfterItIsPlainAgain) {
  for (const bool canceled : {true, false}) {
    open(kWidth, kHeight);
    pasteSpecial([](ColorDialog& dialog) { dialog.ok(); });
    canceled ? editor().Cancel() : editor().Paste();
    click("btnEditPaste");
    editor().Paste();
    EXPECT_EQ(at(0, 0), kMagenta);
  }
}

TEST_P(EditingPasteSpecial, AClipboardThatLosesItsPictureMeanwhileEndsItWithTheBox) {
  pasteSpecial([this](ColorDialog& dialog) {
    platform().Clipboard().holdNoPicture();
    user().answers(kAnswerOK);
    dialog.ok();
  });
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_EQ(user().boxes()[0].text, "Nothing to paste.");
  EXPECT_FALSE(pressed("btnEditPaste"));
  platform().Clipboard().offer(copied());
  click("btnEditPaste");
  editor().Paste();
  EXPECT_EQ(at(0, 0), kMagenta) << "a plain paste";
}

TEST_P(EditingPasteSpecial, WaitsForAnOpenPasteAndForAPicture) {
  click("btnEditPaste");
  EXPECT_FALSE(suite().click("btnEditPasteSpecial"));
  editor().Cancel();
  EXPECT_TRUE(command("btnEditPasteSpecial").Enabled());
  editor().SetControls(false);
  EXPECT_FALSE(command("btnEditPasteSpecial").Enabled());
}

KESTREL_WITH_BOTH_PATHS(EditingPasteSpecial);

}  // namespace
}  // namespace kestrel
