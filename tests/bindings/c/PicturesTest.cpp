// Pixels of pictures, without a copy and from a host.

#include <thread>

#include "Host.h"

namespace kestrel::ctest {
namespace {

using testing::StartsWith;

class CPictures : public Host {
 protected:
  CPictures() : Host(KESTREL_HEADLESS) {}

  /// 3 by 2, with bytes between the rows that are no pixels.
  static kestrel_pixels sample() {
    static const std::uint8_t bytes[] = {1, 2, 3, 255, 4, 5, 6, 255, 7, 8, 9, 128, 99, 99,  //
                                         9, 8, 7, 255, 6, 5, 4, 0,   3, 2, 1, 255, 99, 99};
    return {bytes, 14, 3, 2, KESTREL_RGBA, 0};
  }
  static std::vector<std::uint8_t> row(const kestrel_pixels& pixels, std::size_t y) {
    const std::uint8_t* const begin = pixels.data + y * pixels.stride;
    return {begin, begin + 4 * static_cast<std::size_t>(pixels.width)};
  }
  static Object created(const kestrel_pixels& pixels) {
    Object picture;
    EXPECT_EQ(Outcome(kestrel_create_picture(&pixels, &picture.handle)), "");
    return picture;
  }
};

TEST_F(CPictures, APictureOfAHostsPixels) {
  const Object picture = created(sample());
  EXPECT_EQ(GetNumber(picture, "Width"), 3);
  EXPECT_EQ(GetNumber(picture, "Height"), 2);
  kestrel_pixels pixels{};
  kestrel_pixel_lock* lock = nullptr;
  ASSERT_EQ(Outcome(kestrel_lock_pixels(picture, &pixels, &lock)), "");
  EXPECT_EQ(pixels.width, 3);
  EXPECT_EQ(pixels.height, 2);
  EXPECT_EQ(pixels.format, KESTREL_RGBA);
  EXPECT_EQ(row(pixels, 0), row(sample(), 0));
  EXPECT_EQ(row(pixels, 1), row(sample(), 1));
  EXPECT_EQ(Outcome(kestrel_unlock_pixels(lock)), "");
}

TEST_F(CPictures, MembersLoadItAndReturnIt) {
  const Object picture = created(sample());
  const Object editor = Create("ImgX");
  ASSERT_EQ(Call(GetObject(editor, "Document"), "FromPicture", {ObjectValue(picture)}), "");
  ASSERT_EQ(Call(GetObject(editor, "Effects"), "Flip", {Number(1)}), "");
  Result out;
  ASSERT_EQ(Call(GetObject(editor, "Writer"), "ToPicture", {}, out.place()), "");
  kestrel_pixels pixels{};
  kestrel_pixel_lock* lock = nullptr;
  ASSERT_EQ(Outcome(kestrel_lock_pixels(out.value.as.object, &pixels, &lock)), "");
  EXPECT_EQ(row(pixels, 0), row(sample(), 1));
  EXPECT_EQ(row(pixels, 1), row(sample(), 0));
  kestrel_unlock_pixels(lock);
}

TEST_F(CPictures, ThePixelsAreThePicturesOwn) {
  const Object picture = created(sample());
  kestrel_pixels first{};
  kestrel_pixels second{};
  kestrel_pixel_lock* locks[2] = {};
  ASSERT_EQ(Outcome(kestrel_lock_pixels(picture, &first, &locks[0])), "");
  ASSERT_EQ(Outcome(kestrel_lock_pixels(picture, &second, &locks[1])), "");
  EXPECT_EQ(first.data, second.data);
  EXPECT_NE(locks[0], locks[1]);
  for (kestrel_pixel_lock* lock : locks) EXPECT_EQ(Outcome(kestrel_unlock_pixels(lock)), "");
}

TEST_F(CPictures, PixelsOutliveThePictureAndTheThread) {
  Object picture = created(sample());
  kestrel_pixels pixels{};
  kestrel_pixel_lock* lock = nullptr;
  ASSERT_EQ(Outcome(kestrel_lock_pixels(picture, &pixels, &lock)), "");
  picture.release();
  ASSERT_EQ(Outcome(kestrel_stop()), "");
  EXPECT_EQ(row(pixels, 1), row(sample(), 1));
  std::thread([&] { EXPECT_EQ(Outcome(kestrel_unlock_pixels(lock)), ""); }).join();
  EXPECT_THAT(Outcome(kestrel_unlock_pixels(lock)), StartsWith("91 "));
}

TEST_F(CPictures, ObjectsThatAreNoPicture) {
  const Object editor = Create("ImgX");
  kestrel_pixels pixels{};
  kestrel_pixel_lock* lock = nullptr;
  EXPECT_EQ(Outcome(kestrel_lock_pixels(editor, &pixels, &lock)),
            "13 An object of class Picture is required.");
  EXPECT_EQ(lock, nullptr);
  const Object picture = created(sample());
  EXPECT_THAT(Outcome(kestrel_lock_pixels(picture, nullptr, &lock)), StartsWith("5 "));
  EXPECT_THAT(Outcome(kestrel_lock_pixels(picture, &pixels, nullptr)), StartsWith("5 "));
}

TEST_F(CPictures, PixelsThatAreNone) {
  Object picture;
  const auto outcome = [&](const kestrel_pixels& pixels) {
    return Outcome(kestrel_create_picture(&pixels, &picture.handle));
  };
  kestrel_pixels wrong = sample();
  wrong.data = nullptr;
  EXPECT_THAT(outcome(wrong), StartsWith("5 "));
  wrong = sample();
  wrong.width = 0;
  EXPECT_THAT(outcome(wrong), StartsWith("5 "));
  wrong = sample();
  wrong.height = -1;
  EXPECT_THAT(outcome(wrong), StartsWith("5 "));
  wrong = sample();
  wrong.stride = 11;
  EXPECT_EQ(outcome(wrong), "5 The rows overlap.");
  wrong = sample();
  wrong.format = 3;
  EXPECT_THAT(outcome(wrong), StartsWith("5 "));
  wrong = sample();
  wrong.width = wrong.height = 0x7FFFFFFF;
  wrong.stride = std::size_t{4} * 0x7FFFFFFF;
  EXPECT_THAT(outcome(wrong), StartsWith("7 ")) << "refused before it is read";
  EXPECT_THAT(Outcome(kestrel_create_picture(nullptr, &picture.handle)), StartsWith("5 "));
  const kestrel_pixels right = sample();
  EXPECT_THAT(Outcome(kestrel_create_picture(&right, nullptr)), StartsWith("5 "));
  EXPECT_EQ(picture.handle, nullptr);
}

}  // namespace
}  // namespace kestrel::ctest
