#include <fstream>

#include "FolderTreeTest.h"

namespace kestrel {
namespace {

using namespace modFolderTreeView;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

class ListedFolders : public FolderTreeTest {
 protected:
  void SetUp() override {
    FolderTreeTest::SetUp();
    create();
    tree().Nodes().Add("", kTreeLast, "C:", "C").Tag("C:");
    tree().Nodes().Add("C:", kTreeChild, "C:\\TOP", "Top").Tag("C:\\Top");
    folder("C:\\Top");
  }
};

TEST_F(ListedFolders, AreChildrenOfTheirFoldersNodeWithPathCasedNameAndPictures) {
  folder("C:\\Top\\Summer 2024");
  folder("C:\\Top\\PHOTOS");
  std::ofstream(platform().files().host("C:\\Top\\picture.png")) << "x";
  ListDirs(tree(), "C:\\Top", true);
  EXPECT_THAT(tree().childTexts("C:\\TOP"), UnorderedElementsAre("Summer 2024", "Photos"));
  TreeNode& photos = node("C:\\TOP\\PHOTOS");
  EXPECT_EQ(photos.Tag(), "C:\\Top\\PHOTOS") << "as the file system spells it";
  EXPECT_EQ(photos.Image(), "Folder Closed");
  EXPECT_EQ(photos.SelectedImage(), "Folder Open");
  EXPECT_EQ(photos.ExpandedImage(), "");
}

TEST_F(ListedFolders, HaveTheOpenPictureWhenExpandedIfTheyAreNoBrowseDialog) {
  folder("C:\\Top\\a");
  ListDirs(tree(), "C:\\Top", false);
  EXPECT_EQ(node("C:\\TOP\\A").SelectedImage(), "");
  EXPECT_EQ(node("C:\\TOP\\A").ExpandedImage(), "Folder Open");
}

TEST_F(ListedFolders, HaveOnlyTheirFirstSubfolderAndNothingDeeper) {
  folder("C:\\Top\\a\\b\\c");
  folder("C:\\Top\\a\\d");
  folder("C:\\Top\\empty");
  ListDirs(tree(), "C:\\Top", true);
  EXPECT_EQ(node("C:\\TOP\\A").Children(), 1) << "the sign to expand";
  EXPECT_EQ(node("C:\\TOP\\A").Child()->Children(), 0);
  EXPECT_EQ(node("C:\\TOP\\EMPTY").Children(), 0);
}

TEST_F(ListedFolders, AreListedFromAPathWithASeparatorInAnyCaseToo) {
  folder("C:\\Top\\a");
  ListDirs(tree(), "c:\\top\\", true);
  EXPECT_THAT(tree().childKeys("C:\\TOP"), ElementsAre("C:\\TOP\\A"));
}

TEST_F(ListedFolders, AreOneNodeEachWhenListedTwice) {
  folder("C:\\Top\\a\\x");
  folder("C:\\Top\\b");
  ListDirs(tree(), "C:\\Top", true);
  const std::int32_t count = tree().Nodes().Count();
  folder("C:\\Top\\c");
  folder("C:\\Top\\b\\late");
  ListDirs(tree(), "C:\\Top", true);
  EXPECT_EQ(tree().Nodes().Count(), count + 2) << "the new folder, and the sign of the one that was empty";
  EXPECT_THAT(tree().childKeys("C:\\TOP"), UnorderedElementsAre("C:\\TOP\\A", "C:\\TOP\\B", "C:\\TOP\\C"));
}

TEST_F(ListedFolders, WithoutAFolderOrANodeNothingIsListed) {
  const std::int32_t count = tree().Nodes().Count();
  ListDirs(tree(), "", true);
  ListDirs(tree(), "C:\\Unknown", true);
  ListDirs(tree(), "D:\\", true);
  EXPECT_EQ(tree().Nodes().Count(), count);
}

TEST_F(ListedFolders, ThatVanishedOrAreNotReadyListNothing) {
  removeFolder("C:\\Top");
  ListDirs(tree(), "C:\\Top", true);
  EXPECT_EQ(node("C:\\TOP").Children(), 0);
}

TEST_F(ListedFolders, WithLongNamesAndOddBytesAreListed) {
  const std::string longName(255, 'x');
  const std::string broken = "caf\xE9";
  const std::string lines = "two\nlines";
  for (const std::string& name : {longName, broken, lines}) folder("C:\\Top\\" + name);
  ListDirs(tree(), "C:\\Top", true);
  EXPECT_THAT(tree().childTexts("C:\\TOP"), UnorderedElementsAre(longName, broken, lines));
  for (const std::string& name : {broken, lines}) {
    TreeNode* const found = FindFolder(tree(), "C:\\Top\\" + name);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->Tag(), "C:\\Top\\" + name);
  }
}

TEST_F(ListedFolders, MayContainThemselvesThroughALink) {
  folder("C:\\Top\\a");
  std::filesystem::create_directory_symlink(platform().files().host("C:\\Top"),
                                            platform().files().host("C:\\Top\\a\\loop"));
  std::filesystem::create_directory_symlink("endless", platform().files().host("C:\\Top\\endless"));
  ListDirs(tree(), "C:\\Top", true);
  EXPECT_THAT(tree().childKeys("C:\\TOP"), ElementsAre("C:\\TOP\\A")) << "a link to itself is no folder";
  ListDirs(tree(), "C:\\Top\\a", true);
  ListDirs(tree(), "C:\\Top\\a\\loop", true);
  EXPECT_TRUE(has("C:\\TOP\\A\\LOOP\\A"));
}

TEST_F(ListedFolders, FormatNodeIgnoresAnAbsentNode) { FormatNode(nullptr, true); }

/// Folders of a file system that distinguishes case.
class CaseSensitiveFolders : public FolderTreeTest {
 protected:
  headless::PathStyle pathStyle() const override { return headless::PathStyle::kSlash; }

