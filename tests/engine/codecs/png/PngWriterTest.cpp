#include <new>

#include "FailingAllocator.h"
#include "PngFiles.h"
#include "engine/parallel/Parallel.h"

namespace kestrel::engine {
namespace {

using namespace test;

/// Long runs, repeated patterns, gradients and noise in one picture.
Bitmap everything(std::int32_t width, std::int32_t height, bool opaque) {
  const Bitmap loud = noise(width, height, opaque);
  return pictureOf(width, height, [&](int x, int y) {
    const std::uint8_t alpha = opaque ? std::uint8_t{255} : static_cast<std::uint8_t>(x / 3);
    if (y % 60 < 20) return Pixel{7, 8, 9, alpha};
    if (x % 90 < 30) return loud.at(x, y);
    if (y % 60 < 40) return loud.at(x % 11, y % 13);
    return Pixel{static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y), 0, alpha};
  });
}

TEST(PngWriter, LibpngReadsTheSavedPixelsExactly) {
  for (const int width : {1, 2, 3, 15, 16, 17, 33, 64, 65, 257}) {
    for (const int height : {1, 2, 30}) {
      for (const bool opaque : {true, false}) {
        for (const Bitmap& picture :
             {noise(width, height, opaque), everything(width, height, opaque),
              Bitmap::filled(width, height, {9, 9, 9, opaque ? std::uint8_t{255} : std::uint8_t{0}})}) {
          ASSERT_EQ(readByLibpng(encode(picture, {}, format::kPng)), rgbaOf(picture))
              << width << " x " << height << (opaque ? " opaque" : "");
        }
      }
    }
  }
}

TEST(PngWriter, APictureOfSeveralBandsIsOneStream) {
  for (const bool opaque : {true, false}) {
    for (const Bitmap& picture :
         {everything(1100, 900, opaque), noise(1100, 700, opaque),
          Bitmap::filled(2000, 2000, {1, 2, 3, opaque ? std::uint8_t{255} : std::uint8_t{4}})}) {
      const File file = encode(picture, {}, format::kPng);
      EXPECT_EQ(readByLibpng(file), rgbaOf(picture));
      EXPECT_TRUE(isPicture(decode(file).bitmap, picture));
    }
  }
}

TEST(PngWriter, TheFileDoesNotDependOnTheNumberOfCores) {
  const Bitmap picture = everything(1500, 1200, false);
  const File byAll = encode(picture, {}, format::kPng);
  File byOne;
  // A nested call runs on one thread.
  forRows(2, 1, [&](std::int32_t first, std::int32_t last) {
    if (first <= 0 && last > 0) byOne = encode(picture, {}, format::kPng);
  });
  EXPECT_EQ(byOne, byAll);
}

TEST(PngWriter, IncompressiblePixelsGrowByAFewBytesOnly) {
  const File file = encode(noise(1000, 1000, false), {}, format::kPng);
  EXPECT_LT(file.size(), 4'001'000U + 2000U);
}

TEST(PngWriter, AFlatPictureTakesFewBytes) {
  EXPECT_LT(encode(Bitmap::filled(2000, 2000, {5, 6, 7, 255}), {}, format::kPng).size(), 20'000U);
}

TEST(PngMemory, RunningOutDuringEncodeOrDecodeIsAnError) {
  const Bitmap picture = everything(300, 200, false);
  const File file = encode(picture, {}, format::kPng);
  const std::function<void()> works[] = {
      [&] { EXPECT_EQ(encode(picture, {}, format::kPng), file); },
      [&] { EXPECT_TRUE(isPicture(decode(file).bitmap, picture)); },
  };
  for (const auto& work : works) {
    int failures = 0;
    for (bool done = false; !done; ++failures) {
      ASSERT_LT(failures, 10'000);
      kestrel::test::failAllocationsAfter(failures);
      try {
        work();
        done = true;
      } catch (const std::bad_alloc&) {
      } catch (const RuntimeError& error) {
        kestrel::test::failAllocationsAfter(-1);
        EXPECT_EQ(error.Number(), err::kOutOfMemory) << error.Description();
      }
      kestrel::test::failAllocationsAfter(-1);
    }
    EXPECT_GT(failures, 3);
  }
}

}  // namespace
}  // namespace kestrel::engine
