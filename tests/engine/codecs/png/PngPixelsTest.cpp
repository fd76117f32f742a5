#include <array>

#include "PngFiles.h"
#include "engine/codecs/png/PngFilter.h"

namespace kestrel::engine {
namespace {

using namespace test;

constexpr int kMixedFilters = 5;
constexpr int kWidths[] = {1, 2, 3, 4, 5, 15, 16, 17, 31, 33, 63, 64, 65, 100};

TEST(PngPixels, EveryFilterAndPixelTypeDecodesAsWithLibpng) {
  const Layout layouts[] = {
      {1, PNG_COLOR_TYPE_GRAY},       {2, PNG_COLOR_TYPE_GRAY},        {4, PNG_COLOR_TYPE_GRAY},
      {8, PNG_COLOR_TYPE_GRAY},       {16, PNG_COLOR_TYPE_GRAY},       {1, PNG_COLOR_TYPE_PALETTE},
      {2, PNG_COLOR_TYPE_PALETTE},    {4, PNG_COLOR_TYPE_PALETTE},     {8, PNG_COLOR_TYPE_PALETTE},
      {8, PNG_COLOR_TYPE_GRAY_ALPHA}, {16, PNG_COLOR_TYPE_GRAY_ALPHA}, {8, PNG_COLOR_TYPE_RGB},
      {16, PNG_COLOR_TYPE_RGB},       {8, PNG_COLOR_TYPE_RGBA},        {16, PNG_COLOR_TYPE_RGBA}};
  for (const Layout& layout : layouts) {
    for (const int width : kWidths) {
      for (const int height : {1, 7}) {
        for (int filter = 0; filter <= kMixedFilters; ++filter) {
          SCOPED_TRACE(std::to_string(layout.type) + " of " + std::to_string(layout.depth) + " bits, " +
                       std::to_string(width) + " wide, filter " + std::to_string(filter));
          const File file = pngFile(width, height, layout, filteredNoise(width, height, layout, filter));
          const auto wanted = readByLibpng(file);
          ASSERT_TRUE(wanted);
          const Decoded decoded = decode(file);
          ASSERT_EQ(rgbaOf(decoded.bitmap), *wanted);
          EXPECT_EQ(decoded.notice, "");
          EXPECT_EQ(decoded.stored.bitsPerSample, layout.depth);
        }
      }
    }
  }
}

TEST(PngPixels, APictureOfManyChunksDecodesAsWithLibpng) {
  for (const Layout& layout : {Layout{8, PNG_COLOR_TYPE_RGB}, Layout{8, PNG_COLOR_TYPE_RGBA},
                               Layout{16, PNG_COLOR_TYPE_RGB}, Layout{8, PNG_COLOR_TYPE_PALETTE}}) {
    const File file = pngFile(1777, 333, layout, filteredNoise(1777, 333, layout, kMixedFilters));
    ASSERT_EQ(rgbaOf(decode(file).bitmap), readByLibpng(file)) << layout.type;
  }
}

/// A row with the zero margins that the filters require.
std::vector<std::uint8_t> marginRow(std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<std::uint8_t> row(png::kRowMargin + count + png::kRowBlock);
  for (std::size_t i = 0; i < count; ++i)
    row[png::kRowMargin + i] = static_cast<std::uint8_t>(seed % 3 == 0 ? random() : random() % 7);
  return row;
}

TEST(PngPixels, EachFilterSubtractsItsPredictor) {
  for (const std::size_t step : {std::size_t{3}, std::size_t{4}}) {
    for (const int width : kWidths) {
      const std::size_t count = static_cast<std::size_t>(width) * step;
      for (unsigned seed = 0; seed < 6; seed += 2) {
        const auto rowBuffer = marginRow(count, seed), aboveBuffer = marginRow(count, seed + 1);
        const std::uint8_t* const row = rowBuffer.data() + png::kRowMargin;
        const std::uint8_t* const above = aboveBuffer.data() + png::kRowMargin;
        std::array<std::uint64_t, png::kFilters> sums{};
        for (int f = 0; f < png::kFilters; ++f) {
          const auto filter = static_cast<png::Filter>(f);
          std::vector<std::uint8_t> got(count + png::kRowBlock), wanted(count + png::kRowBlock);
          png::filterRow(filter, row, above, count, step, got.data());
          for (std::size_t i = 0; i < wanted.size(); ++i) {
            wanted[i] = static_cast<std::uint8_t>(
                row[i] - png::predict(filter, (row - step)[i], above[i], (above - step)[i]));
          }
          ASSERT_TRUE(
              std::equal(got.begin(), got.begin() + static_cast<std::ptrdiff_t>(count), wanted.begin()))
              << "filter " << f << ", " << width << " pixels of " << step;
          const std::size_t blocks = (count + png::kRowBlock - 1) / png::kRowBlock * png::kRowBlock;
          for (std::size_t i = 0; i < blocks; ++i)
            sums[static_cast<std::size_t>(f)] +=
                static_cast<std::uint64_t>(std::abs(static_cast<std::int8_t>(wanted[i])));
        }
        const auto best = static_cast<std::size_t>(png::bestFilter(row, above, count, step));
        EXPECT_EQ(best, static_cast<std::size_t>(std::ranges::min_element(sums) - sums.begin()));
      }
    }
  }
}

/// A small PNG file whose zlib stream is split into IDAT chunks at chosen positions.
class PngDataChunks : public testing::Test {
 protected:
  static constexpr int kSide = 9;
  const Layout layout_{8, PNG_COLOR_TYPE_RGB};
  const File rows_ = filteredNoise(kSide, kSide, layout_, kMixedFilters);
  const File packed_ = packed(rows_);
  const File wanted_ = *readByLibpng(fileOf({packed_}));

