#include <fstream>

#include "FolderTreeTest.h"

namespace kestrel {
namespace {

using namespace modFolderTreeView;
using testing::ElementsAre;

constexpr char kComputerKey[] = R"(SOFTWARE\Classes\CLSID\{20D04FE0-3AEA-1069-A2D8-08002B30309D})";

class ShellNames : public FolderTreeTest {
 protected:
  std::vector<headless::Drive> drives() const override {
    return {{'C', kDriveFixed, "LOCAL DISK", "", true},
            {'D', kDriveCD, "HOLIDAYS", "", false},
            {'N', kDriveRemote, "", R"(\\SERVER\photos)", true}};
  }
  static std::string cased(std::string text) {
    CaseIt(text);
    return text;
  }
};

TEST_F(ShellNames, ASuffixIsAddedUnlessTheTextEndsWithIt) {
  EXPECT_EQ(AddRight("C:", "\\"), "C:\\");
  EXPECT_EQ(AddRight("C:\\", "\\"), "C:\\");
  EXPECT_EQ(AddRight("", "\\"), "\\");
}

TEST_F(ShellNames, ATextEndsBeforeItsFirstNul) {
  EXPECT_EQ(StripTerminator(std::string("Photos\0rest\0", 12)), "Photos");
  EXPECT_EQ(StripTerminator("Photos"), "Photos");
  EXPECT_EQ(StripTerminator(std::string("\0x", 2)), "");
}

TEST_F(ShellNames, ANameInCapitalsGetsProperCase) {
  EXPECT_EQ(cased("PHOTOS"), "Photos");
  EXPECT_EQ(cased("MY PHOTOS 2"), "My Photos 2");
  EXPECT_EQ(cased("\xC3\x84RGER \xC3\x9C\x42\x45R"), "\xC3\x84rger \xC3\x9C\x62\x65r");
  EXPECT_EQ(cased("DSC_01-RAW"), "Dsc_01-raw");
}

TEST_F(ShellNames, ANameWithAnySmallLetterStaysAsItIs) {
  EXPECT_EQ(cased("PHOTOs"), "PHOTOs");
  EXPECT_EQ(cased("iPHOTO"), "iPHOTO");
  EXPECT_EQ(cased("M\xC3\xBCLL"), "M\xC3\xBCLL");
  EXPECT_EQ(cased("2024"), "2024");
  EXPECT_EQ(cased(""), "");
  EXPECT_EQ(cased("\xFF\xFE"), "\xFF\xFE") << "bytes that are no text";
}

TEST_F(ShellNames, SingleUpperMakesTheFirstLetterCapitalAndTheRestSmall) {
  EXPECT_EQ(SingleUpper("photos"), "Photos");
  EXPECT_EQ(SingleUpper("SERVER"), "Server");
  EXPECT_EQ(SingleUpper("p"), "P") << "one character";
  EXPECT_EQ(SingleUpper(""), "");
}

TEST_F(ShellNames, AStoredTextIsRead) {
  platform().RegistryStore().WriteValue(HKEY_CURRENT_USER, "Some\\Key", "Name", Variant("text"),
                                        kStoreString);
  EXPECT_EQ(RegGetValue(HKEY_CURRENT_USER, "Some\\Key", "Name"), "text");
}

TEST_F(ShellNames, AStoredNumberIsReadAsDecimalText) {
  platform().RegistryStore().WriteValue(HKEY_CURRENT_USER, "Some\\Key", "", Variant(std::int32_t{4711}),
                                        kStoreNumber);
  EXPECT_EQ(RegGetValue(HKEY_CURRENT_USER, "Some\\Key", ""), "4711");
}

TEST_F(ShellNames, AMissingStoredValueRaises5) {
  try {
    RegGetValue(HKEY_CURRENT_USER, "Some\\Key", "Missing");
    FAIL() << "no error";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), 5);
  }
}

TEST_F(ShellNames, TheComputerHasItsStoredNameOrMyComputer) {
  EXPECT_EQ(GetMyComputer(), "My Computer") << "without a stored name";
  platform().RegistryStore().WriteValue(HKEY_CURRENT_USER, kComputerKey, "", Variant(""), kStoreString);
  EXPECT_EQ(GetMyComputer(), "My Computer") << "an empty name";
  platform().RegistryStore().WriteValue(HKEY_CURRENT_USER, kComputerKey, "", Variant("Desk 4"), kStoreString);
  EXPECT_EQ(GetMyComputer(), "Desk 4");
}

