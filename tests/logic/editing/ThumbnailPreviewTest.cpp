// The preview of the thumbnail dialog: sizes that would take long, and the events that make a new one.

#include <cmath>

#include "EditingTest.h"
#include "dialogs/frmGetThumnail.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/FormHeader.h"
#include "imaging/contract/controls/Frame.h"
#include "imaging/contract/controls/TextBox.h"
#include "platform/headless/controls/ColorPicker.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EditingThumbnailPreview : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    open(200, 100);
    options().ThumbnailAddDropShadow(false);
  }
  void use(const std::function<void(Form&)>& doing) {
    user().uses("frmGetThumnail", [&](Form& form) {
      doing(form);
      Bind<FormHeader>(form, "FormHeader").PressCancel();
    });
    editor().ShowGetThumnailDialog();
  }
  static TextBox& size(Form& form, std::int32_t type) { return Bind<TextBox>(form, "txtField", type); }
  static bool canAccept(Form& form) { return Bind<FormHeader>(form, "FormHeader").OKEnabled(); }
  static headless::ImageView& after(Form& form) {
    return Bind<headless::ImageView>(Bind<Site>(form, "Preview"), "igxPreview");
  }
};

// -- Large thumbnails -------------------------------------------------------------------------------------

TEST_P(EditingThumbnailPreview, OfMoreThan32MegapixelsIsSmallerAndSaysSo) {
  use([](Form& form) {
    size(form, 1).Text("9000");  // 40.5 megapixels
    EXPECT_EQ(after(form).Image()->Width(), 8000);
    EXPECT_EQ(after(form).Image()->Height(), 4000);
    EXPECT_EQ(after(form).Notice(), "The thumbnail will have 9000 x 4500 pixels. The preview is smaller.");
    EXPECT_TRUE(canAccept(form));
    size(form, 0).Text("5000");
    EXPECT_EQ(after(form).Image()->Width(), 8000);
    EXPECT_EQ(after(form).Notice(), "The thumbnail will have 10000 x 5000 pixels. The preview is smaller.");
    size(form, 1).Text("40");
    EXPECT_EQ(after(form).Image()->Width(), 40);
    EXPECT_EQ(after(form).Notice(), "");
  });
}

TEST_P(EditingThumbnailPreview, OfExactly32MegapixelsIsTheThumbnail) {
  use([](Form& form) {
    size(form, 1).Text("8000");
    EXPECT_EQ(after(form).Image()->Width(), 8000);
    EXPECT_EQ(after(form).Notice(), "");
  });
}

TEST_P(EditingThumbnailPreview, OfASizeThatTheEngineRefusesDisablesOKWithoutANotice) {
  const std::size_t quarter = view().UndoMemoryLimit();
  const auto width = static_cast<std::int32_t>(std::sqrt(static_cast<double>(quarter) / 4 * 2)) + 100;
  for (const std::string& text : {std::string("1000001"), std::string("200000"), ToText(width)}) {
    use([&](Form& form) {
      size(form, 1).Text("40");
      EXPECT_TRUE(canAccept(form));
      size(form, 1).Text(text);
      EXPECT_FALSE(canAccept(form)) << text;
      EXPECT_EQ(after(form).Image()->Width(), 200) << "not resized";
      EXPECT_EQ(after(form).Notice(), "");
    });
  }
}

TEST_P(EditingThumbnailPreview, OfALongNarrowPictureIsRefusedBeyondTheLongestSide) {
  open(20'000, 1);
  use([](Form& form) {
    size(form, 1).Text("1000000");
    EXPECT_TRUE(canAccept(form));
    size(form, 1).Text("1000001");
    EXPECT_FALSE(canAccept(form));
  });
  // 60 megapixels: too many for a preview, but the side is refused first.
  open(24'000, 1);
  use([](Form& form) {
    size(form, 1).Text("1200000");
    EXPECT_FALSE(canAccept(form));
    EXPECT_EQ(after(form).Notice(), "");
  });
}

// -- Loading and events -----------------------------------------------------------------------------------

TEST_P(EditingThumbnailPreview, LoadsWithoutAnIconWithDigitsInBothBoxes) {
  use([this](Form& form) {
    EXPECT_FALSE(dynamic_cast<headless::Form&>(form).hasIcon());
    for (const std::int32_t type : {0, 1}) {
      EXPECT_EQ(platform().WindowFunctions().styles(size(form, type).hWnd()), 8192) << type;
    }
  });
}

TEST_P(EditingThumbnailPreview, ABoxThatCannotTakeTheFocusIsIgnored) {
  frmGetThumnail dialog;
  dialog.Preview().OriginalPicture(&view());
  size(dialog.Form(), 0).Enabled(false);
  user().uses("frmGetThumnail", [this](Form& form) {
    EXPECT_NE(platform().desktop().focus, size(form, 0).hWnd());
    EXPECT_EQ(after(form).Image()->Width(), 60) << "30 percent";
    EXPECT_TRUE(canAccept(form));
    Bind<FormHeader>(form, "FormHeader").PressCancel();
  });
  EXPECT_FALSE(dialog.ShowModal());
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditingThumbnailPreview, FollowsTheExtraButtonOfTheColor) {
  use([this](Form& form) {
    Bind<CheckBox>(form, "chkAddDropShadow").Value(1);
    platform().FormUtility().forgetPointers();
    Bind<headless::ColorPicker>(form, "cpkColor", 0).pressEnhanced();
    EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(13, 0)) << "one new preview";
  });
}

TEST_P(EditingThumbnailPreview, EachLayoutBringsTheBoxOfTheOriginalToTheFront) {
  use([](Form& form) {
    auto& window = dynamic_cast<headless::Window&>(form);
    auto& box = Bind<CheckBox>(form, "chkUseOriginalImage");
    dynamic_cast<headless::Window&>(Bind<Control>(form, "FormHeader")).bringToFront();
    ASSERT_NE(window.children().back()->handle(), box.hWnd());
    form.Width(form.Width() + 50);
    EXPECT_EQ(window.children().back()->handle(), box.hWnd());
  });
}

KESTREL_WITH_BOTH_PATHS(EditingThumbnailPreview);

}  // namespace
}  // namespace kestrel
