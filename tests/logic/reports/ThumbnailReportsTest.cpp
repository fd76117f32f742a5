#include <gmock/gmock.h>

#include "Reports.h"
#include "diagnostics/Trailer.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/FormHeader.h"
#include "imaging/contract/controls/TextBox.h"

namespace kestrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Field;

/// The thumbnail dialog on a machine with a reporting object, where a reported error goes on to the caller.
class ThumbnailReports : public EditorReporting {
 protected:
  PicturePtr show(std::function<void(Form&)> doing) {
    EXPECT_TRUE(editor_->OpenImage(picture_));
    platform_->reporterInstalled = true;
    user().uses("frmGetThumnail", std::move(doing));
    return editor_->ShowGetThumnailDialog();
  }
  void expectReported(const char* procedure) {
    EXPECT_THAT(platform_->reports, Contains(Field(&fakes::Report::procedure, procedure)));
  }
};

TEST_F(ThumbnailReports, APreviewThatCannotBeResetIsMadeOfThePictureThatIsThere) {
  show([this](Form& form) {
    Site& preview = Bind<Site>(form, "Preview");
    auto& before = Bind<ImageView>(preview, "igxOriginal");
    auto& after = Bind<ImageView>(preview, "igxPreview");
    auto& header = Bind<FormHeader>(form, "FormHeader");
    Bind<CheckBox>(form, "chkAddDropShadow").Value(0);
    EXPECT_TRUE(header.OKEnabled());
    EXPECT_EQ(after.Image()->Width(), 12) << "30 percent";
    before.Picture(nullptr);
    headless_->FormUtility().forgetPointers();
    Bind<TextBox>(form, "txtField", 1).Text("8");
    EXPECT_EQ(after.Image()->Width(), 8) << "resized";
    EXPECT_THAT(headless_->FormUtility().pointers(), ElementsAre(13, 0, 13, 0))
        << "for the option and for the text";
    EXPECT_FALSE(header.OKEnabled());
    header.PressCancel();
  });
  expectReported("Reset");
}

TEST_F(ThumbnailReports, ADialogThatIsCanceledAfterAFailedOKMakesNone) {
  EXPECT_EQ(show([this](Form& form) {
              auto& header = Bind<FormHeader>(form, "FormHeader");
              Bind<CheckBox>(form, "chkSaveAsDefault").Value(1);
              platform_->storeFailsOnce = true;
              EXPECT_THROW(header.PressOK(), RuntimeError);
              EXPECT_TRUE(form.Visible());
              header.PressCancel();
            }),
            nullptr);
  expectReported("FormHeader_OKClick");
}

}  // namespace
}  // namespace kestrel
