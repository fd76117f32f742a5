#include "engine/thumbnails/ThumbnailReader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <utility>

#include "../codecs/TestPictures.h"

namespace kestrel::engine {
namespace {

class ThumbnailReaders : public testing::Test {
 protected:
  ThumbnailReaders() {
    const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::filesystem::temp_directory_path() /
              ("kestrel-reader-" + std::to_string(getpid()) + "-" + test->name());
    std::filesystem::create_directories(folder_);
  }
  ~ThumbnailReaders() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::filesystem::path put(const std::string& name, const Bitmap& bitmap) const {
    encodeFile(bitmap, {}, format::kNone, {100}, folder_ / name);
    return folder_ / name;
  }

  std::filesystem::path folder_;
};

TEST_F(ThumbnailReaders, HandOverTheThumbnailOnAnotherThread) {
  const auto file = put("a.png", test::gradient(900, 300));
  ThumbnailReader reader;
  std::promise<std::pair<Thumbnail, std::thread::id>> result;
  reader.read(file, 90, [&](Thumbnail made) {
    result.set_value({std::move(made), std::this_thread::get_id()});
  });
  const auto [thumbnail, thread] = result.get_future().get();
  EXPECT_EQ(thumbnail.bitmap.width(), 90);
  EXPECT_EQ(thumbnail.bitmap.height(), 30);
  EXPECT_TRUE(test::isPicture(thumbnail.bitmap, readThumbnail(file, 90).bitmap));
  EXPECT_NE(thread, std::this_thread::get_id());
}

TEST_F(ThumbnailReaders, GiveTheReasonForAFileThatCannotBeRead) {
  ThumbnailReader reader;
  std::promise<Thumbnail> result;
  reader.read(folder_ / "missing.png", 90, [&](Thumbnail made) { result.set_value(std::move(made)); });
  const Thumbnail thumbnail = result.get_future().get();
  EXPECT_TRUE(thumbnail.bitmap.empty());
  EXPECT_FALSE(thumbnail.notice.empty());
}

TEST_F(ThumbnailReaders, HandOverNothingForARequestThatAnotherHasReplaced) {
  const auto file = put("a.png", test::noise(200, 100, false));
  ThumbnailReader reader;
  constexpr std::size_t kRequests = 40;
  std::array<std::atomic<int>, kRequests> handed{};
  std::array<int, kRequests> whenReplaced{};
  std::promise<void> last;
  for (std::size_t i = 0; i < kRequests; ++i) {
    reader.read(file, 20, [&, i](Thumbnail) { ++handed[i]; });
    if (i > 0) whenReplaced[i - 1] = handed[i - 1];
  }
  reader.cancel();
  whenReplaced[kRequests - 1] = handed[kRequests - 1];
  reader.read(file, 20, [&](Thumbnail) { last.set_value(); });
  last.get_future().wait();
  for (std::size_t i = 0; i < kRequests; ++i) EXPECT_EQ(handed[i], whenReplaced[i]) << i;
}

TEST_F(ThumbnailReaders, HandOverNothingAfterTheyAreDestroyed) {
  const auto file = put("a.png", test::noise(600, 400, false));
  for (int round = 0; round < 20; ++round) {
    auto handed = std::make_shared<std::atomic<int>>(0);
    {
      ThumbnailReader reader;
      reader.read(file, 100, [handed](Thumbnail) { ++*handed; });
    }
    const int atEnd = *handed;
    EXPECT_EQ(handed.use_count(), 1) << "the request is gone";
    EXPECT_LE(atEnd, 1);
  }
}

TEST_F(ThumbnailReaders, ReadWhileOthersUseAllCores) {
  const auto file = put("a.png", test::noise(600, 400, false));
  const Bitmap expected = readThumbnail(file, 100).bitmap;
  ThumbnailReader reader;
  for (int round = 0; round < 5; ++round) {
    std::promise<Thumbnail> result;
    reader.read(file, 100, [&](Thumbnail made) { result.set_value(std::move(made)); });
    EXPECT_TRUE(test::isPicture(readThumbnail(file, 100).bitmap, expected));
    EXPECT_TRUE(test::isPicture(result.get_future().get().bitmap, expected));
  }
}

}  // namespace
}  // namespace kestrel::engine