TEST_F(ShellNames, ANetworkDriveIsShownAsItsFolderOnItsServer) {
  EXPECT_EQ(GetNetPath("N:"), R"(\\SERVER\photos)");
  EXPECT_EQ(GetNetPathEx("N:"), "Photos on 'Server'");
  EXPECT_EQ(GetNetPath("C:"), "");
  EXPECT_EQ(GetNetPathEx("C:"), "");
}

TEST_F(ShellNames, AVolumeLabelInCapitalsGetsProperCase) {
  EXPECT_EQ(GetDriveName("C:\\"), "Local Disk");
  EXPECT_EQ(GetDriveName("D:\\"), "") << "not ready";
  EXPECT_EQ(GetDriveName("X:\\"), "") << "no such drive";
}

TEST_F(ShellNames, HasSubDirsNamesAFolderAndIgnoresFiles) {
  EXPECT_EQ(HasSubDirs(""), "");
  EXPECT_EQ(HasSubDirs("C:\\"), "");
  std::ofstream(platform().files().host("C:\\A.TXT")) << "x";
  EXPECT_EQ(HasSubDirs("C:\\"), "") << "a file is no folder";
  folder("C:\\HOLIDAY");
  std::string spelled;
  EXPECT_EQ(HasSubDirs("C:\\", &spelled), "Holiday");
  EXPECT_EQ(spelled, "HOLIDAY") << "on the disk";
  EXPECT_EQ(HasSubDirs("D:\\"), "") << "not ready";
}

TEST_F(ShellNames, TheDesktopIsTheShellsFolderOrTheOneOfTheWindowsFolder) {
  shell().specialFolder(kFolderDesktop, "C:\\Users\\Desktop");
  EXPECT_EQ(GetDesktopPath(), "C:\\Users\\Desktop");
  shell().specialFolder(kFolderDesktop, "");
  shell().specialFolder(headless::Shell::kWindowsFolder, "C:\\WINDOWS");
  EXPECT_EQ(GetWinPath(), "C:\\WINDOWS");
  EXPECT_EQ(GetDesktopPath(), "C:\\Windows\\Desktop\\");
  shell().specialFolder(headless::Shell::kWindowsFolder, "");
  EXPECT_EQ(GetDesktopPath(), "");
}

TEST_F(ShellNames, AnIconOfTheShellIsAddedToTheListOnceUnderItsNumber) {
  create();
  kestrel::ImageList& images = tree().ImageList();
  const std::int32_t before = images.Count();
  folder("C:\\One");
  folder("C:\\Two");

  const std::int16_t first = FTVRetrieveIcon("C:\\One", images, icon());
  EXPECT_EQ(first, before + 1);
  EXPECT_EQ(images.Key(first), std::to_string(headless::Shell::kFolderIcon) + "A");
  ASSERT_NE(tree().ImageList().picture(images.Key(first)), nullptr);
  EXPECT_EQ(tree().ImageList().picture(images.Key(first))->Pixels().Data[0], headless::Shell::kFolderIcon);

  EXPECT_EQ(FTVRetrieveIcon("C:\\Two", images, icon()), first) << "the same icon";
  EXPECT_EQ(images.Count(), before + 1);
  EXPECT_EQ(FTVRetrieveIcon("C:\\", images, icon()), before + 2) << "another icon";
}

TEST_F(ShellNames, APictureIsFoundByItsExactKey) {
  create();
  EXPECT_EQ(RetrieveIconNumber(tree().ImageList(), "My Computer"), 1);
  EXPECT_EQ(RetrieveIconNumber(tree().ImageList(), "Folder Open"), 4);
  EXPECT_EQ(RetrieveIconNumber(tree().ImageList(), "folder open"), 0);
  EXPECT_EQ(RetrieveIconNumber(tree().ImageList(), "3A"), 0);
}

TEST_F(ShellNames, AnIconOfAFileReplacesThePicture) {
  create();
  EXPECT_FALSE(GetIconFromFile("C:\\Shell32.dll", 4, false, icon()));
  EXPECT_EQ(icon().Picture(), nullptr);
  std::ofstream(platform().files().host("C:\\Shell32.dll")) << "x";
  EXPECT_TRUE(GetIconFromFile("C:\\Shell32.dll", 4, false, icon()));
  ASSERT_NE(icon().Picture(), nullptr);
  EXPECT_EQ(icon().Picture()->Width(), 16);
  const PicturePtr small = icon().Picture();
  EXPECT_FALSE(GetIconFromFile("C:\\Other.dll", 4, false, icon()));
  EXPECT_EQ(icon().Picture(), small) << "the picture is left alone without an icon";
  EXPECT_TRUE(GetIconFromFile("C:\\Shell32.dll", 4, true, icon()));
  EXPECT_EQ(icon().Picture()->Width(), 32);
}

}  // namespace
}  // namespace kestrel
