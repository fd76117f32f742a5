#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include "RecordingPlatform.h"
#include "base/RuntimeError.h"
#include "browser/ImageBrowser.h"
#include "browser/frmImageBrowser.h"
#include "platform/headless/Form.h"
#include "platform/headless/Platform.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Field;

constexpr char kKey[] = "Software\\Brindlewick\\Common\\ImageProcessing\\WindowPositions\\frmImageBrowser";

/// The browser's window on the headless platform with a drive C.
class BrowserWindow : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "kestrel-window-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("No scratch folder could be made.");
    scratch_ = name;
    headless::Setup setup;
    setup.pathStyle = headless::PathStyle::kBackslash;
    setup.scratch = scratch_;
    platform_ = std::make_unique<RecordingPlatform>(std::move(setup));
    user().onComplaint = [](const std::string& text) { ADD_FAILURE() << text; };
    std::filesystem::create_directories(platform().files().host("C:\\Photos\\2001"));
    modProcessing::Attach(*platform_);
    modProcessing::Main();
  }

  void TearDown() override {
    modProcessing::Detach();
    EXPECT_EQ(user().left(), "") << "still expected by the user";
    platform_.reset();
    std::filesystem::remove_all(scratch_);
  }

  headless::Platform& platform() { return platform_->inner(); }
  headless::User& user() { return platform().user(); }
  static headless::Form& formOf(frmImageBrowser& window) {
    return dynamic_cast<headless::Form&>(window.Form());
  }
  Variant stored(const char* name) {
    return platform().RegistryStore().ReadValue(HKEY_CURRENT_USER, kKey, name);
  }

  std::unique_ptr<RecordingPlatform> platform_;

 private:
  std::string scratch_;
};

// -- The caption --------------------------------------------------------------------------------------------

TEST_F(BrowserWindow, ShowsTheNameOfTheFolderAndTheTitle) {
  frmImageBrowser window;
  window.Title("Browser");
  window.Form().Show();
  window.Browser().Path("C:\\Photos\\2001\\");
  EXPECT_EQ(window.Browser().Path(), "C:\\Photos\\2001\\");
  EXPECT_EQ(window.Form().Caption(), "2001 - Browser");
}

TEST_F(BrowserWindow, ShowsADriveWithItsColon) {
  frmImageBrowser window;
  window.Title("Browser");
  window.Form().Show();
  window.Browser().Path("C:\\");
  EXPECT_EQ(window.Form().Caption(), "C: - Browser");
}

TEST_F(BrowserWindow, ShowsTheTitleAloneWithoutAFolder) {
  frmImageBrowser window;
  window.Form().Show();
  window.Browser().ObjectFolderBrowse().Nodes().Item("Desktop").Selected(true);
  ASSERT_EQ(window.Browser().Path(), "");
  window.Title("Browser");
  EXPECT_EQ(window.Form().Caption(), "Browser");
}

TEST_F(BrowserWindow, AfterAClickOnMyComputerFollowsThePathOfTheTree) {
  frmImageBrowser window;
  window.Title("Browser");
  window.Form().Show();
  window.Browser().Path("C:\\Photos\\2001\\");
  window.Browser().ObjectFolderBrowse().Nodes().Item("My Computer").Selected(true);
  EXPECT_EQ(window.Browser().Path(), "");
  EXPECT_EQ(window.Form().Caption(), "Browser");
}

TEST_F(BrowserWindow, ATitleThatIsTheSameLeavesTheCaptionAlone) {
  frmImageBrowser window;
  window.Title("Browser");
  window.Form().Show();
  window.Form().Caption("Changed by hand");
  window.Title("Browser");
  EXPECT_EQ(window.Form().Caption(), "Changed by hand");
  window.Title("Other");
  EXPECT_EQ(window.Form().Caption(), "C: - Other");
}

// -- The window ---------------------------------------------------------------------------------------------

TEST_F(BrowserWindow, IsFilledByTheBrowserUnlessItIsMinimized) {
  frmImageBrowser window;
  window.Form().Show();
  window.Form().Move(10, 20, 900, 700);
  auto& site = Bind<Site>(window.Form(), "Browser");
  EXPECT_EQ(site.Left(), 0);
  EXPECT_EQ(site.Top(), 0);
  EXPECT_EQ(site.Width(), 900);
  EXPECT_EQ(site.Height(), 700);
  window.Form().WindowState(kWindowMinimized);
  window.Form().Move(10, 20, 100, 30);
  EXPECT_EQ(site.Width(), 900);
}

