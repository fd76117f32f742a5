// The thumbnail check box in the save dialog.

#include "EditorTest.h"
#include "imaging/contract/controls/CheckBox.h"

namespace kestrel {
namespace {

class EditorSaveDialog : public EditorTest {
 protected:
  static CheckBox* boxIn(headless::FileDialog& dialog) { return dynamic_cast<CheckBox*>(dialog.guest()); }
  static void untick(headless::FileDialog& dialog) { boxIn(dialog)->Value(0); }
  /// The height of the next save dialog, which is canceled.
  std::int32_t heightOfDialog() {
    std::int32_t height = 0;
    user().cancelsFileDialog([&](headless::FileDialog& dialog) { height = dialog.size().Height; });
    EXPECT_FALSE(editor().SaveImageAs());
    return height;
  }
};

TEST_P(EditorSaveDialog, GrowsByTheBoxAnd3PixelsWithTiesToEven) {
  startWithPicture();
  CheckBox* box = nullptr;
  user().cancelsFileDialog([&](headless::FileDialog& dialog) { box = boxIn(dialog); });
  editor().SaveImageAs();
  ASSERT_NE(box, nullptr);
  const std::int32_t plain = headless::FileDialog::kSize.Height;
  ASSERT_EQ(plain, 401);

  platform().Screen().twipsPerPixelY = 15;
  box->Height(255);
  EXPECT_EQ(heightOfDialog(), plain + 17 + 3);
  box->Height(260);
  EXPECT_EQ(heightOfDialog(), plain + 17 + 3) << "17.33 pixels";
  platform().Screen().twipsPerPixelY = 16;
  box->Height(40);
  EXPECT_EQ(heightOfDialog(), 406) << "401 + 2.5 + 3";
  box->Height(56);
  EXPECT_EQ(heightOfDialog(), 408) << "401 + 3.5 + 3";
}

TEST_P(EditorSaveDialog, SetsTheBoxByTheOptionEachTimeItOpens) {
  startWithPicture();
  user().cancelsFileDialog(untick);
  editor().SaveImageAs();
  std::vector<std::int32_t> ticks;
  const auto look = [&](headless::FileDialog& dialog) { ticks.push_back(boxIn(dialog)->Value()); };
  user().cancelsFileDialog(look);
  editor().SaveImageAs();
  options().ThumbnailAutoCheck(false);
  user().cancelsFileDialog(look);
  editor().SaveImageAs();
  EXPECT_THAT(ticks, testing::ElementsAre(1, 0));
}

TEST_P(EditorSaveDialog, LeavesNoBoxInALaterOpenDialog) {
  startWithPicture();
  user().cancelsFileDialog();
  editor().SaveImageAs();
  user().cancelsFileDialog([](headless::FileDialog& dialog) {
    EXPECT_FALSE(dialog.isSave());
    EXPECT_EQ(dialog.guest(), nullptr);
    EXPECT_EQ(dialog.size(), headless::FileDialog::kSize);
    EXPECT_EQ(dialog.Flags(), 6148);
    EXPECT_EQ(dialog.DefaultExt(), "") << "the extension of the start-up is gone";
  });
  EXPECT_FALSE(editor().OpenImage());
}

TEST_P(EditorSaveDialog, DecidesOnAThumbnailOnlyForItsOwnSave) {
  startWithPicture();
  user().chooses(path("one.png"));
  ASSERT_TRUE(editor().SaveImageAs());
  ASSERT_TRUE(exists(path("one_thumb.png"))) << "the box is ticked";
  ASSERT_TRUE(editor().SaveImageAs(path("two.png")));
  EXPECT_FALSE(exists(path("two_thumb.png"))) << "the host named this one";
}

TEST_P(EditorSaveDialog, CanceledDecidesNothing) {
  startWithPicture("open.png");
  user().cancelsFileDialog([](headless::FileDialog& dialog) { EXPECT_EQ(boxIn(dialog)->Value(), 1); });
  EXPECT_FALSE(editor().SaveImageAs());
  EXPECT_TRUE(editor().SaveImage());
  EXPECT_FALSE(exists(path("open_thumb.png")));
}

TEST_P(EditorSaveDialog, WritesNoThumbnailOfAPictureThatCouldNotBeSaved) {
  options().ThumbnailAutomaticUpdate(true);
  startWithPicture();
  std::filesystem::create_directory(platform().files().host(path("folder.png")));
  write(path("folder_thumb.png"), "old");
  user().answers(kAnswerOK);
  EXPECT_FALSE(editor().SaveImageAs(path("folder.png")));
  EXPECT_EQ(contents(path("folder_thumb.png")), "old");
}

KESTREL_WITH_BOTH_PATHS(EditorSaveDialog);

}  // namespace
}  // namespace kestrel
