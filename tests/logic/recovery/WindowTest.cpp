// The editor's own window with pictures kept in a folder: one run after the other.

#include "RecoveryTest.h"
#include "apps/common/window/EditorWindow.h"
#include "engine/recovery/RecoveryFolder.h"

namespace kestrel {
namespace {

class WindowWithRecovery : public EditorTest {
 protected:
  engine::RecoveryFolder folder() { return engine::RecoveryFolder(platform().files().host(path("kept"))); }
  headless::ImageView& viewOf(app::EditorWindow& window) {
    return dynamic_cast<headless::ImageView&>(window.editor().ImageControl());
  }
};

TEST_P(WindowWithRecovery, OffersAfterACrashWhatTheLastRunDidNotSave) {
  const std::string file = makePicture("a.png", 2);
  auto store = folder();
  {
    app::EditorWindow window([] {});
    window.keepChanges(store);
    window.form().Show();
    ASSERT_TRUE(window.editor().OpenImage(file));
    window.editor().Rotate(90);
    // Ends without a question, as at a crash.
  }
  {
    app::EditorWindow window([] {});
    window.keepChanges(store);
    window.form().Show();
    user().answers(kAnswerYes);
    viewOf(window).pressNoticeButton();
    EXPECT_EQ(window.form().Caption().substr(0, 8), "a.png - ");
    EXPECT_EQ(window.editor().Image()->Width(), 30);
    user().answers(kAnswerNo);
    window.form().Unload();
    EXPECT_FALSE(window.form().Visible());
  }
  EXPECT_TRUE(store.Kept().empty()) << "the user has declined";
}

TEST_P(WindowWithRecovery, LeavesNothingAfterTheUserHasClosedIt) {
  auto store = folder();
  for (const std::int32_t answer : {kAnswerNo, kAnswerYes}) {
    app::EditorWindow window([] {});
    window.keepChanges(store);
    window.form().Show();
    ASSERT_TRUE(window.editor().OpenImage(makePicture("a.png", 2)));
    window.editor().FlipHorizontally();
    constexpr Recovery::Time start{};
    for (int i = 0; i < 10; ++i) window.recovery()->Tick(start + seconds(i));
    user().answers(answer);
    window.form().Unload();
    window.recovery()->Tick(start + seconds(20));
  }
  EXPECT_TRUE(store.Kept().empty());
}

KESTREL_WITH_BOTH_PATHS(WindowWithRecovery);

}  // namespace
}  // namespace kestrel
