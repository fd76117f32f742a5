// The stored position of the editor's window.

#include "Reports.h"
#include "apps/kestrel-editor/window/EditorWindow.h"

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

}  // namespace
}  // namespace kestrel
