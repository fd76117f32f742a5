#include <sys/stat.h>

#include <cstring>

#include "EditorTest.h"
#include "imaging/contract/controls/CheckBox.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

/// A file of 1 kB whose header claims a picture of this size.
std::string bitmapThatClaims(std::int32_t width, std::int32_t height) {
  std::string file(1024, '\0');
  const auto put = [&](std::size_t at, std::int32_t value) {
    std::memcpy(file.data() + at, &value, sizeof value);
  };
  file[0] = 'B';
  file[1] = 'M';
  put(2, 1024);
  put(10, 54);
  put(14, 40);
  put(18, width);
  put(22, height);
  put(26, 1 | (24 << 16));
  return file;
}

class EditorFiles : public EditorTest {
 protected:
  /// Records the notifications of events and sink.
  void listen() {
    sink_ = std::make_shared<RecordingSink>(log());
    editor().EventSink(sink_);
    connections_.push_back(editor().RequestOpenFilename.Connect([this](std::string& name, bool& cancel) {
      log().add("event RequestOpenFilename \"" + name + "\"");
      if (onEvent) onEvent(name, cancel);
    }));
    connections_.push_back(editor().RequestSaveFilename.Connect([this](std::string& name, bool& cancel) {
      log().add("event RequestSaveFilename \"" + name + "\"");
      if (onEvent) onEvent(name, cancel);
    }));
    connections_.push_back(editor().ImageOpen.Connect(
        [this](const std::string& name) { log().add("event ImageOpen " + name); }));
    connections_.push_back(editor().ImageSave.Connect(
        [this](const std::string& name) { log().add("event ImageSave " + name); }));
  }
  std::vector<std::string> recentFiles() {
    std::vector<std::string> names;
    CommandItems& items = command("mnuFileMRU").Items();
    for (std::int32_t i = 1; i <= items.Count(); ++i) names.push_back(items.Item(i).Text);
    return names;
  }
  /// The engine's error text for a file that it can't read.
  std::string sentenceAbout(const std::string& file) {
    try {
      platform().CreateImgX()->Document().FromFile(file);
    } catch (const RuntimeError& error) {
      EXPECT_TRUE(error.Description().ends_with(".")) << error.Description();
      return error.Description();
    }
    return "(it was read)";
  }
  headless::User::Box onlyBox() {
    EXPECT_THAT(user().boxes(), SizeIs(1));
    return user().boxes().empty() ? headless::User::Box{} : user().boxes()[0];
  }

  std::shared_ptr<RecordingSink> sink_;
  std::function<void(std::string&, bool&)> onEvent;
};

// -- Opening ----------------------------------------------------------------------------------------------

TEST_P(EditorFiles, AnOpenedFileIsShownAtActualSizeAndNotified) {
  start();
  listen();
  const std::string file = makePicture("a.png", 2);
  editor().ZoomIn();
  log().clear();
  connections_.push_back(editor().PictureSet.Connect([&] { log().add("PictureSet"); }));
  EXPECT_TRUE(editor().OpenImage(file));
  EXPECT_THAT(log().entries(),
              ElementsAre("FromFile " + file + " 0 No Undo", "Zoom=1", "UndoLevels=0", "UndoLevels=10",
                          "Modified=False", "SelectionHeight=0", "SelectionWidth=0", "SelectionVisible=False",
                          "PictureSet", "event ImageOpen " + file, "sink ImageOpen " + file));
  EXPECT_EQ(editor().Filename(), file);
  EXPECT_EQ(editor().Format(), 2);
  EXPECT_THAT(recentFiles(), ElementsAre(file));
  EXPECT_EQ(editor().Image()->Width(), 40);
  EXPECT_FALSE(editor().Changed());
  EXPECT_FALSE(view().Modified());
}

TEST_P(EditorFiles, TheHostIsNotifiedOfAnOpenAfterNameAndRecentFiles) {
  start();
  const std::string file = makePicture("a.png", 2);
  std::string seen;
  connections_.push_back(editor().ImageOpen.Connect(
      [&](const std::string&) { seen = editor().Filename() + "|" + recentFiles().at(0); }));
  editor().OpenImage(file);
  EXPECT_EQ(seen, file + "|" + file);
}

