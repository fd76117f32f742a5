#include "EditorTest.h"
#include "platform/headless/FileDialog.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The container loses its host during a call, and destroys the editor after the call has returned.
class EditorRetirement : public EditorTest {
 protected:
  /// The host ends the editor at the event `wanted`; all events are recorded.
  void endAt(const std::string& wanted) {
    wanted_ = wanted;
    ImageProcessingCtl& e = editor();
    on(e.ExitRequest, [this] { raised("ExitRequest"); });
    on(e.ImageOpen, [this](const std::string&) { raised("ImageOpen"); });
    on(e.ImageSave, [this](const std::string&) { raised("ImageSave"); });
    on(e.RequestOpenFilename, [this](std::string&, bool&) { raised("RequestOpenFilename"); });
    on(e.RequestSaveFilename, [this](std::string&, bool&) { raised("RequestSaveFilename"); });
    on(e.ForeColorChange, [this](OLE_COLOR) { raised("ForeColorChange"); });
    on(e.BackColorChange, [this](OLE_COLOR) { raised("BackColorChange"); });
    on(e.ToolChange, [this](ImageProcessingToolConstants) { raised("ToolChange"); });
    on(e.PictureSet, [this] { raised("PictureSet"); });
    on(e.SimpleSaveRequest, [this](bool&) { raised("SimpleSaveRequest"); });
    on(e.Change, [this] { raised("Change"); });
  }

  template <typename Event, typename Handler>
  void on(Event& event, Handler handler) {
    connections_.push_back(event.Connect(std::move(handler)));
  }

  void raised(const std::string& event) {
    events_.push_back(event);
    if (event == wanted_) editor().Retire();
  }

  std::string wanted_;
  std::vector<std::string> events_;
};

TEST_P(EditorRetirement, InAnyEventItIsTheLastEvent) {
  struct Case {
    std::string event;
    std::function<void()> call;
  };
  const Case cases[] = {
      {"ExitRequest", [&] { dispatch("btnFileClose"); }},
      {"ImageOpen", [&] { editor().OpenImage(makePicture("b.png", 2)); }},
      {"PictureSet", [&] { editor().OpenImage(makePicture("b.png", 2)); }},
      {"ImageSave", [&] { editor().SaveImageAs(path("c.png")); }},
      {"RequestOpenFilename", [&] { editor().OpenImage(); }},
      {"RequestSaveFilename", [&] { editor().SaveImageAs(); }},
      {"ForeColorChange", [&] { editor().ForeColor(0x00123456); }},
      {"BackColorChange", [&] { editor().BackColor(0x00123456); }},
      {"ToolChange", [&] { editor().Tool(ipToolPan); }},
      {"SimpleSaveRequest", [&] { dispatch("btnFileSimpleSave"); }},
      {"Change", [&] { editor().FlipHorizontally(); }},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.event);
    startWithPicture();
    events_.clear();
    endAt(each.event);
    each.call();
    ASSERT_FALSE(events_.empty());
    EXPECT_EQ(events_.back(), each.event);
    const auto before = events_;
    // Later calls of the container's window have no effect.
    view().Changed();
    dispatch("btnImageMirror");
    EXPECT_EQ(events_, before);
    EXPECT_FALSE(platform().Calls.Any());
    endEditor();
    connections_.clear();
  }
  EXPECT_THAT(user().boxes(), IsEmpty());
}

TEST_P(EditorRetirement, InAnEventSkipsItsRemainingHandlers) {
  startWithPicture();
  int later = 0;
  on(editor().ForeColorChange, [&](OLE_COLOR) { editor().Retire(); });
  on(editor().ForeColorChange, [&](OLE_COLOR) { ++later; });
  editor().ForeColor(0x00123456);
  EXPECT_EQ(later, 0);
}

