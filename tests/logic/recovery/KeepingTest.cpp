// Unsaved changes are kept within 30 seconds, and removed when they are saved or declined.

#include "RecoveryTest.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class KeepingChanges : public RecoveryTest {};

TEST_P(KeepingChanges, APictureWithoutChangesIsNotKept) {
  startRecovery();
  pass(seconds(100));
  EXPECT_THAT(store_.takeAsked(), IsEmpty());
}

TEST_P(KeepingChanges, NeedNoTicksWhileThereIsNothingToDo) {
  startRecovery();
  EXPECT_FALSE(recovery().NeedsTicks()) << "no change";
  change();
  EXPECT_TRUE(recovery().NeedsTicks());
  pass(seconds(4));
  EXPECT_THAT(store_.takeAsked(), ElementsAre("keep open.png"));
  pass(seconds(30));
  EXPECT_FALSE(recovery().NeedsTicks()) << "the state on the disk is the latest";
  control().Changed(false);
  EXPECT_TRUE(recovery().NeedsTicks()) << "the host has saved: the kept state is to be removed";
  pass(seconds(1));
  EXPECT_THAT(store_.takeAsked(), ElementsAre("discard"));
  EXPECT_FALSE(recovery().NeedsTicks());
  recovery().End();
  change();
  EXPECT_FALSE(recovery().NeedsTicks());
}

TEST_P(KeepingChanges, AreKeptOnceAfterAPause) {
  startRecovery();
  change();
  pass(seconds(3));
  EXPECT_THAT(store_.takeAsked(), IsEmpty());
  pass(seconds(1));
  EXPECT_THAT(store_.takeAsked(), ElementsAre("keep open.png"));
  pass(seconds(100));
  EXPECT_THAT(store_.takeAsked(), IsEmpty());
}

TEST_P(KeepingChanges, AreKeptWithin30SecondsOfWorkWithoutAPause) {
  startRecovery();
  int passed = 0;
  for (; store_.asked.empty(); ++passed) {
    ASSERT_LT(passed, 30);
    change();
    pass(seconds(1));
  }
  EXPECT_GE(passed, 20) << "without hurry";
  EXPECT_THAT(store_.takeAsked(), ElementsAre("keep open.png"));
  for (passed = 0; store_.asked.empty(); ++passed) {
    ASSERT_LT(passed, 30);
    change();
    pass(seconds(1));
  }
}

TEST_P(KeepingChanges, AreKeptAsTheyAre) {
  startRecovery();
  const Colour red(0x000000FF);
  view().Document().NewImage(10, 10, &red, kPixelFormatRgba, "Red");
  pass(seconds(5));
  EXPECT_THAT(store_.takeAsked(), ElementsAre("keep open.png"));
  EXPECT_EQ(store_.red, 255);
}

TEST_P(KeepingChanges, WaitForTheEndOfADrawingButNoLongerThan30Seconds) {
  startRecovery();
  change();
  view().press(kLeftButton, 0, {5, 5});
  pass(seconds(15));
  EXPECT_THAT(store_.takeAsked(), IsEmpty());
  pass(seconds(10));
  EXPECT_THAT(store_.takeAsked(), ElementsAre("keep open.png"));
  pass(seconds(50));
  EXPECT_THAT(store_.takeAsked(), IsEmpty());
  view().release(kLeftButton, 0, {5, 5});
  pass(seconds(5));
  EXPECT_THAT(store_.takeAsked(), ElementsAre("keep open.png")) << "the drawing may have been taken back";
}

TEST_P(KeepingChanges, AreRemovedByASave) {
  const std::string file = startRecovery();
  change();
  pass(seconds(5));
  store_.takeAsked();
  EXPECT_TRUE(editor().SaveImage());
  EXPECT_THAT(store_.takeAsked(), ElementsAre("discard"));
  pass(seconds(50));
  EXPECT_THAT(store_.takeAsked(), IsEmpty());
}

TEST_P(KeepingChanges, AreKeptAgainAfterASaveAndAnotherChange) {
  startRecovery();
  change();
  pass(seconds(5));
  editor().SaveImage();
  store_.takeAsked();
  change();
  pass(seconds(5));
  EXPECT_THAT(store_.takeAsked(), ElementsAre("keep open.png"));
}

TEST_P(KeepingChanges, AreRemovedWhenTheHostHasSavedThem) {
  startRecovery();
  connections_.push_back(editor().SimpleSaveRequest.Connect([](bool& saved) { saved = true; }));
  change();
  pass(seconds(5));
  store_.takeAsked();
  dispatch("btnFileSimpleSave");
  pass(seconds(1));
  EXPECT_THAT(store_.takeAsked(), ElementsAre("discard"));
}

