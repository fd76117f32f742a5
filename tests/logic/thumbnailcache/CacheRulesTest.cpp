#include <gmock/gmock.h>

#include <cstdlib>
#include <optional>

#include "CacheTest.h"
#include "OrdinaryUser.h"

namespace kestrel::thumbnails {
namespace {

constexpr std::int64_t kSecond = 1'000'000'000;

class CacheRules : public CacheTest {};

TEST_F(CacheRules, HasNothingAtFirst) {
  EXPECT_EQ(stateOf(file("photo.jpg")), State::kMissing);
  EXPECT_FALSE(fs::exists(root_));
}

TEST_F(CacheRules, DropsAThumbnailWhenTheTimeDiffersEitherWay) {
  FileVersion photo = file("photo.jpg");
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  const std::int64_t time = photo.modified;
  for (const std::int64_t difference :
       {kSecond, -kSecond, 3600 * kSecond, std::int64_t{1}, std::int64_t{-1}}) {
    photo.modified = time + difference;
    EXPECT_EQ(stateOf(photo), State::kMissing) << difference;
  }
  photo.modified = time;
  EXPECT_EQ(stateOf(photo), State::kKept);
}

TEST_F(CacheRules, DropsAThumbnailWhenTheSizeDiffers) {
  FileVersion photo = file("photo.jpg");
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  ++photo.size;
  EXPECT_EQ(stateOf(photo), State::kMissing);
}

TEST_F(CacheRules, HasNothingForAnotherFileOfEqualSizeAndTime) {
  FileVersion photo = file("photo.jpg");
  FileVersion broken = file("broken.jpg");
  for (FileVersion* const version : {&photo, &broken}) {
    version->inode = 12;
    version->changed = 5 * kSecond;
  }
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  cache_.putFailed(broken, "reason");
  for (FileVersion* const version : {&photo, &broken}) version->inode = 120;
  EXPECT_EQ(stateOf(photo), State::kKept) << "the file system was mounted again";
  EXPECT_EQ(stateOf(broken), State::kFailed);
  for (FileVersion* const version : {&photo, &broken}) version->changed = 6 * kSecond;
  EXPECT_EQ(stateOf(photo), State::kMissing);
  EXPECT_EQ(stateOf(broken), State::kMissing);
  for (FileVersion* const version : {&photo, &broken}) version->inode = 12;
  EXPECT_EQ(stateOf(photo), State::kKept) << "other permissions";
  EXPECT_EQ(stateOf(broken), State::kFailed);
}

TEST_F(CacheRules, DropsAFailureWhenTheFileDiffers) {
  FileVersion broken = file("broken.jpg");
  cache_.putFailed(broken, "reason");
  EXPECT_EQ(stateOf(broken), State::kFailed);
  broken.modified += kSecond;
  EXPECT_EQ(stateOf(broken), State::kMissing);
}

TEST_F(CacheRules, ReplacesAnOutdatedThumbnail) {
  FileVersion photo = file("photo.jpg");
  cache_.put(photo, 128, picture(128, 96, 1), {4000, 3000});
  photo.modified += kSecond;
  cache_.put(photo, 128, picture(128, 96, 2), {4000, 3000});
  EXPECT_TRUE(samePixels(cache_.get(photo, 128, StoredDetail::kBitmap).bitmap, picture(128, 96, 2)));
}

TEST_F(CacheRules, KeepsTimesBefore1970) {
  for (const std::int64_t time : {-kSecond / 4, -kSecond, -kSecond * 5 / 2}) {
    FileVersion photo = file("photo.jpg");
    photo.modified = time;
    cache_.put(photo, 128, picture(128, 96), {4000, 3000});
    EXPECT_EQ(stateOf(photo), State::kKept) << time;
    photo.modified += kSecond;
    EXPECT_EQ(stateOf(photo), State::kMissing) << time;
  }
}

/// What another program wrote that knows no more than what the standard requires.
TEST_F(CacheRules, UsesAnEntryWithTheRequiredAttributesAlone) {
  const FileVersion photo = file("photo.jpg");
  write(entryOf(photo, "normal"), pngFile(picture(128, 96), requiredTexts(photo)));
  const StoredThumbnail kept = cache_.get(photo, 128, StoredDetail::kBitmap);
  EXPECT_EQ(kept.state, State::kKept);
  EXPECT_TRUE(samePixels(kept.bitmap, picture(128, 96)));
  EXPECT_EQ(kept.pictureSize, Size{});
}

TEST_F(CacheRules, UsesAnEntryWhoseTimeHasAFraction) {
  const FileVersion photo = file("photo.jpg");
  Texts texts = requiredTexts(photo);
  texts[1].second += ".25";
  write(entryOf(photo, "normal"), pngFile(picture(128, 96), texts));
  EXPECT_EQ(stateOf(photo), State::kKept);
}

TEST_F(CacheRules, IgnoresAnEntryWithoutARequiredAttribute) {
  const FileVersion photo = file("photo.jpg");
  for (const std::size_t left : {0U, 1U}) {
    write(entryOf(photo, "normal"), pngFile(picture(128, 96), {requiredTexts(photo)[left]}));
    EXPECT_EQ(stateOf(photo), State::kMissing) << left;
  }
}

TEST_F(CacheRules, IgnoresAnEntryWithInvalidNumbers) {
  const FileVersion photo = file("photo.jpg");
  for (const char* time : {"", "x", "0x10", "99999999999999999999999999"}) {
    write(entryOf(photo, "normal"),
          pngFile(picture(128, 96), {requiredTexts(photo)[0], {"Thumb::MTime", time}}));
    EXPECT_EQ(stateOf(photo), State::kMissing) << time;
  }
  Texts texts = requiredTexts(photo);
  texts.emplace_back("Thumb::Size", "-1");
  write(entryOf(photo, "normal"), pngFile(picture(128, 96), texts));
  EXPECT_EQ(stateOf(photo), State::kMissing);
}

TEST_F(CacheRules, TakesAnInvalidSizeOfThePictureAsUnknown) {
  const FileVersion photo = file("photo.jpg");
  for (const char* width : {"0", "-4000", "4000000000000", "wide"}) {
    Texts texts = requiredTexts(photo);
    texts.emplace_back("Thumb::Image::Width", width);
    texts.emplace_back("Thumb::Image::Height", "3000");
    write(entryOf(photo, "normal"), pngFile(picture(128, 96), texts));
    const StoredThumbnail kept = cache_.get(photo, 128, StoredDetail::kFacts);
    EXPECT_EQ(kept.state, State::kKept) << width;
    EXPECT_EQ(kept.pictureSize, Size{}) << width;
  }
}

TEST_F(CacheRules, GivesNoFileTheEntryOfAnother) {
  const FileVersion photo = file("photo.jpg"), other = file("other.jpg");
  FileVersion same = other;
  same.modified = photo.modified;
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  fs::copy_file(entryOf(photo, "normal"), entryOf(other, "normal"));
  EXPECT_EQ(stateOf(same), State::kMissing);
}

TEST_F(CacheRules, UsesSmallThumbnailsOfSmallPicturesOnly) {
  struct Row {
    std::int32_t length, pictureLength;  ///< 0: unknown
    State state;
  };
  const FileVersion photo = file("photo.jpg");
  for (const Row& row :
       {Row{256, 4000, State::kKept}, Row{224, 4000, State::kKept}, Row{223, 4000, State::kMissing},
        Row{100, 4000, State::kMissing}, Row{200, 200, State::kKept}, Row{150, 200, State::kMissing},
        Row{128, 0, State::kKept}, Row{127, 0, State::kMissing}}) {
    Texts texts = requiredTexts(photo);
    if (row.pictureLength > 0) {
      texts.emplace_back("Thumb::Image::Width", std::to_string(row.pictureLength));
      texts.emplace_back("Thumb::Image::Height", std::to_string(row.pictureLength / 2));
    }
    write(entryOf(photo, "large"), pngFile(picture(row.length, row.length / 2), texts));
    EXPECT_EQ(stateOf(photo, 256), row.state) << row.length << " of " << row.pictureLength;
  }
}

TEST_F(CacheRules, IgnoresThumbnailsThatAreLargerThanTheirFolderAllows) {
  const FileVersion photo = file("photo.jpg");
  write(entryOf(photo, "normal"), pngFile(picture(129, 20), requiredTexts(photo)));
  EXPECT_EQ(stateOf(photo), State::kMissing);
  write(entryOf(photo, "normal"), pngFile(picture(20, 129), requiredTexts(photo)));
  EXPECT_EQ(stateOf(photo), State::kMissing);
}

TEST_F(CacheRules, KeepsNoThumbnailThatIsLargerThanItsFolderAllows) {
  cache_.put(file("photo.jpg"), 128, picture(129, 20), {4000, 3000});
  cache_.put(file("photo.jpg"), 128, {}, {4000, 3000});
  EXPECT_TRUE(isEmpty());
}

TEST_F(CacheRules, KeepsNoThumbnailOfAPictureOf128By128Pixels) {
  cache_.put(file("small.png"), 128, picture(128, 128), {128, 128});
  EXPECT_TRUE(isEmpty());
  const FileVersion wide = file("wide.png");
  cache_.put(wide, 256, picture(129, 20), {129, 20});
  EXPECT_EQ(stateOf(wide, 256), State::kKept);
}

TEST_F(CacheRules, KeepsNothingOfFilesInTheCache) {
  const FileVersion photo = file("photo.jpg");
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  const fs::path entry = entryOf(photo, "normal");
  fs::create_directory_symlink(root_ / "normal", folder_ / "link");
  const fs::path linked = folder_.path() / "entry.png";
  fs::create_symlink(entry, linked);
  const fs::path shared = folder_.path() / ".sh_thumbnails/normal" / entry.filename();
  const fs::path former = folder_.path() / ".thumbnails/normal" / entry.filename();
  for (const fs::path& path : {shared, former}) {
    fs::create_directories(path.parent_path());
    fs::copy_file(entry, path);
  }
  for (const fs::path& path : {entry, root_ / "normal/../normal" / entry.filename(),
                               folder_.path() / "link" / entry.filename(), linked, shared, former}) {
    const FileVersion thumbnail = versionOf(path);
    cache_.put(thumbnail, 128, picture(128, 96), {4000, 3000});
    cache_.putFailed(thumbnail, "reason");
    EXPECT_EQ(stateOf(thumbnail), State::kMissing) << path;
  }
  const auto files = std::count_if(fs::recursive_directory_iterator(root_), {},
                                   [](const fs::directory_entry& found) { return found.is_regular_file(); });
  EXPECT_EQ(files, 1);
}

TEST_F(CacheRules, KeepsThumbnailsOfFilesNextToTheCache) {
  const fs::path path = folder_.path() / "cache/thumbnails of mine/photo.jpg";
  write(path, "x");
  const FileVersion photo = versionOf(path);
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  EXPECT_EQ(stateOf(photo), State::kKept);
}

TEST_F(CacheRules, KeepsNothingOfRelativePaths) {
  FileVersion photo = file("photo.jpg");
  photo.path = fs::relative(photo.path);
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  cache_.putFailed(photo, "reason");
  EXPECT_TRUE(isEmpty());
  EXPECT_EQ(stateOf(photo), State::kMissing);
}

TEST_F(CacheRules, KeepsNothingOfAFileThatIsGone) {
  const FileVersion photo = file("photo.jpg");
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  fs::remove(photo.path);
  EXPECT_EQ(stateOf(photo), State::kMissing);
  cache_.putFailed(photo, "reason");
  EXPECT_FALSE(fs::exists(root_ / "fail"));
}

/// A backdoor to the picture, and a failure that outlives its cause.
TEST_F(CacheRules, NeitherReadsNorKeepsAnythingOfAFileThatTheUserCannotRead) {
  const FileVersion photo = file("photo.jpg"), other = file("other.jpg");
  cache_.put(photo, 128, picture(128, 96), {4000, 3000});
  for (const FileVersion& file : {photo, other}) fs::permissions(file.path, fs::perms::none);
  fs::permissions(folder_.path(), fs::perms::all);
  {
    // May do everything but read the pictures.
    const kestrel::test::OrdinaryUser user(root_);
    EXPECT_EQ(stateOf(photo), State::kMissing);
    cache_.put(other, 128, picture(128, 96), {4000, 3000});
    cache_.putFailed(other, "reason");
  }
  EXPECT_FALSE(fs::exists(entryOf(other, "normal")));
  EXPECT_FALSE(fs::exists(root_ / "fail"));
  for (const FileVersion& file : {photo, other}) fs::permissions(file.path, fs::perms::owner_read);
  EXPECT_EQ(stateOf(photo), State::kKept);
}

TEST_F(CacheRules, PrefersAThumbnailToAFailure) {
  const FileVersion photo = file("photo.xyz");
  cache_.putFailed(photo, "reason");
  write(entryOf(photo, "normal"), pngFile(picture(128, 96), requiredTexts(photo)));
  EXPECT_EQ(stateOf(photo), State::kKept);
  EXPECT_EQ(stateOf(photo, 256), State::kFailed);
}

TEST_F(CacheRules, KeepsThumbnailsOfAllNames) {
  for (const std::string& name :
       {std::string(255, 'n'), std::string("two\nlines"), std::string("caf\xE9\xFF.jpg"),
        std::string("%41.jpg"), std::string("a;b?c#d&e='f'.jpg"), std::string(".hidden"), std::string(" ")}) {
    const FileVersion photo = file(name);
    const auto seed = static_cast<std::uint8_t>(name.size() * 7 + static_cast<unsigned char>(name[0]));
    cache_.put(photo, 128, picture(128, 96, seed), {4000, 3000});
    EXPECT_TRUE(samePixels(cache_.get(photo, 128, StoredDetail::kBitmap).bitmap, picture(128, 96, seed)))
        << name;
  }
}

TEST_F(CacheRules, DistinguishesFilesThatDifferInCase) {
  const FileVersion lower = file("a.jpg"), upper = file("A.jpg");
  cache_.put(lower, 128, picture(128, 96, 1), {4000, 3000});
  cache_.put(upper, 128, picture(128, 96, 2), {4000, 3000});
  EXPECT_TRUE(samePixels(cache_.get(lower, 128, StoredDetail::kBitmap).bitmap, picture(128, 96, 1)));
  EXPECT_TRUE(samePixels(cache_.get(upper, 128, StoredDetail::kBitmap).bitmap, picture(128, 96, 2)));
}

/// Sets a variable of the environment while it lives.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* const before = std::getenv(name)) before_ = before;
    set(value);
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  ~Variable() { set(before_ ? before_->c_str() : nullptr); }

 private:
  void set(const char* value) { value == nullptr ? unsetenv(name_) : setenv(name_, value, 1); }

  const char* name_;
  std::optional<std::string> before_;
};

TEST(SharedThumbnailFolder, IsInTheCacheFolderOfTheUser) {
  const Variable home("HOME", "/home/jens");
  {
    const Variable cache("XDG_CACHE_HOME", "/var/jens");
    EXPECT_EQ(sharedThumbnailFolder(), "/var/jens/thumbnails");
  }
  for (const char* unusable : {static_cast<const char*>(nullptr), "", "relative/folder"}) {
    const Variable cache("XDG_CACHE_HOME", unusable);
    EXPECT_EQ(sharedThumbnailFolder(), "/home/jens/.cache/thumbnails");
  }
}

TEST(SharedThumbnailFolder, IsMissingWithoutAHome) {
  const Variable home("HOME", nullptr), cache("XDG_CACHE_HOME", nullptr);
  EXPECT_EQ(sharedThumbnailFolder(), "");
  EXPECT_EQ(sharedThumbnailCache(), nullptr);
}

}  // namespace
}  // namespace kestrel::thumbnails
