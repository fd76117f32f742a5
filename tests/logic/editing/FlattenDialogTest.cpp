#include "EditingTest.h"
#include "ShadowDialog.h"
#include "dialogs/frmFlattenAlpha.h"
#include "engine/effects/Flatten.h"
#include "imaging/contract/controls/Frame.h"
#include "imaging/contract/controls/Label.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr engine::Pixel kGlass{200, 100, 50, 128};

/// An editor with a half transparent picture of 40 by 30 pixels, opaque in its upper left quarter.
class EditingFlattenDialog : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    show(glass());
    options().FlattenAlphaColor(0x00204060);
  }
  static engine::Bitmap glass() {
    engine::Bitmap bitmap = engine::Bitmap::filled(kWidth, kHeight, kGlass);
    const engine::Pixels pixels = bitmap.writable();
    for (std::int32_t y = 0; y < kHeight / 2; ++y) {
      for (std::int32_t x = 0; x < kWidth / 2; ++x) {
        reinterpret_cast<engine::Pixel*>(pixels.row(y))[x].a = 255;
      }
    }
    return bitmap;
  }
  bool showDialog(std::function<void(ColorDialog&)> doing) {
    plan(std::move(doing));
    return editor().ShowFlattenAlphaDialog();
  }
  void plan(std::function<void(ColorDialog&)> doing) {
    user().uses("frmFlattenAlpha", [doing = std::move(doing)](Form& form) {
      ColorDialog dialog(form);
      doing(dialog);
    });
  }
  static engine::Bitmap flattened(const engine::Bitmap& picture, OLE_COLOR color) {
    const Colour colour(color);
    return engine::flatten(picture, {colour.Red(), colour.Green(), colour.Blue(), 255});
  }
};

TEST_P(EditingFlattenDialog, HasTheCaptionsOfItsControls) {
  showDialog([this](ColorDialog& dialog) {
    EXPECT_EQ(dialog.form().Caption(), "Flatten Transparency");
    EXPECT_EQ(Bind<Frame>(dialog.form(), "fraOptions").Caption(), "Options");
    EXPECT_EQ(Bind<Label>(dialog.form(), "lblHdr").Caption(), "&Color:");
    EXPECT_EQ(Bind<Frame>(dialog.form(), "fraPreview").Caption(), "Preview");
    EXPECT_EQ(dialog.useOriginal().Caption(), "Use &Original Image");
    EXPECT_FALSE(dialog.color().EnhancedVisible());
    EXPECT_FALSE(dynamic_cast<headless::Form&>(dialog.form()).hasIcon());
    EXPECT_EQ(platform().FormSkin().applied().back().name, "frmFlattenAlpha");
    dialog.cancel();
  });
}

TEST_P(EditingFlattenDialog, OpensOnTheOptionWithoutComputingAPreview) {
  editor().SetSelection(0, 0, kWidth, kHeight);
  platform().Screen().MousePointer(kBusyHourglass);
  showDialog([this](ColorDialog& dialog) {
    EXPECT_EQ(dialog.color().Value(), 0x00204060);
    EXPECT_TRUE(same(dialog.before(), glass()));
    EXPECT_TRUE(same(dialog.after(), glass())) << "the plain copy";
    EXPECT_THAT(platform().FormUtility().pointers(), IsEmpty());
    EXPECT_EQ(platform().Screen().MousePointer(), kBusyDefault);
    dialog.cancel();
  });
}

TEST_P(EditingFlattenDialog, PreviewsEachChosenColor) {
  editor().SetSelection(0, 0, kWidth, kHeight);
  showDialog([this](ColorDialog& dialog) {
    for (const OLE_COLOR color : {0x00FFFFFF, 0x000000FF, 0}) {
      platform().FormUtility().forgetPointers();
      dialog.color().pick(color);
      EXPECT_TRUE(same(dialog.after(), flattened(glass(), color)));
      EXPECT_TRUE(same(dialog.before(), glass()));
      EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(13, 0));
    }
    dialog.cancel();
  });
}

