// The notice about the opened file in the strip above the picture.

#include "../../contract/PagedBytes.h"
#include "../../contract/TiffBytes.h"
#include "EditorTest.h"
#include "imaging/contract/controls/CommandButton.h"

namespace kestrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr char kThreePages[] =
    "The file has 3 pages, of which you see the first. Saving over it would lose the others.";

class EditorNotice : public EditorTest {
 protected:
  /// A file of noise, so that its first half holds some rows.
  std::string makeBusyPicture(const std::string& name, std::int32_t format) {
    const auto picture = platform().CreateImgX();
    picture->Document().NewImage(200, 200, nullptr);
    picture->Draw().FillMode(kFillSolid);
    std::uint32_t random = 1;
    const auto next = [&random](std::uint32_t below) {
      random = random * 1664525U + 1013904223U;
      return static_cast<std::int32_t>((random >> 8) % below);
    };
    for (int i = 0; i < 2000; ++i) {
      picture->Draw().Color().Value(next(1U << 24));
      const Point at{next(200), next(200)};
      picture->Draw().Rectangle(at, {at.X + 1 + next(12), at.Y + 1 + next(12)}, 0, 0, kNoUndo);
    }
    picture->Alpha().Flatten(Colour(0));
    picture->Writer().ToFile(path(name), format);
    return path(name);
  }
  std::string makeTiff(const std::string& name, std::uint32_t pages) {
    write(path(name), grayTiff(20, 10, pages));
    return path(name);
  }
  /// A TIFF of 20 rows truncated after 12.
  std::string makeDamaged(const std::string& name = "damaged.tif") {
    const std::string whole = grayTiff(30, 20);
    write(path(name), whole.substr(0, whole.size() - 8 * 30));
    return path(name);
  }
  std::string startWithPages(std::uint32_t pages = 3) {
    start();
    const std::string file = makeTiff("scan.tif", pages);
    EXPECT_TRUE(editor().OpenImage(file));
    log().clear();
    return file;
  }
  std::int32_t pagesOf(const std::string& file) {
    const auto picture = platform().CreateImgX();
    picture->Document().FromFile(file);
    return picture->Image()->Pages();
  }
};

// -- Damaged files ----------------------------------------------------------------------------------------

TEST_P(EditorNotice, ATruncatedFileWithARowShowsItsRowsAndANoticeOnly) {
  start();
  const std::pair<const char*, std::int32_t> files[] = {{"a.jpg", 1}, {"a.png", 2}, {"a.gif", 11}};
  for (const auto& [name, format] : files) {
    const std::string file = makeBusyPicture(name, format);
    const std::string whole = contents(file);
    write(file, whole.substr(0, whole.size() * 6 / 10));
    EXPECT_TRUE(editor().OpenImage(file)) << name;
    EXPECT_EQ(editor().Image()->Height(), 200) << name;
    EXPECT_EQ(editor().Image()->GetPixel(100, 2).Alpha(), 255) << name << " shows its first rows";
    EXPECT_THAT(view().Notice(), StartsWith("The file is damaged or truncated: ")) << name;
    EXPECT_EQ(view().noticeButton(), "") << name;
    EXPECT_THAT(user().boxes(), IsEmpty()) << name;
    EXPECT_EQ(panel("pnlStatus"), "") << name;
  }
  EXPECT_TRUE(editor().OpenImage(makeDamaged()));
  EXPECT_EQ(view().Notice(), "The file is damaged or truncated: only 12 of 20 rows could be read.");
  EXPECT_EQ(editor().Image()->GetPixel(3, 11).Red(), 11);
  EXPECT_EQ(editor().Image()->GetPixel(3, 12).Alpha(), 0) << "the rest is transparent";
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditorNotice, AFileWithoutAWholeRowShowsABoxAndKeepsTheNotice) {
  start();
  EXPECT_TRUE(editor().OpenImage(makeDamaged()));
  const std::string notice = view().Notice();
  const std::string whole = grayTiff(30, 20);
  write(path("hopeless.tif"), whole.substr(0, whole.size() - 20 * 30 + 5));
  user().answers(kAnswerOK);
  EXPECT_FALSE(editor().OpenImage(path("hopeless.tif")));
  ASSERT_THAT(user().boxes(), SizeIs(1));
  EXPECT_THAT(user().boxes()[0].text,
              StartsWith("Unable to open image \"" + path("hopeless.tif") + "\" due to error \""));
  EXPECT_EQ(view().Notice(), notice);
  EXPECT_EQ(editor().Filename(), path("damaged.tif"));
}

