// The order of the tear-down, and steps of it that fail.

#include "EditorTest.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A view whose position can refuse to change.
class StuckView final : public RecordingView {
 public:
  using RecordingView::RecordingView;
  void Move(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) override {
    if (stuck) throw RuntimeError(err::kInvalidCall, "The view is stuck.");
    RecordingView::Move(left, top, width, height);
  }

  bool stuck = false;
};

class EditorTearDown : public EditorTest {
 protected:
  std::unique_ptr<RecordingView> makeView() override {
    return std::make_unique<StuckView>(log(), platform().desktop(), &site(), "igxImage",
                                       platform().Clipboard(), platform().files());
  }
  /// Records the dock windows whose forms are unloaded.
  void noteUnloading() {
    for (const char* key : {"dkwMaterials", "dkwZoom"}) {
      connections_.push_back(suite().attached(key)->Unloaded.Connect([this, key] {
        unloaded_.push_back(key + std::string(modProcessing::GetOptions() == shared_ ? " before" : " after") +
                            " the options");
      }));
    }
  }
  /// From now on unloading a form of the editor fails.
  void refuseUnloading() {
    for (const char* key : {"dkwMaterials", "dkwZoom"}) {
      connections_.push_back(suite().attached(key)->QueryUnload.Connect([this](bool&, std::int32_t) {
        ++refusals_;
        throw RuntimeError(err::kInvalidCall, "The window stays.");
      }));
    }
  }

  std::shared_ptr<Options> shared_;
  std::vector<std::string> unloaded_;
  int refusals_ = 0;
};

TEST_P(EditorTearDown, UnloadsMaterialsThenZoomThenReleasesSinkAndOptions) {
  start();
  shared_ = modProcessing::GetOptions();
  const auto sink = std::make_shared<RecordingSink>(log());
  editor().EventSink(sink);
  noteUnloading();
  connections_.push_back(suite().attached("dkwZoom")->Unloaded.Connect(
      [&] { EXPECT_EQ(editor().EventSink(), sink) << "the sink goes after the windows"; }));
  editor().Terminate();
  EXPECT_THAT(unloaded_, ElementsAre("dkwMaterials before the options", "dkwZoom before the options"));
  EXPECT_EQ(editor().EventSink(), nullptr);
  EXPECT_NE(modProcessing::GetOptions(), shared_);
}

TEST_P(EditorTearDown, SkipsEachStepThatFails) {
  start();
  shared_ = modProcessing::GetOptions();
  const auto sink = std::make_shared<RecordingSink>(log());
  editor().EventSink(sink);
  refuseUnloading();
  editor().Terminate();
  EXPECT_GE(refusals_, 2) << "both windows were asked";
  EXPECT_EQ(editor().MaterialsWindow(), nullptr);
  EXPECT_EQ(editor().ZoomWindow(), nullptr);
  EXPECT_EQ(editor().EventSink(), nullptr);
  EXPECT_NE(modProcessing::GetOptions(), shared_);
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditorTearDown, RunsAtTheEndOfTheControlWithoutAnExitRequest) {
  start();
  shared_ = modProcessing::GetOptions();
  noteUnloading();
  endEditor();
  EXPECT_THAT(unloaded_, ElementsAre("dkwMaterials before the options", "dkwZoom before the options"));
  EXPECT_NE(modProcessing::GetOptions(), shared_);
}

TEST_P(EditorTearDown, AtTheEndOfTheControlSkipsEachStepThatFails) {
  start();
  shared_ = modProcessing::GetOptions();
  refuseUnloading();
  endEditor();
  EXPECT_GE(refusals_, 2);
  EXPECT_NE(modProcessing::GetOptions(), shared_);
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditorTearDown, DoesNotUnloadTheWindowsTwice) {
  start();
  shared_ = modProcessing::GetOptions();
  noteUnloading();
  editor().Terminate();
  editor().Terminate();
  endEditor();
  EXPECT_THAT(unloaded_, SizeIs(2));
}

TEST_P(EditorTearDown, LeavesAnotherEditorWithFreshOptions) {
  start();
  const auto secondSite = platform().createEditorSite();
  ImageProcessingCtl second(*secondSite);
  secondSite->InitProperties();
  second.Initialize();
  shared_ = second.Options();
  EXPECT_EQ(editor().Options(), shared_);
  editor().Terminate();
  const std::shared_ptr<Options> fresh = second.Options();
  ASSERT_NE(fresh, nullptr);
  EXPECT_NE(fresh, shared_);
  shared_->JPEGQuality(40);
  EXPECT_EQ(fresh->JPEGQuality(), 40) << "options store no values themselves";
  second.ApplyOptions();
  EXPECT_TRUE(second.OpenImage(makePicture("open.png", 2)));
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditorTearDown, ReleasesTheHelp) {
  start();
  editor().Terminate();
  user().answers(kAnswerOK);
  dispatch("btnHelpContents");
  EXPECT_THAT(platform().helpShown(), IsEmpty());
  ASSERT_THAT(user().boxes(), SizeIs(1));
  EXPECT_EQ(user().boxes()[0].title, "Application Error");
}

TEST_P(EditorTearDown, IgnoresAViewThatCannotFollowTheClientArea) {
  start();
  auto& stuck = dynamic_cast<StuckView&>(view());
  stuck.stuck = true;
  const std::int32_t height = view().Height();
  suite().CommandBars()("Status Bar").Visible(false);
  EXPECT_EQ(view().Height(), height);
  EXPECT_THAT(user().boxes(), IsEmpty());
  stuck.stuck = false;
  site().Move(0, 0, 640, 480);
  EXPECT_EQ(view().Height(), suite().ClientArea().Height);
}

KESTREL_WITH_BOTH_PATHS(EditorTearDown);

}  // namespace
}  // namespace kestrel
