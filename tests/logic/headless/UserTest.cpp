#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "imaging/contract/ThumbnailView.h"
#include "platform/headless/Platform.h"

namespace kestrel::headless {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Reactions of the scripted user to boxes and dialogs that its script does not expect: complaints, no
/// waiting.
class ScriptedUser : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "kestrel-user-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    scratch_ = name;
    headless::Setup setup;
    setup.scratch = scratch_;
    platform_ = std::make_unique<Platform>(std::move(setup));
    platform_->user().onComplaint = [this](const std::string& text) { complaints_.push_back(text); };
  }
  void TearDown() override {
    platform_.reset();
    std::filesystem::remove_all(scratch_);
  }

  Platform& platform() { return *platform_; }
  User& user() { return platform_->user(); }
  std::int32_t box(std::int32_t style) {
    return platform().UserInterface().MessageBox("Text", style, "Title", 0);
  }

  std::vector<std::string> complaints_;
  std::string scratch_;

 private:
  std::unique_ptr<Platform> platform_;
};

TEST_F(ScriptedUser, AnswersBoxesInTheOrderOfTheScriptAndRemembersThem) {
  user().answers(kAnswerNo);
  user().answers(kAnswerOK);
  EXPECT_EQ(box(kBoxYesNoCancel + kBoxQuestion), kAnswerNo);
  EXPECT_EQ(box(kBoxExclamation), kAnswerOK);
  ASSERT_EQ(user().boxes().size(), 2u);
  EXPECT_EQ(user().boxes()[0].text, "Text");
  EXPECT_EQ(user().boxes()[0].title, "Title");
  EXPECT_EQ(user().boxes()[0].style, 35);
  EXPECT_EQ(user().left(), "");
  EXPECT_THAT(complaints_, IsEmpty());
}

TEST_F(ScriptedUser, ChoosesFoldersInTheFolderDialogOfTheBrowser) {
  const auto site = platform().createBrowserSite();
  auto& view = Bind<kestrel::ThumbnailView>(*site, "thvBrowse");
  user().choosesFolder("/pictures");
  user().cancelsFolderDialog();
  EXPECT_EQ(view.BrowseForFolder("Where to?", "Copy To", "/start"), "/pictures");
  EXPECT_EQ(view.BrowseForFolder("Where to?", "Move To", ""), "");
  ASSERT_EQ(user().folderQuestions().size(), 2u);
  EXPECT_EQ(user().folderQuestions()[0].prompt, "Where to?");
  EXPECT_EQ(user().folderQuestions()[0].title, "Copy To");
  EXPECT_EQ(user().folderQuestions()[0].start, "/start");
  EXPECT_THAT(complaints_, IsEmpty());
  EXPECT_EQ(view.BrowseForFolder("Where to?", "Copy To", ""), "");
  EXPECT_THAT(complaints_, ElementsAre(HasSubstr("the folder dialog \"Copy To\" (Where to?)")));
}

TEST_F(ScriptedUser, ComplainsAboutAnUnexpectedBoxAndClosesIt) {
  EXPECT_EQ(box(kBoxYesNoCancel), kAnswerCancel);
  EXPECT_EQ(box(kBoxOK), kAnswerOK);
  EXPECT_THAT(complaints_, ElementsAre("Nobody expected the message box \"Title\" (Text).",
                                       "Nobody expected the message box \"Title\" (Text)."));
}

TEST_F(ScriptedUser, ComplainsAboutAButtonThatABoxDoesNotHave) {
  user().answers(kAnswerYes);
  EXPECT_EQ(box(kBoxOK), kAnswerOK);
  ASSERT_EQ(complaints_.size(), 1u);
  EXPECT_THAT(complaints_[0], HasSubstr("no button for the answer 6"));
}

