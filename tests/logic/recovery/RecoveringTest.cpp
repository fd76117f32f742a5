// The offer in the strip, and "Recover..." in the context menu of the bars.

#include "RecoveryTest.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

class Recovering : public RecoveryTest {
 protected:
  /// An editor without a picture, and these kept files in the store.
  void startWith(const std::vector<std::string>& names) {
    start();
    for (const std::string& name : names) {
      store_.kept.push_back({"id " + name, name.empty() ? "" : path(name), 7, 5, 1'700'000'000});
    }
    recover();
    recovery().Offer();
  }
  BarMenuLine menuLine() {
    const std::vector<BarMenuLine> lines = suite().barMenuLines();
    EXPECT_THAT(lines, SizeIs(1));
    return lines.at(0);
  }
};

TEST_P(Recovering, IsOfferedInTheStripForOnePictureOrSeveral) {
  startWith({"a.png"});
  EXPECT_THAT(view().Notice(), StartsWith("Unsaved changes to \"a.png\" of 2023-11-1"));
  EXPECT_EQ(view().noticeButton(), "&Recover...");
  store_.kept.push_back({"b", "", 1, 1, 1});
  view().closeNotice();
  recovery().Offer();
  EXPECT_EQ(view().Notice(), "Unsaved changes to 2 pictures can be recovered.");
}

TEST_P(Recovering, IsNotOfferedWithoutAKeptPictureOrForADamagedOne) {
  startWith({});
  EXPECT_EQ(view().Notice(), "");
  EXPECT_EQ(menuLine().Caption, "&Recover...");
  EXPECT_FALSE(menuLine().Enabled);
  store_.kept.push_back({"b", "", 0, 0, 1, true});
  recovery().Offer();
  EXPECT_EQ(view().Notice(), "");
  EXPECT_TRUE(menuLine().Enabled);
}

TEST_P(Recovering, OpensThePictureUnderItsNameWithUnsavedChanges) {
  startWith({"a.jpg"});
  std::vector<std::string> events;
  connections_.push_back(editor().PictureSet.Connect([&] { events.push_back("PictureSet"); }));
  connections_.push_back(
      editor().ImageOpen.Connect([&](const std::string& name) { events.push_back("ImageOpen " + name); }));
  connections_.push_back(editor().Change.Connect([&] { events.push_back("Change"); }));
  user().answers(kAnswerYes);
  view().pressNoticeButton();
  EXPECT_THAT(user().boxes().back().text, HasSubstr("7 x 5 pixels"));
  EXPECT_THAT(store_.takeAsked(), ElementsAre("take id a.jpg", "adopt"));
  EXPECT_EQ(editor().Image()->Width(), 7);
  EXPECT_EQ(editor().Filename(), path("a.jpg"));
  EXPECT_EQ(editor().Format(), 1);
  EXPECT_TRUE(editor().Changed());
  EXPECT_TRUE(view().Modified());
  EXPECT_FALSE(view().CanUndo());
  EXPECT_TRUE(command("btnFileSave").Enabled());
  EXPECT_THAT(events, ElementsAre("PictureSet", "ImageOpen " + path("a.jpg"), "Change"));
  EXPECT_EQ(view().Notice(), "");
}

TEST_P(Recovering, ARecoveredPictureIsAskedAboutAndRemovedAsAnyOther) {
  startWith({"a.png"});
  user().answers(kAnswerYes);
  menuLine().Chosen();
  store_.takeAsked();
  pass(seconds(50));
  EXPECT_THAT(store_.takeAsked(), IsEmpty()) << "its file keeps it already";
  EXPECT_TRUE(editor().SaveImage());
  EXPECT_THAT(store_.takeAsked(), ElementsAre("discard"));
  EXPECT_TRUE(exists(path("a.png")));
}

TEST_P(Recovering, AnUnnamedPictureStaysUnnamed) {
  startWith({""});
  EXPECT_THAT(view().Notice(), StartsWith("Unsaved changes to \"Untitled\" of "));
  user().answers(kAnswerYes);
  view().pressNoticeButton();
  EXPECT_EQ(editor().Filename(), "");
  EXPECT_EQ(editor().Format(), 0);
  EXPECT_TRUE(editor().Changed());
}

TEST_P(Recovering, AsksFirstAboutTheChangesOfThePresentPicture) {
  startWith({"a.png"});
  ASSERT_TRUE(editor().OpenImage(makePicture("open.png", 2)));
  change();
  user().answers(kAnswerYes);
  user().answers(kAnswerCancel);
  menuLine().Chosen();
  EXPECT_EQ(editor().Filename(), path("open.png"));
  EXPECT_THAT(store_.takeAsked(), ElementsAre("take id a.png"));
  pass(seconds(5));
  EXPECT_THAT(store_.takeAsked(), ElementsAre("keep open.png"));

  user().answers(kAnswerYes);
  user().answers(kAnswerNo);
  menuLine().Chosen();
  EXPECT_EQ(editor().Filename(), path("a.png"));
  EXPECT_THAT(store_.takeAsked(), ElementsAre("take id a.png", "discard", "adopt"));
}

TEST_P(Recovering, GoesOnToTheNextPictureAndDeletesOnlyAfterAQuestion) {
  startWith({"a.png", "b.png", "c.png"});
  user().answers(kAnswerNo);   // not a.png
  user().answers(kAnswerNo);   // nor delete it
  user().answers(kAnswerNo);   // not b.png
  user().answers(kAnswerYes);  // delete it
  user().answers(kAnswerCancel);
  view().pressNoticeButton();
  EXPECT_THAT(store_.takeAsked(), ElementsAre("delete id b.png"));
  EXPECT_THAT(user().boxes()[1].text, StartsWith("Do you want to delete the unsaved changes to \""));
  EXPECT_EQ(editor().Image(), nullptr);
}

TEST_P(Recovering, ADamagedPictureIsRefusedWithASentenceAndHarmsNothing) {
  startWith({"a.png"});
  ASSERT_TRUE(editor().OpenImage(makePicture("open.png", 2)));
  store_.refusal = err::kInvalidPicture;
  user().answers(kAnswerYes);
  user().answers(kAnswerNo);
  menuLine().Chosen();
  EXPECT_THAT(user().boxes().back().text, HasSubstr("cannot be recovered: its file is damaged."));
  EXPECT_EQ(editor().Filename(), path("open.png"));
  EXPECT_FALSE(editor().Changed());
  EXPECT_THAT(store_.takeAsked(), IsEmpty());
  EXPECT_THAT(store_.kept, SizeIs(1));
}

TEST_P(Recovering, APictureThatAnotherWindowHasTakenIsRefusedWithASentence) {
  startWith({"a.png"});
  store_.refusal = err::kPathFileAccess;
  user().answers(kAnswerYes);
  user().answers(kAnswerOK);
  menuLine().Chosen();
  EXPECT_EQ(user().boxes().back().text,
            "Unable to recover the picture due to error \"The file is in use.\".");
  EXPECT_EQ(editor().Image(), nullptr);
}

TEST_P(Recovering, TheOfferStaysWhileOtherPicturesAreOpenedUntilTheUserClosesIt) {
  startWith({"a.png"});
  const std::string offer = view().Notice();
  ASSERT_TRUE(editor().OpenImage(makePicture("open.png", 2)));
  EXPECT_EQ(view().Notice(), offer);
  change();
  EXPECT_TRUE(editor().SaveImage());
  EXPECT_EQ(view().Notice(), offer);
  view().closeNotice();
  ASSERT_TRUE(editor().OpenImage(makePicture("next.png", 2)));
  EXPECT_EQ(view().Notice(), "");
}

TEST_P(Recovering, TheButtonOfTheOfferDoesNotSave) {
  startWith({"a.png"});
  ASSERT_TRUE(editor().OpenImage(makePicture("open.png", 2)));
  user().answers(kAnswerCancel);
  view().pressNoticeButton();
  EXPECT_THAT(user().boxes(), SizeIs(1));
}

KESTREL_WITH_BOTH_PATHS(Recovering);

}  // namespace
}  // namespace kestrel
