// Creation and end of the automation class.

#include "../diagnostics/FakeDebugClient.h"
#include "HostTest.h"
#include "host/interface/IImageEvents.h"

namespace kestrel {
namespace {

using modTollgarthSupport::Counted;
using testing::ElementsAre;
using testing::IsEmpty;

class HostLife : public HostTest {
 protected:
  /// Each object of the component is already registered, with its index plus 1 as its id.
  void count() {
    auto& state = modTollgarthSupport::State();
    state.qdkEnableInstanceCounts = true;
    state.qdkInstanceCountsMemory = std::make_unique<fakes::Counters>(tool_);
    std::int16_t id = 0;
    for (auto& entry : state.qdkInstanceCountComponentNames) entry = ++id;
  }
  static std::string note(Counted object, const char* change) {
    return std::to_string(static_cast<std::int32_t>(object) + 1) + change + ";";
  }
  std::size_t countOf(const std::string& note) const { return (";" + tool_.counters).find(";" + note); }

  fakes::DebugTool tool_;
};

TEST_F(HostLife, IsCountedFirstAndUncountedLast) {
  count();
  {
    const ImageProcessing processing;
    EXPECT_TRUE(tool_.counters.starts_with(note(Counted::kImageProcessing, "+1"))) << tool_.counters;
    EXPECT_NE(countOf(note(Counted::kImageProcessingCtl, "+1")), std::string::npos);
  }
  EXPECT_TRUE(tool_.counters.ends_with(";" + note(Counted::kImageProcessing, "-1"))) << tool_.counters;
  EXPECT_NE(countOf(note(Counted::kImageProcessingCtl, "-1")), std::string::npos);
}

TEST_F(HostLife, TheWindowIsCountedFromItsLoadToItsUnload) {
  count();
  ImageProcessing processing;
  EXPECT_EQ(countOf(note(Counted::kfrmImageEditor, "+1")), std::string::npos) << "not loaded yet";
  processing.Show();
  EXPECT_NE(countOf(note(Counted::kfrmImageEditor, "+1")), std::string::npos);
  formOf(processing).pressCloseBox();
  EXPECT_EQ(countOf(note(Counted::kfrmImageEditor, "-1")), std::string::npos) << "only hidden";
  processing.Terminate();
  EXPECT_NE(countOf(note(Counted::kfrmImageEditor, "-1")), std::string::npos);
}

TEST_F(HostLife, AsASinkItIsNoInstanceOfIImageEvents) {
  count();
  ImageProcessing processing;
  processing.Initialize();
  EXPECT_EQ(countOf(note(Counted::kIImageEvents, "+1")), std::string::npos) << tool_.counters;
  const IImageEvents plain;
  EXPECT_NE(countOf(note(Counted::kIImageEvents, "+1")), std::string::npos) << tool_.counters;
}

TEST_F(HostLife, SetsTheStoresKeyAndRoot) {
  platform().RegistryStore().RootKey("Other");
  platform().RegistryStore().RootHive(0);
  const ImageProcessing processing;
  EXPECT_EQ(platform().RegistryStore().RootKey(), "Software\\Brindlewick\\Common\\ImageProcessing");
  EXPECT_EQ(platform().RegistryStore().RootHive(), HKEY_CURRENT_USER);
}

TEST_F(HostLife, IsTheSinkOfItsControlFromTheCreation) {
  const ImageProcessing processing;
  ASSERT_TRUE(processing.Control().EventSink());
  EXPECT_EQ(processing.Control().EventSink()->TypeName(), "ImageProcessing");
}

TEST_F(HostLife, TheControlDoesNotKeepTheSink) {
  std::weak_ptr<IImageEvents> sink;
  {
    const ImageProcessing processing;
    sink = processing.Control().EventSink();
    EXPECT_FALSE(sink.expired());
  }
  EXPECT_TRUE(sink.expired());
}

TEST_F(HostLife, StartsHiddenWithAnEmptyTitle) {
  const ImageProcessing processing;
  EXPECT_FALSE(processing.Visible());
  EXPECT_EQ(processing.Title(), "");
}

TEST_F(HostLife, NothingWorksOnThePictureBeforeInitialize) {
  ImageProcessing processing;
  EXPECT_EQ(processing.Control().ZoomWindow(), nullptr);
  processing.Initialize();
  EXPECT_NE(processing.Control().ZoomWindow(), nullptr);
  EXPECT_EQ(processing.Tool(), ipToolSelect);
  EXPECT_TRUE(processing.OpenImage(png()));
}

TEST_F(HostLife, TheEndTerminatesTheControlThenUnloadsTheWindow) {
  ImageProcessing processing;
  processing.Initialize();
  processing.Show();
  headless::Form& form = formOf(processing);
  on(suiteOf(processing).attached("dkwZoom")->Unloaded, [this] { log_.push_back("control"); });
  on(form.Unloaded, [this, &form] { log_.push_back(form.Visible() ? "shown window" : "window"); });
  processing.Terminate();
  EXPECT_THAT(log_, ElementsAre("control", "window"));
}

TEST_F(HostLife, TheEndOfAShownWindowIsAnAttemptToCloseItThatIsNotRefused) {
  ImageProcessing processing;
  processing.Initialize();
  processing.Show();
  ASSERT_TRUE(processing.OpenImage(png()));
  change(processing);
  record(processing);
  processing.Terminate();
  EXPECT_THAT(log_, ElementsAre("WindowClosed")) << "and no question about the changes";
  processing.Terminate();
  EXPECT_THAT(log_, ElementsAre("WindowClosed"));
}

TEST_F(HostLife, TheEndOfAWindowThatWasNeverShownIsNoAttempt) {
  ImageProcessing processing;
  record(processing);
  processing.Terminate();
  EXPECT_THAT(log_, IsEmpty());
}

TEST_F(HostLife, TheDestructorRaisesNothing) {
  {
    ImageProcessing processing;
    processing.Initialize();
    processing.Show();
    record(processing);
  }
  EXPECT_THAT(log_, IsEmpty());
}

TEST_F(HostLife, AfterTheEndMembersRaise91) {
  ImageProcessing processing;
  processing.Initialize();
  processing.Title("Pictures");
  processing.Terminate();
  EXPECT_EQ(errorOf([&] { static_cast<void>(processing.Visible()); }), 91);
  EXPECT_EQ(errorOf([&] { static_cast<void>(processing.Control()); }), 91);
  EXPECT_EQ(errorOf([&] { processing.Initialize(); }), 91);
  EXPECT_EQ(errorOf([&] { processing.OpenImage("C:\\a\\b.png"); }), 91);
  EXPECT_EQ(errorOf([&] { processing.FlipVertically(); }), 91);
  EXPECT_EQ(errorOf([&] { static_cast<void>(processing.Filename()); }), 91);
  EXPECT_EQ(errorOf([&] { processing.Tool(ipToolPan); }), 91);
  EXPECT_EQ(errorOf([&] { static_cast<void>(processing.Commands()); }), 91);
  EXPECT_EQ(errorOf([&] { processing.SaveThumbnail(); }), 91);
  EXPECT_EQ(errorOf([&] { processing.SaveImageThumbnailEx(); }), 91);
  EXPECT_EQ(errorOf([&] { processing.ShowOptions(); }), 91);
  EXPECT_EQ(errorOf([&] { processing.Title("Other"); }), 91);
  EXPECT_EQ(processing.Title(), "Pictures");
  EXPECT_TRUE(processing.Options());
}

TEST_F(HostLife, AfterTheEndShowReportsAndReturns) {
  ImageProcessing processing;
  processing.Terminate();
  user().answers(kAnswerOK);
  processing.Show();
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_EQ(user().boxes()[0].title, "Application Error");
  EXPECT_THAT(user().boxes()[0].text, testing::HasSubstr("Module: ImageProcessing\r\nProcedure: Show\r\n"));
  EXPECT_THAT(user().boxes()[0].text, testing::HasSubstr("(91)"));
}

TEST_F(HostLife, SeveralLiveSideBySide) {
  ImageProcessing first, second;
  first.Initialize();
  second.Initialize();
  ASSERT_TRUE(first.OpenImage(png()));
  EXPECT_EQ(second.Image(), nullptr);
  first.Terminate();
  ASSERT_TRUE(second.OpenImage(png()));
  EXPECT_EQ(second.Filename(), "C:\\a\\b.png");
}

}  // namespace
}  // namespace kestrel
