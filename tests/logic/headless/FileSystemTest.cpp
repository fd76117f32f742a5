#include "platform/headless/FileSystem.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "imaging/contract/Shell.h"
#include "platform/headless/Platform.h"

namespace kestrel::headless {
namespace {

namespace fs = std::filesystem;

class SimulatedDrives : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "kestrel-drives-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    scratch_ = name;
    headless::Setup setup;
    setup.pathStyle = PathStyle::kBackslash;
    setup.scratch = scratch_;
    setup.drives = {{'C', kDriveFixed, "System", {}, true},
                    {'D', kDriveCD, "Holidays", {}, false},
                    {'Z', kDriveRemote, "Share", "\\\\server\\pictures", true}};
    platform_ = std::make_unique<Platform>(std::move(setup));
  }
  void TearDown() override {
    platform_.reset();
    fs::remove_all(scratch_);
  }
  Platform& platform() { return *platform_; }
  FileSystem& files() { return platform_->files(); }

  std::string scratch_;

 private:
  std::unique_ptr<Platform> platform_;
};

TEST_F(SimulatedDrives, AreFoldersOfTheScratchFolder) {
  EXPECT_EQ(files().host("C:\\Pictures\\a.png"), scratch_ + "/C/Pictures/a.png");
  EXPECT_EQ(files().host("z:/a.png"), scratch_ + "/Z/a.png");
  EXPECT_EQ(files().host("a.png"), scratch_ + "/C/a.png") << "a relative path is on the first drive";
}

TEST_F(SimulatedDrives, IgnoreTheCaseOfNames) {
  fs::create_directories(scratch_ + "/C/Pictures");
  std::ofstream(scratch_ + "/C/Pictures/A.png") << "x";
  EXPECT_TRUE(files().exists("c:\\pictures\\a.PNG"));
  EXPECT_FALSE(files().exists("c:\\pictures\\b.png"));
  EXPECT_EQ(files().resolved("c:\\pictures\\a.PNG"), "C:\\Pictures\\A.png");
  EXPECT_EQ(files().resolved("c:\\pictures\\b.png"), "c:\\pictures\\b.png");
}

TEST_F(SimulatedDrives, HaveTypeLabelAndNetworkPathUnlessNotReady) {
  Shell& shell = platform().Shell();
  EXPECT_EQ(shell.LogicalDrives(), (std::vector<std::string>{"C:\\", "D:\\", "Z:\\"}));
  EXPECT_EQ(shell.DriveType("C:\\"), kDriveFixed);
  EXPECT_EQ(shell.DriveType("D:\\"), kDriveCD);
  EXPECT_EQ(shell.DriveType("Q:\\"), kDriveNoRoot);
  EXPECT_EQ(shell.VolumeLabel("C:\\"), "System");
  EXPECT_EQ(shell.VolumeLabel("D:\\"), "");
  EXPECT_EQ(shell.NetworkPath("Z:"), "\\\\server\\pictures");
  EXPECT_EQ(shell.NetworkPath("C:"), "");
  EXPECT_TRUE(shell.Entries("D:\\").empty());
  EXPECT_FALSE(files().exists("D:\\"));
  EXPECT_TRUE(files().exists("C:\\"));
}

TEST_F(SimulatedDrives, HoldTheFilesOfEngineAndLogic) {
  const auto picture = platform().CreateImgX();
  const Colour red(0x000000FF);
  picture->Document().NewImage(3, 2, &red);
  picture->Writer().ToFile("Z:\\red.png", 2);
  EXPECT_TRUE(fs::exists(scratch_ + "/Z/red.png"));
  const auto loaded = platform().CreateImgX();
  loaded->Document().FromFile("z:\\RED.png");
  EXPECT_EQ(loaded->Image()->Width(), 3);
}

TEST_F(SimulatedDrives, CannotBeWrittenIfMissingOrNotReady) {
  const auto picture = platform().CreateImgX();
  picture->Document().NewImage(3, 2, nullptr);
  EXPECT_THROW(picture->Writer().ToFile("Q:\\red.png", 2), RuntimeError);
  EXPECT_THROW(picture->Writer().ToFile("D:\\red.png", 2), RuntimeError);
  EXPECT_THROW(platform().Shell().CreateFolder("D:\\new"), RuntimeError);
}

TEST(PathsOfTheMachine, StayUnchanged) {
  const FileSystem files(PathStyle::kSlash, "/tmp/scratch", {});
  EXPECT_EQ(files.host("/home/a\\b.png"), "/home/a\\b.png");
  EXPECT_EQ(files.folderOf("/home/a.png"), "/home");
  EXPECT_EQ(files.folderOf("/a.png"), "/");
  EXPECT_EQ(files.separator(), '/');
}

}  // namespace
}  // namespace kestrel::headless
