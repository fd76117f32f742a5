// The state of the editor that a host sees in each notification of an open or a save.

#include "EditorTest.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A sink that runs hooks of the test.
class CallingSink final : public IImageEvents {
 public:
  void RequestSaveFilename(std::string& Filename, bool& CancelDefault) override {
    if (onRequest) onRequest(Filename, CancelDefault);
  }
  void RequestOpenFilename(std::string& Filename, bool& CancelDefault) override {
    if (onRequest) onRequest(Filename, CancelDefault);
  }
  void ImageSave(const std::string& Filename) override {
    if (onNotified) onNotified("sink", Filename);
  }
  void ImageOpen(const std::string& Filename) override {
    if (onNotified) onNotified("sink", Filename);
  }

  std::function<void(std::string&, bool&)> onRequest;
  std::function<void(const std::string&, const std::string&)> onNotified;
};

class EditorNotifications : public EditorTest {
 protected:
  /// Records the state in `ImageOpen` and `ImageSave`, event and sink.
  void listen() {
    sink_ = std::make_shared<CallingSink>();
    sink_->onNotified = [this](const std::string& who, const std::string& name) { see(who + " " + name); };
    editor().EventSink(sink_);
    const auto record = [this](const std::string& name) { sink_->onNotified("event", name); };
    connections_.push_back(editor().ImageOpen.Connect(record));
    connections_.push_back(editor().ImageSave.Connect(record));
  }
  void see(const std::string& who) { seen_.push_back(who + state()); }
  /// ": name, format, first of the recent files, Modified".
  std::string state() {
    CommandItems& recent = command("mnuFileMRU").Items();
    return ": " + editor().Filename() + ", " + ToText(editor().Format()) + ", " +
           (recent.Count() > 0 ? recent.Item(1).Text : "none") + ", " + boolean(view().Modified());
  }

  std::shared_ptr<CallingSink> sink_;
  std::vector<std::string> seen_;
};

TEST_P(EditorNotifications, OfAnOpenFollowNameFormatAndRecentFiles) {
  startWithPicture("old.png");
  change();
  const std::string file = makePicture("new.jpg", 1);
  listen();
  connections_.push_back(editor().PictureSet.Connect([this] { see("PictureSet"); }));
  ASSERT_TRUE(editor().OpenImage(file));
  const std::string present = ": " + file + ", 1, " + file + ", False";
  EXPECT_THAT(seen_,
              ElementsAre("PictureSet" + present, "event " + file + present, "sink " + file + present));
}

TEST_P(EditorNotifications, OfASaveFollowNameFormatRecentFilesAndModified) {
  startWithPicture("old.png");
  change();
  const std::string file = path("new.jpg");
  listen();
  ASSERT_TRUE(editor().SaveImageAs(file));
  const std::string present = ": " + file + ", 1, " + file + ", False";
  EXPECT_THAT(seen_, ElementsAre("event " + file + present, "sink " + file + present));
}

TEST_P(EditorNotifications, PictureSetIsRaisedWhenTheNewPictureIsReady) {
  startWithPicture();
  change();
  editor().SetSelection(1, 2, 3, 4);
  editor().SetControls(false);
  const std::string other = makePicture("other.png", 2, 7, 5);
  int raised = 0;
  connections_.push_back(editor().PictureSet.Connect([&] {
    ++raised;
    EXPECT_EQ(editor().Image()->Width(), 7);
    EXPECT_FALSE(editor().Changed());
    EXPECT_FALSE(view().Modified());
    EXPECT_EQ(view().UndoName(), "");
    EXPECT_FALSE(view().SelectionVisible());
    EXPECT_TRUE(command("btnFileSave").Enabled());
  }));
  ASSERT_TRUE(editor().OpenImage(other));
  EXPECT_EQ(raised, 1);
}

// -- A name is used for any CancelDefault -----------------------------------------------------------------

TEST_P(EditorNotifications, ANameIsOpenedThoughTheDialogIsCanceled) {
  start();
  const std::string file = makePicture("a.png", 2);
  connections_.push_back(editor().RequestOpenFilename.Connect([&](std::string& name, bool& cancel) {
    name = file;
    cancel = true;
  }));
  EXPECT_TRUE(editor().OpenImage());
  EXPECT_EQ(editor().Filename(), file);
}

TEST_P(EditorNotifications, ANameIsSavedThoughTheDialogIsCanceled) {
  startWithPicture();
  connections_.push_back(editor().RequestSaveFilename.Connect([&](std::string& name, bool& cancel) {
    name = path("b.png");
    cancel = true;
  }));
  EXPECT_TRUE(editor().SaveImageAs());
  EXPECT_TRUE(exists(path("b.png")));
}

TEST_P(EditorNotifications, APictureWithoutAFormatIsSavedThoughCanceled) {
  start();
  editor().Picture(platform().CreateCanvas(12, 8)->Picture());
  connections_.push_back(
      editor().RequestSaveFilename.Connect([](std::string&, bool& cancel) { cancel = true; }));
  EXPECT_TRUE(editor().SaveImageAs(path("named.png")));
  EXPECT_TRUE(exists(path("named.png")));
}

TEST_P(EditorNotifications, TheSinkMayClearTheNameAndNothingIsSaved) {
  const std::string file = startWithPicture();
  listen();
  connections_.push_back(
      editor().RequestSaveFilename.Connect([&](std::string& name, bool&) { name = path("b.png"); }));
  sink_->onRequest = [](std::string& name, bool& cancel) {
    name.clear();
    cancel = true;
  };
  EXPECT_FALSE(editor().SaveImageAs());
  EXPECT_FALSE(exists(path("b.png")));
  EXPECT_EQ(editor().Filename(), file);
  EXPECT_THAT(seen_, IsEmpty());
}

// -- Unsaved changes before another file ------------------------------------------------------------------

TEST_P(EditorNotifications, OpenContinuesAfterYesAndASave) {
  const std::string file = startWithPicture();
  change();
  listen();
  const std::string other = makePicture("other.png", 2, 7, 5);
  user().answers(kAnswerYes);
  user().chooses(other);
  click("btnFileOpen");
  EXPECT_THAT(seen_, ElementsAre("event " + file + ": " + file + ", 2, " + file + ", False",
                                 "sink " + file + ": " + file + ", 2, " + file + ", False",
                                 "event " + other + ": " + other + ", 2, " + other + ", False",
                                 "sink " + other + ": " + other + ", 2, " + other + ", False"));
}

TEST_P(EditorNotifications, OpenStopsAfterYesWithoutASave) {
  start();
  editor().Picture(platform().CreateCanvas(12, 8)->Picture());
  change();
  user().answers(kAnswerYes);
  user().cancelsFileDialog([](headless::FileDialog& dialog) { EXPECT_TRUE(dialog.isSave()); });
  click("btnFileOpen");
  EXPECT_EQ(editor().Image()->Width(), 12);
  EXPECT_TRUE(view().Modified());
}

TEST_P(EditorNotifications, NoSavesNothingAndKeepsModified) {
  const std::string file = startWithPicture();
  const std::string before = contents(file);
  change();
  user().answers(kAnswerNo);
  EXPECT_TRUE(editor().SaveChanges());
  EXPECT_EQ(contents(file), before);
  EXPECT_TRUE(view().Modified());
}

KESTREL_WITH_BOTH_PATHS(EditorNotifications);

}  // namespace
}  // namespace kestrel
