// Dialogs that set several options store them in one batch.

#include "EditingTest.h"
#include "imaging/contract/controls/CommandButton.h"
#include "platform/store/MemoryStore.h"

namespace kestrel {
namespace {

/// A key store that records its writes, each as its value name, and its batches in brackets.
class RecordingStore : public store::MemoryStore {
 public:
  void WriteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName,
                  const Variant& Value, std::int32_t Kind) override {
    log += ValueName + " ";
    MemoryStore::WriteValue(Hive, Key, ValueName, Value, Kind);
  }
  std::string log;

 protected:
  void beginWrites() override {
    log += "[ ";
    MemoryStore::beginWrites();
  }
  void endWrites(bool store) override {
    log += store ? "] " : "dropped ";
    MemoryStore::endWrites(store);
  }
};

class EditingStoresTogether : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    useStore(&store_);
  }
  void TearDown() override {
    useStore(nullptr);
    EditingTest::TearDown();
  }

  /// What is written when the user accepts the dialog that `show` opens as it is.
  std::string writes(const char* form, const std::function<void()>& show) {
    user().uses(form, [](Form& opened) { Bind<CommandButton>(opened, "cmdAction", 0).Press(); });
    store_.log.clear();
    show();
    return store_.log;
  }

 private:
  RecordingStore store_;
};

TEST_P(EditingStoresTogether, AngleAndDirection) {
  EXPECT_EQ(writes("frmRotate", [&] { editor().ShowRotateDialog(); }), "[ Angle Direction ] ");
}

TEST_P(EditingStoresTogether, TheSizeOfThePicture) {
  options().ResizeWidth(20);
  options().ResizeHeight(10);
  EXPECT_EQ(writes("frmResize", [&] { editor().ShowResizeDialog(); }),
            "[ LockAspectRatio Mode Scale Width Height ] ");
}

TEST_P(EditingStoresTogether, TheSizeOfTheCanvas) {
  options().ResizeCanvasWidth(50);
  options().ResizeCanvasHeight(40);
  EXPECT_EQ(writes("frmResizeCanvas", [&] { editor().ShowResizeCanvasDialog(); }),
            "[ ResizeCanvasColor Width Height LockAspectRatio Placement ] ");
}

TEST_P(EditingStoresTogether, TheShadow) {
  EXPECT_EQ(writes("frmDropShadow", [&] { editor().ShowDropShadowDialog(); }),
            "[ Blur Color HorizontalOffset VerticalOffset Opacity ] ");
}

TEST_P(EditingStoresTogether, TheOptions) {
  EXPECT_EQ(writes("frmOptions", [&] { editor().ShowOptions(); }),
            "[ Size Color1 Color2 AutomaticUpdate BackgroundColor SizeType SizeEx AddDropShadow AutoCheck "
            "Zoom Quality ] ");
}

KESTREL_WITH_BOTH_PATHS(EditingStoresTogether);

}  // namespace
}  // namespace kestrel