TEST_P(EditorFiles, OpeningIsABusyPhaseWithAStatus) {
  start();
  const std::string file = makePicture("a.png", 2);
  platform().FormUtility().forgetPointers();
  std::string during;
  connections_.push_back(editor().PictureSet.Connect([&] { during = panel("pnlStatus"); }));
  editor().OpenImage(file);
  EXPECT_EQ(during, "Opening image...");
  EXPECT_EQ(panel("pnlStatus"), "");
  EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(11, 0));
}

TEST_P(EditorFiles, ANamedFileRaisesNoRequest) {
  start();
  listen();
  editor().OpenImage(makePicture("a.png", 2));
  for (const std::string& entry : log().entries()) EXPECT_THAT(entry, testing::Not(HasSubstr("Request")));
}

TEST_P(EditorFiles, TheEventIsRaisedBeforeTheSinkWithTheSameName) {
  start();
  listen();
  const std::string file = makePicture("a.png", 2);
  const std::string other = makePicture("b.png", 2);
  onEvent = [&](std::string& name, bool&) { name = file; };
  sink_->onRequest = [&](std::string& name, bool&) { name = other; };
  EXPECT_TRUE(editor().OpenImage());
  EXPECT_EQ(log().entries()[0], "event RequestOpenFilename \"\"");
  EXPECT_EQ(log().entries()[1], "sink RequestOpenFilename \"" + file + "\" False");
  EXPECT_EQ(editor().Filename(), other) << "the sink overwrote it";
}

TEST_P(EditorFiles, CancelDefaultWithoutANameOpensNoDialog) {
  const std::string file = startWithPicture();
  listen();
  onEvent = [](std::string&, bool& cancel) { cancel = true; };
  EXPECT_FALSE(editor().OpenImage());
  EXPECT_EQ(log().entries().back(), "sink RequestOpenFilename \"\" True");
  EXPECT_EQ(editor().Filename(), file);
  EXPECT_THAT(platform().FormUtility().pointers(), IsEmpty()) << "the status is not touched";
}

TEST_P(EditorFiles, TheSinkCanResetTheCancel) {
  start();
  listen();
  onEvent = [](std::string&, bool& cancel) { cancel = true; };
  sink_->onRequest = [](std::string&, bool& cancel) { cancel = false; };
  user().cancelsFileDialog();
  EXPECT_FALSE(editor().OpenImage());
}

TEST_P(EditorFiles, WithoutAHostTheDialogHasTheOpenFilterAndFlags) {
  start();
  const std::string file = makePicture("a.png", 2);
  user().chooses(file, [&](headless::FileDialog& dialog) {
    EXPECT_FALSE(dialog.isSave());
    EXPECT_EQ(dialog.Flags(), 6148);
    EXPECT_EQ(dialog.guest(), nullptr) << "the check box is for saving";
    EXPECT_EQ(dialog.size(), headless::FileDialog::kSize);
    EXPECT_EQ(
        dialog.Filter(),
        "All Supported Picture (*.bmp;*.jpg;*.png;*.tif;*.pcx;*.psd;*.tga;*.wbp;*.wmf;*.emf;*.tla)|"
        "*.jpg;*.bmp;*.png;*.gif;*.psd;*.tif;*.pcx;*.tga;*.wbmp;*.wmf;*.emf;*.tla|"
        "Windows Bitmap (*.bmp)|*.bmp;*.dib;*.rle|Joint Photographic Experts Group (*.jpg)|*.jpg;*.jpeg|"
        "Portable Network Graphics (*.png)|*.png|Graphics Interchange Format (*.gif)|*.gif|"
        "Kodak Photo CD (*.pcd)|*.pcd|Photoshop (*.psd)|*.psd|Tagged Image File (*.tif)|*.tif|"
        "ZSoft PaintBrush (*.pcx)|*.pcx|Truevision Targa (*.tga)|*.tga|Wireless Bitmap (*.wbmp)|*.wbmp|"
        "Windows Meta File (*.wmf)|*.wmf|Windows Enhanced Meta File (*.emf)|*.emf|All Files (*.*)|*.*");
  });
  EXPECT_TRUE(editor().OpenImage());
  EXPECT_EQ(editor().Filename(), file);
}

