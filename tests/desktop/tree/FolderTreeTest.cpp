#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>

#include <QTest>
#include <filesystem>

#include "TreeBench.h"
#include "browser/modFolderTreeView.h"
#include "platform/os/Paths.h"

namespace kestrel::desktop {
namespace {

namespace fs = std::filesystem;

using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::UnorderedElementsAre;

constexpr int kLongestWait = 60'000;  // milliseconds

/// The folder tree on the file system of this machine.
class FolderTreeOnTheDesktop : public testing::Test {
 protected:
  TreeBench& bench() { return bench_; }
  FolderTreeView& control() { return bench_.control(); }
  std::string home(const std::string& name = {}) { return bench_.home(name); }

 private:
  TreeBench bench_;
};

TEST_F(FolderTreeOnTheDesktop, StartsInTheHomeFolderWhichIsADriveOfItsOwn) {
  bench().folder("Pictures/May");
  bench().start();
  EXPECT_EQ(control().Path(), home() + "/");
  TreeNode& node = bench().nodeOf(home());
  EXPECT_EQ(node.Parent()->Key(), "My Computer");
  EXPECT_EQ(node.Text(), "Home (" + home() + ")");
  EXPECT_TRUE(node.Expanded());
  EXPECT_THAT(bench().childTexts(node), ElementsAre("Desktop", "Documents", "Pictures"));
  EXPECT_NE(bench().tree().Nodes().Find("/"), nullptr);
}

TEST_F(FolderTreeOnTheDesktop, TheHomeFolderIsTwoClicksAway) {
  bench().folder("Pictures");
  bench().start();
  control().Path("/");
  ASSERT_EQ(control().Path(), "/");
  std::vector<std::string> shown;
  const Connection connection =
      control().FolderClick.Connect([&](const std::string& folder) { shown.push_back(folder); });
  bench().view().scrollTo(bench().indexOf(bench().nodeOf(home()).Key()));
  bench().click(bench().nodeOf(home()).Key());
  EXPECT_THAT(shown, ElementsAre(home() + "/"));
}

TEST_F(FolderTreeOnTheDesktop, APathBelowTheHomeIsSelectedThere) {
  bench().folder("Pictures/2024/May");
  bench().start();
  control().Path(home("Pictures/2024"));
  EXPECT_EQ(control().Path(), home("Pictures/2024/"));
  EXPECT_FALSE(bench().tree().Nodes().Item("/").Expanded()) << "the way goes through the home alone";
  EXPECT_TRUE(bench().nodeOf(home("Pictures/2024/May")).Parent()->Selected());
}

TEST_F(FolderTreeOnTheDesktop, DocumentsAndDesktopAreTheUsersFolders) {
  bench().folder("Documents/letters");
  bench().folder("Desktop/work");
  bench().start();
  EXPECT_THAT(bench().childTexts(bench().tree().Nodes().Item("Desktop")),
              UnorderedElementsAre("My Computer", "My Documents", "work"));
  EXPECT_THAT(bench().childTexts(bench().nodeOf(home())), Contains("Documents"))
      << "also where they are in the home";
}

TEST_F(FolderTreeOnTheDesktop, HiddenFoldersAreNotListedUnlessThePathIsInOne) {
  bench().folder(".local/share/pictures");
  bench().folder("Pictures/.thumbs");
  bench().start();
  EXPECT_THAT(bench().childTexts(bench().nodeOf(home())), Not(Contains(".local")));
  EXPECT_EQ(bench().nodeOf(home("Pictures")).Children(), 0);
  control().Path(home(".local/share"));
  EXPECT_EQ(control().Path(), home(".local/share/"));
  EXPECT_THAT(bench().childTexts(bench().nodeOf(home())), Contains(".local"));
  control().Refresh();
  EXPECT_EQ(control().Path(), home(".local/share/"));
}

TEST_F(FolderTreeOnTheDesktop, FoldersThatDifferInCaseAreListedAndSelectable) {
  bench().folder("photos/in");
  bench().folder("Photos/In");
  bench().folder("PHOTOS/IN");
  bench().start();
  EXPECT_THAT(bench().childTexts(bench().nodeOf(home())),
              testing::IsSupersetOf({"photos", "Photos", "PHOTOS"}));
  for (const char* name : {"photos/", "Photos/", "PHOTOS/", "Photos/In/", "PHOTOS/IN/", "photos/in/"}) {
    control().Path(home(name));
    EXPECT_EQ(control().Path(), home(name));
  }
  bench().click(bench().nodeOf(home("Photos")).Key());
  EXPECT_EQ(control().Path(), home("Photos/"));
}

TEST_F(FolderTreeOnTheDesktop, NamesWithAnyBytesAreShownAndKept) {
  const std::string broken = "caf\xE9";
  const std::string lines = "two\nlines";
  const std::string longest(255, 'w');
  for (const std::string& name : {broken, lines, longest}) bench().folder(name + "/in");
  bench().start();
  EXPECT_THAT(bench().childTexts(bench().nodeOf(home())), testing::IsSupersetOf({broken, lines, longest}));
  std::vector<std::string> shown;
  const Connection connection =
      control().FolderClick.Connect([&](const std::string& folder) { shown.push_back(folder); });
  for (const std::string& name : {broken, lines}) {
    TreeNode& node = bench().nodeOf(home(name));
    bench().view().scrollTo(bench().indexOf(node.Key()));
    bench().click(node.Key());
    ASSERT_FALSE(shown.empty());
    EXPECT_EQ(shown.back(), home(name) + "/");
    EXPECT_TRUE(fs::is_directory(os::pathOf(shown.back())));
    node.Expanded(true);
    EXPECT_THAT(bench().childTexts(node), ElementsAre("in"));
    const QString label = bench().indexOf(node.Key()).data().toString();
    EXPECT_FALSE(label.contains(u'\n')) << "one line";
  }
}

TEST_F(FolderTreeOnTheDesktop, APathThroughALinkIsTheRealPathOfAnyBytes) {
  const std::string broken = "caf\xE9";
  bench().folder(broken + "/in");
  fs::create_directory_symlink(os::pathOf(home(broken)), home("link"));
  bench().start();
  control().Path(home("link/in"));
  EXPECT_EQ(control().Path(), home(broken) + "/in/");
}

TEST_F(FolderTreeOnTheDesktop, LinksThatLeadBackAndFoldersThatCannotBeReadDoNoHarm) {
  bench().folder("a/b");
  bench().folder("closed/in");
  fs::create_directory_symlink(home("a"), home("a/loop"));
  fs::create_directory_symlink("endless", home("endless"));
  fs::permissions(home("closed"), fs::perms::none);
  bench().start();
  EXPECT_THAT(bench().childTexts(bench().nodeOf(home())), testing::IsSupersetOf({"a", "closed"}));
  EXPECT_THAT(bench().childTexts(bench().nodeOf(home())), Not(Contains("endless")));
  bench().nodeOf(home("a")).Selected(true);
  bench().view().setFocus();
  bench().press(Qt::Key_Asterisk, QStringLiteral("*"));
  EXPECT_TRUE(bench().nodeOf(home("a")).Expanded());
  EXPECT_FALSE(bench().nodeOf(home("a/loop")).Expanded()) << "one level alone";
  fs::permissions(home("closed"), fs::perms::owner_all);
}

TEST_F(FolderTreeOnTheDesktop, AFolderThatVanishedLeavesTheRest) {
  bench().folder("gone/in");
  bench().folder("here/in");
  bench().start();
  fs::remove_all(home("gone"));
  bench().clickSign(bench().nodeOf(home("gone")).Key());
  bench().clickSign(bench().nodeOf(home("here")).Key());
  EXPECT_TRUE(bench().nodeOf(home("here")).Expanded());
  control().Refresh();
  EXPECT_THAT(bench().childTexts(bench().nodeOf(home())), Not(Contains("gone")));
}

TEST_F(FolderTreeOnTheDesktop, TenThousandFoldersAreArrangedOnce) {
  for (int i = 0; i < 10'000; ++i) bench().folder("many/n" + std::to_string(i));
  bench().start();
  int changes = 0;
  QObject::connect(&bench().model(), &QAbstractItemModel::rowsInserted, &bench().model(), [&] { ++changes; });
  QObject::connect(&bench().model(), &QAbstractItemModel::layoutChanged, &bench().model(),
                   [&] { ++changes; });
  bench().clickSign(bench().nodeOf(home("many")).Key());
  EXPECT_EQ(bench().nodeOf(home("many")).Children(), 10'000);
  EXPECT_LE(changes, 2) << "one insertion and one sorting";
  const std::vector<std::string> texts = bench().childTexts(bench().nodeOf(home("many")));
  EXPECT_EQ(texts[2], "n2");
  EXPECT_EQ(texts[10], "n10");
  EXPECT_EQ(texts.back(), "n9999");
}

TEST_F(FolderTreeOnTheDesktop, NoticesThatFileSystemsAreMountedAndUnmounted) {
  // From here on the mounts of this process are its own.
  if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
    return;  // the system does not let this user mount
  }
  bench().folder("disk");
  bench().start();
  int notices = 0;
  const Connection connection = bench().notices().DrivesChanged.Connect([&] { ++notices; });
  const auto noticed = [&] { return notices > 0; };
  ASSERT_EQ(::mount("none", home("disk").c_str(), "tmpfs", 0, nullptr), 0);
  EXPECT_TRUE(QTest::qWaitFor(noticed, kLongestWait));
  notices = 0;
  ASSERT_EQ(::umount(home("disk").c_str()), 0);
  EXPECT_TRUE(QTest::qWaitFor(noticed, kLongestWait));
}

TEST_F(FolderTreeOnTheDesktop, ANewFolderIsCreatedInTheSelectedOne) {
  bench().folder("Pictures");
  bench().start();
  control().Path(home("Pictures"));
  const Connection connection = control().AskForNewFolder.Connect(
      [](std::string& ReturnFolder, bool& /*Cancel*/) { ReturnFolder = "May"; });
  EXPECT_EQ(control().NewFolder(), home("Pictures/May"));
  EXPECT_TRUE(fs::is_directory(home("Pictures/May")));
  EXPECT_THROW(control().NewFolder(), RuntimeError) << "it exists";
}

TEST_F(FolderTreeOnTheDesktop, IsOperatedByMouseAndKeysAlone) {
  bench().folder("Music");
  bench().folder("Pictures/June");
  bench().folder("Pictures/May");
  bench().start();
  bench().click(bench().nodeOf(home()).Key());
  ASSERT_EQ(bench().widget().window()->focusWidget(), &bench().view());
  bench().press(Qt::Key_P, QStringLiteral("p"));
  EXPECT_EQ(control().Path(), home("Pictures/"));
  bench().press(Qt::Key_Right);
  EXPECT_THAT(bench().childTexts(bench().nodeOf(home("Pictures"))), ElementsAre("June", "May"));
  bench().press(Qt::Key_Down);
  EXPECT_EQ(control().Path(), home("Pictures/June/"));
  bench().press(Qt::Key_Left);
  EXPECT_EQ(control().Path(), home("Pictures/"));
  bench().press(Qt::Key_Left);
  EXPECT_FALSE(bench().nodeOf(home("Pictures")).Expanded());
  bench().press(Qt::Key_Home);
  EXPECT_TRUE(bench().tree().Nodes().Item("Desktop").Selected());
  EXPECT_EQ(control().Path(), "");
}

}  // namespace
}  // namespace kestrel::desktop
