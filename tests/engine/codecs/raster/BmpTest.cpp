#include "../TestPictures.h"

namespace kestrel::engine {
namespace {

using test::Builder;
using test::errorOf;

constexpr Pixel kRed{255, 0, 0, 255}, kGreen{0, 255, 0, 255}, kBlue{0, 0, 255, 255},
    kWhite{255, 255, 255, 255}, kBlack{0, 0, 0, 255}, kNothing{0, 0, 0, 0};

struct Form {
  std::uint32_t bits;
  std::uint32_t compression = 0;
  std::int32_t width = 2, height = 2;
  std::uint32_t colors = 0;
};

/// A file with the 40-byte header, followed by `tail`; the pixels begin at offset `pixelsAt` of the tail.
std::vector<std::uint8_t> windowsFile(const Form& form, const Builder& tail, std::size_t pixelsAt = 0) {
  Builder b;
  b.text("BM").le32(static_cast<std::uint32_t>(54 + tail.bytes.size())).le32(0);
  b.le32(static_cast<std::uint32_t>(54 + pixelsAt)).le32(40);
  b.le32(static_cast<std::uint32_t>(form.width))
      .le32(static_cast<std::uint32_t>(form.height))
      .le16(1)
      .le16(form.bits);
  b.le32(form.compression).le32(0).le32(11811).le32(5906).le32(form.colors).le32(0);
  b.bytes.insert(b.bytes.end(), tail.bytes.begin(), tail.bytes.end());
  return b.bytes;
}

void expectRows(const Bitmap& bitmap, const std::vector<std::vector<Pixel>>& rows) {
  ASSERT_EQ(bitmap.height(), static_cast<int>(rows.size()));
  for (int y = 0; y < bitmap.height(); ++y) {
    ASSERT_EQ(bitmap.width(), static_cast<int>(rows[static_cast<std::size_t>(y)].size()));
    for (int x = 0; x < bitmap.width(); ++x) {
      const Pixel& wanted = rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
      EXPECT_EQ(bitmap.at(x, y), wanted) << x << ", " << y << ": " << test::text(bitmap.at(x, y));
    }
  }
}

Builder fourColors() {
  return Builder().u8({0, 0, 0, 0, 0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 0});  // black, red, green, blue
}

TEST(Bmp, Reads1Bit) {
  Builder tail = Builder().u8({255, 255, 255, 0, 0, 0, 255, 0});  // white, red
  tail.u8({0b01000000, 0, 0, 0, 0b10000000, 0, 0, 0});
  expectRows(decode(windowsFile({1}, tail, 8)).bitmap, {{kRed, kWhite}, {kWhite, kRed}});
}

TEST(Bmp, Reads2And4And8Bits) {
  Builder two = fourColors().u8({0b00011011, 0, 0, 0});
  expectRows(decode(windowsFile({2, 0, 4, 1, 4}, two, 16)).bitmap, {{kBlack, kRed, kGreen, kBlue}});
  Builder four = fourColors().u8({0x12, 0x30, 0, 0});
  expectRows(decode(windowsFile({4, 0, 3, 1, 4}, four, 16)).bitmap, {{kRed, kGreen, kBlue}});
  Builder eight = fourColors().u8({3, 2, 1, 0});
  expectRows(decode(windowsFile({8, 0, 3, 1, 4}, eight, 16)).bitmap, {{kBlue, kGreen, kRed}});
}

TEST(Bmp, IndicesBeyondThePaletteAreBlack) {
  Builder tail = fourColors().u8({1, 200, 0, 0});
  expectRows(decode(windowsFile({8, 0, 2, 1, 4}, tail, 16)).bitmap, {{kRed, kBlack}});
}

TEST(Bmp, Reads24BitsBottomUpAndTopDown) {
  Builder tail = Builder().u8({0, 0, 255, 0, 255, 0, 0, 0}).u8({255, 0, 0, 255, 255, 255, 0, 0});
  expectRows(decode(windowsFile({24}, tail)).bitmap, {{kBlue, kWhite}, {kRed, kGreen}});
  expectRows(decode(windowsFile({24, 0, 2, -2}, tail)).bitmap, {{kRed, kGreen}, {kBlue, kWhite}});
}

TEST(Bmp, Reads16BitsWithAndWithoutMasks) {
  Builder plain = Builder().le16(0x7C00).le16(0x03E0);
  expectRows(decode(windowsFile({16, 0, 2, 1}, plain)).bitmap, {{kRed, kGreen}});
  Builder masked = Builder().le32(0xF800).le32(0x07E0).le32(0x001F).le16(0x07E0).le16(0x001F);
  expectRows(decode(windowsFile({16, 3, 2, 1}, masked, 12)).bitmap, {{kGreen, kBlue}});
}

TEST(Bmp, Reads32BitsWithAndWithoutMasks) {
  Builder plain = Builder().u8({0, 0, 255, 0, 255, 0, 0, 77});
  expectRows(decode(windowsFile({32, 0, 2, 1}, plain)).bitmap, {{kRed, kBlue}});
  Builder masked = Builder().le32(0xFF).le32(0xFF00).le32(0xFF0000).u8({1, 2, 3, 0, 4, 5, 6, 0});
  expectRows(decode(windowsFile({32, 3, 2, 1}, masked, 12)).bitmap,
             {{Pixel{1, 2, 3, 255}, Pixel{4, 5, 6, 255}}});
  Builder tenBits = Builder().le32(0x3FF00000).le32(0xFFC00).le32(0x3FF).le32(0x3FF00000).le32(0x200);
  expectRows(decode(windowsFile({32, 3, 2, 1}, tenBits, 12)).bitmap, {{kRed, Pixel{0, 0, 128, 255}}});
}

TEST(Bmp, AlphaMasksGiveTransparencyUnlessAllAlphaIsZero) {
  Builder head = Builder().le32(0xFF0000).le32(0xFF00).le32(0xFF).le32(0xFF000000);
  Builder some = head, none = head;
  some.u8({0, 0, 255, 128, 0, 255, 0, 0});
  none.u8({0, 0, 255, 0, 0, 255, 0, 0});
  expectRows(decode(windowsFile({32, 6, 2, 1}, some, 16)).bitmap,
             {{Pixel{255, 0, 0, 128}, Pixel{0, 255, 0, 0}}});
  expectRows(decode(windowsFile({32, 6, 2, 1}, none, 16)).bitmap, {{kRed, kGreen}});
}

TEST(Bmp, ReadsClipboardBitmapsWithoutAFileHeader) {
  const auto bare = [](const Form& form, const Builder& tail, std::size_t pixelsAt) {
    auto file = windowsFile(form, tail, pixelsAt);
    file.erase(file.begin(), file.begin() + 14);
    const Decoded decoded = decode(file);
    EXPECT_EQ(decoded.format, format::kBmp);
    EXPECT_EQ(decoded.notice, "");
    return decoded.bitmap;
  };
  Builder one = Builder().u8({255, 255, 255, 0, 0, 0, 255, 0}).u8({0b01000000, 0, 0, 0});
  expectRows(bare({1, 0, 2, 1}, one, 8), {{kWhite, kRed}});
  Builder eight = fourColors().u8({3, 1, 0, 0});
  expectRows(bare({8, 0, 2, 1, 4}, eight, 16), {{kBlue, kRed}});
  Builder masked = Builder().le32(0xF800).le32(0x07E0).le32(0x001F).le16(0x07E0).le16(0x001F);
  expectRows(bare({16, 3, 2, 1}, masked, 12), {{kGreen, kBlue}});
  Builder direct = Builder().u8({0, 0, 255, 255, 0, 0, 0, 0});
  expectRows(bare({24, 0, 2, 1}, direct, 0), {{kRed, kBlue}});
  Builder alpha = Builder().u8({0, 0, 255, 0, 255, 0, 0, 77});
  expectRows(bare({32, 0, 2, 1}, alpha, 0), {{kRed, kBlue}});
}

TEST(Bmp, ReadsOs2Headers) {
  Builder core;
  core.text("BM").le32(0).le32(0).le32(32).le32(12).le16(2).le16(1).le16(1).le16(1);
  core.u8({255, 0, 0, 0, 255, 0});  // blue, green: three bytes each
  core.u8({0b01000000, 0, 0, 0});
  expectRows(decode(core.bytes).bitmap, {{kBlue, kGreen}});

  Builder second;
  second.text("BM").le32(0).le32(0).le32(78).le32(64).le32(2).le32(1).le16(1).le16(24);
  second.fillTo(78).u8({0, 0, 255, 0, 255, 0, 0, 0});
  expectRows(decode(second.bytes).bitmap, {{kRed, kGreen}});
}

TEST(Bmp, ReadsRunLengthsOf8Bits) {
  Builder tail = fourColors();
  tail.u8({3, 1, 0, 0});              // the lowest row: three red, the rest left out
  tail.u8({0, 3, 1, 2, 3, 0, 0, 0});  // literally red, green, blue, padded; end of line
  tail.u8({0, 2, 2, 0, 1, 3, 0, 1});  // two to the right, then blue, end
  expectRows(
      decode(windowsFile({8, 1, 4, 3, 4}, tail, 16)).bitmap,
      {{kNothing, kNothing, kBlue, kNothing}, {kRed, kGreen, kBlue, kNothing}, {kRed, kRed, kRed, kNothing}});
}

TEST(Bmp, ReadsRunLengthsOf4Bits) {
  Builder tail = fourColors();
  tail.u8({5, 0x12, 0, 0});              // red and green by turns
  tail.u8({0, 5, 0x12, 0x31, 0x20, 0});  // literally five, padded to an even count of bytes
  tail.u8({0, 1});
  expectRows(decode(windowsFile({4, 2, 5, 2, 4}, tail, 16)).bitmap,
             {{kRed, kGreen, kBlue, kRed, kGreen}, {kRed, kGreen, kRed, kGreen, kRed}});
}

TEST(Bmp, RunsBeyondThePictureAreClippedWithANotice) {
  Builder tail = fourColors().u8({200, 1, 0, 0, 200, 2, 0, 0, 200, 3, 0, 1});
  const Decoded decoded = decode(windowsFile({8, 1, 2, 2, 4}, tail, 16));
  expectRows(decoded.bitmap, {{kGreen, kGreen}, {kRed, kRed}});
  EXPECT_FALSE(decoded.notice.empty());
}

TEST(Bmp, ReadsItsResolution) {
  Builder tail = Builder().fill(8);
  const Metadata metadata = decode(windowsFile({24, 0, 2, 1}, tail)).metadata;
  EXPECT_NEAR(metadata.resolutionX, 300, 0.1);
  EXPECT_NEAR(metadata.resolutionY, 150, 0.1);
}

TEST(Bmp, ATruncatedFileShowsTheLowerRowsThatItHolds) {
  const auto whole = encode(test::noise(10, 20, true), {}, format::kBmp);
  const Decoded decoded = decode(Bytes(whole).first(54 + 32 * 5 + 3));
  EXPECT_EQ(decoded.notice, "The file is damaged or truncated: only the lower 5 of 20 rows could be read.");
  const Bitmap all = test::noise(10, 20, true);
  EXPECT_EQ(decoded.bitmap.at(3, 19), all.at(3, 19));
  EXPECT_EQ(decoded.bitmap.at(3, 15), all.at(3, 15));
  EXPECT_EQ(decoded.bitmap.at(3, 14), kNothing);
  EXPECT_EQ(errorOf([&] { decode(Bytes(whole).first(60)); }), 481);
}

TEST(Bmp, InvalidHeadersAreRefused) {
  const Builder tail = Builder().fill(64);
  EXPECT_EQ(errorOf([&] { decode(windowsFile({24, 0, 0, 2}, tail)); }), 481);
  EXPECT_EQ(errorOf([&] { decode(windowsFile({24, 0, -2, 2}, tail)); }), 481);
  EXPECT_EQ(errorOf([&] { decode(windowsFile({24, 0, 2, INT32_MIN}, tail)); }), 7);
  EXPECT_EQ(errorOf([&] { decode(windowsFile({24, 0, 65'536, 65'536}, tail)); }), 7);
  EXPECT_EQ(errorOf([&] { decode(windowsFile({24, 0, 20'000, 20'000}, tail)); }), 481);
  EXPECT_EQ(errorOf([&] { decode(windowsFile({7}, tail)); }), 481);
  EXPECT_EQ(errorOf([&] { decode(windowsFile({24, 99}, tail)); }), 481);
  EXPECT_EQ(errorOf([&] { decode(windowsFile({24, 1}, tail)); }), 481);
}

TEST(Bmp, OpaquePicturesAreSavedWith24BitsAndOthersWith32) {
  const auto opaque = encode(test::noise(3, 3, true), {}, format::kBmp);
  const auto seeThrough = encode(test::noise(3, 3, false), {}, format::kBmp);
  EXPECT_EQ(opaque[28], 24);
  EXPECT_EQ(opaque[14], 40);
  EXPECT_EQ(seeThrough[28], 32);
  EXPECT_EQ(seeThrough[14], 124);
}

}  // namespace
}  // namespace kestrel::engine