TEST_P(EditorFiles, ACanceledDialogChangesNothing) {
  const std::string file = startWithPicture();
  user().cancelsFileDialog();
  EXPECT_FALSE(editor().OpenImage());
  EXPECT_EQ(editor().Filename(), file);
  EXPECT_THAT(log().entries(), IsEmpty());
  EXPECT_THAT(platform().FormUtility().pointers(), IsEmpty());
}

TEST_P(EditorFiles, AFileThatCannotBeReadShowsABoxAndChangesNothing) {
  const std::string open = startWithPicture();
  change();
  view().SetSelectionRect(1, 2, 3, 4);
  view().SelectionVisible(true);
  const auto recent = recentFiles();
  write(path("broken.png"), "this is no picture");
  write(path("empty.png"), "");
  write(path("vast.bmp"), bitmapThatClaims(65536, 65536));
  ASSERT_EQ(mkfifo(platform().files().host(path("pipe.png")).c_str(), 0600), 0);
  const std::string broken[] = {path("missing.png"), path("broken.png"), path("empty.png"),
                                path("vast.bmp"),    path("pipe.png"),   platform().files().scratch()};
  for (const std::string& file : broken) {
    user().forget();
    user().answers(kAnswerOK);
    EXPECT_FALSE(editor().OpenImage(file)) << file;
    const auto box = onlyBox();
    EXPECT_EQ(box.style, kBoxExclamation);
    EXPECT_EQ(box.title, "Open Image");
    EXPECT_EQ(box.text,
              "Unable to open image \"" + file + "\" due to error \"" + sentenceAbout(file) + "\".");
  }
  EXPECT_EQ(editor().Filename(), open);
  EXPECT_EQ(editor().Format(), 2);
  EXPECT_EQ(view().UndoName(), "Flip");
  EXPECT_EQ(view().SelectionWidth(), 3);
  EXPECT_TRUE(view().SelectionVisible());
  EXPECT_EQ(recentFiles(), recent);
  EXPECT_TRUE(editor().Changed());
  EXPECT_EQ(platform().FormUtility().pointers().back(), 0) << "the busy pointer is gone";
  EXPECT_EQ(panel("pnlStatus"), "");
}

TEST_P(EditorFiles, ATiffNameCountsAsABitmapForTheEditorOnly) {
  start();
  EXPECT_TRUE(editor().OpenImage(makePicture("a.tiff", 3)));
  EXPECT_EQ(editor().Format(), 6);
  EXPECT_EQ(editor().Image()->Format(), 3);
}

// -- Saving -----------------------------------------------------------------------------------------------

TEST_P(EditorFiles, SavingWritesTheFileAndNotifiesEventThenSink) {
  const std::string file = startWithPicture();
  listen();
  change();
  platform().FormUtility().forgetPointers();
  EXPECT_TRUE(editor().SaveImage());
  EXPECT_THAT(log().entries(), ElementsAre("JPEGQuality=75", "ToFile " + file + " 2 0 True", "Modified=False",
                                           "event ImageSave " + file, "sink ImageSave " + file));
  EXPECT_FALSE(view().Modified());
  EXPECT_TRUE(editor().Changed()) << "a save does not touch it";
  EXPECT_THAT(platform().FormUtility().pointers(), ElementsAre(11, 0));
  EXPECT_EQ(panel("pnlStatus"), "");
}

TEST_P(EditorFiles, TheStatusSaysThatTheImageIsBeingSaved) {
  startWithPicture();
  std::string during;
  connections_.push_back(
      editor().ImageSave.Connect([&](const std::string&) { during = panel("pnlStatus"); }));
  EXPECT_TRUE(editor().SaveImage());
  EXPECT_EQ(during, "Saving image...");
}

TEST_P(EditorFiles, SaveAsKeepsTheFormatOfThePicture) {
  startWithPicture("photo.jpg", 1);
  const std::string file = path("copy.png");
  EXPECT_TRUE(editor().SaveImageAs(file));
  EXPECT_THAT(contents(file), StartsWith("\xFF\xD8\xFF")) << "JPEG data";
  EXPECT_EQ(editor().Filename(), file);
  EXPECT_EQ(editor().Format(), 2) << "by the name";
  EXPECT_THAT(recentFiles(), ElementsAre(file, path("photo.jpg")));
}