TEST_F(BrowserWindow, ResetsThePointerAtItsFirstActivationOnly) {
  frmImageBrowser window;
  platform().Screen().MousePointer(kBusyHourglass);
  window.Form().Show();
  EXPECT_EQ(platform().Screen().MousePointer(), 0);
  platform().Screen().MousePointer(kBusyHourglass);
  window.Form().Activate();
  EXPECT_EQ(platform().Screen().MousePointer(), kBusyHourglass);
}

TEST_F(BrowserWindow, GetsTheSharedLookWhoseFailureIsIgnored) {
  platform().FormSkin().failing = true;
  frmImageBrowser window;
  window.Form().Show();
  EXPECT_TRUE(window.Form().Visible());
  EXPECT_THAT(platform().FormSkin().applied(),
              Contains(Field(&headless::FormSkin::Application::name, "frmImageBrowser")));
}

TEST_F(BrowserWindow, ClosingHidesItAndShowBringsItBackOnTheSameFolder) {
  frmImageBrowser window;
  window.Form().Show();
  window.Browser().Path("C:\\Photos\\2001\\");
  formOf(window).pressCloseBox();
  EXPECT_FALSE(window.Form().Visible());
  window.Form().Show();
  EXPECT_TRUE(window.Form().Visible());
  EXPECT_EQ(window.Browser().Path(), "C:\\Photos\\2001\\");
}

TEST_F(BrowserWindow, TheCommandCloseClosesIt) {
  frmImageBrowser window;
  window.Form().Show();
  auto& suite = dynamic_cast<headless::Moorage&>(window.Browser().ObjectMoorage());
  EXPECT_TRUE(suite.click("btnFileClose"));
  EXPECT_FALSE(window.Form().Visible());
}

TEST_F(BrowserWindow, StoresItsPlaceAndTheDividerWhenItCloses) {
  {
    frmImageBrowser window;
    window.Form().Show();
    window.Form().Move(30, 40, 640, 480);
    window.Browser().DividerPosition(200);
    formOf(window).pressCloseBox();
  }
  EXPECT_EQ(stored("Left").ToInt32(), 30);
  EXPECT_EQ(stored("Width").ToInt32(), 640);
  EXPECT_EQ(stored("Divider").ToInt32(), 200);

  frmImageBrowser window;
  window.Form().Show();
  EXPECT_EQ(window.Form().Left(), 30);
  EXPECT_EQ(window.Form().Top(), 40);
  EXPECT_EQ(window.Form().Width(), 640);
  EXPECT_EQ(window.Form().Height(), 480);
  EXPECT_EQ(window.Browser().DividerPosition(), 200);
}

TEST_F(BrowserWindow, WithoutAKeyForPositionsStoresNothing) {
  platform().WindowPositions().RegistryKey({});
  {
    frmImageBrowser window;
    window.Form().Show();
    window.Form().Move(30, 40, 640, 480);
    formOf(window).pressCloseBox();
    EXPECT_FALSE(window.Form().Visible());
  }
  EXPECT_EQ(stored("Left").TypeCode(), 0);
  EXPECT_EQ(stored("Divider").TypeCode(), 0);
  frmImageBrowser window;
  window.Form().Show();
  EXPECT_NE(window.Form().Left(), 30);
}

TEST_F(BrowserWindow, ADividerThatIsNotOursIsIgnored) {
  for (const Variant& wrong : {Variant(std::int32_t{-5}), Variant(std::int32_t{1} << 30), Variant("wide")}) {
    platform().RegistryStore().WriteValue(HKEY_CURRENT_USER, kKey, "Divider", wrong,
                                          wrong.TypeCode() == 8 ? kStoreString : kStoreNumber);
    frmImageBrowser window;
    window.Form().Show();
    EXPECT_EQ(window.Browser().DividerPosition(), 240);
  }
}

TEST_F(BrowserWindow, SafeToUnloadUnloadsItWithoutStoringItsPlace) {
  frmImageBrowser window;
  window.Form().Show();
  int unloaded = 0;
  const Connection connection = window.Form().Unloaded.Connect([&] { ++unloaded; });
  window.Form().Unload();
  EXPECT_EQ(unloaded, 0);
  window.Form().Show();
  platform().RegistryStore().WriteValue(HKEY_CURRENT_USER, kKey, "Left", std::int32_t{-77}, kStoreNumber);
  window.SafeToUnload = true;
  window.Form().Unload();
  EXPECT_EQ(unloaded, 1);
  EXPECT_EQ(stored("Left").ToInt32(), -77);
}

TEST_F(BrowserWindow, APositionThatCannotBeStoredIsReportedAndTheWindowIsHiddenAndKept) {
  frmImageBrowser window;
  window.Form().Show();
  platform_->positionsFail = true;
  int unloaded = 0;
  const Connection connection = window.Form().Unloaded.Connect([&] { ++unloaded; });
  user().answers(kAnswerOK);
  formOf(window).pressCloseBox();
  EXPECT_FALSE(window.Form().Visible());
  EXPECT_EQ(unloaded, 0) << "it was hidden, not unloaded";
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_THAT(user().boxes()[0].text,
              testing::HasSubstr("Module: frmImageBrowser\r\nProcedure: zSavePosition\r\n"));
}

