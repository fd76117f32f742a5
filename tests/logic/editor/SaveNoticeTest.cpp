// The notice after a save: a file that is not what its name promises, lost transparency, a failed save.

#include "../../contract/TiffBytes.h"
#include "EditorTest.h"
#include "imaging/contract/Formats.h"

namespace kestrel {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr char kMisnamed[] = "\"x.png\" holds JPEG data, since a picture keeps its format.";
constexpr char kConvert[] = " To convert it, use Export.";
constexpr char kUnsaved[] =
    "The picture is not saved: \"x.png\" could not be written. Save it under another name or in another "
    "folder.";

class EditorSaveNotice : public EditorTest {
 protected:
  /// A name in a folder that doesn't exist.
  std::string unwritable() { return path("nowhere") + platform().files().separator() + "x.png"; }
  void failToSave() {
    user().answers(kAnswerOK);
    EXPECT_FALSE(editor().SaveImageAs(unwritable()));
  }
  void offerExport(bool value) { command("btnFileExport").Enabled(value); }
  std::string captionOf(const char* key) { return command(key).Caption(); }

  /// A picture of that format with transparent corners, some pixels of them partially.
  void startWithTransparency(std::int32_t format) {
    startWithPicture("open", format);
    editor().Rotate(45);
    ASSERT_EQ(editor().Image()->GetPixel(0, 0).Alpha(), 0);
  }
  std::shared_ptr<ImgX> read(const std::string& file) {
    auto picture = platform().CreateImgX();
    picture->Document().FromFile(file);
    return picture;
  }
};

// -- Extension and format ---------------------------------------------------------------------------------

TEST_P(EditorSaveNotice, ASaveWhoseExtensionAndFormatDifferNamesExport) {
  startWithPicture("open.jpg", format::kJpg);
  offerExport(true);
  EXPECT_TRUE(editor().SaveImageAs(path("x.png")));
  EXPECT_EQ(read(path("x.png"))->Image()->Format(), format::kJpg);
  EXPECT_EQ(view().Notice(), std::string(kMisnamed) + kConvert);
  EXPECT_EQ(view().noticeButton(), captionOf("btnFileExport"));
}

TEST_P(EditorSaveNotice, ItGoesWithTheNextSaveThatAgrees) {
  startWithPicture("open.jpg", format::kJpg);
  editor().SaveImageAs(path("x.png"));
  change();
  EXPECT_THAT(view().Notice(), StartsWith(kMisnamed)) << "editing leaves it";
  editor().SaveImage();
  EXPECT_THAT(view().Notice(), StartsWith(kMisnamed)) << "the next save differs too";
  editor().SaveImageAs(path("x.jpg"));
  EXPECT_EQ(view().Notice(), "");
  EXPECT_EQ(view().noticeButton(), "");
}

TEST_P(EditorSaveNotice, ItGoesWithThePicture) {
  startWithPicture("open.jpg", format::kJpg);
  editor().SaveImageAs(path("x.png"));
  EXPECT_TRUE(editor().OpenImage(makePicture("other.png", format::kPng)));
  EXPECT_EQ(view().Notice(), "");
  change();
  EXPECT_EQ(view().Notice(), "");
}

TEST_P(EditorSaveNotice, ClosedByTheUserItReturnsWithTheNextSaveThatDiffers) {
  startWithPicture("open.jpg", format::kJpg);
  editor().SaveImageAs(path("x.png"));
  view().closeNotice();
  change();
  EXPECT_EQ(view().Notice(), "");
  editor().SaveImage();
  EXPECT_THAT(view().Notice(), StartsWith(kMisnamed));
}

TEST_P(EditorSaveNotice, EverySpellingOfAnExtensionAgreesAndNoExtensionDoes) {
  startWithPicture("open.jpg", format::kJpg);
  for (const char* name : {"x.jpg", "x.JPG", "x.jpeg", "x.jpe", "x.jfif", "x"}) {
    EXPECT_TRUE(editor().SaveImageAs(path(name)));
    EXPECT_EQ(view().Notice(), "") << name;
  }
  for (const char* name : {"x.tif", "x.png.bak", "x.jpg~"}) {
    EXPECT_TRUE(editor().SaveImageAs(path(name)));
    EXPECT_THAT(view().Notice(), HasSubstr("holds JPEG data")) << name;
  }
}

TEST_P(EditorSaveNotice, APictureWithoutFormatSavedAsTiffIsMisnamed) {
  start();
  editor().Picture(platform().CreateCanvas(12, 8)->Picture());
  connections_.push_back(
      editor().RequestSaveFilename.Connect([](std::string&, bool& cancel) { cancel = true; }));
  EXPECT_TRUE(editor().SaveImageAs(path("x.tiff"))) << "written as a bitmap";
  EXPECT_THAT(view().Notice(), StartsWith("\"x.tiff\" holds BMP data"));
}

TEST_P(EditorSaveNotice, WithoutTheExportCommandItNamesNone) {
  startWithPicture("open.jpg", format::kJpg);
  offerExport(false);
  editor().SaveImageAs(path("x.png"));
  EXPECT_EQ(view().Notice(), kMisnamed);
  EXPECT_EQ(view().noticeButton(), "");
}

// -- Transparency -----------------------------------------------------------------------------------------

TEST_P(EditorSaveNotice, AFormatWithoutTransparencyIsWhiteThereAndTheNoticeSaysSo) {
  for (const std::int32_t format : {format::kJpg, format::kPcx, format::kWmf, format::kEmf, format::kWbmp}) {
    startWithTransparency(format);
    const std::string name(FormatOf(format)->Name);
    const std::string file = path("x." + std::string(FormatOf(format)->Extensions[0]));
    EXPECT_TRUE(editor().SaveImageAs(file)) << name;
    EXPECT_EQ(view().Notice(),
              name + " files have no transparency: transparent parts are white in the file.");
    EXPECT_EQ(view().noticeButton(), "") << name;
    const auto saved = read(file);
    EXPECT_EQ(saved->Image()->GetPixel(0, 0).Alpha(), 255) << name;
    EXPECT_GT(saved->Image()->GetPixel(0, 0).Green(), 250) << name;
    EXPECT_EQ(editor().Image()->GetPixel(0, 0).Alpha(), 0) << "the open picture stays as it is";
    endEditor();
  }
}

TEST_P(EditorSaveNotice, AFormatWithTransparencyHasNone) {
  for (const std::int32_t format :
       {format::kPng, format::kTif, format::kTga, format::kBmp, format::kPsd, format::kTla}) {
    startWithTransparency(format);
    const std::string file = path("x." + std::string(FormatOf(format)->Extensions[0]));
    EXPECT_TRUE(editor().SaveImageAs(file));
    EXPECT_EQ(view().Notice(), "") << file;
    EXPECT_EQ(read(file)->Image()->GetPixel(0, 0).Alpha(), 0) << file;
    endEditor();
  }
}

TEST_P(EditorSaveNotice, GifLosesPartialTransparencyOnly) {
  startWithTransparency(format::kGif);
  EXPECT_TRUE(editor().SaveImageAs(path("x.gif")));
  EXPECT_THAT(view().Notice(), StartsWith("GIF files have no partial transparency: "));
  EXPECT_TRUE(editor().OpenImage(path("x.gif")));
  ASSERT_EQ(editor().Image()->GetPixel(0, 0).Alpha(), 0);
  change();
  EXPECT_TRUE(editor().SaveImage());
  EXPECT_EQ(view().Notice(), "") << "a GIF file has only full transparency to lose";
}

TEST_P(EditorSaveNotice, AnOpaquePictureHasNone) {
  startWithPicture("open.jpg", format::kJpg);
  change();
  EXPECT_TRUE(editor().SaveImage());
  EXPECT_EQ(view().Notice(), "");
}

TEST_P(EditorSaveNotice, AMisnamedFileWithoutTransparencyHasBothSentences) {
  startWithTransparency(format::kJpg);
  EXPECT_TRUE(editor().SaveImageAs(path("x.png")));
  EXPECT_THAT(view().Notice(), StartsWith(kMisnamed));
  EXPECT_THAT(view().Notice(),
              EndsWith(" JPEG files have no transparency: transparent parts are white in the file."));
}

// -- Failed saves -----------------------------------------------------------------------------------------

TEST_P(EditorSaveNotice, AFailedSaveOffersSaveAsUntilASaveSucceeds) {
  startWithPicture();
  change();
  failToSave();
  EXPECT_EQ(view().Notice(), kUnsaved);
  EXPECT_EQ(view().noticeButton(), captionOf("btnFileSaveAs"));
  change();
  EXPECT_EQ(view().Notice(), kUnsaved) << "editing leaves it";
  failToSave();
  EXPECT_EQ(view().Notice(), kUnsaved);
  EXPECT_TRUE(editor().SaveImageAs(path("there.png")));
  EXPECT_EQ(view().Notice(), "");
  EXPECT_EQ(view().noticeButton(), "");
}

TEST_P(EditorSaveNotice, ItsButtonSavesUnderTheNameThatTheUserChooses) {
  startWithPicture();
  change();
  failToSave();
  user().chooses(path("there.png"));
  view().pressNoticeButton();
  EXPECT_EQ(editor().Filename(), path("there.png"));
  EXPECT_TRUE(exists(path("there.png")));
  EXPECT_EQ(view().Notice(), "");
}

TEST_P(EditorSaveNotice, AnotherPictureRemovesTheNoticeOfAFailedSave) {
  startWithPicture();
  failToSave();
  EXPECT_TRUE(editor().OpenImage(makePicture("other.png", format::kPng)));
  EXPECT_EQ(view().Notice(), "");
}

TEST_P(EditorSaveNotice, AFailedSavePrecedesTheNoticeAboutPages) {
  start();
  write(path("scan.tif"), grayTiff(20, 10, 3));
  EXPECT_TRUE(editor().OpenImage(path("scan.tif")));
  const std::string pages = view().Notice();
  EXPECT_THAT(pages, StartsWith("The file has 3 pages"));
  failToSave();
  EXPECT_EQ(view().Notice(), kUnsaved + (" " + pages));
  change();
  EXPECT_EQ(view().Notice(), kUnsaved + (" " + pages));
  EXPECT_EQ(view().noticeButton(), captionOf("btnFileSaveAs"));
  EXPECT_TRUE(editor().SaveImageAs(path("there.tif")));
  EXPECT_EQ(view().Notice(), "");
}

TEST_P(EditorSaveNotice, AClosedNoticeAboutPagesStaysClosedAfterAFailedSave) {
  start();
  write(path("scan.tif"), grayTiff(20, 10, 3));
  EXPECT_TRUE(editor().OpenImage(path("scan.tif")));
  change();
  view().closeNotice();
  failToSave();
  EXPECT_EQ(view().Notice(), kUnsaved);
}

TEST_P(EditorSaveNotice, TheButtonOfANoticeOfTheContainerIsTheContainers) {
  startWithPicture();
  failToSave();
  view().Notice("The lake is frozen.", "Skate");
  view().pressNoticeButton();
  EXPECT_EQ(editor().Filename(), path("open.png")) << "no dialog has opened";
}

TEST_P(EditorSaveNotice, IfTheHostSavesAFailedSaveOffersNothing) {
  startWithPicture();
  editor().UseSimpleSave(true);
  failToSave();
  EXPECT_EQ(view().Notice(), "");
}

KESTREL_WITH_BOTH_PATHS(EditorSaveNotice);

}  // namespace
}  // namespace kestrel