TEST_P(KeepingChanges, AreRemovedWhenTheUserOpensAnotherPictureAndDeclinesToSave) {
  startRecovery();
  const std::string next = makePicture("next.png", 2);
  change();
  pass(seconds(5));
  store_.takeAsked();
  user().answers(kAnswerNo);
  user().chooses(next);
  click("btnFileOpen");
  EXPECT_EQ(editor().Filename(), next);
  EXPECT_THAT(store_.takeAsked(), ElementsAre("discard"));
}

TEST_P(KeepingChanges, ADeclineIsVoidIfNoOtherPictureIsOpened) {
  startRecovery();
  const std::string next = makePicture("next.png", 2);
  change();
  pass(seconds(5));
  user().answers(kAnswerNo);
  user().cancelsFileDialog();
  click("btnFileOpen");
  store_.takeAsked();
  // A recent file opens without a question.
  EXPECT_TRUE(editor().OpenImage(next));
  EXPECT_THAT(store_.takeAsked(), ElementsAre("leave"));
}

TEST_P(KeepingChanges, ADeclineIsVoidIfTheOtherPictureCannotBeOpened) {
  startRecovery();
  const std::string next = makePicture("next.png", 2);
  write(path("broken.png"), "none");
  change();
  pass(seconds(5));
  store_.takeAsked();
  user().answers(kAnswerNo);
  user().chooses(path("broken.png"));
  user().answers(kAnswerOK);
  click("btnFileOpen");
  EXPECT_TRUE(editor().OpenImage(next));
  EXPECT_THAT(store_.takeAsked(), ElementsAre("leave"));
}

TEST_P(KeepingChanges, ThatAreReplacedUnaskedAreLeftWithTheLastOfThem) {
  const std::string file = startRecovery();
  const std::string next = makePicture("next.png", 2);
  ASSERT_TRUE(editor().OpenImage(next));
  change();
  ASSERT_TRUE(suite().chooseItem("mnuFileMRU", 2));
  EXPECT_EQ(editor().Filename(), file);
  EXPECT_THAT(store_.takeAsked(), ElementsAre("keep next.png", "leave"));
  EXPECT_EQ(view().Notice(), "Unsaved changes to \"next.png\" can be recovered.");
  EXPECT_EQ(view().noticeButton(), "&Recover...");
  pass(seconds(50));
  EXPECT_THAT(store_.takeAsked(), IsEmpty()) << "the new picture has no changes";
}

TEST_P(KeepingChanges, ThatAreSavedAreNotLeftWhenThePictureIsReplaced) {
  startRecovery();
  change();
  pass(seconds(5));
  editor().SaveImage();
  store_.takeAsked();
  EXPECT_TRUE(editor().OpenImage(makePicture("next.png", 2)));
  EXPECT_THAT(store_.takeAsked(), IsEmpty());
  EXPECT_EQ(view().Notice(), "");
}

TEST_P(KeepingChanges, ThatTheHostReplacesAreLeftAsTheyWereKept) {
  startRecovery();
  change();
  pass(seconds(5));
  store_.takeAsked();
  editor().Picture(nullptr);
  EXPECT_THAT(store_.takeAsked(), ElementsAre("leave"));
}

TEST_P(KeepingChanges, AreRemovedWhenTheEditorClosesWithTheUsersConsent) {
  startRecovery();
  change();
  pass(seconds(5));
  store_.takeAsked();
  recovery().Close();
  EXPECT_THAT(store_.takeAsked(), ElementsAre("discard", "end"));
  pass(seconds(5));
  EXPECT_THAT(store_.takeAsked(), IsEmpty());
}

TEST_P(KeepingChanges, OfAnEditorThatEndsUnaskedAreKeptFirst) {
  startRecovery();
  change();
  recovery().End();
  EXPECT_THAT(store_.takeAsked(), ElementsAre("keep open.png", "end"));
}

TEST_P(KeepingChanges, AFailureIsShownOnceInTheStrip) {
  startRecovery();
  change();
  store_.failure = "The disk is full.";
  pass(seconds(5));
  EXPECT_EQ(view().Notice(), "Changes cannot be kept for recovery after a crash. The disk is full.");
  view().closeNotice();
  pass(seconds(5));
  EXPECT_EQ(view().Notice(), "");
  store_.failure.clear();
  pass(seconds(5));
  store_.failure = "The disk is full.";
  pass(seconds(5));
  EXPECT_NE(view().Notice(), "") << "after a success it is news again";
}

KESTREL_WITH_BOTH_PATHS(KeepingChanges);

}  // namespace
}  // namespace kestrel
