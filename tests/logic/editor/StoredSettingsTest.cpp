// Values that the key store may hold, and when an open editor applies them.

#include <limits>

#include "EditorTest.h"

namespace kestrel {
namespace {

class StoredSettings : public EditorTest {
 protected:
  void store(const Variant& value, std::int32_t kind) {
    platform().RegistryStore().SetSetting("UndoLevels", value, kind, "Settings", HKEY_CURRENT_USER);
  }

  /// Starts the editor, opens a picture and changes it without a report. Returns the number of undo steps.
  int stepsAfterThreeChanges() {
    startWithPicture();
    EXPECT_FALSE(view().Modified()) << "the new picture is unmodified";
    EXPECT_FALSE(editor().Changed());
    for (const char* name : {"One", "Two", "Three"}) view().ImgX()->Effects().Flip(0, name);
    int steps = 0;
    for (; !view().UndoName().empty(); ++steps) view().Undo();
    return steps;
  }
};

TEST_P(StoredSettings, NegativeUndoLevelsCountAsZero) {
  for (const std::int32_t levels : {-1, std::numeric_limits<std::int32_t>::min()}) {
    store(levels, kStoreNumber);
    EXPECT_EQ(stepsAfterThreeChanges(), 0) << levels;
    EXPECT_EQ(editor().UndoLevels(), levels) << "the property is what is stored";
    endEditor();
  }
}

TEST_P(StoredSettings, TheLargestUndoLevelsKeepAllSteps) {
  store(std::numeric_limits<std::int32_t>::max(), kStoreNumber);
  EXPECT_EQ(stepsAfterThreeChanges(), 3);
}

TEST_P(StoredSettings, ATextForTheUndoLevelsGivesTheDefault) {
  store("many", kStoreString);
  EXPECT_EQ(stepsAfterThreeChanges(), 3);
  EXPECT_EQ(editor().UndoLevels(), 10);
}

TEST_P(StoredSettings, UndoLevelsApplyAtTheStartOfAnEditorOnly) {
  startWithPicture();
  options().UndoLevels(3);
  EXPECT_EQ(options().UndoLevels(), 3) << "the setting itself has changed at once";
  editor().ApplyOptions();
  EXPECT_EQ(editor().UndoLevels(), 10);
  EXPECT_EQ(view().UndoLevels(), 10);
  endEditor();
  start();
  EXPECT_EQ(editor().UndoLevels(), 3);
  EXPECT_EQ(view().UndoLevels(), 3);
}

TEST_P(StoredSettings, TheSurfaceFollowsAtTheNextApplyOptions) {
  start();
  const Size before = view().backgroundSize();
  options().BackgroundGridSize(7);
  EXPECT_EQ(view().backgroundSize(), before);
  editor().ApplyOptions();
  EXPECT_EQ(view().backgroundSize(), (Size{14, 14}));
}

TEST_P(StoredSettings, NoOtherPropertyOfTheControlIsCopiedToTheOptions) {
  start();
  editor().AutoUpdateGlobal(true);
  editor().UndoLevels(3);
  editor().ZoomIn();
  EXPECT_EQ(options().UndoLevels(), 10);
  EXPECT_EQ(options().ZoomLevel(), 10);
}

KESTREL_WITH_BOTH_PATHS(StoredSettings);

}  // namespace
}  // namespace kestrel
