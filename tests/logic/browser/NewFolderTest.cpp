#include "FolderTreeTest.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NewFolders : public FolderTreeTest {
 protected:
  void SetUp() override {
    FolderTreeTest::SetUp();
    folder("C:\\Pictures");
    start();
    control().Path("C:\\Pictures");
  }
  bool exists(const std::string& path) { return platform().files().exists(path); }
  /// The host names the folder, or cancels.
  Connection host(const std::string& name, bool cancels = false) {
    return control().AskForNewFolder.Connect([name, cancels](std::string& ReturnFolder, bool& Cancel) {
      EXPECT_EQ(ReturnFolder, "");
      EXPECT_FALSE(Cancel);
      ReturnFolder = name;
      Cancel = cancels;
    });
  }
};

TEST_F(NewFolders, TheUserIsAskedForTheName) {
  platform().user().types("May");
  EXPECT_EQ(control().NewFolder(), "C:\\Pictures\\May");
  EXPECT_TRUE(exists("C:\\Pictures\\May"));
  ASSERT_EQ(platform().user().questions().size(), 1U);
  EXPECT_EQ(platform().user().questions()[0].title, "New Folder");
  EXPECT_EQ(platform().user().questions()[0].prompt,
            "Current Folder:\rC:\\Pictures\\\r\rPlease enter the new folder name:");
  EXPECT_EQ(platform().user().questions()[0].defaultText, "");
}

TEST_F(NewFolders, TheNewFolderIsNotInTheTreeBeforeARefresh) {
  platform().user().types("May");
  control().NewFolder();
  EXPECT_FALSE(has("C:\\PICTURES\\MAY"));
  control().Refresh();
  EXPECT_TRUE(has("C:\\PICTURES\\MAY"));
}

TEST_F(NewFolders, ALongPathIsShownWith50Characters) {
  const std::string deep = "C:\\Pictures\\" + std::string(30, 'a') + "\\" + std::string(30, 'b');
  folder(deep);
  control().Refresh();
  control().Path(deep);
  ASSERT_EQ(control().Path(), deep + "\\");
  platform().user().cancelsInput();
  control().NewFolder();
  const std::string prompt = platform().user().questions()[0].prompt;
  const std::string shown = "C:\\...\\" + std::string(30, 'b') + "\\";
  EXPECT_EQ(prompt, "Current Folder:\r" + shown + "\r\rPlease enter the new folder name:");
}

TEST_F(NewFolders, AnEmptyAnswerCreatesNothing) {
  platform().user().cancelsInput();
  int before = 0;
  for (const auto& entry : shell().Entries("C:\\Pictures\\")) before += entry.IsDirectory ? 1 : 0;
  EXPECT_EQ(control().NewFolder(), "");
  int after = 0;
  for (const auto& entry : shell().Entries("C:\\Pictures\\")) after += entry.IsDirectory ? 1 : 0;
  EXPECT_EQ(after, before);
}

TEST_F(NewFolders, AHostThatCancelsCreatesAndShowsNothing) {
  const Connection connection = host("May", true);
  EXPECT_EQ(control().NewFolder(), "");
  EXPECT_FALSE(exists("C:\\Pictures\\May"));
  EXPECT_THAT(platform().user().questions(), IsEmpty());
}

TEST_F(NewFolders, AHostThatNamesTheFolderSavesTheQuestion) {
  const Connection connection = host("June");
  EXPECT_EQ(control().NewFolder(), "C:\\Pictures\\June");
  EXPECT_TRUE(exists("C:\\Pictures\\June"));
  EXPECT_THAT(platform().user().questions(), IsEmpty());
}

TEST_F(NewFolders, ANameWithASeparatorIsCreatedAsGiven) {
  const Connection connection = host("C:\\Other");
  EXPECT_EQ(control().NewFolder(), "C:\\Pictures\\C:\\Other") << "the path followed by the name";
  EXPECT_TRUE(exists("C:\\Other"));
}

TEST_F(NewFolders, AFailureRaisesTheSameErrorInTheNameOfTheControl) {
  folder("C:\\Pictures\\May");
  std::string description;
  try {
    shell().CreateFolder("C:\\Pictures\\May");
  } catch (const RuntimeError& error) {
    description = error.Description();
  }
  platform().user().types("May");
  try {
    control().NewFolder();
    FAIL() << "no error";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kPathFileAccess);
    EXPECT_EQ(error.Description(), description);
    EXPECT_EQ(error.Source(), platform().App().Title() + ".FolderTreeView");
  }
}

TEST_F(NewFolders, WithoutASelectedFolderANameAloneRaises76) {
  tree().click("My Computer");
  const Connection connection = host("June");
  try {
    control().NewFolder();
    FAIL() << "no error";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kPathNotFound);
  }
  EXPECT_FALSE(exists("C:\\June"));
}

}  // namespace
}  // namespace kestrel
