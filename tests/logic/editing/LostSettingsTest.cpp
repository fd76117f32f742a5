#include "EditingTest.h"
#include "platform/sqlite/SqliteStore.h"

namespace kestrel {
namespace {

using testing::IsEmpty;

class EditingWithoutSettings : public EditingTest {};

TEST_P(EditingWithoutSettings, ASaveKeepsThePreviousQualityAndReportsNothing) {
  options().JPEGQuality(31);
  ASSERT_TRUE(editor().SaveImageAs(path("a.jpg")));
  ASSERT_EQ(view().JPEGQuality(), 31);
  options().JPEGQuality(90);
  loseNextSetting();
  EXPECT_TRUE(editor().SaveImageAs(path("b.jpg")));
  EXPECT_EQ(view().JPEGQuality(), 31);
  EXPECT_TRUE(exists(path("b.jpg")));
  EXPECT_THAT(user().boxes(), IsEmpty());
  ASSERT_TRUE(editor().SaveImageAs(path("c.jpg")));
  EXPECT_EQ(view().JPEGQuality(), 90) << "when it can be read again";
}

TEST_P(EditingWithoutSettings, ASaveKeepsThePreviousQualityIfTheStoreIsDamaged) {
  const std::string file = platform().files().host(path("settings.store"));
  sqlite::SqliteStore store(file);
  useStore(&store);
  options().JPEGQuality(31);
  ASSERT_TRUE(editor().SaveImageAs(path("a.jpg")));
  ASSERT_EQ(view().JPEGQuality(), 31);
  for (const char* part : {"", "-wal", "-shm"}) std::filesystem::remove(file + part);
  std::ofstream(file) << std::string(8192, 'x');
  user().answers(kAnswerOK);  // the failed read
  user().answers(kAnswerOK);  // the list of recent files, which can't be stored
  EXPECT_TRUE(editor().SaveImageAs(path("b.jpg")));
  EXPECT_EQ(view().JPEGQuality(), 31);
  editor().ApplyOptions();
  EXPECT_EQ(view().JPEGQuality(), 31);
  std::filesystem::remove(file);
  options().JPEGQuality(90);
  EXPECT_TRUE(editor().SaveImageAs(path("c.jpg")));
  EXPECT_EQ(view().JPEGQuality(), 90) << "when it can be read again";
  useStore(nullptr);
}

TEST_P(EditingWithoutSettings, ASaveKeepsThePreviousQualityIfATextIsStored) {
  options().JPEGQuality(31);
  ASSERT_TRUE(editor().SaveImageAs(path("a.jpg")));
  platform().RegistryStore().SetSetting("Quality", "good", kStoreString, "JPEG", HKEY_CURRENT_USER);
  EXPECT_TRUE(editor().SaveImageAs(path("b.jpg")));
  EXPECT_EQ(view().JPEGQuality(), 31);
  EXPECT_THAT(user().boxes(), IsEmpty());
}

KESTREL_WITH_BOTH_PATHS(EditingWithoutSettings);

}  // namespace
}  // namespace kestrel
