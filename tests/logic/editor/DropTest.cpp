// Files dropped on the control, and the line in the empty view.

#include "EditorTest.h"

namespace kestrel {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class EditorDrop : public EditorTest {};

TEST_P(EditorDrop, OpensTheFileAsTheOpenEventsReport) {
  start();
  const std::string file = makePicture("a.png", 2, 12, 8);
  std::string opened;
  connections_.push_back(editor().ImageOpen.Connect([&](const std::string& name) { opened = name; }));
  EXPECT_TRUE(site().dropFile(file));
  EXPECT_EQ(opened, file);
  EXPECT_EQ(editor().Filename(), file);
  EXPECT_EQ(editor().Image()->Width(), 12);
  EXPECT_EQ(command("mnuFileMRU").Items().Item(1).Text, file) << "it is a recent file now";
}

TEST_P(EditorDrop, AsksAboutChangesFirst) {
  const std::string before = startWithPicture();
  const std::string file = makePicture("a.png", 2);
  change();
  user().answers(kAnswerCancel);
  EXPECT_TRUE(site().dropFile(file));
  EXPECT_EQ(editor().Filename(), before);
  ASSERT_THAT(user().boxes(), SizeIs(1));
  EXPECT_EQ(user().boxes()[0].title, "Save Changes");
  user().answers(kAnswerNo);
  site().dropFile(file);
  EXPECT_EQ(editor().Filename(), file);
}

TEST_P(EditorDrop, AnswerYesSavesBeforeItOpens) {
  const std::string before = startWithPicture();
  const std::string file = makePicture("a.png", 2);
  change();
  user().answers(kAnswerYes);
  site().dropFile(file);
  EXPECT_THAT(log().entries(), testing::Contains("ToFile " + before + " 2 0 True"));
  EXPECT_EQ(editor().Filename(), file);
}

TEST_P(EditorDrop, AFileThatCannotBeReadShowsTheBoxAndKeepsThePicture) {
  const std::string before = startWithPicture();
  write(path("no.png"), "no picture");
  user().answers(kAnswerOK);
  EXPECT_TRUE(site().dropFile(path("no.png")));
  ASSERT_THAT(user().boxes(), SizeIs(1));
  EXPECT_EQ(user().boxes()[0].title, "Open Image");
  EXPECT_EQ(editor().Filename(), before);
}

TEST_P(EditorDrop, IsRefusedWhereOpenIsNotOffered) {
  const std::string before = startWithPicture();
  const std::string file = makePicture("a.png", 2);
  editor().ShowOpen(false);
  EXPECT_FALSE(site().dropFile(file));
  editor().ShowOpen(true);
  command("btnFileOpen").Enabled(false);
  EXPECT_FALSE(site().dropFile(file));
  EXPECT_EQ(editor().Filename(), before);
}

TEST_P(EditorDrop, IsRefusedOnADesignSurfaceAndBeforeInitialize) {
  const std::string file = makePicture("a.png", 2);
  for (const bool userMode : {false, true}) {
    create(userMode);
    site().InitProperties();
    EXPECT_FALSE(site().dropFile(file));
    endEditor();
  }
}

TEST_P(EditorDrop, EndsAFloatingPaste) {
  startWithPicture();
  editor().SelectAll();
  click("btnEditCopy");
  click("btnEditPaste");
  EXPECT_FALSE(command("btnFileSave").Enabled());
  site().dropFile(makePicture("a.png", 2));
  EXPECT_TRUE(command("btnFileSave").Enabled());
  EXPECT_EQ(editor().Filename(), path("a.png"));
}

// -- The empty view ---------------------------------------------------------------------------------------

TEST_P(EditorDrop, TheEmptyViewNamesTheWaysToAPicture) {
  start();
  EXPECT_EQ(view().shownHint(), "Open a picture, or drop one here.");
  site().acceptFiles(false);
  EXPECT_EQ(view().shownHint(), "Open a picture.");
  editor().ShowOpen(false);
  EXPECT_EQ(view().shownHint(), "");
  editor().ShowOpen(true);
  site().acceptFiles(true);
  EXPECT_EQ(view().shownHint(), "Open a picture, or drop one here.");
  EXPECT_EQ(editor().Image(), nullptr) << "it is no picture";
}

TEST_P(EditorDrop, TheLineGoesWithTheFirstPictureAndReturnsWithoutOne) {
  startWithPicture();
  EXPECT_EQ(view().shownHint(), "");
  editor().Picture(nullptr);
  EXPECT_EQ(view().shownHint(), "Open a picture, or drop one here.");
}

TEST_P(EditorDrop, ADesignSurfaceHasNoLine) {
  create(false);
  site().InitProperties();
  EXPECT_EQ(view().shownHint(), "");
}

KESTREL_WITH_BOTH_PATHS(EditorDrop);

}  // namespace
}  // namespace kestrel
