#include "BatchStore.h"
#include "EditingTest.h"
#include "dialogs/frmGetThumnail.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/FormHeader.h"
#include "imaging/contract/controls/TextBox.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What OK of the thumbnail dialog hands over and stores.
class EditingThumbnailAnswer : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    open(200, 100);
    setOptions();
  }
  void TearDown() override {
    useStore(nullptr);
    EditingTest::TearDown();
  }
  void setOptions() {
    options().ThumbnailBackgroundColor(0x00FF00);
    options().ThumbnailAddDropShadow(false);
  }
  PicturePtr accept(std::int32_t type, const std::string& size, std::int32_t shadow, bool asDefault) {
    user().uses("frmGetThumnail", [=](Form& form) {
      Bind<TextBox>(form, "txtField", type).Text(size);
      Bind<CheckBox>(form, "chkAddDropShadow").Value(shadow);
      Bind<CheckBox>(form, "chkSaveAsDefault").Value(asDefault ? 1 : 0);
      Bind<FormHeader>(form, "FormHeader").PressOK();
    });
    return editor().ShowGetThumnailDialog();
  }

  BatchStore store_;
};

TEST_P(EditingThumbnailAnswer, ASeparatorInTheSizeKeepsTheColorTheColor) {
  EditingTest::show(engine::Bitmap::filled(200, 100, {0, 0, 0, 0}));
  for (const char* size : {"40|7", "40||", "40|255|9"}) {
    const PicturePtr made = accept(1, size, 0, false);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->Width(), 40) << size;
    EXPECT_EQ(engine::bitmapOf(*made).at(3, 3), (engine::Pixel{0, 255, 0, 255})) << size;
  }
}

TEST_P(EditingThumbnailAnswer, SaveAsDefaultStoresAPercentageWithoutAShadowRounded) {
  options().ThumbnailSizeType(tstWidthInPixels);
  options().ThumbnailAddDropShadow(true);
  ASSERT_NE(accept(0, "13.5", 0, true), nullptr);
  EXPECT_EQ(options().ThumbnailSizeType(), tstPercentage);
  EXPECT_FALSE(options().ThumbnailAddDropShadow());
  EXPECT_EQ(options().ThumbnailSize(), 14) << "13.5";
}

TEST_P(EditingThumbnailAnswer, SaveAsDefaultStoresItsSettingsTogether) {
  useStore(&store_);
  setOptions();
  store_.batches.clear();
  ASSERT_NE(accept(1, "64", 0, true), nullptr);
  EXPECT_THAT(store_.batches.front(), ElementsAre("AddDropShadow", "SizeType", "SizeEx", "BackgroundColor"));
  EXPECT_EQ(options().ThumbnailSize(), 64);
}

TEST_P(EditingThumbnailAnswer, WithoutSaveAsDefaultNothingButThePlaceIsStored) {
  useStore(&store_);
  setOptions();
  store_.batches.clear();
  store_.alone.clear();
  ASSERT_NE(accept(1, "64", 0, false), nullptr);
  EXPECT_THAT(store_.batches, IsEmpty()) << "the place is in the platform's own store";
  EXPECT_THAT(store_.alone, IsEmpty());
}

KESTREL_WITH_BOTH_PATHS(EditingThumbnailAnswer);

}  // namespace
}  // namespace kestrel