TEST_F(ScriptedUser, ComplainsIfSomethingElseComesThanExpected) {
  user().chooses("/a.png");
  EXPECT_EQ(box(kBoxYesNoCancel), kAnswerCancel);
  ASSERT_EQ(complaints_.size(), 1u);
  EXPECT_THAT(complaints_[0], HasSubstr("but the user expected a file dialog for \"/a.png\""));
  EXPECT_EQ(user().left(), "a file dialog for \"/a.png\"");
}

TEST_F(ScriptedUser, ComplainsAboutADialogThatIsLeftOpenAndHidesIt) {
  const auto form = platform().CreateForm("frmResources");
  user().uses("frmResources", [](kestrel::Form&) {});
  form->Show(true);
  EXPECT_FALSE(form->Visible());
  EXPECT_THAT(complaints_, ElementsAre("The user left the window frmResources open."));
}

TEST_F(ScriptedUser, ComplainsAboutAnUnexpectedDialogAndHidesIt) {
  const auto form = platform().CreateForm("frmResources");
  form->Show(true);
  EXPECT_FALSE(form->Visible());
  EXPECT_THAT(complaints_, ElementsAre("Nobody expected the window frmResources."));
}

TEST_F(ScriptedUser, ComplainsAboutAnotherDialogThanTheScriptNames) {
  const auto form = platform().CreateForm("frmResources");
  bool used = false;
  user().uses("frmRotate", [&](kestrel::Form&) { used = true; });
  form->Show(true);
  EXPECT_FALSE(used);
  ASSERT_EQ(complaints_.size(), 1u);
  EXPECT_THAT(complaints_[0], HasSubstr("expected the window frmRotate"));
}

TEST_F(ScriptedUser, ChoosesOnlyFilesThatTheDialogAccepts) {
  const auto dialog = platform().CreateImgXDialog();
  dialog->Flags(kDialogFileMustExist | kDialogPathMustExist);
  user().chooses(scratch_ + "/missing.png");
  EXPECT_FALSE(dialog->ShowOpen());
  dialog->Flags(kDialogPathMustExist);
  user().chooses(scratch_ + "/missing/a.png");
  EXPECT_FALSE(dialog->ShowSave());
  EXPECT_EQ(complaints_.size(), 2u);
  user().chooses(scratch_ + "/a.png");
  EXPECT_TRUE(dialog->ShowSave());
  EXPECT_EQ(complaints_.size(), 2u);
}

TEST_F(ScriptedUser, PicksOnlyVisibleAndEnabledPopupEntries) {
  const auto site = platform().createEditorSite();
  auto& suite = Bind<Moorage>(*site, "mrgUI");
  std::vector<std::string> clicked;
  const Connection connection =
      suite.CommandClick.Connect([&](Command& command) { clicked.push_back(command.Name()); });
  user().picks("btnEditCopy");
  suite.ShowPopup(suite.Commands().Item("mnuSelectionContext"));
  EXPECT_THAT(clicked, ElementsAre("btnEditCopy"));
  user().picks("btnEditPaste");
  suite.ShowPopup(suite.Commands().Item("mnuSelectionContext"));
  suite.Commands().Item("btnEditCopy").Enabled(false);
  user().picks("btnEditCopy");
  suite.ShowPopup(suite.Commands().Item("mnuSelectionContext"));
  user().picks("");
  suite.ShowPopup(suite.Commands().Item("mnuSelectionContext"));
  EXPECT_THAT(clicked, ElementsAre("btnEditCopy"));
  EXPECT_THAT(complaints_,
              ElementsAre("The menu mnuSelectionContext shows no entry btnEditPaste.",
                          "The entry btnEditCopy of the menu mnuSelectionContext can't be chosen."));
}

TEST_F(ScriptedUser, EndsTheProgramIfNobodyHandlesComplaints) {
  EXPECT_DEATH(
      {
        user().onComplaint = nullptr;
        box(kBoxOK);
      },
      "Nobody expected the message box \"Title\"");
}

}  // namespace
}  // namespace kestrel::headless