TEST_P(EditorFiles, TheJpegQualityComesFromTheOptionsAtEachSave) {
  startWithPicture("photo.jpg", 1);
  options().JPEGQuality(31);
  EXPECT_TRUE(editor().SaveImage());
  EXPECT_EQ(log().entries()[0], "JPEGQuality=31");
  EXPECT_EQ(view().JPEGQuality(), 31);
}

TEST_P(EditorFiles, AnUnnamedImageOpensTheSaveDialogWithAnEmptyName) {
  start();
  editor().Picture(platform().CreateCanvas(12, 8)->Picture());
  user().chooses(path("new.png"), [&](headless::FileDialog& dialog) {
    EXPECT_TRUE(dialog.isSave());
    EXPECT_EQ(dialog.Flags(), 2054);
    EXPECT_EQ(dialog.Filename(), "");
    EXPECT_EQ(dialog.DefaultExt(), "");
    EXPECT_EQ(
        dialog.Filter(),
        "All Supported Pictures (*.bmp;*.jpg;*.png;*.tif;*.psd;*.pcx;*.tga)|"
        "*.bmp;*.jpg;*.png;*.jpeg;*.tif;*.tiff;*.dib;*.rle;*.psd;*.pcx;*.tga|"
        "Windows Bitmap (*.bmp)|*.bmp;*.dib;*.rle|Joint Photographic Experts Group (*.jpg)|*.jpg;*.jpeg|"
        "Portable Network Graphics (*.png)|*.png|Graphics Interchange Format (*.gif)|*.gif|"
        "Tagged Image File (*.tif)|*.tif|Photoshop (*.psd)|*.psd|ZSoft PaintBrush (*.pcx)|*.pcx|"
        "Truevision Targa (*.tga)|*.tga|All Files (*.*)|*.*");
    auto* box = dynamic_cast<CheckBox*>(dialog.guest());
    ASSERT_NE(box, nullptr);
    box->Value(0);
  });
  EXPECT_TRUE(editor().SaveImage());
  EXPECT_EQ(editor().Filename(), path("new.png"));
  EXPECT_EQ(editor().BrowseDialog()->DefaultExt(), "") << "cleared for good";
}

TEST_P(EditorFiles, TheSaveDialogOffersTheOpenName) {
  const std::string file = startWithPicture();
  user().cancelsFileDialog([&](headless::FileDialog& dialog) { EXPECT_EQ(dialog.Filename(), file); });
  EXPECT_FALSE(editor().SaveImageAs());
  EXPECT_EQ(editor().Filename(), file);
}

TEST_P(EditorFiles, APictureWithoutAFormatIsSavedByTheRequestedName) {
  start();
  editor().Picture(platform().CreateCanvas(12, 8)->Picture());
  listen();
  log().clear();
  EXPECT_TRUE(editor().SaveImageAs(path("named.png")));
  EXPECT_EQ(log().entries()[0], "event RequestSaveFilename \"" + path("named.png") + "\"");
  EXPECT_EQ(log().entries()[1], "sink RequestSaveFilename \"" + path("named.png") + "\" False");
  EXPECT_THAT(log().entries(), testing::Contains("ToFile " + path("named.png") + " 2 0 True"));
  EXPECT_THAT(contents(path("named.png")), StartsWith("\x89PNG"));
}

TEST_P(EditorFiles, APictureOfAReadOnlyFormatKeepsThatFormat) {
  const std::string file = startWithPicture();
  listen();
  view().reportFormat(13);
  user().answers(kAnswerOK);
  EXPECT_FALSE(editor().SaveImage()) << "the engine does not write it";
  EXPECT_EQ(log().entries()[0], "event RequestSaveFilename \"" + file + "\"");
  EXPECT_EQ(log().entries()[1], "sink RequestSaveFilename \"" + file + "\" False");
  EXPECT_THAT(log().entries(), testing::Contains("ToFile " + file + " 13 0 True"));
}

TEST_P(EditorFiles, TheHostMayChangeTheNameOfASave) {
  startWithPicture();
  listen();
  onEvent = [&](std::string& name, bool&) { name = path("from event.png"); };
  sink_->onRequest = [&](std::string& name, bool&) { name = path("from sink.png"); };
  EXPECT_TRUE(editor().SaveImageAs());
  EXPECT_EQ(log().entries()[1], "sink RequestSaveFilename \"" + path("from event.png") + "\" False");
  EXPECT_EQ(editor().Filename(), path("from sink.png"));
  EXPECT_FALSE(exists(path("from event.png")));
}

