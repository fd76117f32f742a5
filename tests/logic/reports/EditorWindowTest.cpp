// The editor's own window: its stored position, and the changes that it reports to the desktop.

#include "Reports.h"
#include "apps/common/window/EditorWindow.h"

namespace kestrel {
namespace {

class EditorWindowPosition : public Reports {
 protected:
  static constexpr char kKey[] =
      "Software\\Brindlewick\\Common\\ImageProcessing\\WindowPositions\\frmImageEditor";

  Variant stored(const char* name) {
    return headless_->RegistryStore().ReadValue(HKEY_CURRENT_USER, kKey, name);
  }
  static Rectangle placeOf(const Form& form) {
    return {form.Left(), form.Top(), form.Width(), form.Height()};
  }
};

TEST_F(EditorWindowPosition, IsStoredWhenTheWindowClosesAndRestoredWhenItOpens) {
  headless_->desktop().screens = {{0, 0, 1920, 1080}};
  const Rectangle place{120, 80, 900, 700};
  {
    app::EditorWindow window([] {});
    window.form().Show();
    window.form().Move(place.Left, place.Top, place.Width, place.Height);
    window.form().Unload();
  }
  EXPECT_EQ(stored("Left").ToInt32(), 120);
  EXPECT_EQ(stored("Top").ToInt32(), 80);
  EXPECT_EQ(stored("Width").ToInt32(), 900);
  EXPECT_EQ(stored("Height").ToInt32(), 700);
  app::EditorWindow window([] {});
  EXPECT_FALSE(placeOf(window.form()) == place);
  window.form().Show();
  EXPECT_TRUE(placeOf(window.form()) == place);
}

TEST_F(EditorWindowPosition, IsNotStoredIfTheUserCancelsTheClosing) {
  app::EditorWindow window([] {});
  window.form().Show();
  ASSERT_TRUE(window.editor().OpenImage(picture_));
  window.editor().FlipHorizontally();
  user().answers(kAnswerCancel);
  window.form().Unload();
  EXPECT_TRUE(window.form().Visible());
  EXPECT_EQ(stored("Left").TypeCode(), 0);
  user().answers(kAnswerNo);
  window.form().Unload();
  EXPECT_FALSE(window.form().Visible());
  EXPECT_NE(stored("Left").TypeCode(), 0);
}

TEST_F(EditorWindowPosition, IsNeitherRestoredNorStoredWithoutAKey) {
  modProcessing::WindowPositions().RegistryKey("");
  app::EditorWindow window([] {});
  const Rectangle before = placeOf(window.form());
  window.form().Show();
  EXPECT_TRUE(placeOf(window.form()) == before);
  window.form().Unload();
  EXPECT_EQ(stored("Left").TypeCode(), 0);
}

class EditorWindowModified : public Reports {
 protected:
  EditorWindowModified() { window_.form().Show(); }
  IImageProcessingCtl& editor() { return window_.editor(); }
  bool modified() { return window_.form().Modified(); }

  app::EditorWindow window_{[] {}};
};

TEST_F(EditorWindowModified, FollowsThePictureAndNotThePropertyChanged) {
  EXPECT_FALSE(modified());
  ASSERT_TRUE(editor().OpenImage(picture_));
  EXPECT_FALSE(modified());
  const std::string caption = window_.form().Caption();
  editor().FlipHorizontally();
  EXPECT_TRUE(modified());
  EXPECT_EQ(window_.form().Caption(), caption);
  ASSERT_TRUE(editor().SaveImage());
  EXPECT_FALSE(modified()) << "although Changed stays set after a save";
  EXPECT_TRUE(editor().Changed());
  editor().Undo();
  EXPECT_TRUE(modified());
  ASSERT_TRUE(editor().OpenImage(picture_));
  EXPECT_FALSE(modified());
}

TEST_F(EditorWindowModified, AFailedSaveLeavesIt) {
  ASSERT_TRUE(editor().OpenImage(picture_));
  editor().FlipHorizontally();
  user().answers(kAnswerOK);
  EXPECT_FALSE(editor().SaveImageAs(folder_ + "/nowhere/x.png"));
  EXPECT_TRUE(modified());
}

}  // namespace
}  // namespace kestrel
