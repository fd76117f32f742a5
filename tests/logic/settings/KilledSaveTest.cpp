// Saves of several values by a process that is killed in the middle.

#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <exception>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "platform/sqlite/SqliteStore.h"
#include "platform/store/StoredPositions.h"
#include "settings/MRU.h"
#include "settings/StoreTogether.h"
#include "settings/modProcessing.h"
#include "tests/logic/fakes/FakeForm.h"
#include "tests/logic/fakes/FakePlatform.h"

namespace kestrel {
namespace {

/// A store whose process is killed after a number of writing calls, from 1.
class KillingStore : public sqlite::SqliteStore {
 public:
  KillingStore(const std::filesystem::path& file, int calls) : SqliteStore(file), left_(calls) {}

  void WriteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName,
                  const Variant& Value, std::int32_t Kind) override {
    SqliteStore::WriteValue(Hive, Key, ValueName, Value, Kind);
    count();
  }
  void DeleteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) override {
    SqliteStore::DeleteValue(Hive, Key, ValueName);
    count();
  }
  void CreateKey(std::int32_t Hive, const std::string& Key) override {
    SqliteStore::CreateKey(Hive, Key);
    count();
  }

 private:
  void count() {
    if (--left_ == 0) kill(getpid(), SIGKILL);
  }

  int left_;
};

class KilledSave : public testing::Test {
 protected:
  ~KilledSave() override { std::filesystem::remove_all(folder_); }

  /// Runs a save in another process, which is killed after that number of writing calls. Returns whether it
  /// was; it saves all if it makes fewer calls.
  bool isKilledAfter(int calls, const std::function<void()>& save) {
    const pid_t process = fork();
    if (process == 0) {
      KillingStore store(folder_ / "a.store", calls);
      try {
        with(store, save);
      } catch (const std::exception&) {
        _exit(1);
      }
      _exit(0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0) << "the save failed";
    return WIFSIGNALED(status);
  }

  /// Runs the work as a program with the store.
  static void with(sqlite::SqliteStore& store, const std::function<void()>& work) {
    fakes::FakeScreens screens;
    screens.screens = {{0, 0, 1920, 1080}};
    store::StoredPositions positions(store, screens);
    fakes::FakePlatform platform;
    platform.store = &store;
    platform.positions = &positions;
    modProcessing::Attach(platform);
    modProcessing::Main();
    work();
    modProcessing::Detach();
    EXPECT_TRUE(platform.boxes.boxes.empty());
  }
  void inThisProcess(const std::function<void()>& work) {
    sqlite::SqliteStore store(folder_ / "a.store");
    with(store, work);
  }

  static std::filesystem::path newFolder() {
    std::string folder = (std::filesystem::temp_directory_path() / "kestrel-store-XXXXXX").string();
    return mkdtemp(folder.data());
  }

  const std::filesystem::path folder_ = newFolder();
};

TEST_F(KilledSave, LeavesTheOldListOfRecentFiles) {
  const auto add = [](const std::string& name) {
    MRU recent;
    recent.PurgeInvalidFiles = false;
    recent.LoadFromRegistry();
    recent.AddFile(name);
  };
  const auto stored = [&] {
    std::vector<std::string> names;
    inThisProcess([&] {
      MRU recent;
      recent.PurgeInvalidFiles = false;
      recent.LoadFromRegistry();
      names.assign(recent.Files.begin(), recent.Files.end());
    });
    return names;
  };
  inThisProcess([&] {
    for (const char* name : {"c", "b", "a"}) add(name);
  });
  int calls = 1;
  while (isKilledAfter(calls, [&] { add("new"); })) {
    ASSERT_EQ(stored(), (std::vector<std::string>{"a", "b", "c"})) << "killed after call " << calls;
    ++calls;
  }
  EXPECT_EQ(calls, 16) << "the key, ten deletions and four files";
  EXPECT_EQ(stored(), (std::vector<std::string>{"new", "a", "b", "c"}));
}

TEST_F(KilledSave, LeavesTheOldPositionOfAWindow) {
  const auto save = [](const Rectangle& place) {
    fakes::FakeForm form("frmImageEditor", place);
    modProcessing::WindowPositions().SavePosition(form, "");
  };
  const auto stored = [&] {
    fakes::FakeForm form("frmImageEditor");
    inThisProcess([&] { modProcessing::WindowPositions().LoadPosition(form, ""); });
    return form.place();
  };
  const Rectangle before{10, 20, 300, 400}, after{50, 60, 700, 800};
  inThisProcess([&] { save(before); });
  int calls = 1;
  while (isKilledAfter(calls, [&] { save(after); })) {
    ASSERT_EQ(stored(), before) << "killed after call " << calls;
    ++calls;
  }
  EXPECT_EQ(calls, 6) << "state and four coordinates";
  EXPECT_EQ(stored(), after);
}

TEST_F(KilledSave, LeavesTheOldOptionsThatAreStoredTogether) {
  const auto save = [](std::int32_t angle, ImageProcessingDirectionConstants direction) {
    StoreTogether([&] {
      modProcessing::GetOptions()->RotateAngle(angle);
      modProcessing::GetOptions()->RotateDirection(direction);
    });
  };
  const auto stored = [&] {
    std::int32_t angle = 0;
    ImageProcessingDirectionConstants direction{};
    inThisProcess([&] {
      angle = modProcessing::GetOptions()->RotateAngle();
      direction = modProcessing::GetOptions()->RotateDirection();
    });
    return std::pair(angle, direction);
  };
  inThisProcess([&] { save(180, ipDirectionLeft); });
  EXPECT_TRUE(isKilledAfter(1, [&] { save(30, ipDirectionRight); }));
  EXPECT_EQ(stored(), std::pair(180, ipDirectionLeft));
  EXPECT_TRUE(isKilledAfter(2, [&] { save(30, ipDirectionRight); }));
  EXPECT_EQ(stored(), std::pair(180, ipDirectionLeft));
  EXPECT_FALSE(isKilledAfter(3, [&] { save(30, ipDirectionRight); }));
  EXPECT_EQ(stored(), std::pair(30, ipDirectionRight));
}

TEST_F(KilledSave, StoresTheOptionsThatWereSetBeforeAnError) {
  inThisProcess([] {
    EXPECT_THROW(StoreTogether([] {
                   modProcessing::GetOptions()->RotateAngle(30);
                   throw RuntimeError(err::kOverflow, "Overflow.");
                 }),
                 RuntimeError);
  });
  inThisProcess([] { EXPECT_EQ(modProcessing::GetOptions()->RotateAngle(), 30); });
}

}  // namespace
}  // namespace kestrel
