#include "platform/thumbnailview/LoadOrder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>

#include "platform/thumbnailview/Workers.h"

namespace kestrel::thumbnails {
namespace {

using testing::ElementsAre;

LoadRequest request(FileKey key, std::int32_t side = 128) {
  return {key, {"a.jpg", 1, 1, 0, {}}, side, true};
}

std::vector<FileKey> takeAll(LoadOrder& order) {
  std::vector<FileKey> keys;
  while (const auto next = order.take()) keys.push_back(next->key);
  return keys;
}

TEST(LoadOrder, TakesWhatIsVisibleThenTheFolderThenTheRest) {
  LoadOrder order;
  order.add({request(1), request(2), request(3)});
  order.want({request(3)}, {request(9)});
  EXPECT_THAT(takeAll(order), ElementsAre(3, 1, 2, 9));
}

TEST(LoadOrder, DropsWhatScrolledAwayButNotFromTheFolder) {
  LoadOrder order;
  order.add({request(1), request(2)});
  order.want({request(2), request(7)}, {request(8)});
  order.want({request(5)}, {});
  EXPECT_THAT(takeAll(order), ElementsAre(5, 1, 2));
}

TEST(LoadOrder, TakesAFileOnceAtEachSize) {
  LoadOrder order;
  order.add({request(1), request(1), request(1, 256)});
  order.want({request(1)}, {request(1)});
  EXPECT_EQ(order.take()->side, 128);
  EXPECT_EQ(order.take()->side, 256);
  EXPECT_FALSE(order.take());
  EXPECT_TRUE(order.empty());
}

TEST(LoadOrder, TakesAFileAgainAfterItsEnd) {
  LoadOrder order;
  order.want({request(1)}, {});
  const auto first = order.take();
  order.want({request(1)}, {});
  EXPECT_FALSE(order.take()) << "it is at work";
  order.finish(first->key, first->side);
  order.want({request(1)}, {});
  EXPECT_TRUE(order.take());
}

TEST(LoadOrder, RemovesAFileFromAllLists) {
  LoadOrder order;
  order.add({request(1), request(1, 256), request(2)});
  order.want({request(1)}, {request(1)});
  order.remove({1});
  EXPECT_THAT(takeAll(order), ElementsAre(2));
}

TEST(LoadOrder, CancelsWhatScrolledAway) {
  LoadOrder order;
  order.want({request(1), request(2)}, {request(3)});
  const auto gone = order.take(), stays = order.take(), later = order.take();
  order.want({request(2)}, {request(3)});
  EXPECT_TRUE(gone->canceled.stop_requested());
  EXPECT_FALSE(stays->canceled.stop_requested());
  EXPECT_FALSE(later->canceled.stop_requested());
}

TEST(LoadOrder, DoesNotCancelWhatTheFolderNeeds) {
  LoadOrder order;
  order.add({request(1)});
  order.want({request(1), request(2)}, {});
  const auto listed = order.take(), added = order.take();
  order.add({request(2)});
  order.want({}, {});
  EXPECT_FALSE(listed->canceled.stop_requested());
  EXPECT_FALSE(added->canceled.stop_requested()) << "it was added while it was at work";
}

TEST(LoadOrder, CancelsTheFilesThatAreRemoved) {
  LoadOrder order;
  order.add({request(1), request(1, 256), request(2)});
  const auto small = order.take(), large = order.take(), other = order.take();
  order.remove({1});
  EXPECT_TRUE(small->canceled.stop_requested());
  EXPECT_TRUE(large->canceled.stop_requested());
  EXPECT_FALSE(other->canceled.stop_requested());
  order.drop();
  EXPECT_TRUE(other->canceled.stop_requested());
}

TEST(LoadOrder, CancelsAllWhenItIsCleared) {
  LoadOrder order;
  order.add({request(1)});
  const auto taken = order.take();
  order.clear();
  EXPECT_TRUE(taken->canceled.stop_requested());
}

TEST(LoadOrder, ForgetsWhatIsAtWorkWhenItIsCleared) {
  LoadOrder order;
  order.want({request(1)}, {});
  order.take();
  EXPECT_EQ(order.atWork(), 1u);
  order.drop();
  EXPECT_EQ(order.atWork(), 1u);
  order.clear();
  EXPECT_EQ(order.atWork(), 0u);
}

/// Long jobs of one source.
class Jobs final : public Workers::Source {
 public:
  void add(std::function<void()> job) {
    const std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
  }
  std::function<void()> take(Workers::Duty duty) override {
    const std::lock_guard lock(mutex_);
    if (duty == Workers::Duty::kShort || jobs_.empty()) return {};
    auto job = std::move(jobs_.front());
    jobs_.pop_front();
    return job;
  }

 private:
  std::mutex mutex_;
  std::deque<std::function<void()>> jobs_;
};

/// Counts up; a thread can wait for a count.
class Counter {
 public:
  void increment() {
    {
      const std::lock_guard lock(mutex_);
      ++count_;
    }
    changed_.notify_all();
  }
  bool waitFor(int count) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::minutes(1), [&] { return count_ >= count; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  int count_ = 0;
};

TEST(WorkersOfViews, RunTheJobsOfAllSources) {
  Counter done;
  Workers workers(2);
  const auto one = std::make_shared<Jobs>();
  const auto other = std::make_shared<Jobs>();
  for (int i = 0; i < 20; ++i) {
    one->add([&] { done.increment(); });
    other->add([&] { done.increment(); });
  }
  workers.add(one);
  workers.add(other);
  EXPECT_TRUE(done.waitFor(40));
  one->add([&] { done.increment(); });
  workers.waker()();
  EXPECT_TRUE(done.waitFor(41));
}

TEST(WorkersOfViews, AlternateBetweenSources) {
  Counter begun, go, done;
  std::mutex mutex;
  std::string order;
  Workers workers(1);
  const auto one = std::make_shared<Jobs>();
  const auto other = std::make_shared<Jobs>();
  const auto write = [&](char letter) {
    return [&, letter] {
      {
        const std::lock_guard lock(mutex);
        order += letter;
      }
      done.increment();
    };
  };
  one->add([&] {
    begun.increment();
    go.waitFor(1);
  });
  for (int i = 0; i < 3; ++i) {
    one->add(write('a'));
    other->add(write('b'));
  }
  workers.add(one);
  ASSERT_TRUE(begun.waitFor(1));
  workers.add(other);
  go.increment();
  ASSERT_TRUE(done.waitFor(6));
  EXPECT_TRUE(order == "ababab" || order == "bababa") << order;
}

TEST(WorkersOfViews, DoShortJobsWhileAllThreadsHaveLongOnes) {
  Counter begun, mayEnd, done;
  Workers workers(2);
  const auto jobs = std::make_shared<Jobs>();
  for (int i = 0; i < 2; ++i) {
    jobs->add([&] {
      begun.increment();
      mayEnd.waitFor(1);
    });
  }
  workers.add(jobs);
  ASSERT_TRUE(begun.waitFor(2));
  workers.later([&] { done.increment(); });
  EXPECT_TRUE(done.waitFor(1));
  mayEnd.increment();
}

TEST(WorkersOfViews, EndWhileASourceIsStillThere) {
  const auto jobs = std::make_shared<Jobs>();
  std::function<void()> waker;
  {
    Workers workers(2);
    workers.add(jobs);
    waker = workers.waker();
  }
  waker();
  jobs->add([] { ADD_FAILURE() << "nobody is left to run this"; });
  waker();
}

}  // namespace
}  // namespace kestrel::thumbnails