TEST_P(EditorRetirement, DuringARequestForANameOpensAndSavesNothing) {
  startWithPicture();
  const std::string other = makePicture("other.png", 2);
  on(editor().RequestOpenFilename, [&](std::string& name, bool&) {
    name = other;
    editor().Retire();
  });
  const std::int32_t recent = command("mnuFileMRU").Items().Count();
  EXPECT_FALSE(editor().OpenImage());
  EXPECT_EQ(command("mnuFileMRU").Items().Count(), recent);

  connections_.clear();
  endEditor();
  startWithPicture();
  on(editor().RequestSaveFilename, [&](std::string& name, bool&) {
    name = path("unwanted.png");
    editor().Retire();
  });
  EXPECT_FALSE(editor().SaveImageAs());
  EXPECT_FALSE(exists(path("unwanted.png")));
}

TEST_P(EditorRetirement, InTheSinkIsItsLastCall) {
  startWithPicture();
  const auto sink = std::make_shared<RecordingSink>(log());
  sink->onRequest = [&](std::string&, bool&) { editor().Retire(); };
  editor().EventSink(sink);
  EXPECT_FALSE(editor().OpenImage());
  EXPECT_EQ(editor().EventSink(), nullptr);
  EXPECT_THAT(log().entries(), ElementsAre("sink RequestOpenFilename \"\" False"));
}

TEST_P(EditorRetirement, CancelsAnOpenDialog) {
  startWithPicture();
  user().cancelsFileDialog([&](headless::FileDialog&) { editor().Retire(); });
  EXPECT_FALSE(editor().OpenImage());
  // No other dialog opens: the script is empty, so each would cause a complaint.
  EXPECT_FALSE(editor().OpenImage());
  EXPECT_FALSE(editor().SaveImageAs());
  EXPECT_EQ(editor().ShowRotateDialog(), 0);
  change();
  EXPECT_FALSE(editor().SaveChanges());
  dispatch("btnHelpAbout");
}

TEST_P(EditorRetirement, HappensOnce) {
  startWithPicture();
  editor().Retire();
  const auto options = modProcessing::GetOptions();
  endEditor();
  EXPECT_EQ(modProcessing::GetOptions(), options) << "the settings of editors made since are left alone";
}

// -- What a host may do in an event without ending the editor ----------------------------------------------

TEST_P(EditorRetirement, IsNotNeededToTerminateInAnEventOfAToolWindow) {
  startWithPicture();
  auto& picker = Bind<ColorPicker>(editor().MaterialsWindow()->Form(), "cpkMaterials");
  auto& swatch = Bind<CommandButton>(editor().MaterialsWindow()->Form(), "btnColors", 0);
  swatch.Click();
  on(editor().ForeColorChange, [&](OLE_COLOR) { editor().Terminate(); });
  picker.Change(0x00224466);
  EXPECT_EQ(editor().ForeColor(), 0x00224466);
  EXPECT_EQ(editor().MaterialsWindow(), nullptr);
  EXPECT_EQ(editor().ZoomWindow(), nullptr);
}

TEST_P(EditorRetirement, IsNotNeededToOpenAnotherPictureInImageOpen) {
  start();
  const std::string a = makePicture("a.png", 2);
  const std::string b = makePicture("b.png", 2);
  const auto sink = std::make_shared<RecordingSink>(log());
  editor().EventSink(sink);
  on(editor().ImageOpen, [&](const std::string& name) {
    if (name == a) editor().OpenImage(b);
    log().add("event ImageOpen " + name);
  });
  log().clear();
  EXPECT_TRUE(editor().OpenImage(a));
  std::vector<std::string> notified;
  for (const std::string& entry : log().entries()) {
    if (entry.find("ImageOpen") != std::string::npos) notified.push_back(entry);
  }
  EXPECT_THAT(notified, ElementsAre("event ImageOpen " + b, "sink ImageOpen " + b, "event ImageOpen " + a,
                                    "sink ImageOpen " + a));
  EXPECT_EQ(editor().Filename(), b);
}

KESTREL_WITH_BOTH_PATHS(EditorRetirement);

}  // namespace
}  // namespace kestrel
