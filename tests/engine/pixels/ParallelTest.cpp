#include "engine/parallel/Parallel.h"

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

#include "base/ThrowRecord.h"

namespace kestrel::engine {
namespace {

TEST(ForRows, PassesEachRowExactlyOnce) {
  for (const std::int32_t height : {1, 2, 7, 64, 1000, 4001}) {
    for (const std::int32_t smallest : {-1, 0, 1, 3, 16, 5000}) {
      std::vector<std::atomic<int>> seen(static_cast<std::size_t>(height));
      forRows(height, smallest, [&](std::int32_t first, std::int32_t last) {
        for (std::int32_t y = first; y < last; ++y) ++seen[static_cast<std::size_t>(y)];
      });
      for (const auto& count : seen) ASSERT_EQ(count, 1) << height << " rows, at least " << smallest;
    }
  }
}

TEST(ForRows, NoRowsMeanNoCall) {
  int calls = 0;
  forRows(0, 1, [&](std::int32_t, std::int32_t) { ++calls; });
  forRows(-5, 1, [&](std::int32_t, std::int32_t) { ++calls; });
  EXPECT_EQ(calls, 0);
}

TEST(ForRows, AllBandsButTheLastHaveTheSmallestHeight) {
  std::mutex mutex;
  forRows(1000, 90, [&](std::int32_t first, std::int32_t last) {
    const std::lock_guard lock(mutex);
    EXPECT_TRUE(last == 1000 || last - first >= 90) << first << " to " << last;
  });
}

TEST(ForRows, UsesSeveralThreadsWhereThereAreCores) {
  std::mutex mutex;
  std::set<std::thread::id> threads;
  forRows(64, 1, [&](std::int32_t, std::int32_t) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    const std::lock_guard lock(mutex);
    threads.insert(std::this_thread::get_id());
  });
  EXPECT_GE(threads.size(), threadCount() == 1 ? 1U : 2U);
  EXPECT_LE(threads.size(), static_cast<std::size_t>(threadCount()));
}

TEST(ForRows, AnErrorReachesTheCallerAfterTheRunningBandsEnd) {
  std::atomic<int> inside = 0;
  EXPECT_THROW(forRows(100, 1,
                       [&](std::int32_t, std::int32_t) {
                         ++inside;
                         std::this_thread::sleep_for(std::chrono::milliseconds(1));
                         --inside;
                         throw std::runtime_error("band");
                       }),
               std::runtime_error);
  EXPECT_EQ(inside, 0);

  std::atomic<int> rows = 0;
  forRows(100, 1, [&](std::int32_t first, std::int32_t last) { rows += last - first; });
  EXPECT_EQ(rows, 100) << "an error before spoils nothing after";
}

TEST(ForRows, AnErrorOfABandIsRecordedAtTheCall) {
  const ThrowRecord record;
  try {
    forRows(100, 1, [](std::int32_t, std::int32_t) { throw std::runtime_error("band"); });
    FAIL() << "the error did not arrive";
  } catch (const std::runtime_error&) {
    // On one core there is no other thread, and nothing to rethrow.
    EXPECT_EQ(ThrowRecord::OfCurrentError() != nullptr, threadCount() > 1);
  }
}

TEST(ForRows, NestedAndConcurrentCallsEnd) {
  std::atomic<int> rows = 0;
  const auto nested = [&] {
    forRows(16, 1, [&](std::int32_t first, std::int32_t last) {
      for (std::int32_t y = first; y < last; ++y) {
        forRows(10, 1, [&](std::int32_t f, std::int32_t l) { rows += l - f; });
      }
    });
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 50; ++round) nested();
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(rows, 4 * 50 * 160);
}

}  // namespace
}  // namespace kestrel::engine
