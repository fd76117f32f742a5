// The members that write thumbnails, and ShowOptions.

#include "HostTest.h"

namespace kestrel {
namespace {

class HostThumbnails : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    processing_ = std::make_unique<ImageProcessing>();
    processing_->Initialize();
  }
  void TearDown() override {
    processing_.reset();
    HostTest::TearDown();
  }

  ImageProcessing& processing() { return *processing_; }
  std::shared_ptr<ImgX> read(const std::string& file) {
    const auto picture = platform().CreateImgX();
    picture->Document().FromFile(file);
    return picture;
  }
  void press(const std::string& form, std::int32_t button) {
    user().uses(form, [button](Form& shown) { pressButton(shown, button); });
  }

  std::unique_ptr<ImageProcessing> processing_;
};

TEST_F(HostThumbnails, WithoutANameTheFileIsNextToThePicture) {
  ASSERT_TRUE(processing().OpenImage(png()));
  EXPECT_EQ(processing().SaveThumbnail(), "C:\\a\\b_thumb.png");
  EXPECT_TRUE(exists("C:\\a\\b_thumb.png"));
  EXPECT_EQ(read("C:\\a\\b_thumb.png")->Image()->Format(), 2);
}

TEST_F(HostThumbnails, TheNameIsMadeFromTheLastPointOfTheName) {
  ASSERT_TRUE(processing().OpenImage(makePicture("C:\\a\\b.c.bmp", 6)));
  EXPECT_EQ(processing().SaveThumbnail(), "C:\\a\\b.c_thumb.bmp");
  EXPECT_EQ(read("C:\\a\\b.c_thumb.bmp")->Image()->Format(), 6);
}

TEST_F(HostThumbnails, AnUntitledPictureGivesTheBareName) {
  processing().Control().Picture(read(png())->Writer().ToPicture());
  ASSERT_EQ(processing().Filename(), "");
  EXPECT_EQ(processing().SaveThumbnail(), "_thumb.");
}

TEST_F(HostThumbnails, TakesTheFormatFromTheGivenName) {
  ASSERT_TRUE(processing().OpenImage(png()));
  EXPECT_EQ(processing().SaveThumbnail("C:\\a\\small.bmp"), "C:\\a\\small.bmp");
  EXPECT_EQ(read("C:\\a\\small.bmp")->Image()->Format(), 6);
  EXPECT_EQ(processing().SaveThumbnail("C:\\a\\small.tiff"), "C:\\a\\small.tiff");
  EXPECT_EQ(read("C:\\a\\small.tiff")->Image()->Format(), 6) << "an extension outside the table";
}

TEST_F(HostThumbnails, TheSizeIsInPercentAndByDefaultThatOfTheOptions) {
  ASSERT_TRUE(processing().OpenImage(png()));
  processing().Options()->ThumbnailAddDropShadow(false);
  processing().Options()->ThumbnailSize(30);
  processing().SaveThumbnail("C:\\a\\default.png");
  EXPECT_EQ(read("C:\\a\\default.png")->Image()->Width(), 12);
  processing().SaveThumbnail("C:\\a\\half.png", 50);
  EXPECT_EQ(read("C:\\a\\half.png")->Image()->Width(), 20);
}

TEST_F(HostThumbnails, TheShadowIsThatOfTheOptions) {
  ASSERT_TRUE(processing().OpenImage(png()));
  processing().Options()->ThumbnailAddDropShadow(false);
  processing().SaveThumbnail("C:\\a\\plain.png", 50);
  processing().Options()->ThumbnailAddDropShadow(true);
  processing().SaveThumbnail("C:\\a\\shadow.png", 50);
  const PicturePtr with = processing().GetThumbnail(50, ipUseDefault, true);
  processing().Control().Picture(with);
  EXPECT_EQ(read("C:\\a\\plain.png")->Image()->Width(), 20);
  EXPECT_EQ(read("C:\\a\\shadow.png")->Image()->Width(), processing().Image()->Width());
  EXPECT_GT(processing().Image()->Width(), 20);
}

TEST_F(HostThumbnails, TheQualityIsThatOfTheOptions) {
  ASSERT_TRUE(processing().OpenImage(png()));
  const auto sizeAt = [this](std::int32_t quality) {
    processing().Options()->JPEGQuality(quality);
    EXPECT_EQ(processing().SaveThumbnail("C:\\a\\t.jpg", 100), "C:\\a\\t.jpg");
    return std::filesystem::file_size(platform().files().host("C:\\a\\t.jpg"));
  };
  EXPECT_LT(sizeAt(5), sizeAt(95));
}

TEST_F(HostThumbnails, AFileThatCannotBeWrittenGivesAnEmptyName) {
  ASSERT_TRUE(processing().OpenImage(png()));
  EXPECT_EQ(processing().SaveThumbnail("C:\\nowhere\\t.png"), "");
}

TEST_F(HostThumbnails, LeavesThePictureAlone) {
  ASSERT_TRUE(processing().OpenImage(png()));
  processing().SaveThumbnail();
  EXPECT_EQ(processing().Image()->Width(), 40);
  EXPECT_FALSE(processing().Control().Changed());
  EXPECT_EQ(processing().Filename(), "C:\\a\\b.png");
}

TEST_F(HostThumbnails, SaveImageThumbnailExMakesTheSameName) {
  ASSERT_TRUE(processing().OpenImage(png()));
  press("frmGetThumnail", 0);
  EXPECT_TRUE(processing().SaveImageThumbnailEx());
  EXPECT_TRUE(exists("C:\\a\\b_thumb.png"));
}

TEST_F(HostThumbnails, SaveImageThumbnailExOfAnUntitledPictureHasTheBareName) {
  processing().Control().Picture(read(png())->Writer().ToPicture());
  press("frmGetThumnail", 0);
  EXPECT_TRUE(processing().SaveImageThumbnailEx());
  EXPECT_TRUE(exists("_thumb."));
}

TEST_F(HostThumbnails, SaveImageThumbnailExReturnsTheAnswerOfTheControl) {
  ASSERT_TRUE(processing().OpenImage(png()));
  press("frmGetThumnail", 1);
  EXPECT_FALSE(processing().SaveImageThumbnailEx("C:\\a\\t.png"));
  EXPECT_FALSE(exists("C:\\a\\t.png"));
  press("frmGetThumnail", 0);
  EXPECT_TRUE(processing().SaveImageThumbnailEx("C:\\a\\t.png"));
  EXPECT_TRUE(exists("C:\\a\\t.png"));
}

TEST_F(HostThumbnails, ShowOptionsIsFalseAlsoAfterOK) {
  press("frmOptions", 0);
  EXPECT_FALSE(processing().ShowOptions());
  press("frmOptions", 0);
  EXPECT_TRUE(processing().Control().ShowOptions());
  press("frmOptions", 1);
  EXPECT_FALSE(processing().ShowOptions());
}

TEST_F(HostThumbnails, OptionsAreThoseOfTheProcess) {
  EXPECT_EQ(processing().Options(), modProcessing::GetOptions());
}

}  // namespace
}  // namespace kestrel
