#include "EditingTest.h"
#include "dialogs/frmExport.h"
#include "imaging/contract/ImgXDialog.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/ComboBox.h"
#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/Label.h"
#include "imaging/contract/controls/TextBox.h"
#include "platform/headless/FileDialog.h"

namespace kestrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// Format codes as the engine recognizes them.
constexpr std::int32_t kJPEG = 1;
constexpr std::int32_t kPNG = 2;
constexpr std::int32_t kTIFF = 3;
constexpr std::int32_t kBitmap = 6;

/// The controls of the export dialog.
class Dialog {
 public:
  explicit Dialog(Form& form) : form_(form) {}

  Form& form() { return form_; }
  TextBox& name() { return Bind<TextBox>(form_, "txtField"); }
  ComboBox& format() { return Bind<ComboBox>(form_, "cboFormat"); }
  CheckBox& thumbnail() { return Bind<CheckBox>(form_, "chkThumbnail"); }
  void browse() { Bind<CommandButton>(form_, "cmdBrowse").Press(); }
  void ok() { Bind<CommandButton>(form_, "cmdAction", 0).Press(); }
  void cancel() { Bind<CommandButton>(form_, "cmdAction", 1).Press(); }
  void exportTo(const std::string& file, std::int32_t format = 0) {
    name().Text(file);
    this->format().ListIndex(format);
    ok();
  }

 private:
  Form& form_;
};

class EditingExportDialog : public EditingTest {
 protected:
  bool show(std::function<void(Dialog&)> doing) {
    user().uses("frmExport", [doing = std::move(doing)](Form& form) {
      Dialog dialog(form);
      doing(dialog);
    });
    return editor().ShowExportDialog();
  }
  /// One export to a file, then Cancel.
  bool exportTo(const std::string& file, std::int32_t format = 0, bool asThumbnail = false) {
    return show([&](Dialog& dialog) {
      dialog.thumbnail().Value(asThumbnail ? 1 : 0);
      dialog.exportTo(file, format);
      dialog.cancel();
    });
  }
  /// One export that ends in a message box, then Cancel. Returns the text of the box.
  std::string refusalOf(const std::string& file, std::int32_t format = 0, bool asThumbnail = false) {
    user().forget();
    EXPECT_FALSE(show([&](Dialog& dialog) {
      dialog.thumbnail().Value(asThumbnail ? 1 : 0);
      user().answers(kAnswerOK);
      dialog.exportTo(file, format);
      EXPECT_TRUE(dialog.form().Visible());
      dialog.cancel();
    }));
    return user().boxes().size() == 1 ? user().boxes()[0].text : std::string();
  }
  std::shared_ptr<ImgX> opened(const std::string& file) {
    auto picture = platform().CreateImgX();
    picture->Document().FromFile(file);
    return picture;
  }
  engine::Bitmap pixelsOf(const std::string& file) { return engine::bitmapOf(*opened(file)->Image()); }
  std::string missing(const std::string& name) {
    return path("nowhere") + platform().files().separator() + name;
  }
  void expectUntouched() {
    EXPECT_TRUE(same(shown(), gradient(kWidth, kHeight)));
    EXPECT_FALSE(editor().Changed());
    EXPECT_FALSE(view().Modified());
    EXPECT_EQ(view().UndoName(), "");
    EXPECT_EQ(editor().Filename(), "");
  }
};

TEST_P(EditingExportDialog, HasTheCaptionsAndNumbersOfItsControls) {
  show([](Dialog& dialog) {
    EXPECT_EQ(dialog.form().Caption(), "Export");
    EXPECT_EQ(Bind<Label>(dialog.form(), "lblHdr", 0).Caption(), "&Filename:");
    EXPECT_EQ(Bind<Label>(dialog.form(), "lblHdr", 1).Caption(), "&Output format:");
    EXPECT_EQ(Bind<CommandButton>(dialog.form(), "cmdBrowse").Caption(), "&Browse...");
    EXPECT_EQ(dialog.thumbnail().Caption(), "Export as &Thumbnail");
    EXPECT_EQ(Bind<CommandButton>(dialog.form(), "cmdAction", 0).Caption(), "OK");
    EXPECT_EQ(Bind<CommandButton>(dialog.form(), "cmdAction", 1).Caption(), "Cancel");
    const std::pair<const char*, std::int32_t> formats[] = {
        {"Bitmap", 6}, {"JPG", 2}, {"PNG", 1}, {"TIF", 0}};
    ASSERT_EQ(dialog.format().ListCount(), 4);
    for (std::int32_t i = 0; i < 4; ++i) {
      EXPECT_EQ(dialog.format().List(i), formats[i].first);
      EXPECT_EQ(dialog.format().ItemData(i), formats[i].second);
    }
    dialog.cancel();
  });
}

