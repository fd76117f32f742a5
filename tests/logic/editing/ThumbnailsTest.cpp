#include "EditingTest.h"

namespace kestrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class EditingThumbnails : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    open(200, 100);
    options().ThumbnailBackgroundColor(0x00FF00);
  }
  void expectUntouched() {
    EXPECT_TRUE(same(shown(), gradient(200, 100)));
    EXPECT_FALSE(editor().Changed());
    EXPECT_EQ(view().UndoName(), "");
    EXPECT_FALSE(view().Modified());
  }
};

TEST_P(EditingThumbnails, SizesHaveTheNumbersOfTheInterface) {
  EXPECT_EQ(tstPercentage, 0);
  EXPECT_EQ(tstWidthInPixels, 1);
}

TEST_P(EditingThumbnails, WithAllDefaultsItIsThirtyPercentOnTheOptionsBackground) {
  EXPECT_EQ(options().ThumbnailSize(), 30);
  const PicturePtr thumbnail = editor().GetThumbnail();
  EXPECT_EQ(thumbnail->Width(), 60);
  EXPECT_EQ(thumbnail->Height(), 30);
  EXPECT_THAT(calls(),
              ElementsAre("scratch.Document.CopyFrom(0, \"\")", "scratch.Effects.Resize(60, 0, 13, \"\")",
                          "scratch.Alpha.Flatten(#65280/255, \"\")", "scratch.Writer.ToPicture()"));
  expectUntouched();
}

TEST_P(EditingThumbnails, TheWidthIsTheIntegerPartOfWidthOver100TimesSize) {
  open(199, 100);
  editor().GetThumbnail(33);
  EXPECT_THAT(calls(), Contains("scratch.Effects.Resize(65, 0, 13, \"\")")) << "65.67";
}

TEST_P(EditingThumbnails, TheWidthInPixelsKeepsTheAspectRatio) {
  ThumbnailSizeTypeEnum type = tstWidthInPixels;
  const PicturePtr thumbnail = editor().GetThumbnailEx(type, 100);
  EXPECT_EQ(thumbnail->Width(), 100);
  EXPECT_EQ(thumbnail->Height(), 50);
  EXPECT_THAT(calls(), Contains("scratch.Effects.Resize(100, 0, 13, \"\")"));
  EXPECT_EQ(type, tstWidthInPixels);
}

TEST_P(EditingThumbnails, AnySizeTypeButZeroMeansPixels) {
  auto type = static_cast<ThumbnailSizeTypeEnum>(7);
  EXPECT_EQ(editor().GetThumbnailEx(type, 50)->Width(), 50);
}

TEST_P(EditingThumbnails, ShrinksFirstAndThenAddsTheShadow) {
  editor().GetThumbnail(50, 0x0000FF, true, 1, 2, 3, 4, 5);
  EXPECT_THAT(calls(),
              ElementsAre("scratch.Document.CopyFrom(0, \"\")", "scratch.Effects.Resize(100, 0, 13, \"\")",
                          "scratch.Effects.DropShadow(1, 2, #3/4, 5, True, \"\")",
                          "scratch.Alpha.Flatten(#255/255, \"\")", "scratch.Writer.ToPicture()"));
}

TEST_P(EditingThumbnails, EachArgumentOfMinusOneTakesItsOption) {
  options().DropShadowHorizontalOffset(1);
  options().DropShadowVerticalOffset(2);
  options().DropShadowColor(3);
  options().DropShadowOpacity(4);
  options().DropShadowBlur(5);
  options().ThumbnailSize(25);
  editor().GetThumbnail(-1, -1, true);
  EXPECT_THAT(calls(), Contains("scratch.Effects.Resize(50, 0, 13, \"\")"));
  EXPECT_THAT(calls(), Contains("scratch.Effects.DropShadow(1, 2, #3/4, 5, True, \"\")"));
  EXPECT_THAT(calls(), Contains("scratch.Alpha.Flatten(#65280/255, \"\")"));
}

TEST_P(EditingThumbnails, APercentageThatGivesWidth0GoesToTheEngine) {
  open(50, 40);
  EXPECT_THROW(editor().GetThumbnail(1), RuntimeError);
  EXPECT_THAT(calls(), Contains("scratch.Effects.Resize(0, 0, 13, \"\")"));
}

TEST_P(EditingThumbnails, ATransparentPictureComesBackOpaqueOnTheBackground) {
  show(engine::Bitmap::filled(50, 40, {0, 0, 0, 0}));
  const engine::Bitmap thumbnail = engine::bitmapOf(*editor().GetThumbnail());
  EXPECT_EQ(thumbnail.at(3, 3), (engine::Pixel{0, 255, 0, 255}));
}

