#include <cstring>
#include <string_view>

#include "../TestPictures.h"

namespace kestrel::engine {
namespace {

using test::Builder;
using test::errorOf;

constexpr Pixel kBlack{0, 0, 0, 255}, kWhite{255, 255, 255, 255}, kNothing{0, 0, 0, 0};

TEST(Wbmp, ReadsRowsOfBits) {
  const auto bytes = Builder().u8({0, 0, 10, 2, 0b10000000, 0b01000000, 0, 0}).bytes;
  const Decoded decoded = decode(bytes);
  EXPECT_EQ(decoded.format, 10);
  EXPECT_EQ(decoded.bitmap.at(0, 0), kWhite);
  EXPECT_EQ(decoded.bitmap.at(1, 0), kBlack);
  EXPECT_EQ(decoded.bitmap.at(9, 0), kWhite);
  EXPECT_EQ(decoded.bitmap.at(9, 1), kBlack);
  EXPECT_EQ(decoded.stored.bitsPerSample, 1);
}

TEST(Wbmp, BlackAndWhiteRoundTripsExactlyAtAnyWidth) {
  for (const int width : {1, 7, 8, 9, 127, 128, 129, 20'000}) {
    const Bitmap picture =
        test::pictureOf(width, 3, [](int x, int y) { return (x * x + y) % 3 == 0 ? kBlack : kWhite; });
    EXPECT_TRUE(test::isPicture(decode(encode(picture, {}, format::kWbmp)).bitmap, picture)) << width;
  }
}

TEST(Wbmp, GrayIsDitheredToItsShareOfWhite) {
  for (const int level : {0, 64, 128, 191, 255}) {
    const auto v = static_cast<std::uint8_t>(level);
    const Bitmap read = decode(encode(Bitmap::filled(100, 100, {v, v, v, 255}), {}, format::kWbmp)).bitmap;
    int white = 0;
    for (int y = 0; y < 100; ++y) {
      for (int x = 0; x < 100; ++x) white += read.at(x, y) == kWhite ? 1 : 0;
    }
    EXPECT_NEAR(white, level * 10'000 / 255, 100) << level;
  }
}

TEST(Wbmp, TransparencyIsFlattenedOnWhite) {
  const Bitmap clear = Bitmap::filled(9, 9, kNothing);
  EXPECT_TRUE(test::isPicture(decode(encode(clear, {}, format::kWbmp)).bitmap, Bitmap::filled(9, 9, kWhite)));
}

/// A Photo CD image pack whose 192 x 128 picture has one color, with the orientation `turn` in its header.
std::vector<std::uint8_t> photoCd(int turn, int luma, int chroma1, int chroma2, std::size_t size) {
  std::vector<std::uint8_t> bytes(size, std::uint8_t{0});
  constexpr std::string_view kMark = "PCD_IPI";
  for (std::size_t i = 0; i < kMark.size(); ++i) bytes.at(0x800 + i) = static_cast<std::uint8_t>(kMark[i]);
  bytes.at(0xE02) = static_cast<std::uint8_t>(turn);
  for (std::size_t at = 0x2000; at + 192 * 3 <= 0x2000 + 192 * 3 * 64 && at + 192 * 3 <= size;
       at += 192 * 3) {
    std::memset(bytes.data() + at, luma, 384);
    std::memset(bytes.data() + at + 384, chroma1, 96);
    std::memset(bytes.data() + at + 480, chroma2, 96);
  }
  return bytes;
}

constexpr std::size_t kSmallestPack = 0x2000 + 192 * 128 * 3 / 2;

TEST(PhotoCd, ReadsTheLargestUncompressedPicture) {
  const auto sizeOf = [](std::size_t bytes) {
    const Bitmap bitmap = decode(photoCd(0, 100, 156, 137, bytes)).bitmap;
    return std::pair{bitmap.width(), bitmap.height()};
  };
  EXPECT_EQ(sizeOf(kSmallestPack), std::pair(192, 128));
  EXPECT_EQ(sizeOf(0xB800 + 384 * 256 * 3 / 2), std::pair(384, 256));
  EXPECT_EQ(sizeOf(0x30000 + 768 * 512 * 3 / 2), std::pair(768, 512));
}

TEST(PhotoCd, ConvertsItsColors) {
  const Decoded decoded = decode(photoCd(0, 100, 156, 137, kSmallestPack));
  EXPECT_EQ(decoded.format, 13);
  EXPECT_EQ(decoded.bitmap.at(50, 50), (Pixel{136, 136, 136, 255}));
  const Pixel red = decode(photoCd(0, 60, 130, 200, kSmallestPack)).bitmap.at(50, 50);
  EXPECT_EQ(red, (Pixel{196, 34, 24, 255}));
}

TEST(PhotoCd, TurnsThePictureUpright) {
  for (const auto& [turn, width] : {std::pair{0, 192}, {1, 128}, {2, 192}, {3, 128}}) {
    EXPECT_EQ(decode(photoCd(turn, 100, 156, 137, kSmallestPack)).bitmap.width(), width) << turn;
  }
}

TEST(PhotoCd, CannotBeWritten) {
  std::string reason;
  EXPECT_EQ(errorOf([] { encode(test::gradient(4, 4), {}, format::kPcd); }, &reason), 5);
  EXPECT_EQ(reason, "Photo CD files can be read, not written.");
}

TEST(Tla, RoundTripsExactly) {
  for (const auto& [width, height] : {std::pair{1, 1}, {3, 1000}, {70'000, 2}, {500, 400}}) {
    for (const Bitmap& picture :
         {test::noise(width, height, false), test::noise(width, height, true), test::gradient(width, height),
          Bitmap::filled(width, height, {0, 0, 0, 0}), Bitmap::filled(width, height, {9, 8, 7, 255})}) {
      EXPECT_TRUE(test::isPicture(decode(encode(picture, {}, format::kTla)).bitmap, picture)) << width;
    }
  }
}

TEST(Tla, FlatAreasTakeFewBytes) {
  EXPECT_LT(encode(Bitmap::filled(1000, 1000, {1, 2, 3, 4}), {}, format::kTla).size(), 17'000U);
}

TEST(Tla, AnyChangedByteIsDetectedAndLosesAtMostABand) {
  const Bitmap picture = test::gradient(300, 500);
  const auto whole = encode(picture, {}, format::kTla);
  std::mt19937 random(3);
  for (int round = 0; round < 200; ++round) {
    auto changed = whole;
    const std::size_t at = 60 + random() % (whole.size() - 60 - 24);
    changed[at] = static_cast<std::uint8_t>(changed[at] ^ (1 + random() % 255));
    try {
      const Decoded decoded = decode(changed);
      EXPECT_FALSE(decoded.notice.empty()) << at;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.Number(), 481) << at;
    }
  }
}

TEST(Tla, ATruncatedFileShowsTheBandsThatItHolds) {
  const Bitmap picture = test::noise(300, 500, false);
  const auto whole = encode(picture, {}, format::kTla);
  const Decoded decoded = decode(Bytes(whole).first(whole.size() / 2));
  EXPECT_FALSE(decoded.notice.empty());
  EXPECT_EQ(decoded.bitmap.at(7, 7), picture.at(7, 7));
  EXPECT_EQ(decoded.bitmap.at(7, 499), kNothing);
}

}  // namespace
}  // namespace kestrel::engine
