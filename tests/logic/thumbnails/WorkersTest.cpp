#include "platform/thumbnailview/Workers.h"

#include <gtest/gtest.h>

#include <future>
#include <memory>

namespace kestrel::thumbnails {
namespace {

TEST(Workers, MayEndOnOneOfTheirThreads) {
  auto workers = std::make_shared<Workers>(2);
  std::promise<void> mayEnd;
  std::promise<void> ended;
  const std::weak_ptr<Workers> watched = workers;
  Workers& started = *workers;
  started.later([last = std::move(workers), may = mayEnd.get_future().share(), &ended]() mutable {
    may.wait();
    last.reset();
    ended.set_value();
  });
  mayEnd.set_value();
  ended.get_future().wait();
  EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace kestrel::thumbnails
