#include <filesystem>
#include <fstream>

#include "ContractTest.h"
#include "imaging/contract/controls/CheckBox.h"

namespace kestrel::contract {
namespace {

class Boxes : public ContractTest {};

TEST_P(Boxes, AMessageBoxReturnsTheButtonThatWasPressed) {
  UserInterface& boxes = platform().UserInterface();
  const std::int32_t question = kBoxYesNoCancel + kBoxQuestion;
  for (const std::int32_t answer : {kAnswerYes, kAnswerNo, kAnswerCancel}) {
    user().willAnswer(answer);
    EXPECT_EQ(boxes.MessageBox("Changes have been made.\r\rSave?", question, "Save Changes"), answer);
  }
  user().willAnswer(kAnswerOK);
  EXPECT_EQ(boxes.MessageBox("Nothing to paste.", kBoxExclamation), kAnswerOK);
}

TEST_P(Boxes, AnInputBoxReturnsItsTextOrNothingWhenCanceled) {
  UserInterface& boxes = platform().UserInterface();
  user().willType("a name");
  EXPECT_EQ(boxes.InputBox("Name:", "New Folder", "default"), "a name");
  user().willCancelInput();
  EXPECT_EQ(boxes.InputBox("Name:", "New Folder", "default"), "");
}

class FileDialogs : public ContractTest {
 protected:
  void SetUp() override {
    ContractTest::SetUp();
    dialog_ = platform().CreateImgXDialog();
    dialog_->Filter("Bitmaps|*.bmp;*.dib|All Files (*.*)|*.*");
    dialog_->Flags(kDialogHideReadOnly | kDialogPathMustExist | kDialogFileMustExist);
  }
  void TearDown() override {
    dialog_.reset();
    ContractTest::TearDown();
  }
  std::unique_ptr<ImgXDialog> dialog_;
};

TEST_P(FileDialogs, KeepTheirProperties) {
  dialog_->DefaultExt("bmp");
  dialog_->Filename("x.bmp");
  EXPECT_EQ(dialog_->Filter(), "Bitmaps|*.bmp;*.dib|All Files (*.*)|*.*");
  EXPECT_EQ(dialog_->Flags(), 6148);
  EXPECT_EQ(dialog_->DefaultExt(), "bmp");
  EXPECT_EQ(dialog_->Filename(), "x.bmp");
}

TEST_P(FileDialogs, ReportTrueWithTheNameThatTheUserAccepted) {
  const std::string name = path("picture.bmp");
  std::ofstream(user().host(name)) << "content";
  user().willChoose(name);
  EXPECT_TRUE(dialog_->ShowOpen());
  EXPECT_EQ(dialog_->Filename(), name);
}

TEST_P(FileDialogs, ReportFalseWhenCanceledAndKeepTheirName) {
  dialog_->Filename(path("picture.bmp"));
  user().willCancelFileDialog();
  EXPECT_FALSE(dialog_->ShowOpen());
  EXPECT_EQ(dialog_->Filename(), path("picture.bmp"));
}

TEST_P(FileDialogs, AppendTheDefaultExtensionToANameWithoutOne) {
  dialog_->Flags(kDialogOverwritePrompt | kDialogHideReadOnly | kDialogPathMustExist);
  dialog_->DefaultExt("bmp");
  user().willChoose(path("fresh"));
  EXPECT_TRUE(dialog_->ShowSave());
  EXPECT_EQ(dialog_->Filename(), path("fresh.bmp"));
  dialog_->DefaultExt("");
  user().willChoose(path("plain"));
  EXPECT_TRUE(dialog_->ShowSave());
  EXPECT_EQ(dialog_->Filename(), path("plain"));
}

TEST_P(FileDialogs, CanBeEnlargedForAControlBeforeTheyAreShown) {
  const std::unique_ptr<Form> holder = platform().CreateForm("frmResources");
  auto& box = Bind<CheckBox>(*holder, "chkThumbnail");
  int raised = 0;
  const Connection connection = dialog_->InitDialog.Connect([&](std::int32_t& width, std::int32_t& height) {
    ++raised;
    EXPECT_GT(width, 0);
    EXPECT_GT(height, 0);
    std::int32_t left = -1, top = -1, labelWidth = 0, labelHeight = 0;
    dialog_->GetControlRect(kDialogFileTypeLabel, left, top, labelWidth, labelHeight);
    EXPECT_GE(left, 0);
    EXPECT_GE(top, 0);
    EXPECT_GT(labelWidth, 0);
    EXPECT_GT(labelHeight, 0);
    EXPECT_EQ(errorOf([&] { dialog_->GetControlRect(4711, left, top, labelWidth, labelHeight); }), 5);
    dialog_->MoveControl(box.hWnd(), left + 3, top + labelHeight + 36);
    height += 20;
  });
  user().willCancelFileDialog();
  EXPECT_FALSE(dialog_->ShowSave());
  user().willCancelFileDialog();
  EXPECT_FALSE(dialog_->ShowSave());
  EXPECT_EQ(raised, 2) << "each time it shows";
  EXPECT_EQ(holder->Find("chkThumbnail"), &box) << "the control went back to its form";
}

TEST_P(FileDialogs, HaveStockControlsOnlyDuringPreparation) {
  std::int32_t left = 0, top = 0, width = 0, height = 0;
  EXPECT_EQ(errorOf([&] { dialog_->GetControlRect(kDialogFileTypeLabel, left, top, width, height); }), 5);
}

KESTREL_ON_ALL_PLATFORMS(Boxes);
KESTREL_ON_ALL_PLATFORMS(FileDialogs);

}  // namespace
}  // namespace kestrel::contract
