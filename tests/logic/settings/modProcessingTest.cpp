#include "settings/modProcessing.h"

#include "Settings.h"
#include "diagnostics/modTollgarthSupport.h"

namespace kestrel {
namespace {

class ProcessServices : public Settings {
 protected:
  ProcessServices() {
    platform_.makeColors = [] { return std::make_shared<NoColors>(); };
  }

  class NoColors : public Colors {
   public:
    std::string TypeName() const override { return "Colors"; }
    Colour Create(OLE_COLOR, std::uint8_t) const override { return {}; }
  };
};

TEST_F(ProcessServices, AreSetUpByMain) {
  EXPECT_EQ(store_.RootKey(), "Software\\Brindlewick\\Common\\ImageProcessing");
  EXPECT_EQ(store_.RootHive(), HKEY_CURRENT_USER);
  EXPECT_EQ(positions_.RegistryKey(), "Software\\Brindlewick\\Common\\ImageProcessing\\WindowPositions");
  EXPECT_TRUE(modTollgarthSupport::State().qdkHasInitialised);
}

/// Records the order in which the services get their keys.
struct NotedStore : FailingStore {
  using FailingStore::RootHive, FailingStore::RootKey;
  void RootKey(const std::string& value) override {
    *log += "root ";
    FailingStore::RootKey(value);
  }
  void RootHive(std::int32_t value) override {
    *log += "hive ";
    FailingStore::RootHive(value);
  }
  std::string* log = nullptr;
};

struct NotedPositions : store::StoredPositions {
  using StoredPositions::StoredPositions, StoredPositions::RegistryKey;
  void RegistryKey(const std::string& value) override {
    *log += "positions ";
    StoredPositions::RegistryKey(value);
  }
  std::string* log = nullptr;
};

TEST(MainProcedure, StartsTheDiagnosticsThenSetsThePositionsKeyThenTheRootThenTheHive) {
  std::string log;
  NotedStore store;
  store.log = &log;
  fakes::FakeScreens screens;
  NotedPositions positions(store, screens);
  positions.log = &log;
  fakes::FakePlatform platform;
  platform.store = &store;
  platform.positions = &positions;
  platform.makeLibrary = [&]() -> std::unique_ptr<DebugClientLibrary> {
    log += modTollgarthSupport::State().qdkHasInitialised ? "marked diagnostics " : "diagnostics ";
    return nullptr;
  };
  modTollgarthSupport::State().qdkHasInitialised = false;
  modProcessing::Attach(platform);
  modProcessing::Main();
  modProcessing::Detach();
  EXPECT_EQ(log, "marked diagnostics positions root hive ");
}

TEST_F(ProcessServices, LendOneOptionsObjectUntilKillShared) {
  const auto first = modProcessing::GetOptions();
  EXPECT_EQ(modProcessing::GetOptions(), first);
  modProcessing::KillShared();
  const auto second = modProcessing::GetOptions();
  EXPECT_NE(second, first);
  EXPECT_NE(second, nullptr);
}

TEST_F(ProcessServices, LendOneColorsObjectUntilKillShared) {
  const auto first = modProcessing::GetColors();
  EXPECT_EQ(modProcessing::GetColors(), first);
  modProcessing::KillShared();
  EXPECT_NE(modProcessing::GetColors(), first);
}

TEST_F(ProcessServices, StayInPlaceAfterKillShared) {
  modProcessing::KillShared();
  modProcessing::KillShared();
  EXPECT_EQ(store_.RootKey(), kRoot);
  EXPECT_EQ(positions_.RegistryKey(), kRoot + "\\WindowPositions");
  EXPECT_EQ(modProcessing::GetOptions()->JPEGQuality(), 75);
}

TEST_F(ProcessServices, ReportColorsThatCannotBeCreated) {
  platform_.makeColors = nullptr;
  EXPECT_EQ(modProcessing::GetColors(), nullptr);
  ASSERT_EQ(reports(), 1u);
  EXPECT_NE(platform_.boxes.boxes[0].text.find("Module: modProcessing\r\nProcedure: GetColors\r\n"),
            std::string::npos);
}

TEST_F(ProcessServices, SetTheCaptionOfAWindow) {
  fakes::FakeForm form("frmImageEditor");
  modProcessing::SetWindowCaption(form, "My Editor", "c:\\pictures\\a.png");
  EXPECT_EQ(form.Caption(), "a.png - My Editor");
  modProcessing::SetWindowCaption(form, "", "/pictures/b.png");
  EXPECT_EQ(form.Caption(), "b.png - Brindle Image Pro");
  modProcessing::SetWindowCaption(form, "My Editor", "");
  EXPECT_EQ(form.Caption(), "Untitled - My Editor");
  modProcessing::SetWindowCaption(form, "", "");
  EXPECT_EQ(form.Caption(), "Untitled - Brindle Image Pro");
}

TEST_F(ProcessServices, ReportAnUnusableStoreOnce) {
  store_.Unavailable(RuntimeError(err::kPathFileAccess, "The settings could not be opened."));
  ASSERT_EQ(reports(), 1u);
  EXPECT_NE(platform_.boxes.boxes[0].text.find("The settings could not be opened. (75)"), std::string::npos);
}

TEST_F(ProcessServices, DoNotFailReadersOfAnUnusableStore) {
  platform_.factory.present = true;  // which raises 65535 after each report
  store_.Unavailable(RuntimeError(err::kPathFileAccess, "The settings could not be opened."));
  EXPECT_EQ(platform_.factory.reports.size(), 1u);
}

TEST(WithoutAPlatform, NothingIsLent) {
  EXPECT_THROW(modProcessing::Platform(), RuntimeError);
  fakes::FakeForm form("frmImageEditor");
  EXPECT_THROW(modProcessing::SetWindowCaption(form, "", ""), RuntimeError);
}

/// The thumbnail dialog moves the key for the rest of the process.
TEST_F(ProcessServices, LoseTheFirstEditorsPositionAfterTheThumbnailDialog) {
  screens_.screens = {{0, 0, 1920, 1080}};
  fakes::FakeForm editor("frmImageEditor", {10, 20, 800, 600}), dialog("frmGetThumnail", {1, 1, 300, 300});
  auto& positions = modProcessing::WindowPositions();
  positions.SavePosition(editor, "");
  positions.RegistryKey("Software\\Brindlewick\\ImageProcessing2");
  positions.LoadPosition(dialog, "GetThumbnail", 2, 0);
  positions.SavePosition(dialog, "GetThumbnail");
  fakes::FakeForm second("frmImageEditor", {7, 7, 70, 70});
  positions.LoadPosition(second, "");
  EXPECT_EQ(second.place(), (Rectangle{7, 7, 70, 70}));
  positions.SavePosition(second, "");
  EXPECT_TRUE(store_.hasKey(HKEY_CURRENT_USER, "Software\\Brindlewick\\ImageProcessing2\\frmImageEditor"));
  EXPECT_TRUE(store_.hasKey(HKEY_CURRENT_USER, "Software\\Brindlewick\\ImageProcessing2\\GetThumbnail"));
}

}  // namespace
}  // namespace kestrel
