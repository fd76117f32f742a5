#include "CacheTest.h"

namespace kestrel::thumbnails {
namespace {

/// Thumbnails on a medium, in the folder of its pictures.
class SharedRepository : public CacheTest {
 protected:
  static fs::path sharedEntryOf(const FileVersion& file) {
    return file.path.parent_path() / ".sh_thumbnails/normal" / entryName(uriOfName(file.path));
  }
  Texts sharedTexts(const FileVersion& file) const {
    Texts texts = requiredTexts(file);
    texts[0].second = uriOfName(file.path);
    return texts;
  }
};

TEST_F(SharedRepository, IsReadWhereTheUserHasNoThumbnail) {
  const FileVersion photo = file("my photo.jpg");
  write(sharedEntryOf(photo), pngFile(picture(128, 96), sharedTexts(photo)));
  EXPECT_TRUE(samePixels(cache_.get(photo, 128, StoredDetail::kBitmap).bitmap, picture(128, 96)));
  EXPECT_EQ(stateOf(photo, 256), State::kMissing);
}

TEST_F(SharedRepository, ComesAfterTheUsersOwn) {
  FileVersion photo = file("photo.jpg");
  write(sharedEntryOf(photo), pngFile(picture(128, 96, 1), sharedTexts(photo)));
  cache_.put(photo, 128, picture(128, 96, 2), {4000, 3000});
  EXPECT_TRUE(samePixels(cache_.get(photo, 128, StoredDetail::kBitmap).bitmap, picture(128, 96, 2)));
}

TEST_F(SharedRepository, IsReadWhereTheUsersOwnIsOutdatedOrDamaged) {
  FileVersion photo = file("photo.jpg");
  FileVersion before = photo;
  before.modified -= 1'000'000'000;
  write(sharedEntryOf(photo), pngFile(picture(128, 96, 1), sharedTexts(photo)));
  cache_.put(before, 128, picture(128, 96, 2), {4000, 3000});
  EXPECT_TRUE(samePixels(cache_.get(photo, 128, StoredDetail::kBitmap).bitmap, picture(128, 96, 1)));
  write(entryOf(photo, "normal"), "damaged");
  EXPECT_TRUE(samePixels(cache_.get(photo, 128, StoredDetail::kBitmap).bitmap, picture(128, 96, 1)));
}

TEST_F(SharedRepository, IsIgnoredIfOutdatedOrOfAnotherFile) {
  FileVersion photo = file("photo.jpg");
  const FileVersion other = file("other.jpg");
  write(sharedEntryOf(photo), pngFile(picture(128, 96), sharedTexts(other)));
  EXPECT_EQ(stateOf(photo), State::kMissing);
  write(sharedEntryOf(photo), pngFile(picture(128, 96), sharedTexts(photo)));
  EXPECT_EQ(stateOf(photo), State::kKept);
  photo.modified += 1'000'000'000;
  EXPECT_EQ(stateOf(photo), State::kMissing);
}

TEST_F(SharedRepository, IsNeverWritten) {
  const FileVersion photo = file("photo.jpg");
  write(sharedEntryOf(photo), "damaged");
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  cache_.putFailed(photo, "reason");
  EXPECT_EQ(contentOf(sharedEntryOf(photo)), "damaged");
  EXPECT_EQ(std::distance(fs::recursive_directory_iterator(photo.path.parent_path() / ".sh_thumbnails"), {}),
            2);
}

}  // namespace
}  // namespace kestrel::thumbnails
