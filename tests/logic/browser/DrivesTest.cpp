#include "FolderTreeTest.h"

namespace kestrel {
namespace {

using namespace modFolderTreeView;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

constexpr std::int32_t kUnknownType = 0;
constexpr std::int32_t kRamDisk = 6;

class Drives : public FolderTreeTest {
 protected:
  std::vector<headless::Drive> drives() const override {
    return {{'A', kDriveRemovable, "DISK", "", true}, {'B', kDriveRemovable, "", "", false},
            {'C', kDriveFixed, "SYSTEM", "", true},   {'D', kDriveCD, "HOLIDAYS", "", false},
            {'E', kDriveRemovable, "KEYS", "", true}, {'F', kDriveCD, "Music", "", true},
            {'G', kDriveNoRoot, "", "", true},        {'N', kDriveRemote, "", R"(\\SERVER\photos)", true},
            {'R', kRamDisk, "RAM", "", true},         {'U', kUnknownType, "", "", true}};
  }

  /// A tree with the root for the drives, and the drives in it.
  std::string list(bool checkForSubDirs = true, bool rootIsMyComputer = true) {
    create();
    if (rootIsMyComputer) tree().Nodes().Add("", kTreeLast, kMyComputer, kMyComputer);
    return ListDrives(tree(), tree().ImageList(), icon(), false, true, checkForSubDirs, "", 0, false,
                      rootIsMyComputer);
  }
  std::string textOf(const std::string& key) { return node(key).Text(); }
  std::int32_t childrenOf(const std::string& key) { return node(key).Children(); }
};

TEST_F(Drives, AreNamedByTheirTypeLabelAndLetter) {
  list();
  EXPECT_EQ(textOf("A:"), "Floppy (A:)");
  EXPECT_EQ(textOf("B:"), "Floppy (B:)");
  EXPECT_EQ(textOf("C:"), "System (C:)");
  EXPECT_EQ(textOf("D:"), " (D:)") << "not ready";
  EXPECT_EQ(textOf("E:"), "Removable (E:)");
  EXPECT_EQ(textOf("F:"), "Music (F:)");
  EXPECT_EQ(textOf("G:"), " (G:)") << "no label: a leading blank";
  EXPECT_EQ(textOf("N:"), "Photos on 'Server' (N:)");
  EXPECT_EQ(textOf("R:"), "(R:)");
  EXPECT_EQ(textOf("U:"), "(U:)");
}

TEST_F(Drives, HaveTheirLetterAsKeyAndTagAndTheShellsIcon) {
  list();
  for (const char* drive : {"A:", "C:", "N:"}) {
    EXPECT_EQ(node(drive).Tag(), drive);
    EXPECT_EQ(node(drive).Image(), std::to_string(shell().IconIndex(std::string(drive) + "\\")) + "A");
  }
  EXPECT_EQ(node("A:").Image(), node("E:").Image()) << "equal icons are kept once";
  EXPECT_NE(node("A:").Image(), node("C:").Image());
}

TEST_F(Drives, AreChildrenOfTheComputerOrAtTheTopLevel) {
  list(true, true);
  EXPECT_THAT(tree().childKeys("My Computer"),
              testing::UnorderedElementsAre("A:", "B:", "C:", "D:", "E:", "F:", "G:", "N:", "R:", "U:"));
  list(true, false);
  EXPECT_THAT(tree().childKeys(""), ElementsAre("A:", "B:", "C:", "D:", "E:", "F:", "G:", "N:", "R:", "U:"));
}

TEST_F(Drives, HaveTheirFirstSubfolderAsTheirOnlyChild) {
  for (const char* path :
       {"A:\\one", "C:\\PICTURES", "E:\\one", "F:\\one", "G:\\one", "N:\\one", "R:\\one", "U:\\one"}) {
    folder(path);
  }
  folder("C:\\PICTURES\\deep");
  list();
  EXPECT_EQ(childrenOf("A:"), 0) << "a floppy is never read";
  EXPECT_EQ(childrenOf("D:"), 0) << "not ready";
  for (const char* drive : {"C:", "E:", "F:", "G:", "N:"}) EXPECT_EQ(childrenOf(drive), 1) << drive;
  EXPECT_EQ(childrenOf("R:"), 0) << "a type without a probe";
  EXPECT_EQ(childrenOf("U:"), 0);
  TreeNode& child = *node("C:").Child();
  EXPECT_EQ(child.Key(), "C:\\PICTURES");
  EXPECT_EQ(child.Text(), "Pictures");
  EXPECT_EQ(child.Tag(), "C:\\PICTURES");
  EXPECT_EQ(child.Image(), "Folder Closed");
  EXPECT_EQ(child.SelectedImage(), "Folder Open");
  EXPECT_EQ(child.Children(), 0) << "nothing deeper is looked up";
}

TEST_F(Drives, OnlyRemovableOnesAreProbedWithoutTheCheckForSubfolders) {
  for (const char* path : {"C:\\one", "E:\\one", "F:\\one", "N:\\one"}) folder(path);
  list(false);
  EXPECT_EQ(childrenOf("C:"), 0);
  EXPECT_EQ(childrenOf("F:"), 0);
  EXPECT_EQ(childrenOf("N:"), 0);
  EXPECT_EQ(childrenOf("E:"), 1) << "also without the check";
}

TEST_F(Drives, AreReadAtMostOnceAndFloppiesNever) {
  list();
  const std::vector<std::string> reads = shell().reads();
  EXPECT_THAT(reads, Not(Contains("A:\\")));
  EXPECT_THAT(reads, Not(Contains("B:\\")));
  for (const char* drive : {"C:\\", "D:\\", "E:\\", "F:\\", "G:\\", "N:\\"}) {
    EXPECT_THAT(reads, Contains(drive).Times(1));
  }
}

TEST_F(Drives, TheFirstFixedOneIsTheResult) { EXPECT_EQ(list(), "C:"); }

TEST_F(Drives, ListingShowsTheBusyPointerAndThenTheNormalOne) {
  pointers();
  list();
  const std::vector<std::int32_t> shown = pointers();
  ASSERT_GE(shown.size(), 2U);
  EXPECT_EQ(shown.front(), kBusyArrowHourglass);
  EXPECT_EQ(shown.back(), kBusyDefault);
}

TEST_F(Drives, TheDriveCIsMadeVisible) {
  list();
  EXPECT_TRUE(tree().isVisible("C:"));
  EXPECT_TRUE(node("My Computer").Expanded());
}

TEST_F(Drives, WithoutTheComputersNodeNoneAreAdded) {
  create();
  EXPECT_EQ(ListDrives(tree(), tree().ImageList(), icon(), false, true, true, "", 0, false, true), "C:");
  EXPECT_EQ(tree().Nodes().Count(), 0);
}

TEST_F(Drives, SpecialFoldersWithoutADesktopNodeAreSkipped) {
  specialFolder(kFolderPersonal, "C:\\Documents");
  specialFolder(kFolderDesktop, "C:\\Desktop");
  create();
  ListDrives(tree(), tree().ImageList(), icon(), true, true, true, "", 0, true, false);
  EXPECT_EQ(tree().childKeys("").size(), drives().size()) << "the drives alone";
}

class OtherDrives : public FolderTreeTest {
 protected:
  std::vector<headless::Drive> drives() const override {
    return {
        {'D', kDriveCD, "", "", true}, {'K', kDriveNoRoot, "", "", true}, {'M', kDriveFixed, "", "", true}};
  }
};

TEST_F(OtherDrives, AMachineWithoutCEndsWithTheComputerVisible) {
  create();
  tree().Nodes().Add("", kTreeLast, kDesktop, kDesktop);
  tree().Nodes().Add(kDesktop, kTreeChild, kMyComputer, kMyComputer);
  const std::string first =
      ListDrives(tree(), tree().ImageList(), icon(), false, true, true, "", 0, false, true);
  EXPECT_EQ(first, "K:") << "a drive without a root counts as fixed, a CD never does";
  EXPECT_TRUE(tree().isVisible("My Computer"));
  EXPECT_FALSE(node("My Computer").Expanded());
}

/// Records the items of a combo.
class RecordedCombo : public DriveCombo {
 public:
  std::int32_t Add(const std::string& key, const std::string& text, std::int16_t image,
                   std::int16_t indentation) override {
    EXPECT_GT(image, 0) << key;
    if (key == refused) throw RuntimeError(err::kInvalidCall, "The item is refused.");
    items.push_back(std::to_string(indentation) + " " + key + " " + text);
    return static_cast<std::int32_t>(items.size()) - 1;
  }
  void Select(std::int32_t item) override { selected.push_back(items.at(static_cast<std::size_t>(item))); }