TEST_P(EditingFlattenDialog, TickingTheBoxComputesThePreviewOfThePicture) {
  showDialog([](ColorDialog& dialog) {
    EXPECT_EQ(dialog.useOriginal().Value(), 0);
    EXPECT_EQ(dialog.before().width(), 360) << "the stock picture";
    dialog.useOriginal().Value(1);
    EXPECT_TRUE(same(dialog.before(), glass()));
    EXPECT_TRUE(same(dialog.after(), flattened(glass(), 0x00204060)));
    dialog.cancel();
  });
}

TEST_P(EditingFlattenDialog, OpenedOnASelectionItShowsTheSection) {
  editor().SetSelection(15, 10, 10, 8);
  showDialog([](ColorDialog& dialog) {
    EXPECT_EQ(dialog.useOriginal().Value(), 1);
    EXPECT_EQ(dialog.before().width(), 10);
    EXPECT_EQ(dialog.before().height(), 8);
    EXPECT_EQ(dialog.before().at(0, 0), glass().at(15, 10));
    EXPECT_TRUE(same(dialog.after(), dialog.before()));
    dialog.cancel();
  });
}

TEST_P(EditingFlattenDialog, OKStoresTheColorAndFlattensTheWholePicture) {
  editor().SetSelection(15, 10, 10, 8);
  EXPECT_TRUE(showDialog([this](ColorDialog& dialog) {
    dialog.color().pick(0x00FF8000);
    log().clear();
    dialog.ok();
  }));
  EXPECT_EQ(options().FlattenAlphaColor(), 0x00FF8000);
  EXPECT_THAT(engineCalls(), ElementsAre("view.Alpha.Flatten(#16744448/255, \"\")"));
  EXPECT_TRUE(same(shown(), flattened(glass(), 0x00FF8000)));
}

TEST_P(EditingFlattenDialog, CancelAndTheCloseBoxLeaveOptionsAndPicture) {
  for (const bool byCloseBox : {false, true}) {
    EXPECT_FALSE(showDialog([&](ColorDialog& dialog) {
      dialog.color().pick(0x00FF8000);
      byCloseBox ? dialog.pressCloseBox() : dialog.cancel();
    }));
  }
  EXPECT_EQ(options().FlattenAlphaColor(), 0x00204060);
  EXPECT_TRUE(same(shown(), glass()));
  EXPECT_FALSE(editor().Changed());
}

TEST_P(EditingFlattenDialog, ReportsSuccessAloneAndKeepsResultDataEmpty) {
  for (const bool ok : {true, false}) {
    frmFlattenAlpha dialog;
    plan([ok](ColorDialog& user) { ok ? user.ok() : user.cancel(); });
    EXPECT_EQ(dialog.ShowModal(), ok);
    EXPECT_EQ(dialog.Success, ok);
    EXPECT_EQ(dialog.ResultData, "");
  }
}

TEST_P(EditingFlattenDialog, AFailingPreviewLeavesTheHourglassAndNamesTheDialog) {
  frmFlattenAlpha dialog;
  plan([this](ColorDialog& user) {
    dynamic_cast<ImageView&>(user.pane("igxPreview")).Picture(nullptr);
    dynamic_cast<ImageView&>(user.pane("igxOriginal")).Picture(nullptr);
    expectReport();  // the copy
    expectReport();  // the effect
    user.color().pick(0x00010203);
    EXPECT_TRUE(user.form().Visible());
    user.cancel();
  });
  dialog.ShowModal();
  EXPECT_EQ(platform().FormUtility().pointers().back(), kBusyArrowHourglass);
  EXPECT_THAT(user().boxes().back().text,
              testing::HasSubstr("Module: frmFlattenAlpha\r\nProcedure: UpdatePreview\r\n"));
}

TEST_P(EditingFlattenDialog, TheCommandOpensIt) {
  plan([](ColorDialog& dialog) { dialog.ok(); });
  click("btnToolsFlattenAlpha");
  EXPECT_TRUE(same(shown(), flattened(glass(), 0x00204060)));
  click("btnEditUndo");
  EXPECT_TRUE(same(shown(), glass()));
}

KESTREL_WITH_BOTH_PATHS(EditingFlattenDialog);

}  // namespace
}  // namespace kestrel