TEST_P(EditingExportDialog, OpensEmptyOnBitmapWithoutAnIconAndAppliesTheSkinLast) {
  platform().Screen().MousePointer(kBusyHourglass);
  show([this](Dialog& dialog) {
    EXPECT_EQ(dialog.name().Text(), "");
    EXPECT_EQ(dialog.format().ListIndex(), 0);
    EXPECT_EQ(dialog.thumbnail().Value(), 0);
    EXPECT_FALSE(dynamic_cast<headless::Form&>(dialog.form()).hasIcon());
    EXPECT_EQ(platform().FormSkin().applied().back().name, "frmExport");
    EXPECT_EQ(platform().Screen().MousePointer(), kBusyDefault);
    dialog.cancel();
  });
}

TEST_P(EditingExportDialog, SelectsTheWholeTextOnFocus) {
  show([this](Dialog& dialog) {
    dialog.name().Text("a.bmp");
    platform().FormUtility().SetFocusTo(dialog.name());
    EXPECT_EQ(dialog.name().SelectedText(), "a.bmp");
    dialog.cancel();
  });
}

// -- OK ---------------------------------------------------------------------------------------------------

TEST_P(EditingExportDialog, AnEmptyNameIsRefusedInABoxWithTheFocusOnTheName) {
  EXPECT_FALSE(show([this](Dialog& dialog) {
    user().answers(kAnswerOK);
    dialog.ok();
    EXPECT_TRUE(dialog.form().Visible());
    EXPECT_EQ(platform().desktop().focus, dialog.name().hWnd());
    dialog.cancel();
  }));
  ASSERT_THAT(user().boxes(), SizeIs(1));
  EXPECT_EQ(user().boxes()[0].text, "Please enter the export filename.");
  EXPECT_EQ(user().boxes()[0].style, 48);
  EXPECT_EQ(user().boxes()[0].title, "Export");
  EXPECT_THAT(engineCalls(), IsEmpty());
}

TEST_P(EditingExportDialog, CopiesTheWholePictureAndWritesTheCopyWithTheNumberOfTheEntry) {
  const std::int32_t numbers[] = {6, 2, 1, 0};
  for (std::int32_t entry = 0; entry < 4; ++entry) {
    const std::string file = path("out" + ToText(entry) + ".tif");
    log().clear();
    EXPECT_TRUE(exportTo(file, entry));
    EXPECT_THAT(engineCalls(),
                ElementsAre("scratch.Document.CopyFrom(0, \"\")", "scratch.Writer.ToFile(\"" + file + "\", " +
                                                                      ToText(numbers[entry]) + ", 0, True)"));
  }
  expectUntouched();
}

TEST_P(EditingExportDialog, TheEntryDecidesTheContentAndTheNameIsTakenAsItIs) {
  const std::pair<std::int32_t, std::int32_t> contents[] = {{0, kBitmap}, {1, kPNG}, {2, kJPEG}, {3, kTIFF}};
  for (const auto& [entry, format] : contents) {
    const std::string file = path("a" + ToText(entry) + ".tif");
    EXPECT_TRUE(exportTo(file, entry));
    EXPECT_EQ(opened(file)->Image()->Format(), format) << "entry " << entry;
    if (format == kJPEG) continue;
    EXPECT_TRUE(same(pixelsOf(file), gradient(kWidth, kHeight)));
  }
}

TEST_P(EditingExportDialog, TheEntryTIFTakesTheFormatFromTheName) {
  EXPECT_TRUE(exportTo(path("a.png"), 3));
  EXPECT_EQ(opened(path("a.png"))->Image()->Format(), kPNG);
}

TEST_P(EditingExportDialog, ANameTypedIntoTheBoxLeavesTheFormatAlone) {
  show([](Dialog& dialog) {
    dialog.name().Text("a.png");
    EXPECT_EQ(dialog.format().ListIndex(), 0);
    dialog.format().ListIndex(1);
    dialog.name().Text("a.tif");
    EXPECT_EQ(dialog.format().ListIndex(), 1);
    dialog.cancel();
  });
}

TEST_P(EditingExportDialog, IgnoresTheSelection) {
  editor().SetSelection(5, 6, 10, 8);
  EXPECT_TRUE(exportTo(path("a.bmp")));
  EXPECT_TRUE(same(pixelsOf(path("a.bmp")), gradient(kWidth, kHeight)));
  EXPECT_TRUE(view().SelectionVisible());
}

