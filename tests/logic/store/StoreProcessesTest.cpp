#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <exception>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "TemporaryFolder.h"
#include "platform/sqlite/SqliteStore.h"

namespace kestrel {
namespace {

constexpr std::int32_t kUser = HKEY_CURRENT_USER;

/// Runs `work` in a child process, which exits with 0, or with 1 if the work failed.
pid_t inAnotherProcess(const std::function<void()>& work) {
  const pid_t process = fork();
  if (process != 0) return process;
  try {
    work();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "The other process failed: %s\n", error.what());
    _exit(1);
  }
  _exit(0);
}

bool endedWell(pid_t process) {
  int status = 0;
  return waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::string integrity(const std::filesystem::path& file) {
  sqlite3* connection = nullptr;
  std::string answer;
  if (sqlite3_open(file.c_str(), &connection) == SQLITE_OK) {
    sqlite3_exec(
        connection, "PRAGMA integrity_check",
        [](void* data, int, char** columns, char**) {
          *static_cast<std::string*>(data) += columns[0];
          return 0;
        },
        &answer, nullptr);
  }
  sqlite3_close(connection);
  return answer;
}

TEST(StoreProcesses, TwoWriteTwoThousandTimesEachWithoutLoss) {
  constexpr std::int32_t kWrites = 2'000;
  const TemporaryFolder folder;
  const auto file = folder / "a.store";
  // Each process has its own values, and they share one, which must end as the last write of either.
  const auto writer = [&](std::int32_t own, std::int32_t sign) {
    sqlite::SqliteStore store(file);
    const std::string key = "Own" + std::to_string(own);
    const Connection connection = store.Unavailable.Connect([](const RuntimeError& error) { throw error; });
    for (std::int32_t i = 1; i <= kWrites; ++i) {
      if (i % 2 == 0) {
        store.WriteValue(kUser, key, "value" + std::to_string(i % 500), i, kStoreNumber);
      } else {
        store.WriteValue(kUser, "Shared", "value", sign * i, kStoreNumber);
      }
    }
  };
  const pid_t first = inAnotherProcess([&] { writer(1, 1); });
  const pid_t second = inAnotherProcess([&] { writer(2, -1); });
  EXPECT_TRUE(endedWell(first));
  EXPECT_TRUE(endedWell(second));

  sqlite::SqliteStore store(file);
  for (const char* key : {"Own1", "Own2"}) {
    for (std::int32_t i = kWrites - 498; i <= kWrites; i += 2) {
      ASSERT_EQ(store.ReadValue(kUser, key, "value" + std::to_string(i % 500)).ToInt32(), i) << key;
    }
  }
  EXPECT_EQ(std::abs(store.ReadValue(kUser, "Shared", "value").ToInt32()), kWrites - 1);
  EXPECT_EQ(integrity(file), "ok");
}

TEST(StoreProcesses, AStoreIsConsistentAfterEachOf200KillsDuringWrites) {
  constexpr int kKills = 200;
  const TemporaryFolder folder;
  const auto file = folder / "a.store";
  std::minstd_rand random(20260);
  std::uniform_int_distribution<int> delay(0, 4000);
  std::int32_t last = 0;
  std::int32_t killedAtWork = 0;

  for (int kill = 0; kill < kKills; ++kill) {
    int toParent[2];
    ASSERT_EQ(pipe(toParent), 0);
    const pid_t process = inAnotherProcess([&] {
      close(toParent[0]);
      sqlite::SqliteStore store(file);
      for (std::int32_t i = last + 1;; ++i) {
        store.WriteValue(kUser, "Counter", "value", i, kStoreNumber);
        store.WriteValue(kUser, "Counter", "text", std::string(static_cast<std::size_t>(i % 3000), 'x'),
                         kStoreString);
        // Confirms the write to the parent.
        if (write(toParent[1], &i, sizeof i) != sizeof i) _exit(1);
      }
    });
    close(toParent[1]);
    std::int32_t confirmed = last;
    if (kill % 4 != 0) {
      ASSERT_EQ(read(toParent[0], &confirmed, sizeof confirmed), static_cast<ssize_t>(sizeof confirmed));
    }
    std::this_thread::sleep_for(std::chrono::microseconds(delay(random)));
    ::kill(process, SIGKILL);
    while (read(toParent[0], &confirmed, sizeof confirmed) == static_cast<ssize_t>(sizeof confirmed)) {
    }
    close(toParent[0]);
    int status = 0;
    waitpid(process, &status, 0);
    if (WIFSIGNALED(status) && confirmed > last) ++killedAtWork;

    sqlite::SqliteStore store(file);
    bool reported = false;
    const Connection connection = store.Unavailable.Connect([&](const RuntimeError&) { reported = true; });
    const std::int32_t stored = store.ReadValue(kUser, "Counter", "value").ToInt32();
    ASSERT_GE(stored, confirmed) << "confirmed writes are stored";
    ASSERT_LE(stored, confirmed + 1);
    const auto length =
        static_cast<std::int32_t>(store.ReadValue(kUser, "Counter", "text").ToString().size());
    ASSERT_TRUE(length == confirmed % 3000 || length == (confirmed + 1) % 3000);
    ASSERT_FALSE(reported);
    ASSERT_EQ(integrity(file), "ok");
    last = stored;
    store.WriteValue(kUser, "Counter", "text", std::string(static_cast<std::size_t>(last % 3000), 'x'),
                     kStoreString);
  }
  EXPECT_GE(killedAtWork, kKills / 2) << "the kills must happen during writes";
}

TEST(StoreProcesses, ManyStartAtOnceWithoutAFile) {
  for (int round = 0; round < 20; ++round) {
    const TemporaryFolder folder;
    std::vector<pid_t> processes;
    for (std::int32_t i = 0; i < 6; ++i) {
      processes.push_back(inAnotherProcess([&] {
        sqlite::SqliteStore store(folder / "a.store");
        const Connection connection =
            store.Unavailable.Connect([](const RuntimeError& error) { throw error; });
        store.WriteValue(kUser, "k", "v" + std::to_string(i), i, kStoreNumber);
      }));
    }
    for (const pid_t process : processes) EXPECT_TRUE(endedWell(process));
    sqlite::SqliteStore store(folder / "a.store");
    for (std::int32_t i = 0; i < 6; ++i) {
      EXPECT_EQ(store.ReadValue(kUser, "k", "v" + std::to_string(i)).ToInt32(), i);
    }
  }
}

}  // namespace
}  // namespace kestrel
