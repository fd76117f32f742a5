#include <random>

#include "CacheTest.h"

namespace kestrel::thumbnails {
namespace {

/// Files in the cache that are no entries: each is ignored, and replaced by the next thumbnail.
class BadEntries : public CacheTest {
 protected:
  BadEntries() { fs::create_directories(path_.parent_path()); }

  void expectIgnoredAndReplaced(const std::string& what) {
    EXPECT_EQ(stateOf(photo_), State::kMissing) << what;
    cache_.put(photo_, 128, bitmap_, {4000, 3000});
    EXPECT_TRUE(samePixels(cache_.get(photo_, 128, StoredDetail::kBitmap).bitmap, bitmap_)) << what;
    fs::remove(path_);
  }

  FileVersion photo_ = file("photo.jpg");
  fs::path path_ = entryOf(photo_, "normal");
  engine::Bitmap bitmap_ = picture(128, 96);
};

TEST_F(BadEntries, OfAnotherKindAreIgnored) {
  for (const std::string& content : {std::string(), std::string("text"), std::string(100, '\0')}) {
    write(path_, content);
    expectIgnoredAndReplaced(content);
  }
  const auto jpeg = engine::encode(bitmap_, {}, engine::format::kJpg);
  write(path_, {reinterpret_cast<const char*>(jpeg.data()), jpeg.size()});
  expectIgnoredAndReplaced("a JPEG file");
}

TEST_F(BadEntries, CutAtAnyByteAreIgnored) {
  Texts texts = requiredTexts(photo_);
  texts.emplace_back("Thumb::Image::Width", "16");
  texts.emplace_back("Thumb::Image::Height", "12");
  const std::string entry = pngFile(picture(16, 12), texts);
  for (std::size_t size = 0; size < entry.size(); ++size) {
    write(path_, entry.substr(0, size));
    EXPECT_EQ(stateOf(photo_), State::kMissing) << size;
    EXPECT_EQ(cache_.get(photo_, 128, StoredDetail::kFacts).state, State::kMissing) << size;
  }
  write(path_, entry);
  EXPECT_EQ(stateOf(photo_), State::kKept);
}

TEST_F(BadEntries, WithAFlippedByteAreIgnoredOrShowTheSamePicture) {
  Texts texts = requiredTexts(photo_);
  texts.emplace_back("Thumb::Image::Width", "16");
  texts.emplace_back("Thumb::Image::Height", "12");
  const engine::Bitmap small = picture(16, 12);
  const std::string entry = pngFile(small, texts);
  for (std::size_t at = 0; at < entry.size(); ++at) {
    std::string damaged = entry;
    damaged[at] = static_cast<char>(damaged[at] ^ 0x20);
    write(path_, damaged);
    const StoredThumbnail found = cache_.get(photo_, 128, StoredDetail::kBitmap);
    // The length of the last chunk is the only byte range that may not matter.
    if (found.state == State::kKept) {
      EXPECT_TRUE(samePixels(found.bitmap, small)) << at;
    }
  }
}

TEST_F(BadEntries, ThatAreNoRegularFilesAreIgnored) {
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  expectIgnoredAndReplaced("a pipe");

  write(folder_ / "elsewhere.png", pngFile(bitmap_, requiredTexts(photo_)));
  fs::create_symlink(folder_ / "elsewhere.png", path_);
  expectIgnoredAndReplaced("a link");
  EXPECT_EQ(contentOf(folder_ / "elsewhere.png"), pngFile(bitmap_, requiredTexts(photo_)));

  fs::create_symlink(path_.filename(), path_);
  expectIgnoredAndReplaced("a link to itself");
}

TEST_F(BadEntries, ThatAreFoldersAreIgnored) {
  fs::create_directories(path_ / "below");
  EXPECT_EQ(stateOf(photo_), State::kMissing);
  cache_.put(photo_, 128, bitmap_, {4000, 3000});
  EXPECT_EQ(stateOf(photo_), State::kMissing);
  EXPECT_TRUE(fs::is_directory(path_ / "below"));
}

TEST_F(BadEntries, ThatAreHugeAreIgnored) {
  write(path_, pngFile(bitmap_, requiredTexts(photo_)));
  EXPECT_EQ(stateOf(photo_), State::kKept);
  // Sparse: takes no space on the disk, but would take it in memory.
  fs::resize_file(path_, std::uintmax_t{1} << 40);
  expectIgnoredAndReplaced("a huge file");
}

/// Replaces the size in the header, with a correct checksum.
std::string withSize(std::string png, std::uint32_t width, std::uint32_t height) {
  const auto put = [&](std::size_t at, std::uint32_t value) {
    for (int i = 0; i < 4; ++i)
      png[at + static_cast<std::size_t>(i)] = static_cast<char>(value >> (24 - 8 * i));
  };
  put(16, width);
  put(20, height);
  std::uint32_t crc = 0xFFFFFFFF;
  for (std::size_t at = 12; at < 29; ++at) {
    crc ^= static_cast<unsigned char>(png[at]);
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
  }
  put(29, ~crc);
  return png;
}

TEST_F(BadEntries, ThatLieAboutTheirSizeAreIgnored) {
  const std::string entry = pngFile(bitmap_, requiredTexts(photo_));
  ASSERT_EQ(withSize(entry, 128, 96), entry);
  for (const auto& [width, height] : {std::pair{65536U, 65536U},
                                      {128U, 97U},
                                      {128U, 65536U},
                                      {0U, 0U},
                                      {0x7FFFFFFFU, 0x7FFFFFFFU},
                                      {0xFFFFFFFFU, 1U}}) {
    write(path_, withSize(entry, width, height));
    expectIgnoredAndReplaced(std::to_string(width) + " by " + std::to_string(height));
  }
}

TEST_F(BadEntries, OfFailuresAreIgnored) {
  cache_.putFailed(photo_, "reason");
  const fs::path failed = failedEntryOf(photo_);
  const std::string entry = contentOf(failed);
  write(failed, entry.substr(0, entry.size() / 2));
  EXPECT_EQ(stateOf(photo_), State::kMissing);
  cache_.putFailed(photo_, "reason");
  EXPECT_EQ(stateOf(photo_), State::kFailed);
}

TEST_F(BadEntries, AtRandomAreNeverTakenForAPicture) {
  std::mt19937 random(1);
  const std::string entry = pngFile(bitmap_, requiredTexts(photo_));
  for (int i = 0; i < 300; ++i) {
    std::string damaged = entry;
    for (int changes = 0; changes < 4; ++changes)
      damaged[random() % damaged.size()] = static_cast<char>(random());
    write(path_, damaged);
    const StoredThumbnail found = cache_.get(photo_, 128, StoredDetail::kBitmap);
    if (found.state == State::kKept) {
      EXPECT_TRUE(samePixels(found.bitmap, bitmap_)) << i;
    }
  }
}

}  // namespace
}  // namespace kestrel::thumbnails
