#include <gmock/gmock.h>

#include "CacheTest.h"

namespace kestrel::thumbnails {
namespace {

using testing::Contains;
using testing::Each;
using testing::Key;
using testing::Not;
using testing::Pair;
using testing::SizeIs;

class EntryFormat : public CacheTest {};

struct SizeRow {
  std::int32_t side;
  const char* folder;
};

class EntrySizes : public CacheTest, public testing::WithParamInterface<SizeRow> {};
INSTANTIATE_TEST_SUITE_P(Sizes, EntrySizes,
                         testing::Values(SizeRow{128, "normal"}, SizeRow{256, "large"},
                                         SizeRow{512, "x-large"}, SizeRow{1024, "xx-large"}));

TEST_P(EntrySizes, HasAFolderOfItsOwn) {
  const auto [side, folder] = GetParam();
  const FileVersion photo = file("photo.jpg");
  const engine::Bitmap bitmap = picture(side, side * 3 / 4);
  cache_.put(photo, side, bitmap, {4000, 3000});
  EXPECT_TRUE(fs::is_regular_file(entryOf(photo, folder)));
  const StoredThumbnail kept = cache_.get(photo, side, StoredDetail::kBitmap);
  EXPECT_EQ(kept.state, State::kKept);
  EXPECT_TRUE(samePixels(kept.bitmap, bitmap));
  EXPECT_EQ(kept.pictureSize, (Size{4000, 3000}));
  EXPECT_EQ(kept.notice, "");
  for (const auto& [other, name] :
       {SizeRow{128, ""}, SizeRow{256, ""}, SizeRow{512, ""}, SizeRow{1024, ""}}) {
    if (other != side) {
      EXPECT_EQ(stateOf(photo, other), State::kMissing) << other;
    }
  }
}

TEST_F(EntryFormat, HasNoFolderForOtherSizes) {
  const FileVersion photo = file("photo.jpg");
  cache_.put(photo, 100, picture(100, 75), {4000, 3000});
  cache_.put(photo, 0, picture(100, 75), {4000, 3000});
  EXPECT_TRUE(isEmpty());
  EXPECT_EQ(stateOf(photo, 100), State::kMissing);
}

TEST_F(EntryFormat, IsAPngOf8BitRgbaThatIsNotInterlaced) {
  const FileVersion photo = file("photo.jpg");
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  const std::string png = contentOf(entryOf(photo, "normal"));
  ASSERT_GT(png.size(), 33U);
  EXPECT_EQ(png.substr(0, 16), std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16));
  // Bits per sample, color type, compression, filters, interlacing.
  EXPECT_EQ(png.substr(24, 5), std::string("\x08\x06\0\0\0", 5));
}

TEST_F(EntryFormat, HasTheAttributesOfTheStandard) {
  const FileVersion photo = file("my photo.JPG", "12345");
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  const Texts texts = textsOf(entryOf(photo, "normal"));
  EXPECT_THAT(texts, Contains(Pair("Thumb::URI", uriOf(photo.path))));
  EXPECT_THAT(texts, Contains(Pair("Thumb::MTime", std::to_string(photo.modified / 1'000'000'000))));
  EXPECT_THAT(texts, Contains(Pair("Thumb::Size", "5")));
  EXPECT_THAT(texts, Contains(Pair("Thumb::Image::Width", "4000")));
  EXPECT_THAT(texts, Contains(Pair("Thumb::Image::Height", "3000")));
  EXPECT_THAT(texts, Contains(Pair("Thumb::Mimetype", "image/jpeg")));
  EXPECT_THAT(texts, Contains(Pair("Software", "KestrelLib2")));
}

TEST_F(EntryFormat, LeavesOutWhatIsUnknown) {
  const FileVersion photo = file("photo");
  cache_.put(photo, 128, picture(128, 96), {});
  const Texts texts = textsOf(entryOf(photo, "normal"));
  for (const char* key : {"Thumb::Image::Width", "Thumb::Image::Height", "Thumb::Mimetype"})
    EXPECT_THAT(texts, Not(Contains(Key(key)))) << key;
  const StoredThumbnail kept = cache_.get(photo, 128, StoredDetail::kBitmap);
  EXPECT_EQ(kept.state, State::kKept);
  EXPECT_EQ(kept.pictureSize, Size{});
}

TEST_F(EntryFormat, CanOnlyBeReadByTheUser) {
  const mode_t mask = umask(0);
  const FileVersion photo = file("photo.jpg");
  cache_.put(photo, 256, picture(256, 192), {4000, 3000});
  cache_.putFailed(photo, "reason");
  umask(mask);
  int files = 0;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root_)) {
    const auto permissions = entry.status().permissions() & fs::perms::mask;
    EXPECT_EQ(static_cast<int>(permissions), entry.is_directory() ? 0700 : 0600) << entry.path();
    if (entry.is_regular_file()) ++files;
  }
  EXPECT_EQ(files, 2);
  EXPECT_EQ(static_cast<int>(fs::status(root_).permissions() & fs::perms::mask), 0700);
}

TEST_F(EntryFormat, LeavesTheFoldersThatExistAsTheyAre) {
  fs::create_directories(root_ / "normal");
  fs::permissions(root_ / "normal", fs::perms{0750});
  const FileVersion photo = file("photo.jpg");
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  EXPECT_EQ(stateOf(photo), State::kKept);
  EXPECT_EQ(static_cast<int>(fs::status(root_ / "normal").permissions() & fs::perms::mask), 0750);
}

TEST_F(EntryFormat, KeepsTransparency) {
  engine::Bitmap bitmap = picture(128, 128);
  const engine::Pixels pixels = bitmap.writable();
  for (std::int32_t x = 0; x < 128; ++x) pixels.row(7)[4 * x + 3] = static_cast<std::uint8_t>(2 * x);
  const FileVersion photo = file("photo.png");
  cache_.put(photo, 128, bitmap, {500, 500});
  EXPECT_TRUE(samePixels(cache_.get(photo, 128, StoredDetail::kBitmap).bitmap, bitmap));
}

TEST_F(EntryFormat, HasFactsWithoutTheBitmap) {
  const FileVersion photo = file("photo.jpg");
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  const StoredThumbnail facts = cache_.get(photo, 128, StoredDetail::kFacts);
  EXPECT_EQ(facts.state, State::kKept);
  EXPECT_TRUE(facts.bitmap.empty());
  EXPECT_EQ(facts.pictureSize, (Size{4000, 3000}));
}

TEST_F(EntryFormat, RecordsAFailurePerVersionOfTheProgram) {
  const FileVersion broken = file("broken.jpg");
  cache_.putFailed(broken, "The file \"caf\xC3\xA9\" has no picture.");
  const fs::path entry = failedEntryOf(broken);
  EXPECT_TRUE(entry.parent_path().filename().native().starts_with("kestrel-")) << entry;
  EXPECT_TRUE(fs::is_regular_file(entry));
  EXPECT_THAT(textsOf(entry), Contains(Pair("Thumb::URI", uriOf(broken.path))));
  EXPECT_THAT(textsOf(entry), Contains(Key("Thumb::MTime")));
  for (const std::int32_t side : kStoredSides) {
    const StoredThumbnail failed = cache_.get(broken, side, StoredDetail::kBitmap);
    EXPECT_EQ(failed.state, State::kFailed) << side;
    EXPECT_EQ(failed.notice, "The file \"caf\xC3\xA9\" has no picture.");
    EXPECT_TRUE(failed.bitmap.empty());
  }
}

TEST_F(EntryFormat, RecordsAFailureWithoutAReason) {
  const FileVersion broken = file("broken.jpg");
  cache_.putFailed(broken, "");
  const StoredThumbnail failed = cache_.get(broken, 128, StoredDetail::kFacts);
  EXPECT_EQ(failed.state, State::kFailed);
  EXPECT_EQ(failed.notice, "");
}

}  // namespace
}  // namespace kestrel::thumbnails