TEST_F(BrowserWindow, ClosesAlthoughTheDividerCannotBeStored) {
  frmImageBrowser window;
  window.Form().Show();
  window.Form().Move(30, 40, 640, 480);
  platform_->storeFails = true;
  formOf(window).pressCloseBox();
  EXPECT_FALSE(window.Form().Visible());
  platform_->storeFails = false;
  EXPECT_EQ(stored("Left").ToInt32(), 30);
  EXPECT_EQ(stored("Divider").TypeCode(), 0);
  window.Form().Show();
  EXPECT_TRUE(window.Form().Visible()) << "it was hidden, not unloaded";
}

// -- The automation class -----------------------------------------------------------------------------------

TEST_F(BrowserWindow, TheClassSetsTheStoresKeyAndRoot) {
  platform().RegistryStore().RootKey("Other");
  platform().RegistryStore().RootHive(0);
  const ImageBrowser browser;
  EXPECT_EQ(platform().RegistryStore().RootKey(), "Software\\Brindlewick\\Common\\ImageProcessing");
  EXPECT_EQ(platform().RegistryStore().RootHive(), HKEY_CURRENT_USER);
}

TEST_F(BrowserWindow, TheClassPassesPathAndTitleOn) {
  ImageBrowser browser;
  EXPECT_FALSE(browser.Visible());
  browser.Title("Pictures");
  EXPECT_EQ(browser.Title(), "Pictures");
  browser.Show();
  EXPECT_TRUE(browser.Visible());
  browser.Path("C:\\Photos\\");
  EXPECT_EQ(browser.Path(), "C:\\Photos\\");
}

TEST_F(BrowserWindow, OpensThePathThatWasSetBeforeItsFirstShow) {
  ImageBrowser browser;
  browser.Title("Pictures");
  browser.Path("C:\\Photos\\2001");
  EXPECT_EQ(browser.Path(), "C:\\Photos\\2001\\");
  browser.Show();
  EXPECT_EQ(browser.Path(), "C:\\Photos\\2001\\");
}

TEST_F(BrowserWindow, KeepsWhatWasSetBeforeItsFirstShow) {
  frmImageBrowser window;
  window.Title("Pictures");
  window.Browser().ShowMenuBar(false);
  window.Browser().Path("C:\\Photos\\");
  window.Form().Show();
  EXPECT_FALSE(window.Browser().ShowMenuBar());
  EXPECT_EQ(window.Browser().ObjectThumbnailView().Folder(), "C:\\Photos\\");
  EXPECT_EQ(window.Form().Caption(), "Photos - Pictures");
}

TEST_F(BrowserWindow, TheClassShowsItModallyToo) {
  ImageBrowser browser;
  browser.Title("Pictures");
  bool shown = false;
  user().uses("frmImageBrowser", [&](Form& form) {
    shown = browser.Visible();
    dynamic_cast<headless::Form&>(form).pressCloseBox();
  });
  browser.Show(true);
  EXPECT_TRUE(shown);
  EXPECT_FALSE(browser.Visible());
  browser.Show();
  EXPECT_TRUE(browser.Visible());
}

TEST_F(BrowserWindow, AShowThatFailsRaisesToTheHost) {
  ImageBrowser browser;
  browser.Show();
  try {
    browser.Show(true);
    ADD_FAILURE() << "a window that is shown cannot be shown modally";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), 400);
  }
  EXPECT_TRUE(user().boxes().empty());
  EXPECT_TRUE(browser.Visible());
}

TEST_F(BrowserWindow, WithoutItsWindowTheClassReadsEmptyAndRaisesOtherwise) {
  ImageBrowser browser;
  browser.Title("Pictures");
  browser.Show();
  browser.Terminate();
  browser.Terminate();
  EXPECT_EQ(browser.Path(), "");
  EXPECT_EQ(browser.Title(), "");
  const auto number = [](auto call) {
    try {
      call();
      return 0;
    } catch (const RuntimeError& error) {
      return static_cast<int>(error.Number());
    }
  };
  EXPECT_EQ(number([&] { browser.Show(); }), 91);
  EXPECT_EQ(number([&] { browser.Path("C:\\"); }), 91);
  EXPECT_EQ(number([&] { browser.Title("x"); }), 91);
  EXPECT_EQ(number([&] { static_cast<void>(browser.Visible()); }), 91);
}

}  // namespace
}  // namespace kestrel
