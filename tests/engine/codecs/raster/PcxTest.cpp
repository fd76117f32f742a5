#include "../TestPictures.h"

namespace kestrel::engine {
namespace {

using test::Builder;
using test::errorOf;

struct Form {
  std::uint32_t width = 4, height = 1;
  int bits = 8, planes = 1;
  int version = 5;
  std::uint32_t lineBytes = 4;
  bool packed = true;
};

/// A file with the given rows; `colors` are the 16 of the header.
std::vector<std::uint8_t> pcxFile(const Form& f, std::initializer_list<int> rows,
                                  std::initializer_list<int> colors = {}) {
  Builder b;
  b.u8({10, f.version, f.packed ? 1 : 0, f.bits})
      .le16(3)
      .le16(2)
      .le16(3 + f.width - 1)
      .le16(2 + f.height - 1);
  b.le16(300).le16(150).u8(colors).fillTo(64);
  b.u8({0, f.planes}).le16(f.lineBytes).fillTo(128).u8(rows);
  return b.bytes;
}

constexpr Pixel kBlack{0, 0, 0, 255}, kWhite{255, 255, 255, 255}, kRed{255, 0, 0, 255},
    kGreen{0, 255, 0, 255};

void expectRow(const Bitmap& bitmap, std::int32_t y, const std::vector<Pixel>& row) {
  ASSERT_EQ(bitmap.width(), static_cast<int>(row.size()));
  for (int x = 0; x < bitmap.width(); ++x) {
    EXPECT_EQ(bitmap.at(x, y), row[static_cast<std::size_t>(x)]) << x << ": " << test::text(bitmap.at(x, y));
  }
}

TEST(Pcx, Reads1Bit) {
  const auto bytes = pcxFile({.width = 5, .bits = 1, .lineBytes = 2}, {0b01101000, 0});
  expectRow(decode(bytes).bitmap, 0, {kBlack, kWhite, kWhite, kBlack, kWhite});
}

TEST(Pcx, ReadsPlanesOf1Bit) {
  // Four pixels of colors 0, 1, 2 and 4 in three planes.
  const auto bytes =
      pcxFile({.bits = 1, .planes = 3, .lineBytes = 2}, {0b01000000, 0, 0b00100000, 0, 0b00010000, 0},
              {0, 0, 0, 255, 0, 0, 0, 255, 0, 9, 9, 9, 255, 255, 255});
  expectRow(decode(bytes).bitmap, 0, {kBlack, kRed, kGreen, kWhite});
}

TEST(Pcx, Reads2And4Bits) {
  const auto two =
      pcxFile({.bits = 2, .lineBytes = 2}, {0b00011011, 0}, {0, 0, 0, 255, 0, 0, 0, 255, 0, 255, 255, 255});
  expectRow(decode(two).bitmap, 0, {kBlack, kRed, kGreen, kWhite});
  const auto four =
      pcxFile({.bits = 4, .lineBytes = 2}, {0x01, 0x23}, {0, 0, 0, 255, 0, 0, 0, 255, 0, 255, 255, 255});
  expectRow(decode(four).bitmap, 0, {kBlack, kRed, kGreen, kWhite});
}

TEST(Pcx, Reads8BitsWithThePaletteAtTheEnd) {
  Builder b;
  b.bytes = pcxFile({}, {0xC3, 7, 9});  // three times 7, then 9
  b.u8({12}).fill(768);
  b.bytes[b.bytes.size() - 768 + 21] = 255;
  b.bytes[b.bytes.size() - 768 + 28] = 255;
  expectRow(decode(b.bytes).bitmap, 0, {kRed, kRed, kRed, kGreen});
}

TEST(Pcx, Reads8BitsWithoutAPaletteAsGray) {
  expectRow(decode(pcxFile({}, {1, 2, 3, 4})).bitmap, 0,
            {{1, 1, 1, 255}, {2, 2, 2, 255}, {3, 3, 3, 255}, {4, 4, 4, 255}});
}

TEST(Pcx, Reads24BitsInPlanes) {
  const auto bytes = pcxFile({.width = 2, .height = 2, .planes = 3, .lineBytes = 2},
                             {0xC2, 0xFF, 0xC4, 0, 0, 0xC1, 0xFF, 0xC1, 0xFF, 0, 0, 0});
  const Decoded decoded = decode(bytes);
  expectRow(decoded.bitmap, 0, {kRed, kRed});
  expectRow(decoded.bitmap, 1, {{0, 255, 0, 255}, {255, 0, 0, 255}});
  EXPECT_EQ(decoded.metadata.resolutionX, 300);
  EXPECT_EQ(decoded.metadata.resolutionY, 150);
}

TEST(Pcx, ReadsTheFirstPictureOfAContainerAndCountsThem) {
  // The palette of the first page is at the end of that page, not of the file.
  Builder first;
  first.bytes = pcxFile({}, {0xC3, 7, 9});
  first.u8({12}).fill(768);
  first.bytes[first.bytes.size() - 768 + 21] = 255;
  first.bytes[first.bytes.size() - 768 + 28] = 255;
  const auto second = pcxFile({.packed = false}, {1, 200, 3, 255});
  Builder file = Builder().le32(0x3ADE68B1);
  constexpr std::uint32_t kFirst = 16;
  file.le32(kFirst).le32(static_cast<std::uint32_t>(kFirst + first.bytes.size())).le32(0);
  file.bytes.insert(file.bytes.end(), first.bytes.begin(), first.bytes.end());
  file.bytes.insert(file.bytes.end(), second.begin(), second.end());
  const Decoded decoded = decode(file.bytes);
  EXPECT_EQ(decoded.format, format::kPcx);
  EXPECT_EQ(decoded.stored.pages, 2);
  EXPECT_EQ(decoded.notice, "");
  expectRow(decoded.bitmap, 0, {kRed, kRed, kRed, kGreen});
  Builder nothing = Builder().le32(0x3ADE68B1).le32(500).le32(0).fill(20);
  EXPECT_EQ(errorOf([&] { decode(nothing.bytes); }), 481) << "its place lies beyond the file";
}

TEST(Pcx, ReadsUncompressedRows) {
  expectRow(decode(pcxFile({.packed = false}, {1, 200, 3, 255})).bitmap, 0,
            {{1, 1, 1, 255}, {200, 200, 200, 255}, {3, 3, 3, 255}, {255, 255, 255, 255}});
}

TEST(Pcx, SavedPicturesAreFlattenedOnWhite) {
  for (const int width : {1, 2, 3, 64, 301}) {
    const Bitmap picture = test::noise(width, 7, true);
    EXPECT_TRUE(test::isPicture(decode(encode(picture, {}, format::kPcx)).bitmap, picture)) << width;
  }
  const Bitmap clear = Bitmap::filled(3, 3, {0, 0, 0, 0});
  EXPECT_TRUE(test::isPicture(decode(encode(clear, {}, format::kPcx)).bitmap, Bitmap::filled(3, 3, kWhite)));
}

TEST(Pcx, ATruncatedFileShowsTheRowsThatItHolds) {
  const Bitmap picture = test::noise(30, 30, true);
  const auto whole = encode(picture, {}, format::kPcx);
  const Decoded decoded = decode(Bytes(whole).first(whole.size() / 2));
  EXPECT_FALSE(decoded.notice.empty());
  EXPECT_EQ(decoded.bitmap.at(3, 3), picture.at(3, 3));
  EXPECT_EQ(decoded.bitmap.at(3, 29), (Pixel{0, 0, 0, 0}));
}

TEST(Pcx, UnknownVariantsAreRefused) {
  EXPECT_EQ(errorOf([] { decode(pcxFile({.bits = 4, .planes = 4}, {1, 2, 3, 4})); }), 481);
  EXPECT_EQ(errorOf([] { decode(pcxFile({.width = 40}, {1, 2, 3, 4})); }), 481);
}

}  // namespace
}  // namespace kestrel::engine