TEST_P(EditorNotice, AnIntactFileHasNoNotice) {
  startWithPicture();
  EXPECT_EQ(view().Notice(), "");
  change();
  EXPECT_EQ(view().Notice(), "");
}

TEST_P(EditorNotice, OpeningADamagedFileMakesNoOtherEngineCalls) {
  start();
  const std::string file = makeDamaged();
  editor().OpenImage(file);
  EXPECT_THAT(log().entries(), ElementsAre("FromFile " + file + " 0 No Undo", "Zoom=1", "UndoLevels=0",
                                           "UndoLevels=10", "Modified=False", "SelectionHeight=0",
                                           "SelectionWidth=0", "SelectionVisible=False"));
}

TEST_P(EditorNotice, TheNoticeIsShownBeforeTheHostIsNotified) {
  start();
  std::string heard;
  connections_.push_back(editor().PictureSet.Connect([&] { heard = view().Notice(); }));
  editor().OpenImage(makeDamaged());
  EXPECT_THAT(heard, HasSubstr("only 12 of 20 rows"));
}

TEST_P(EditorNotice, AnyOtherPictureRemovesTheNotice) {
  start();
  const std::string damaged = makeDamaged();
  const std::string whole = makePicture("whole.png", 2);
  const std::function<void()> comings[] = {
      [&] { editor().OpenImage(whole); },
      [&] { editor().Picture(platform().CreateCanvas(12, 8)->Picture()); },
      [&] { editor().Picture(nullptr); },
      [&] { editor().ImageControl().Document().NewImage(5, 5, nullptr); },
      [&] { editor().ImageControl().Document().FromFile(whole); },
  };
  for (const auto& come : comings) {
    ASSERT_TRUE(editor().OpenImage(damaged));
    ASSERT_NE(view().Notice(), "");
    come();
    EXPECT_EQ(view().Notice(), "");
  }
}

TEST_P(EditorNotice, EditsKeepTheNotice) {
  start();
  editor().OpenImage(makeDamaged());
  const std::string notice = view().Notice();
  change();
  editor().Rotate(90);
  editor().Undo();
  editor().SelectAll();
  EXPECT_EQ(view().Notice(), notice);
}

TEST_P(EditorNotice, AClosedNoticeStaysClosedUntilAFileIsOpenedAgain) {
  start();
  const std::string file = makeDamaged();
  editor().OpenImage(file);
  const std::string notice = view().Notice();
  view().closeNotice();
  EXPECT_EQ(view().Notice(), "");
  change();
  editor().Undo();
  EXPECT_EQ(view().Notice(), "");
  editor().OpenImage(file);
  EXPECT_EQ(view().Notice(), notice);
}

TEST_P(EditorNotice, PreviewsOfADialogHaveNoNotice) {
  start();
  editor().OpenImage(makeDamaged());
  user().uses("frmRotate", [](Form& form) {
    for (const char* pane : {"igxOriginal", "igxPreview"}) {
      EXPECT_EQ(Bind<ImageView>(Bind<Site>(form, "Preview"), pane).Notice(), "") << pane;
    }
    Bind<CommandButton>(form, "cmdAction", 1).Press();
  });
  editor().ShowRotateDialog();
}