TEST_P(EditorFiles, CancelDefaultWithoutANameSavesNothingAndOpensNoDialog) {
  const std::string file = startWithPicture();
  listen();
  onEvent = [](std::string&, bool& cancel) { cancel = true; };
  EXPECT_FALSE(editor().SaveImageAs());
  EXPECT_EQ(editor().Filename(), file);
  EXPECT_THAT(platform().FormUtility().pointers(), IsEmpty());
}

TEST_P(EditorFiles, ASaveThatFailsKeepsNameFormatAndModified) {
  const std::string file = startWithPicture();
  change();
  const std::string target = path("no such folder") + platform().files().separator() + "x.png";
  user().answers(kAnswerOK);
  EXPECT_FALSE(editor().SaveImageAs(target));
  const auto box = onlyBox();
  EXPECT_EQ(box.style, kBoxExclamation);
  EXPECT_EQ(box.title, "Save Image");
  EXPECT_THAT(box.text, StartsWith("Unable to save image \"" + target + "\" due to error \""));
  EXPECT_TRUE(box.text.ends_with("\".")) << box.text;
  EXPECT_EQ(editor().Filename(), file);
  EXPECT_EQ(editor().Format(), 2);
  EXPECT_TRUE(view().Modified());
  EXPECT_THAT(recentFiles(), ElementsAre(file));
  EXPECT_EQ(platform().FormUtility().pointers().back(), 0);
  EXPECT_EQ(panel("pnlStatus"), "");
}

TEST_P(EditorFiles, ASaveThatFailsKeepsTheOldFile) {
  const std::string file = startWithPicture();
  std::filesystem::create_directory(platform().files().host(path("folder.png")));
  const std::string before = contents(file);
  change();
  user().answers(kAnswerOK);
  EXPECT_FALSE(editor().SaveImageAs(path("folder.png")));
  EXPECT_EQ(contents(file), before);
}

TEST_P(EditorFiles, SavingWithoutAPictureIsReportedAndSavesNothing) {
  start();
  user().answers(kAnswerOK);
  EXPECT_FALSE(editor().SaveImageAs(path("nothing.png")));
  EXPECT_EQ(onlyBox().title, "Application Error");
  EXPECT_FALSE(exists(path("nothing.png")));
}

// -- Thumbnails next to the image -----------------------------------------------------------------------

TEST_P(EditorFiles, TheSaveDialogHasTheThumbnailBoxBelowTheFileType) {
  startWithPicture();
  user().cancelsFileDialog([&](headless::FileDialog& dialog) {
    auto* box = dynamic_cast<CheckBox*>(dialog.guest());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->Caption(), "Save Th&umbnail");
    EXPECT_EQ(box->Value(), 1) << "ThumbnailAutoCheck is on by default";
    const Rectangle label = headless::FileDialog::kFileTypeLabel;
    EXPECT_EQ(box->Left(), label.Left + 3);
    EXPECT_EQ(box->Top(), label.Top + label.Height + 36);
    EXPECT_EQ(dialog.size().Height, headless::FileDialog::kSize.Height + box->Height() + 3);
    EXPECT_EQ(dialog.size().Width, headless::FileDialog::kSize.Width);
  });
  EXPECT_FALSE(editor().SaveImageAs());
}

TEST_P(EditorFiles, ACheckedBoxWritesAThumbnailNextToTheImage) {
  startWithPicture();
  user().chooses(path("big.png"));
  EXPECT_TRUE(editor().SaveImageAs());
  const auto thumbnail = platform().CreateImgX();
  thumbnail->Document().FromFile(path("big_thumb.png"));
  EXPECT_LT(thumbnail->Image()->Width(), 40);
}

TEST_P(EditorFiles, WithoutAutoCheckTheBoxIsUncheckedAndWritesNothing) {
  options().ThumbnailAutoCheck(false);
  startWithPicture();
  user().chooses(path("big.png"), [](headless::FileDialog& dialog) {
    EXPECT_EQ(dynamic_cast<CheckBox*>(dialog.guest())->Value(), 0);
  });
  EXPECT_TRUE(editor().SaveImageAs());
  EXPECT_FALSE(exists(path("big_thumb.png")));
  user().chooses(path("other.png"),
                 [](headless::FileDialog& dialog) { dynamic_cast<CheckBox*>(dialog.guest())->Value(1); });
  EXPECT_TRUE(editor().SaveImageAs());
  EXPECT_TRUE(exists(path("other_thumb.png"))) << "the user ticked it";
}