  std::string refused;  ///< the key of an item that is not added
  std::vector<std::string> items;
  std::vector<std::string> selected;
};

TEST_F(OtherDrives, ACombosPathIsListedBelowItsDriveAndItsLastPartSelected) {
  create();
  folder("M:\\Pictures\\May");
  RecordedCombo combo;
  EXPECT_EQ(ListDrives(combo, tree().ImageList(), icon(), "M:\\Pictures\\May\\", 2, false), "K:");
  EXPECT_THAT(combo.items, ElementsAre("2 D:  (D:)", "2 K:  (K:)", "2 M:  (M:)", "3 M:\\PICTURES Pictures",
                                       "4 M:\\PICTURES\\MAY May"));
  EXPECT_THAT(combo.selected, ElementsAre("4 M:\\PICTURES\\MAY May"));
}

TEST_F(OtherDrives, AnItemThatAComboRefusesIsSkippedAndThePointerRestored) {
  create();
  pointers();
  RecordedCombo combo;
  combo.refused = "K:";
  EXPECT_EQ(ListDrives(combo, tree().ImageList(), icon(), "", 0, false), "K:");
  EXPECT_THAT(combo.items, ElementsAre("0 D:  (D:)", "0 M:  (M:)"));
  EXPECT_EQ(pointers().back(), kBusyDefault);
}

TEST_F(OtherDrives, AComboWithoutAPathHasTheDrivesAndMyDocuments) {
  create();
  specialFolder(kFolderPersonal, "M:\\Papers");
  RecordedCombo combo;
  ListDrives(combo, tree().ImageList(), icon(), "", 0, true);
  EXPECT_THAT(combo.items,
              ElementsAre("0 D:  (D:)", "0 K:  (K:)", "0 M:  (M:)", "0 M:\\PAPERS My Documents"));
  EXPECT_THAT(combo.selected, ElementsAre());
}

class SpecialFolders : public FolderTreeTest {
 protected:
  void list(bool andDesktopFolders, bool includeMyDocuments, bool doSelectedImage = true) {
    create();
    tree().Nodes().Add("", kTreeLast, kDesktop, kDesktop);
    tree().Nodes().Add(kDesktop, kTreeChild, kMyComputer, kMyComputer);
    ListDrives(tree(), tree().ImageList(), icon(), andDesktopFolders, doSelectedImage, true, "", 0,
               includeMyDocuments, true);
  }
};

TEST_F(SpecialFolders, MyDocumentsIsAChildOfTheDesktopWithItsFirstSubfolder) {
  specialFolder(kFolderPersonal, "C:\\Users\\Documents");
  folder("C:\\Users\\Documents\\letters");
  list(false, true);
  TreeNode& documents = node("C:\\USERS\\DOCUMENTS");
  EXPECT_EQ(documents.Text(), "My Documents");
  EXPECT_EQ(documents.Tag(), "C:\\Users\\Documents");
  EXPECT_EQ(documents.Image(), "My Documents");
  EXPECT_EQ(documents.SelectedImage(), "Folder Open");
  EXPECT_EQ(documents.Parent(), &node("Desktop"));
  EXPECT_THAT(tree().childKeys(documents.Key()), ElementsAre("C:\\USERS\\DOCUMENTS\\LETTERS"));
}

TEST_F(SpecialFolders, MyDocumentsIsMissingWithoutAFolderOrWithoutTheWish) {
  list(false, true);
  EXPECT_THAT(tree().childKeys("Desktop"), ElementsAre("My Computer"));
  specialFolder(kFolderPersonal, "C:\\Documents");
  list(false, false);
  EXPECT_THAT(tree().childKeys("Desktop"), ElementsAre("My Computer"));
}

TEST_F(SpecialFolders, TheFoldersOfTheDesktopAreChildrenOfItsNode) {
  specialFolder(kFolderDesktop, "C:\\Users\\Desktop");
  folder("C:\\Users\\Desktop\\work\\today");
  list(true, false);
  ASSERT_TRUE(has("C:\\USERS\\DESKTOP\\WORK"));
  EXPECT_EQ(node("C:\\USERS\\DESKTOP\\WORK").Parent(), &node("Desktop"));
  EXPECT_EQ(node("C:\\USERS\\DESKTOP\\WORK").Tag(), "C:\\Users\\Desktop\\work");
  EXPECT_TRUE(has("C:\\USERS\\DESKTOP\\WORK\\TODAY")) << "the sign to expand";
  list(false, false);
  EXPECT_FALSE(has("C:\\USERS\\DESKTOP\\WORK"));
}

TEST_F(SpecialFolders, WithoutADesktopFolderTheOneOfTheWindowsFolderIsListed) {
  shell().specialFolder(headless::Shell::kWindowsFolder, "C:\\WINDOWS");
  folder("C:\\Windows\\Desktop\\old");
  list(true, false);
  EXPECT_TRUE(has("C:\\WINDOWS\\DESKTOP\\OLD"));
}

TEST_F(SpecialFolders, AFolderAtTwoPlacesHasANodeAtEach) {
  specialFolder(kFolderPersonal, "C:\\Documents");
  folder("C:\\Documents\\letters");
  list(false, true);
  ListDirs(tree(), "C:", true);
  EXPECT_THAT(tree().childTexts("C:"), ElementsAre("Documents"));
  EXPECT_THAT(tree().childTexts("Desktop"), ElementsAre("My Computer", "My Documents"));
  const std::int32_t count = tree().Nodes().Count();
  ListDirs(tree(), "C:", true);
  EXPECT_EQ(tree().Nodes().Count(), count) << "listed twice";
}

}  // namespace
}  // namespace kestrel