TEST_P(EditorNotice, ASaveRepairsTheFileAndRemovesTheNotice) {
  start();
  const std::string file = makeDamaged();
  editor().OpenImage(file);
  EXPECT_TRUE(editor().SaveImage());
  EXPECT_EQ(view().Notice(), "");
  change();
  EXPECT_EQ(view().Notice(), "");
  editor().OpenImage(file);
  EXPECT_EQ(view().Notice(), "");
}

// -- Files with several pages -----------------------------------------------------------------------------

TEST_P(EditorNotice, AFileOfSeveralPagesOpensTheFirstWithANotice) {
  startWithPages();
  EXPECT_EQ(view().Notice(), kThreePages);
  EXPECT_EQ(view().noticeButton(), command("btnFileSaveAs").Caption());
  EXPECT_EQ(editor().Image()->Pages(), 3);
  EXPECT_THAT(user().boxes(), IsEmpty());
  EXPECT_EQ(panel("pnlStatus"), "");
}

TEST_P(EditorNotice, OfTwoPagesOneWouldBeLost) {
  startWithPages(2);
  EXPECT_EQ(view().Notice(),
            "The file has 2 pages, of which you see the first. Saving over it would lose the other one.");
}

TEST_P(EditorNotice, AnAnimationHasFramesAndNoPages) {
  start();
  write(path("blink.gif"), animatedGif(3));
  ASSERT_TRUE(editor().OpenImage(path("blink.gif")));
  EXPECT_EQ(view().Notice(),
            "The file is an animation of 3 frames, of which you see the first. Saving over it would lose the "
            "others.");
  EXPECT_EQ(view().noticeButton(), command("btnFileSaveAs").Caption());
  write(path("two.gif"), animatedGif(2));
  ASSERT_TRUE(editor().OpenImage(path("two.gif")));
  EXPECT_EQ(view().Notice(),
            "The file is an animation of 2 frames, of which you see the first. Saving over it would lose the "
            "other one.");
  write(path("still.gif"), animatedGif(1));
  ASSERT_TRUE(editor().OpenImage(path("still.gif")));
  EXPECT_EQ(view().Notice(), "");
}

TEST_P(EditorNotice, AFaxHasPages) {
  start();
  write(path("fax.dcx"), grayDcx(3));
  ASSERT_TRUE(editor().OpenImage(path("fax.dcx")));
  EXPECT_EQ(view().Notice(), kThreePages);
  EXPECT_EQ(editor().Image()->Width(), 2);
  EXPECT_EQ(editor().Image()->Pages(), 3);
}

TEST_P(EditorNotice, ADrawingThatIsTooLargeSaysAtWhatSizeItWasOpened) {
  start();
  write(path("long.emf"), emptyDrawing(40000, 10));
  ASSERT_TRUE(editor().OpenImage(path("long.emf")));
  EXPECT_EQ(view().Notice(),
            "The drawing is too large at its natural size of 40000 x 10 pixels: it was opened at 32000 x 8 "
            "pixels.");
  EXPECT_EQ(view().noticeButton(), "") << "nothing would be lost";
  EXPECT_EQ(editor().Image()->Width(), 32000);
  EXPECT_EQ(editor().Image()->Height(), 8);
}

TEST_P(EditorNotice, DamageAndPagesAreToldTogether) {
  start();
  std::string file = grayTiff(20, 10, 2);
  // The first page claims three times its rows: its strip ends before them.
  file[8 + 2 + 12 + 8] = 30;
  file[8 + 2 + 6 * 12 + 8] = 30;
  write(path("both.tif"), file);
  ASSERT_TRUE(editor().OpenImage(path("both.tif")));
  EXPECT_THAT(view().Notice(), StartsWith("The file is damaged or truncated: "));
  EXPECT_THAT(view().Notice(), HasSubstr(". The file has 2 pages, of which you see the first. "));
}