  void SetUp() override {
    FolderTreeTest::SetUp();
    create();
    top_ = scratch() + "/Top";
    folder(top_);
    tree().Nodes().Add("", kTreeLast, "TOP", "Top").Tag(top_);
    above_ = &node("TOP");
  }
  void list() { ListDirs(tree(), top_, true, above_); }
  std::string tagOf(const TreeNode* node) { return node == nullptr ? "none" : node->Tag(); }

  std::string top_;
  TreeNode* above_ = nullptr;
};

TEST_F(CaseSensitiveFolders, ThatDifferInCaseOnlyAreAllListedAndFound) {
  const std::vector<std::string> names = {"photos", "Photos", "PHOTOS", "pHOTOS"};
  for (const std::string& name : names) folder(top_ + "/" + name + "/in " + name);
  list();
  EXPECT_THAT(tree().childTexts("TOP"), testing::UnorderedElementsAreArray(names))
      << "shown as they are on the disk";
  list();
  EXPECT_EQ(node("TOP").Children(), 4) << "listed twice";
  for (const std::string& name : names) {
    const std::string path = top_ + "/" + name;
    EXPECT_EQ(tagOf(FindFolder(tree(), path)), path);
    EXPECT_EQ(tagOf(FindFolder(tree(), path + "/")), path);
    EXPECT_EQ(tagOf(FindFolder(tree(), path)->Child()), path + "/in " + name);
  }
}

TEST_F(CaseSensitiveFolders, KeepOneKeyInCapitals) {
  folder(top_ + "/photos");
  folder(top_ + "/Photos");
  list();
  Keys keys = tree().childKeys("TOP");
  ASSERT_EQ(keys.size(), 2U);
  EXPECT_EQ(keys[0], UpperCase(top_ + "/photos"));
  EXPECT_EQ(keys[1], node(keys[1]).Tag()) << "the second keeps its case";
}

TEST_F(CaseSensitiveFolders, InCapitalsAltogetherHaveAKeyOfTheirOwnToo) {
  tree().Nodes().Add("", kTreeLast, "/X/AB", "ab").Tag("/X/ab");
  tree().Nodes().Add("", kTreeLast, "/X", "X").Tag("/X");
  AddFolder(tree(), node("/X"), "/X/AB", true);
  ASSERT_EQ(node("/X").Children(), 1);
  EXPECT_EQ(node("/X").Child()->Tag(), "/X/AB");
  EXPECT_EQ(node("/X").Child()->Key(), "/X/AB/");
  EXPECT_EQ(FindFolder(tree(), "/X/AB"), node("/X").Child());
  EXPECT_EQ(FindFolder(tree(), "/X/ab"), &node("/X/AB"));
}

TEST_F(CaseSensitiveFolders, AreNotTakenForOthersThatAreListed) {
  folder(top_ + "/photos");
  list();
  folder(top_ + "/Photos");
  EXPECT_EQ(tagOf(FindFolder(tree(), top_ + "/Photos")), "none") << "it exists and is another one";
  EXPECT_EQ(tagOf(FindFolder(tree(), top_ + "/PHOTOS")), top_ + "/photos") << "any case finds a folder";
}

TEST_F(CaseSensitiveFolders, BelowTwinsAreDistinguished) {
  folder(top_ + "/a/x");
  folder(top_ + "/A/X");
  list();
  for (const char* name : {"/a", "/A"}) ListDirs(tree(), top_ + name, true);
  EXPECT_EQ(tagOf(FindFolder(tree(), top_ + "/a/x")), top_ + "/a/x");
  EXPECT_EQ(tagOf(FindFolder(tree(), top_ + "/A/X")), top_ + "/A/X");
  EXPECT_EQ(FindFolder(tree(), top_ + "/a/x")->Parent(), FindFolder(tree(), top_ + "/a"));
}

TEST_F(CaseSensitiveFolders, TheRootHasAKey) {
  tree().Nodes().Clear();
  ListDrives(tree(), tree().ImageList(), icon(), false, true, true, "", 0, false, false);
  EXPECT_THAT(tree().childKeys(""), ElementsAre("/"));
  EXPECT_EQ(node("/").Tag(), "/");
  EXPECT_EQ(FindFolder(tree(), "/"), &node("/"));
  EXPECT_THAT(StepsTo(top_), testing::SizeIs(testing::Ge(3)));
  EXPECT_EQ(StepsTo("/usr/bin/"), (std::vector<std::string>{"/", "/usr", "/usr/bin"}));
}

TEST_F(CaseSensitiveFolders, ThatCannotBeReadAreShownWithoutTheirContents) {
  folder(top_ + "/closed/in");
  folder(top_ + "/open/in");
  std::filesystem::permissions(top_ + "/closed", std::filesystem::perms::none);
  list();
  EXPECT_THAT(tree().childTexts("TOP"), UnorderedElementsAre("closed", "open"));
  std::filesystem::permissions(top_ + "/closed", std::filesystem::perms::owner_all);
}

}  // namespace
}  // namespace kestrel
