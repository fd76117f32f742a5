#include "engine/thumbnails/Thumbnails.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "../codecs/TestPictures.h"

namespace kestrel::engine {
namespace {

using test::errorOf;

class Thumbnails : public testing::Test {
 protected:
  Thumbnails() {
    const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::filesystem::temp_directory_path() /
              ("kestrel-thumbnails-" + std::to_string(getpid()) + "-" + test->name());
    std::filesystem::create_directories(folder_);
  }
  ~Thumbnails() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::filesystem::path put(const std::string& name, const Bitmap& bitmap,
                            const Metadata& metadata = {}) const {
    encodeFile(bitmap, metadata, format::kNone, {100}, folder_ / name);
    return folder_ / name;
  }

  std::filesystem::path folder_;
};

TEST_F(Thumbnails, TheLongestSideIsAsAskedForInAnyFormat) {
  for (const std::string extension : {"jpg", "png", "tif", "bmp", "gif", "tla"}) {
    const auto wide = put("wide." + extension, test::gradient(900, 300));
    const auto high = put("high." + extension, test::gradient(301, 900));
    EXPECT_EQ(readThumbnail(wide, 90).bitmap.width(), 90) << extension;
    EXPECT_EQ(readThumbnail(wide, 90).bitmap.height(), 30) << extension;
    EXPECT_EQ(readThumbnail(high, 90).bitmap.width(), 30) << extension;
    EXPECT_EQ(readThumbnail(high, 90).bitmap.height(), 90) << extension;
  }
}

TEST_F(Thumbnails, ASmallPictureKeepsItsSize) {
  const Bitmap picture = test::noise(30, 20, false);
  const Thumbnail thumbnail = readThumbnail(put("small.png", picture), 160);
  EXPECT_TRUE(test::isPicture(thumbnail.bitmap, picture));
}

TEST_F(Thumbnails, AThinPictureKeepsOnePixelOfItsShortSide) {
  EXPECT_EQ(readThumbnail(put("line.png", test::gradient(1000, 1)), 100).bitmap.height(), 1);
}

TEST_F(Thumbnails, AJpegThumbnailLooksLikeTheResizedPicture) {
  const Bitmap picture = test::gradient(2400, 1600);
  const Bitmap jpeg = readThumbnail(put("a.jpg", picture), 120).bitmap;
  const Bitmap png = readThumbnail(put("a.png", picture), 120).bitmap;
  EXPECT_TRUE(test::isPicture(jpeg, png, 3));
}

TEST_F(Thumbnails, TheSizeOfTheWholePictureIsReported) {
  for (const std::string extension : {"jpg", "png"}) {
    const Thumbnail thumbnail = readThumbnail(put("a." + extension, test::gradient(901, 302)), 90);
    EXPECT_EQ(thumbnail.pictureWidth, 901) << extension;
    EXPECT_EQ(thumbnail.pictureHeight, 302) << extension;
  }
  Metadata metadata;
  metadata.exif = test::cameraBlock(6);
  const Thumbnail turned = readThumbnail(put("turned.jpg", test::gradient(901, 302), metadata), 90);
  EXPECT_EQ(turned.pictureWidth, 302);
  EXPECT_EQ(turned.pictureHeight, 901);
}

TEST_F(Thumbnails, TransparentPixelsAddNoColor) {
  const Bitmap picture = test::pictureOf(400, 400, [](int x, int) {
    return x % 2 == 0 ? Pixel{255, 0, 0, 255} : Pixel{0, 255, 0, 0};
  });
  const Pixel p = readThumbnail(put("a.png", picture), 50).bitmap.at(25, 25);
  EXPECT_EQ(p.r, 255);
  EXPECT_EQ(p.g, 0);
  EXPECT_NEAR(p.a, 128, 2);
}

TEST_F(Thumbnails, AnOrientationIsApplied) {
  Metadata metadata;
  metadata.exif = test::cameraBlock(6);
  const Bitmap left = test::pictureOf(800, 400, [](int x, int) {
    return x < 400 ? Pixel{255, 255, 255, 255} : Pixel{0, 0, 0, 255};
  });
  const Bitmap bitmap = readThumbnail(put("a.jpg", left, metadata), 40).bitmap;
  ASSERT_EQ(bitmap.width(), 20);
  ASSERT_EQ(bitmap.height(), 40);
  EXPECT_GT(bitmap.at(10, 5).g, 240);
  EXPECT_LT(bitmap.at(10, 35).g, 15);
}

TEST_F(Thumbnails, AListKeepsItsOrderAndHasANoticePerFile) {
  std::vector<std::filesystem::path> paths;
  for (int i = 0; i < 20; ++i) {
    const auto level = static_cast<std::uint8_t>(12 * i);
    paths.push_back(put(std::to_string(i) + ".png", Bitmap::filled(300, 300, {level, level, level, 255})));
  }
  std::ofstream(folder_ / "none.jpg") << "This is no picture.";
  paths[7] = folder_ / "none.jpg";
  paths[8] = folder_ / "missing.jpg";
  const std::vector<Thumbnail> thumbnails = readThumbnails(paths, 10);
  ASSERT_EQ(thumbnails.size(), paths.size());
  for (std::size_t i = 0; i < thumbnails.size(); ++i) {
    const bool good = i != 7 && i != 8;
    EXPECT_EQ(thumbnails[i].notice.empty(), good) << i << thumbnails[i].notice;
    ASSERT_EQ(thumbnails[i].bitmap.empty(), !good) << i;
    if (good) {
      EXPECT_EQ(thumbnails[i].bitmap.at(5, 5).r, 12 * i);
    }
  }
}

TEST_F(Thumbnails, ATruncatedFileShowsItsRowsWithANotice) {
  const auto path = put("a.jpg", test::noise(640, 640, true));
  std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2);
  const Thumbnail thumbnail = readThumbnail(path, 64);
  EXPECT_EQ(thumbnail.bitmap.width(), 64);
  EXPECT_FALSE(thumbnail.notice.empty());
}

TEST_F(Thumbnails, ASideBelowOneIsRefused) {
  const auto path = put("a.png", test::gradient(9, 9));
  EXPECT_EQ(errorOf([&] { readThumbnail(path, 0); }), 5);
  EXPECT_EQ(errorOf([&] { readThumbnails({&path, 1}, -1); }), 5);
  EXPECT_EQ(errorOf([&] { readThumbnail(folder_ / "missing.png", 10); }), 53);
}

}  // namespace
}  // namespace kestrel::engine