TEST_P(EditorNotice, TheButtonRunsSaveAsAndTheFileKeepsItsPages) {
  const std::string file = startWithPages();
  const std::string before = contents(file);
  change();
  user().chooses(path("first page.tif"));
  view().pressNoticeButton();
  EXPECT_THAT(log().entries(), Contains("ToFile " + path("first page.tif") + " 3 0 True"));
  EXPECT_EQ(editor().Filename(), path("first page.tif"));
  EXPECT_EQ(contents(file), before);
  EXPECT_EQ(view().Notice(), "") << "nothing can be lost any more";
  change();
  EXPECT_EQ(view().Notice(), "");
}

TEST_P(EditorNotice, ACanceledSaveAsKeepsTheNotice) {
  const std::string file = startWithPages();
  user().cancelsFileDialog();
  view().pressNoticeButton();
  EXPECT_EQ(view().Notice(), kThreePages);
  EXPECT_EQ(pagesOf(file), 3);
}

TEST_P(EditorNotice, ASaveThatFailsKeepsTheNotice) {
  startWithPages();
  user().answers(kAnswerOK);
  EXPECT_FALSE(editor().SaveImageAs(path("no such folder") + platform().files().separator() + "x.tif"));
  EXPECT_THAT(view().Notice(), testing::EndsWith(kThreePages)) << "after the one about the save";
}

TEST_P(EditorNotice, ASaveOverTheFileAsksNothing) {
  const std::string file = startWithPages();
  change();
  log().clear();
  EXPECT_TRUE(editor().SaveImage());
  EXPECT_THAT(log().entries(),
              ElementsAre("JPEGQuality=75", "ToFile " + file + " 3 0 True", "Modified=False"));
  EXPECT_EQ(pagesOf(file), 1);
  EXPECT_EQ(view().Notice(), "");
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditorNotice, ASaveAsToTheSameNameIsASaveOverTheFile) {
  const std::string file = startWithPages();
  EXPECT_TRUE(editor().SaveImageAs(file));
  EXPECT_EQ(pagesOf(file), 1);
  EXPECT_EQ(view().Notice(), "");
}

TEST_P(EditorNotice, AClosedNoticeReappearsOnceWithTheFirstChange) {
  startWithPages();
  view().closeNotice();
  change();
  EXPECT_EQ(view().Notice(), kThreePages);
  EXPECT_EQ(view().noticeButton(), command("btnFileSaveAs").Caption());
  view().closeNotice();
  change();
  EXPECT_EQ(view().Notice(), "") << "it was closed after the change";
}

TEST_P(EditorNotice, ANoticeClosedAfterTheFirstChangeStaysClosed) {
  startWithPages();
  change();
  EXPECT_EQ(view().Notice(), kThreePages);
  view().closeNotice();
  change();
  EXPECT_EQ(view().Notice(), "");
}

TEST_P(EditorNotice, TheNoticeIsShownDuringTheQuestionAboutChanges) {
  startWithPages();
  view().closeNotice();
  change();
  user().answers(kAnswerCancel);
  EXPECT_FALSE(editor().SaveChanges());
  EXPECT_EQ(view().Notice(), kThreePages);
}

TEST_P(EditorNotice, IfTheHostSavesTheNoticeHasNoSaveAsButton) {
  start();
  editor().UseSimpleSave(true);
  editor().OpenImage(makeTiff("scan.tif", 3));
  EXPECT_EQ(view().Notice(), kThreePages);
  EXPECT_EQ(view().noticeButton(), "");
}

TEST_P(EditorNotice, TheButtonDoesNotRunADisabledCommand) {
  startWithPages();
  command("btnFileSaveAs").Enabled(false);
  view().pressNoticeButton();
  EXPECT_THAT(log().entries(), IsEmpty());
}

TEST_P(EditorNotice, AHostCanReadThePagesBeforeItSaves) {
  startWithPages();
  change();
  editor().Rotate(90);
  EXPECT_EQ(editor().Image()->Pages(), 3) << "of the file it came from, also after edits";
  editor().Picture(platform().CreateCanvas(12, 8)->Picture());
  EXPECT_EQ(editor().Image()->Pages(), 1);
}

KESTREL_WITH_BOTH_PATHS(EditorNotice);

}  // namespace
}  // namespace kestrel