TEST_P(EditingExportDialog, StaysOpenAfterAnExportAndCancelReportsTheSuccess) {
  EXPECT_TRUE(show([this](Dialog& dialog) {
    dialog.exportTo(path("a.bmp"));
    EXPECT_TRUE(dialog.form().Visible());
    dialog.exportTo(path("b.png"), 1);
    EXPECT_TRUE(dialog.form().Visible());
    dialog.cancel();
  }));
  EXPECT_TRUE(exists(path("a.bmp")));
  EXPECT_TRUE(exists(path("b.png")));
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditingExportDialog, TheCloseBoxReportsTheSuccessToo) {
  EXPECT_TRUE(show([this](Dialog& dialog) {
    dialog.exportTo(path("a.bmp"));
    dynamic_cast<headless::Form&>(dialog.form()).pressCloseBox();
  }));
}

TEST_P(EditingExportDialog, WithoutAnExportNothingIsReported) {
  EXPECT_FALSE(show([](Dialog& dialog) { dialog.cancel(); }));
  EXPECT_FALSE(show([](Dialog& dialog) { dynamic_cast<headless::Form&>(dialog.form()).pressCloseBox(); }));
}

TEST_P(EditingExportDialog, AnExistingFileIsReplaced) {
  write(path("a.bmp"), "old");
  EXPECT_TRUE(exportTo(path("a.bmp")));
  EXPECT_TRUE(same(pixelsOf(path("a.bmp")), gradient(kWidth, kHeight)));
}

TEST_P(EditingExportDialog, LeavesNameFormatAndRecentFilesOfTheDocument) {
  const std::string file = makePicture("open.png", kPNG);
  ASSERT_TRUE(editor().OpenImage(file));
  const std::int32_t format = editor().Format();
  change();
  const bool modified = view().Modified();
  EXPECT_TRUE(exportTo(path("a.bmp")));
  EXPECT_EQ(editor().Filename(), file);
  EXPECT_EQ(editor().Format(), format);
  EXPECT_EQ(view().Modified(), modified);
}

TEST_P(EditingExportDialog, LeavesTheSharedScratchPictureAlone) {
  fillClipboard(6, 5, {9, 8, 7, 255});
  click("btnEditPaste");
  ASSERT_TRUE(pressed("btnEditPaste"));
  EXPECT_TRUE(exportTo(path("a.bmp")));
  editor().Paste();
  EXPECT_EQ(shown().width(), kWidth);
  EXPECT_THAT(user().boxes(), IsEmpty());
}

// -- Failures ---------------------------------------------------------------------------------------------

TEST_P(EditingExportDialog, AFailureIsShownWithTheNameAndTheEnginesText) {
  const std::string file = missing("a.bmp");
  std::string text;
  try {
    const auto picture = platform().CreateImgX();
    picture->Document().CopyFrom(*view().ImgX(), 0);
    picture->Writer().ToFile(file, kBitmap);
  } catch (const RuntimeError& error) {
    text = error.Description();
  }
  ASSERT_NE(text, "");
  EXPECT_FALSE(show([&](Dialog& dialog) {
    user().answers(kAnswerOK);
    dialog.exportTo(file);
    EXPECT_TRUE(dialog.form().Visible());
    dialog.cancel();
  }));
  ASSERT_THAT(user().boxes(), SizeIs(1));
  EXPECT_EQ(user().boxes()[0].text, "Unable to export image \"" + file + "\" due to error \"" + text + "\".");
  EXPECT_EQ(user().boxes()[0].style, 48);
  EXPECT_EQ(user().boxes()[0].title, "Export");
  expectUntouched();
}

TEST_P(EditingExportDialog, AFailureAfterASuccessLeavesTheSuccess) {
  EXPECT_TRUE(show([this](Dialog& dialog) {
    dialog.exportTo(path("a.bmp"));
    user().answers(kAnswerOK);
    dialog.exportTo(missing("a.bmp"));
    dialog.cancel();
  }));
}

TEST_P(EditingExportDialog, AFailureMayBeFollowedByASuccess) {
  EXPECT_TRUE(show([this](Dialog& dialog) {
    user().answers(kAnswerOK);
    dialog.exportTo(missing("a.bmp"));
    dialog.exportTo(path("a.bmp"));
    dialog.cancel();
  }));
  EXPECT_TRUE(exists(path("a.bmp")));
}