TEST_P(EditingThumbnails, AnOpacityBeyondAByteRaisesAnOverflowWithAShadowAlone) {
  EXPECT_THROW(editor().GetThumbnail(50, 0, true, 1, 1, 0, 256, 1), RuntimeError);
  EXPECT_NO_THROW(editor().GetThumbnail(50, 0, false, 1, 1, 0, 256, 1));
}

TEST_P(EditingThumbnails, WithoutAPictureTheEnginesErrorGoesToTheCaller) {
  editor().Picture(nullptr);
  EXPECT_THROW(editor().GetThumbnail(), RuntimeError);
}

// -- Saving -----------------------------------------------------------------------------------------------

TEST_P(EditingThumbnails, SavingShowsWhetherItIsNewAndClearsTheStatus) {
  std::vector<std::string> texts;
  when(suite().CommandUpdated, [&](docking::CommandModel& changed) {
    if (changed.Name() == "pnlStatus") texts.push_back(panel("pnlStatus"));
  });
  const std::string file = path("b_thumb.png");
  const auto save = [&] {
    platform().FormUtility().forgetPointers();
    EXPECT_TRUE(editor().SaveImageThumbnail(file));
    EXPECT_EQ(panel("pnlStatus"), "");
    EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(kBusyHourglass, kBusyDefault));
  };
  save();
  EXPECT_TRUE(exists(file));
  save();
  EXPECT_THAT(texts, ElementsAre("Saving thumbnail...", "", "Updating thumbnail...", ""));
  expectUntouched();
}

TEST_P(EditingThumbnails, SavingWritesTheFormatOfTheNameInTheOptionsQuality) {
  options().JPEGQuality(55);
  options().ThumbnailAddDropShadow(false);
  const std::string file = path("b_thumb.jpg");
  EXPECT_TRUE(editor().SaveImageThumbnail(file));
  EXPECT_THAT(calls(), Contains("scratch.Writer.ToFile(\"" + file + "\", 1, 0, True)"));
  const auto saved = platform().CreateImgX();
  saved->Document().FromFile(file);
  EXPECT_EQ(saved->Image()->Width(), 60);
  EXPECT_EQ(saved->Image()->Format(), 1);
}

TEST_P(EditingThumbnails, SavingAddsTheShadowByTheOption) {
  options().ThumbnailAddDropShadow(true);
  editor().SaveImageThumbnail(path("b_thumb.png"));
  EXPECT_THAT(calls(), Contains(HasSubstr("scratch.Effects.DropShadow(")));
  options().ThumbnailAddDropShadow(false);
  log().clear();
  editor().SaveImageThumbnail(path("b_thumb.png"));
  EXPECT_THAT(calls(), testing::Not(Contains(HasSubstr("DropShadow"))));
}

TEST_P(EditingThumbnails, SavingTakesTheSizeOfTheOptionsAsAPercentage) {
  options().ThumbnailSize(25);
  options().ThumbnailSizeType(tstWidthInPixels);
  EXPECT_TRUE(editor().SaveImageThumbnail(path("b_thumb.png")));
  EXPECT_THAT(calls(), Contains("scratch.Effects.Resize(50, 0, 13, \"\")"));
}

TEST_P(EditingThumbnails, SavingWithoutANameWritesThumbWithAPoint) {
  // A relative name is written into the scratch folder.
  const auto folder = std::filesystem::current_path();
  std::filesystem::current_path(platform().files().host(platform().files().scratch()));
  editor().SaveImageThumbnail("");
  std::filesystem::current_path(folder);
  EXPECT_THAT(calls(), Contains("scratch.Writer.ToFile(\"_thumb.\", 6, 0, True)"))
      << "a name without an extension counts as a bitmap";
  EXPECT_EQ(panel("pnlStatus"), "");
}

TEST_P(EditingThumbnails, AFileThatCannotBeWrittenGivesFalse) {
  const std::string file = path("nowhere") + platform().files().separator() + "b_thumb.png";
  EXPECT_FALSE(editor().SaveImageThumbnail(file));
  EXPECT_EQ(panel("pnlStatus"), "");
  EXPECT_FALSE(exists(file));
}

TEST_P(EditingThumbnails, AThumbnailThatCannotBeMadeRaisesAndClearsTheStatus) {
  options().ThumbnailSize(0);
  EXPECT_THROW(editor().SaveImageThumbnail(path("b_thumb.png")), RuntimeError);
  EXPECT_EQ(panel("pnlStatus"), "");
  EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(kBusyHourglass, kBusyDefault));
  EXPECT_FALSE(exists(path("b_thumb.png")));
}

KESTREL_WITH_BOTH_PATHS(EditingThumbnails);

}  // namespace
}  // namespace kestrel