  File fileOf(const std::vector<File>& pieces) const {
    File file = pngStart(kSide, kSide, layout_);
    for (const File& piece : pieces) file = joined({file, chunk("IDAT", piece)});
    return joined({file, pngEnd()});
  }
  File firstPart(std::size_t size) const {
    return {packed_.begin(), packed_.begin() + static_cast<std::ptrdiff_t>(size)};
  }
  File rest(std::size_t from) const {
    return {packed_.begin() + static_cast<std::ptrdiff_t>(from), packed_.end()};
  }
};

TEST_F(PngDataChunks, MaySplitTheStreamAnywhere) {
  for (std::size_t cut = 0; cut <= packed_.size(); ++cut) {
    const Decoded decoded = decode(fileOf({firstPart(cut), rest(cut)}));
    ASSERT_EQ(rgbaOf(decoded.bitmap), wanted_) << cut;
    EXPECT_EQ(decoded.notice, "") << cut;
  }
}

TEST_F(PngDataChunks, MayBeOfOneByteOrEmpty) {
  std::vector<File> bytes;
  for (const std::uint8_t byte : packed_) {
    bytes.push_back({byte});
    bytes.push_back({});
  }
  const Decoded decoded = decode(fileOf(bytes));
  EXPECT_EQ(rgbaOf(decoded.bitmap), wanted_);
  EXPECT_EQ(decoded.notice, "");
}

TEST_F(PngDataChunks, MayBeFollowedByOtherBytes) {
  const File surplus{1, 2, 3};
  for (const std::vector<File>& pieces :
       {std::vector<File>{joined({packed_, surplus})}, std::vector<File>{packed_, surplus}}) {
    const Decoded decoded = decode(fileOf(pieces));
    EXPECT_EQ(rgbaOf(decoded.bitmap), wanted_);
    EXPECT_EQ(decoded.notice, "");
  }
}

TEST_F(PngDataChunks, WithMoreThanThePictureGiveThePicture) {
  const File more = joined({rows_, File(std::size_t{50'000'000})});
  const Decoded decoded = decode(fileOf({packed(more)}));
  EXPECT_EQ(rgbaOf(decoded.bitmap), wanted_);
}

TEST_F(PngDataChunks, WithLessThanThePictureGiveTheRowsTheyHold) {
  const auto bytes = static_cast<std::ptrdiff_t>(4 * (layout_.rowBytes(kSide) + 1));
  const Decoded decoded = decode(fileOf({packed(File(rows_.begin(), rows_.begin() + bytes))}));
  EXPECT_EQ(decoded.notice, "The file is damaged or truncated: only 4 of 9 rows could be read.");
  const File got = rgbaOf(decoded.bitmap);
  EXPECT_TRUE(std::equal(got.begin(), got.begin() + 4 * 4 * kSide, wanted_.begin()));
  EXPECT_EQ(decoded.bitmap.at(0, 4), (Pixel{0, 0, 0, 0}));
}

TEST_F(PngDataChunks, WithAnUnknownFilterTypeGiveTheRowsBeforeIt) {
  File rows = rows_;
  rows[3 * (layout_.rowBytes(kSide) + 1)] = 5;
  const Decoded decoded = decode(fileOf({packed(rows)}));
  EXPECT_EQ(decoded.notice, "The file is damaged or truncated: only 3 of 9 rows could be read.");
}

TEST_F(PngDataChunks, WithAWrongStreamChecksumGiveTheRowsAndANotice) {
  File wrong = packed_;
  wrong.back() ^= 1;
  const Decoded decoded = decode(fileOf({wrong}));
  EXPECT_NE(decoded.notice, "");
  const File got = rgbaOf(decoded.bitmap);
  EXPECT_TRUE(std::equal(got.begin(), got.begin() + 4 * kSide * (kSide - 1), wanted_.begin()));
}

TEST_F(PngDataChunks, WithAWrongChunkChecksumAreADecodeError) {
  const std::size_t cut = packed_.size() / 2;
  File second = chunk("IDAT", rest(cut));
  second.back() ^= 1;
  const File start = joined({pngStart(kSide, kSide, layout_), chunk("IDAT", firstPart(cut))});
  const Decoded decoded = decode(joined({start, second, pngEnd()}));
  EXPECT_EQ(decoded.bitmap.at(0, 0), decode(fileOf({packed_})).bitmap.at(0, 0));
  File first = chunk("IDAT", firstPart(cut));
  first.back() ^= 1;
  const Decoded half =
      decode(joined({pngStart(kSide, kSide, layout_), first, chunk("IDAT", rest(cut)), pngEnd()}));
  EXPECT_NE(half.notice, "");
}

TEST_F(PngDataChunks, WithoutAnEndChunkGiveThePicture) {
  File file = fileOf({packed_});
  file.resize(file.size() - pngEnd().size());
  const Decoded decoded = decode(file);
  EXPECT_EQ(rgbaOf(decoded.bitmap), wanted_);
  EXPECT_EQ(decoded.notice, "");
}

TEST_F(PngDataChunks, WhenTruncatedGiveTheRowsAndANotice) {
  const File whole = fileOf({packed_});
  const std::size_t pixelsEnd = whole.size() - pngEnd().size() - 4;
  std::size_t withRows = 0;
  for (std::size_t size = pngStart(kSide, kSide, layout_).size(); size < pixelsEnd - 4; ++size) {
    const File part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    Decoded decoded;
    if (errorOf([&] { decoded = decode(part); }) == 481) continue;
    ++withRows;
    const File got = rgbaOf(decoded.bitmap);
    EXPECT_TRUE(std::equal(got.begin(), got.begin() + 4 * kSide, wanted_.begin())) << size;
    EXPECT_TRUE(got == wanted_ || !decoded.notice.empty()) << size;
  }
  EXPECT_GT(withRows, packed_.size() / 2);
}

TEST(PngChunks, MetadataAfterThePixelsIsKept) {
  const Layout layout{8, PNG_COLOR_TYPE_RGB};
  const File start = pngStart(4, 4, layout), rows = filteredNoise(4, 4, layout, 0);
  Builder text;
  text.text("XML:com.adobe.xmp").u8({0, 0, 0, 0, 0}).text("<x/>");
  const Decoded decoded = decode(joined({start, chunk("IDAT", packed(rows)), chunk("eXIf", cameraBlock(6)),
                                         chunk("prVt", {1}), chunk("iTXt", text.bytes), pngEnd()}));
  EXPECT_EQ(decoded.stored.orientation, 6);
  EXPECT_EQ(std::string(decoded.metadata.xmp.begin(), decoded.metadata.xmp.end()), "<x/>");
  EXPECT_EQ(decoded.notice, "");
}

TEST(PngChunks, AnInvalidTextChunkDoesNotAffectThePicture) {
  const Layout layout{8, PNG_COLOR_TYPE_RGB};
  const File rows = filteredNoise(4, 4, layout, 0), pixels = chunk("IDAT", packed(rows));
  File text = chunk("tEXt", Builder().text("Title").u8({0}).text("a").bytes);
  text.back() ^= 1;
  const File start = pngStart(4, 4, layout);
  const File good = rgbaOf(decode(joined({start, pixels, pngEnd()})).bitmap);
  for (const File& file :
       {joined({start, text, pixels, pngEnd()}), joined({start, pixels, text, pngEnd()})}) {
    const Decoded decoded = decode(file);
    EXPECT_EQ(rgbaOf(decoded.bitmap), good);
    EXPECT_EQ(decoded.notice, "");
  }
}

TEST(PngChunks, AChunkLongerThanTheFileIsRefused) {
  const Layout layout{8, PNG_COLOR_TYPE_RGB};
  for (const char* const name : {"zTXt", "iTXt", "iCCP", "eXIf", "prVt"}) {
    const File claim = Builder().be32(0x77000000).text(name).text("key").u8({0, 0, 1, 2, 3}).bytes;
    const File file = joined({pngStart(4, 4, layout), claim, pngEnd()});
    EXPECT_EQ(errorOf([&] { decode(file); }), 481) << name;
  }
}

TEST(PngChunks, AStreamWithADictionaryOrAnInvalidHeaderIsRefused) {
  const Layout layout{8, PNG_COLOR_TYPE_RGB};
  for (const File& stream : {File{0x78, 0xBB, 1, 2, 3, 4, 5, 6}, File{0x79, 0x9C, 3, 0}, File{}, File{0x78},
                             File{0x78, 0x01, 0x07, 0xFF}}) {
    const File file = joined({pngStart(4, 4, layout), chunk("IDAT", stream), pngEnd()});
    EXPECT_EQ(errorOf([&] { decode(file); }), 481);
  }
}

}  // namespace
}  // namespace kestrel::engine