TEST_P(EditorFiles, AutomaticUpdateRefreshesAnExistingThumbnail) {
  startWithPicture("image.png");
  write(path("image_thumb.png"), "old");
  EXPECT_TRUE(editor().SaveImage());
  EXPECT_EQ(contents(path("image_thumb.png")), "old");
  options().ThumbnailAutomaticUpdate(true);
  EXPECT_TRUE(editor().SaveImage());
  EXPECT_NE(contents(path("image_thumb.png")), "old");
}

TEST_P(EditorFiles, AutomaticUpdateCreatesNoThumbnail) {
  options().ThumbnailAutomaticUpdate(true);
  startWithPicture("image.png");
  EXPECT_TRUE(editor().SaveImage());
  EXPECT_FALSE(exists(path("image_thumb.png")));
}

TEST_P(EditorFiles, AThumbnailThatCannotBeWrittenDoesNotFailTheSave) {
  options().ThumbnailAutomaticUpdate(true);
  const std::string file = startWithPicture("image.png");
  std::filesystem::create_directory(platform().files().host(path("image_thumb.png")));
  change();
  EXPECT_TRUE(editor().SaveImage());
  EXPECT_FALSE(view().Modified());
  EXPECT_EQ(editor().Filename(), file);
  EXPECT_THAT(user().boxes(), IsEmpty());
}

// -- Names from the dialog --------------------------------------------------------------------------------

TEST_P(EditorFiles, ANameWithTwoExtensionsLosesTheSecondAfterABackslash) {
  startWithPicture();
  user().chooses(path("a.b.png"),
                 [](headless::FileDialog& dialog) { dynamic_cast<CheckBox*>(dialog.guest())->Value(0); });
  EXPECT_TRUE(editor().SaveImageAs());
  const bool cut = GetParam() == PathStyle::kBackslash;
  EXPECT_EQ(editor().Filename(), cut ? path("a.b") : path("a.b.png"));
  EXPECT_TRUE(exists(editor().Filename()));
}

// -- Unsaved changes --------------------------------------------------------------------------------------

TEST_P(EditorFiles, WithoutAModificationNoQuestionIsAsked) {
  startWithPicture();
  editor().Changed(true);
  EXPECT_TRUE(editor().SaveChanges());
}

TEST_P(EditorFiles, UnsavedChangesAreAskedAboutInThisText) {
  const std::string file = startWithPicture();
  change();
  user().answers(kAnswerCancel);
  EXPECT_FALSE(editor().SaveChanges());
  const auto box = onlyBox();
  EXPECT_EQ(box.style, 35);
  EXPECT_EQ(box.title, "Save Changes");
  EXPECT_EQ(box.text, "Changes have been made file \"" + file + "\".\r\rDo you want to save these changes?");
}

TEST_P(EditorFiles, AnUnnamedImageIsUntitledInTheQuestion) {
  start();
  editor().Picture(platform().CreateCanvas(12, 8)->Picture());
  change();
  user().answers(kAnswerNo);
  EXPECT_TRUE(editor().SaveChanges());
  EXPECT_THAT(onlyBox().text, StartsWith("Changes have been made file \"Untitled\"."));
}

TEST_P(EditorFiles, YesSavesAndReturnsTheResultOfTheSave) {
  const std::string file = startWithPicture();
  change();
  user().answers(kAnswerYes);
  EXPECT_TRUE(editor().SaveChanges());
  EXPECT_THAT(log().entries(), testing::Contains("ToFile " + file + " 2 0 True"));
  start();
  editor().Picture(platform().CreateCanvas(12, 8)->Picture());
  change();
  user().answers(kAnswerYes);
  user().cancelsFileDialog();
  EXPECT_FALSE(editor().SaveChanges()) << "the save dialog was canceled";
}

KESTREL_WITH_BOTH_PATHS(EditorFiles);

}  // namespace
}  // namespace kestrel