TEST_P(EditingExportDialog, AFolderIsRefusedAndStays) {
  const std::string folder = path("folder");
  std::filesystem::create_directory(platform().files().host(folder));
  EXPECT_THAT(refusalOf(folder), HasSubstr("Unable to export image \"" + folder + "\" due to error \""));
  EXPECT_TRUE(std::filesystem::is_directory(platform().files().host(folder)));
}

TEST_P(EditingExportDialog, ADeviceIsRefused) {
  // The simulated drives have no devices.
  if (GetParam() == PathStyle::kBackslash) return;
  EXPECT_THAT(refusalOf("/dev/full"), HasSubstr("\"/dev/full\" due to error \""));
  EXPECT_THAT(refusalOf("/proc/a.bmp"), HasSubstr("\"/proc/a.bmp\" due to error \"")) << "read-only";
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_P(EditingExportDialog, AFailedExportLeavesTheExistingFileWholeAndNoOther) {
  // A name with an extension that no format has, for the entry that takes the format from the name.
  const std::string file = path("a.unknown");
  write(file, "old");
  EXPECT_THAT(refusalOf(file, 3), HasSubstr("Unable to export image"));
  EXPECT_EQ(contents(file), "old");
  const auto folder =
      std::filesystem::directory_iterator(platform().files().host(platform().files().scratch()));
  for (const auto& entry : folder) {
    EXPECT_FALSE(entry.is_regular_file() && entry.path().filename() != "a.unknown") << entry.path();
  }
}

TEST_P(EditingExportDialog, WithoutAPictureTheErrorIsReported) {
  editor().Picture(nullptr);
  EXPECT_FALSE(show([this](Dialog& dialog) {
    user().answers(kAnswerOK);
    dialog.exportTo(path("a.bmp"));
    EXPECT_TRUE(dialog.form().Visible());
    dialog.cancel();
  }));
  ASSERT_THAT(user().boxes(), SizeIs(1));
  EXPECT_FALSE(exists(path("a.bmp")));
}

// -- As a thumbnail ---------------------------------------------------------------------------------------

TEST_P(EditingExportDialog, AThumbnailIsShrunkByDecimationShadowedAndFlattened) {
  options().ThumbnailSize(34);
  options().ThumbnailBackgroundColor(0x00FF00);
  options().DropShadowHorizontalOffset(1);
  options().DropShadowVerticalOffset(2);
  options().DropShadowColor(3);
  options().DropShadowOpacity(4);
  options().DropShadowBlur(5);
  const std::string file = path("a.bmp");
  EXPECT_TRUE(exportTo(file, 0, true));
  EXPECT_THAT(engineCalls(),
              ElementsAre("scratch.Document.CopyFrom(0, \"\")", "scratch.Effects.Resize(13, 0, 3, \"\")",
                          "scratch.Effects.DropShadow(1, 2, #3/4, 5, True, \"\")",
                          "scratch.Alpha.Flatten(#65280/255, \"\")",
                          "scratch.Writer.ToFile(\"" + file + "\", 6, 0, True)"))
      << "40 / 100 * 34 is 13.6, rounded down";
  expectUntouched();
}

TEST_P(EditingExportDialog, TheSizeIsAPercentageWhateverTheTypeAndTheShadowNeedsNoOption) {
  options().ThumbnailSize(50);
  options().ThumbnailSizeType(tstWidthInPixels);
  options().ThumbnailAddDropShadow(false);
  EXPECT_TRUE(exportTo(path("a.bmp"), 0, true));
  EXPECT_THAT(engineCalls(), Contains("scratch.Effects.Resize(20, 0, 3, \"\")"));
  EXPECT_THAT(engineCalls(), Contains(HasSubstr("scratch.Effects.DropShadow(")));
}

TEST_P(EditingExportDialog, AThumbnailOf100PercentKeepsTheWidthAndGetsShadowAndBackground) {
  options().ThumbnailSize(100);
  options().ThumbnailBackgroundColor(0x00FF00);
  options().DropShadowHorizontalOffset(6);
  options().DropShadowVerticalOffset(4);
  options().DropShadowBlur(0);
  EXPECT_TRUE(exportTo(path("a.bmp"), 0, true));
  EXPECT_THAT(engineCalls(), Contains("scratch.Effects.Resize(40, 0, 3, \"\")"));
  const engine::Bitmap thumbnail = pixelsOf(path("a.bmp"));
  EXPECT_GT(thumbnail.width(), kWidth) << "grown by the shadow";
  EXPECT_EQ(colorOf(thumbnail.at(thumbnail.width() - 1, 0)), 0x00FF00) << "the background, above the shadow";
}

TEST_P(EditingExportDialog, AThumbnailThatTheEngineRefusesIsReportedAndNothingIsWritten) {
  for (const std::int32_t size : {0, 1, -5}) {
    options().ThumbnailSize(size);
    EXPECT_THAT(refusalOf(path("a.bmp"), 0, true), HasSubstr("Procedure: cmdAction_Click\r\n")) << size;
    EXPECT_FALSE(exists(path("a.bmp")));
  }
}

TEST_P(EditingExportDialog, AnOpacityBeyondAByteIsReported) {
  options().DropShadowOpacity(256);
  EXPECT_THAT(refusalOf(path("a.bmp"), 0, true), HasSubstr("(6)"));
  EXPECT_FALSE(exists(path("a.bmp")));
}

// -- Browse -----------------------------------------------------------------------------------------------

TEST_P(EditingExportDialog, BrowseAsksTheEditorsFileDialogForANameToSave) {
  show([this](Dialog& dialog) {
    dialog.name().Text("given.bmp");
    user().chooses(path("a.bmp"), [this](headless::FileDialog& files) {
      EXPECT_TRUE(files.isSave());
      EXPECT_EQ(static_cast<ImgXDialog*>(&files), editor().BrowseDialog());
      EXPECT_EQ(
          files.Filter(),
          "All Supported Pictures (*.bmp;*.jpg;*.png;*.tif)|"
          "*.bmp;*.jpg;*.png;*.jpeg;*.tif;*.tiff;*.dib;*.rle|Windows Bitmap (*.bmp)|*.bmp;*.dib;*.rle|"
          "Joint Photographic Experts Group (*.jpg)|*.jpg;*.jpeg|"
          "Portable Network Graphics (*.png)|*.png|Tagged Image File (*.tif)|*.tif|All Files (*.*)|*.*");
      EXPECT_EQ(files.Flags(), 2054);
      EXPECT_EQ(files.Filename(), "given.bmp");
    });
    dialog.browse();
    EXPECT_EQ(dialog.name().Text(), path("a.bmp"));
    dialog.cancel();
  });
}

TEST_P(EditingExportDialog, TheFormatFollowsTheExtensionOfTheChosenName) {
  const std::pair<const char*, std::int32_t> names[] = {
      {"a.tif", 3}, {"a.TIFF", 3}, {"a.png", 2}, {"a.Jpg", 1},   {"a.jpeg", 1},
      {"a.bmp", 0}, {"a.gif", 0},  {"a", 0},     {"a.b.png", 2}, {"a.png.xyz", 0}};
  show([&](Dialog& dialog) {
    for (const auto& [name, format] : names) {
      dialog.format().ListIndex(format == 2 ? 1 : 2);
      user().chooses(path(name));
      dialog.browse();
      EXPECT_EQ(dialog.format().ListIndex(), format) << name;
    }
    dialog.cancel();
  });
}

TEST_P(EditingExportDialog, ACanceledFileDialogChangesNothing) {
  show([this](Dialog& dialog) {
    dialog.name().Text("typed.xyz");
    dialog.format().ListIndex(2);
    user().cancelsFileDialog();
    dialog.browse();
    EXPECT_EQ(dialog.name().Text(), "typed.xyz");
    EXPECT_EQ(dialog.format().ListIndex(), 2);
    dialog.cancel();
  });
}

TEST_P(EditingExportDialog, TheCommandNeedsAPicture) {
  user().uses("frmExport", [](Form& form) { Dialog(form).cancel(); });
  click("btnFileExport");
  editor().SetControls(false);
  EXPECT_FALSE(suite().click("btnFileExport"));
}

TEST_P(EditingExportDialog, KeepsItsFieldsReadableAndLeavesTheResultEmpty) {
  frmExport dialog;
  dialog.Source = &editor();
  EXPECT_FALSE(dialog.Success);
  EXPECT_FALSE(dialog.SafeToUnload);
  user().uses("frmExport", [this](Form& form) {
    Dialog controls(form);
    controls.exportTo(path("a.bmp"));
    controls.cancel();
  });
  EXPECT_TRUE(dialog.ShowModal());
  EXPECT_TRUE(dialog.Success);
  EXPECT_EQ(dialog.ResultData, "");
}

KESTREL_WITH_BOTH_PATHS(EditingExportDialog);

}  // namespace
}  // namespace kestrel
