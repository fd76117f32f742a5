#include <set>

#include "../TestPictures.h"

namespace kestrel::engine {
namespace {

using test::Builder;
using test::errorOf;

struct Form {
  int screenWidth, screenHeight;
  int left, top, width, height;
  bool interlaced = false;
  int transparent = -1;
  bool ownPalette = false;
};

/// Palette indices 0 to 3 packed by hand: with a clear code before each index all codes keep 3 bits.
void putIndices(Builder& b, const std::vector<int>& indices) {
  constexpr int kClear = 4, kEnd = 5;
  std::vector<int> codes;
  for (const int index : indices) {
    codes.push_back(kClear);
    codes.push_back(index);
  }
  codes.push_back(kEnd);
  std::vector<std::uint8_t> bytes;
  unsigned window = 0;
  int held = 0;
  for (const int code : codes) {
    window |= static_cast<unsigned>(code) << held;
    held += 3;
    while (held >= 8) {
      bytes.push_back(static_cast<std::uint8_t>(window & 255));
      window >>= 8;
      held -= 8;
    }
  }
  bytes.push_back(static_cast<std::uint8_t>(window & 255));
  b.u8({2});
  for (std::size_t at = 0; at < bytes.size(); at += 255) {
    const std::size_t size = std::min<std::size_t>(255, bytes.size() - at);
    b.u8({static_cast<int>(size)});
    b.bytes.insert(b.bytes.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at),
                   bytes.begin() + static_cast<std::ptrdiff_t>(at + size));
  }
  b.u8({0});
}

constexpr Pixel kBlack{0, 0, 0, 255}, kRed{255, 0, 0, 255}, kGreen{0, 255, 0, 255}, kBlue{0, 0, 255, 255},
    kNothing{0, 0, 0, 0};

std::vector<std::uint8_t> gifFile(const Form& f, const std::vector<int>& indices) {
  const auto u16 = [](int v) { return static_cast<std::uint32_t>(v); };
  Builder b;
  b.text("GIF89a").le16(u16(f.screenWidth)).le16(u16(f.screenHeight)).u8({0x81, 0, 0});
  b.u8({0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255});  // black, red, green, blue
  b.u8({0x21, 0xFE, 5}).text("hello").u8({0});       // a comment
  if (f.transparent >= 0) b.u8({0x21, 0xF9, 4, 1, 0, 0, f.transparent, 0});
  b.u8({0x2C}).le16(u16(f.left)).le16(u16(f.top)).le16(u16(f.width)).le16(u16(f.height));
  b.u8({(f.interlaced ? 0x40 : 0) | (f.ownPalette ? 0x81 : 0)});
  if (f.ownPalette) b.u8({0, 0, 255, 0, 255, 0, 255, 0, 0, 0, 0, 0});  // blue, green, red, black
  putIndices(b, indices);
  b.u8({0x3B});
  return b.bytes;
}

TEST(Gif, ReadsAFrame) {
  const Bitmap bitmap = decode(gifFile({2, 2, 0, 0, 2, 2}, {0, 1, 2, 3})).bitmap;
  EXPECT_EQ(bitmap.at(0, 0), kBlack);
  EXPECT_EQ(bitmap.at(1, 0), kRed);
  EXPECT_EQ(bitmap.at(0, 1), kGreen);
  EXPECT_EQ(bitmap.at(1, 1), kBlue);
}

TEST(Gif, AFramesLocalPaletteOverridesTheGlobalOne) {
  EXPECT_EQ(decode(gifFile({1, 1, 0, 0, 1, 1, false, -1, true}, {0})).bitmap.at(0, 0), kBlue);
}

TEST(Gif, TheTransparentIndexIsTransparent) {
  const Decoded decoded = decode(gifFile({2, 1, 0, 0, 2, 1, false, 1}, {1, 2}));
  EXPECT_EQ(decoded.bitmap.at(0, 0).a, 0);
  EXPECT_EQ(decoded.bitmap.at(1, 0), kGreen);
  EXPECT_TRUE(decoded.stored.hasAlpha);
}

TEST(Gif, ASmallFrameIsPlacedOnATransparentScreen) {
  const Bitmap bitmap = decode(gifFile({5, 4, 2, 1, 1, 1}, {1})).bitmap;
  EXPECT_EQ(bitmap.width(), 5);
  EXPECT_EQ(bitmap.height(), 4);
  EXPECT_EQ(bitmap.at(2, 1), kRed);
  EXPECT_EQ(bitmap.at(0, 0), kNothing);
}

TEST(Gif, AFrameBeyondTheScreenEnlargesTheScreen) {
  const Bitmap bitmap = decode(gifFile({0, 0, 3, 2, 1, 1}, {1})).bitmap;
  EXPECT_EQ(bitmap.width(), 4);
  EXPECT_EQ(bitmap.height(), 3);
}

TEST(Gif, ReadsInterlacedRows) {
  // Stored: rows 0 8, 4, 2 6, 1 3 5 7 9; the color is the row modulo 4.
  const Bitmap bitmap = decode(gifFile({1, 10, 0, 0, 1, 10, true}, {0, 0, 0, 2, 2, 1, 3, 1, 3, 1})).bitmap;
  constexpr Pixel kColors[] = {kBlack, kRed, kGreen, kBlue};
  for (int y = 0; y < 10; ++y) EXPECT_EQ(bitmap.at(0, y), kColors[y % 4]) << y;
}

TEST(Gif, TheFirstOfSeveralFramesIsShown) {
  auto bytes = gifFile({1, 1, 0, 0, 1, 1}, {1});
  bytes.pop_back();
  const auto second = gifFile({1, 1, 0, 0, 1, 1}, {2});
  bytes.insert(bytes.end(), second.begin() + 34, second.end());
  const Decoded decoded = decode(bytes);
  EXPECT_EQ(decoded.bitmap.at(0, 0), kRed);
  EXPECT_EQ(decoded.stored.pages, 2);
  EXPECT_EQ(decode(Bytes(bytes).first(bytes.size() - 4)).stored.pages, 2) << "the second was begun";
  EXPECT_EQ(decode(gifFile({1, 1, 0, 0, 1, 1}, {1})).stored.pages, 1);
}

TEST(Gif, CommentsAreKept) {
  EXPECT_EQ(decode(gifFile({1, 1, 0, 0, 1, 1}, {1})).metadata.comment, "hello");
  Metadata metadata;
  metadata.comment = std::string(600, 'x') + "end";
  const auto saved = encode(Bitmap::filled(3, 3, kRed), metadata, format::kGif);
  EXPECT_EQ(decode(saved).metadata.comment, metadata.comment);
  EXPECT_EQ(decode(saved).stored.pages, 1);
}

TEST(Gif, UpTo256ColorsAreKeptExactly) {
  const Bitmap picture = test::pictureOf(16, 16, [](int x, int y) {
    return Pixel{static_cast<std::uint8_t>(x * 17), static_cast<std::uint8_t>(y * 17), 99, 255};
  });
  EXPECT_TRUE(test::isPicture(decode(encode(picture, {}, format::kGif)).bitmap, picture));
}

TEST(Gif, AlphaIsReducedToOpaqueOrTransparent) {
  const Bitmap picture = test::pictureOf(4, 1, [](int x, int) {
    return Pixel{0, 0, 0, static_cast<std::uint8_t>(x == 0 ? 0 : x == 1 ? 127 : x == 2 ? 128 : 255)};
  });
  const Bitmap read = decode(encode(picture, {}, format::kGif)).bitmap;
  EXPECT_EQ(read.at(0, 0).a, 0);
  EXPECT_EQ(read.at(1, 0).a, 0);
  EXPECT_EQ(read.at(2, 0), (Pixel{127, 127, 127, 255}));
  EXPECT_EQ(read.at(3, 0), (Pixel{0, 0, 0, 255}));
}

TEST(Gif, ManyColorsAreDitheredSoThatAreasKeepTheirColor) {
  const Bitmap picture = test::gradient(256, 256);
  const Bitmap read = decode(encode(picture, {}, format::kGif)).bitmap;
  std::set<std::uint32_t> colors;
  double worst = 0;
  for (int by = 0; by < 256; by += 16) {
    for (int bx = 0; bx < 256; bx += 16) {
      double sums[3] = {};
      for (int y = by; y < by + 16; ++y) {
        for (int x = bx; x < bx + 16; ++x) {
          const Pixel a = read.at(x, y), b = picture.at(x, y);
          colors.insert(static_cast<std::uint32_t>(a.r << 16 | a.g << 8 | a.b));
          sums[0] += a.r - b.r;
          sums[1] += a.g - b.g;
          sums[2] += a.b - b.b;
        }
      }
      for (const double sum : sums) worst = std::max(worst, std::abs(sum) / 256);
    }
  }
  EXPECT_LE(colors.size(), 256U);
  EXPECT_GT(colors.size(), 200U);
  EXPECT_LT(worst, 6) << "mean error of the worst 16 x 16 block";
}

TEST(Gif, ATruncatedFileShowsTheRowsThatItHolds) {
  const Bitmap picture = test::noise(40, 40, true);
  const auto whole = encode(picture, {}, format::kGif);
  const Bitmap all = decode(whole).bitmap;
  const Decoded decoded = decode(Bytes(whole).first(whole.size() * 2 / 3));
  EXPECT_NE(decoded.notice.find(" of 40 rows could be read."), std::string::npos) << decoded.notice;
  EXPECT_EQ(decoded.bitmap.at(7, 3), all.at(7, 3));
  EXPECT_EQ(decoded.bitmap.at(7, 39), kNothing);
}

TEST(Gif, FilesWithoutARowAreRefused) {
  const auto whole = gifFile({2, 2, 0, 0, 2, 2}, {0, 1, 2, 3});
  EXPECT_EQ(errorOf([&] { decode(Bytes(whole).first(10)); }), 481);
  EXPECT_EQ(errorOf([&] { decode(Bytes(whole).first(whole.size() - 9)); }), 481);
  EXPECT_EQ(errorOf([] { decode(gifFile({2, 2, 0, 0, 0, 2}, {})); }), 481);
  EXPECT_EQ(errorOf([] { decode(gifFile({60'000, 60'000, 0, 0, 60'000, 60'000}, {1})); }), 7);
  EXPECT_EQ(errorOf([] { decode(gifFile({30'000, 30'000, 0, 0, 30'000, 30'000}, {1})); }), 481);
}

}  // namespace
}  // namespace kestrel::engine
