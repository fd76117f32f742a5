#include "../TestPictures.h"

namespace kestrel::engine {
namespace {

using test::Builder;

struct Form {
  int type;
  int bits;
  int flags = 0x20;
  std::uint32_t width = 2, height = 2;
  int mapCount = 0, mapBits = 0, mapFirst = 0;
};

std::vector<std::uint8_t> tgaFile(const Form& f, std::initializer_list<int> tail) {
  Builder b;
  b.u8({3, f.mapCount > 0 ? 1 : 0, f.type}).le16(static_cast<std::uint32_t>(f.mapFirst));
  b.le16(static_cast<std::uint32_t>(f.mapCount)).u8({f.mapBits}).le32(0).le16(f.width).le16(f.height);
  b.u8({f.bits, f.flags}).text("abc").u8(tail);
  return b.bytes;
}

constexpr Pixel kRed{255, 0, 0, 255}, kGreen{0, 255, 0, 255}, kBlue{0, 0, 255, 255},
    kWhite{255, 255, 255, 255};

void expectPixels(const Bitmap& bitmap, const std::vector<Pixel>& pixels) {
  ASSERT_EQ(static_cast<std::size_t>(bitmap.width() * bitmap.height()), pixels.size());
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    const auto x = static_cast<int>(i) % bitmap.width(), y = static_cast<int>(i) / bitmap.width();
    EXPECT_EQ(bitmap.at(x, y), pixels[i]) << x << ", " << y << ": " << test::text(bitmap.at(x, y));
  }
}

TEST(Tga, Reads24BitsFromEachCorner) {
  const auto file = [](int flags) {
    return tgaFile({2, 24, flags}, {0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255});
  };
  expectPixels(decode(file(0x20)).bitmap, {kRed, kGreen, kBlue, kWhite});
  expectPixels(decode(file(0x00)).bitmap, {kBlue, kWhite, kRed, kGreen});
  expectPixels(decode(file(0x30)).bitmap, {kGreen, kRed, kWhite, kBlue});
  expectPixels(decode(file(0x10)).bitmap, {kWhite, kBlue, kGreen, kRed});
}

TEST(Tga, Reads15And16Bits) {
  const auto deep = tgaFile({2, 16, 0x21, 2, 1}, {0x00, 0xFC, 0xE0, 0x03});
  expectPixels(decode(deep).bitmap, {kRed, {0, 255, 0, 0}});
  const auto plain = tgaFile({2, 15, 0x20, 2, 1}, {0x00, 0x7C, 0xE0, 0x03});
  expectPixels(decode(plain).bitmap, {kRed, kGreen});
}

TEST(Tga, Reads32BitsWithAlphaUnlessAllAlphaIsZero) {
  expectPixels(decode(tgaFile({2, 32, 0x28, 2, 1}, {1, 2, 3, 4, 5, 6, 7, 0})).bitmap,
               {{3, 2, 1, 4}, {7, 6, 5, 0}});
  expectPixels(decode(tgaFile({2, 32, 0x20, 2, 1}, {1, 2, 3, 0, 5, 6, 7, 0})).bitmap,
               {{3, 2, 1, 255}, {7, 6, 5, 255}});
}

TEST(Tga, ReadsGrayAndPalettes) {
  expectPixels(decode(tgaFile({3, 8}, {1, 2, 3, 4})).bitmap,
               {{1, 1, 1, 255}, {2, 2, 2, 255}, {3, 3, 3, 255}, {4, 4, 4, 255}});
  const auto mapped = tgaFile({1, 8, 0x20, 2, 1, 2, 24, 10}, {0, 0, 255, 0, 255, 0, 11, 10});
  expectPixels(decode(mapped).bitmap, {kGreen, kRed});
}

TEST(Tga, ReadsRunsThatContinueInTheNextRow) {
  const auto bytes = tgaFile({10, 24}, {0x82, 0, 0, 255, 0x00, 255, 0, 0});
  expectPixels(decode(bytes).bitmap, {kRed, kRed, kRed, kBlue});
}

TEST(Tga, AFullyTransparentPictureRoundTrips) {
  const Bitmap clear = Bitmap::filled(5, 5, {10, 20, 30, 0});
  EXPECT_TRUE(test::isPicture(decode(encode(clear, {}, format::kTga)).bitmap, clear));
}

TEST(Tga, LongRunsAndLiteralsRoundTrip) {
  const Bitmap picture = test::pictureOf(700, 3, [](int x, int y) {
    const int v = x < 300 ? 7 : x < 600 ? x : x / 2;
    return Pixel{static_cast<std::uint8_t>(v), static_cast<std::uint8_t>(y), 0, 255};
  });
  EXPECT_TRUE(test::isPicture(decode(encode(picture, {}, format::kTga)).bitmap, picture));
}

TEST(Tga, ATruncatedFileShowsTheRowsThatItHolds) {
  const auto bytes = tgaFile({2, 24}, {0, 0, 255, 0, 255, 0, 255});
  const Decoded decoded = decode(bytes);
  EXPECT_EQ(decoded.notice, "The file is damaged or truncated: only 1 of 2 rows could be read.");
  EXPECT_EQ(decoded.bitmap.at(0, 0), kRed);
  EXPECT_EQ(decoded.bitmap.at(1, 1), (Pixel{0, 0, 0, 0}));
  EXPECT_EQ(test::errorOf([] { decode(tgaFile({2, 24}, {0, 0, 255})); }), 481);
}

}  // namespace
}  // namespace kestrel::engine
