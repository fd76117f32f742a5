#include <png.h>

#include <array>
#include <cstring>

#include "../TestPictures.h"

namespace kestrel::engine {
namespace {

using test::errorOf;
using test::isPicture;

/// A file written by libpng; `rows` in its own layout.
std::vector<std::uint8_t> writePng(std::uint32_t width, const std::vector<std::vector<std::uint8_t>>& rows,
                                   int depth, int type, int interlace = PNG_INTERLACE_NONE,
                                   const std::function<void(png_structp, png_infop)>& prepare = {}) {
  std::vector<std::uint8_t> bytes;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_write_fn(
      png, &bytes,
      [](png_structp p, png_bytep data, std::size_t count) {
        auto& target = *static_cast<std::vector<std::uint8_t>*>(png_get_io_ptr(p));
        target.insert(target.end(), data, data + count);
      },
      nullptr);
  png_set_IHDR(png, info, width, static_cast<std::uint32_t>(rows.size()), depth, type, interlace,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  if (prepare) prepare(png, info);
  png_write_info(png, info);
  std::vector<png_bytep> pointers;
  for (const auto& row : rows) pointers.push_back(const_cast<png_bytep>(row.data()));
  png_write_image(png, pointers.data());
  png_write_end(png, info);
  png_destroy_write_struct(&png, &info);
  return bytes;
}

std::uint8_t grayOf(int value, int depth) {
  return static_cast<std::uint8_t>(value * 255 / ((1 << depth) - 1));
}

TEST(Png, ReadsGrayOfAllDepths) {
  for (const int depth : {1, 2, 4, 8}) {
    // 16 pixels that count up to the largest value of the depth, then restart at 0.
    std::vector<std::uint8_t> row(static_cast<std::size_t>(16 * depth / 8), std::uint8_t{0});
    const int values = 1 << depth;
    for (int x = 0; x < 16; ++x) {
      const int bit = x * depth;
      row[static_cast<std::size_t>(bit / 8)] = static_cast<std::uint8_t>(
          row[static_cast<std::size_t>(bit / 8)] | (x % values) << (8 - depth - bit % 8));
    }
    const Bitmap wanted = test::pictureOf(16, 2, [&](int x, int) {
      const std::uint8_t v = grayOf(x % values, depth);
      return Pixel{v, v, v, 255};
    });
    const Decoded decoded = decode(writePng(16, {row, row}, depth, PNG_COLOR_TYPE_GRAY));
    EXPECT_TRUE(isPicture(decoded.bitmap, wanted)) << depth;
    EXPECT_EQ(decoded.stored.bitsPerSample, depth);
  }
}

TEST(Png, Reads16BitsRoundedTo8) {
  const std::vector<std::uint8_t> row{0x12, 0x34, 0xFF, 0xFF, 0x00, 0x7F, 0x80, 0x00};
  const Decoded rgba = decode(writePng(1, {row}, 16, PNG_COLOR_TYPE_RGBA));
  EXPECT_EQ(rgba.bitmap.at(0, 0), (Pixel{18, 255, 0, 128}));
  EXPECT_EQ(rgba.stored.bitsPerSample, 16);
  EXPECT_TRUE(rgba.stored.hasAlpha);
  const Decoded grayAlpha = decode(writePng(2, {row}, 16, PNG_COLOR_TYPE_GRAY_ALPHA));
  EXPECT_EQ(grayAlpha.bitmap.at(0, 0), (Pixel{18, 18, 18, 255}));
  EXPECT_EQ(grayAlpha.bitmap.at(1, 0), (Pixel{0, 0, 0, 128}));
}

TEST(Png, ReadsAPaletteWithTransparentEntries) {
  const auto bytes = writePng(3, {{0, 1, 2}}, 8, PNG_COLOR_TYPE_PALETTE, PNG_INTERLACE_NONE,
                              [](png_structp png, png_infop info) {
                                const png_color colors[] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
                                const png_byte alpha[] = {0, 100};
                                png_set_PLTE(png, info, colors, 3);
                                png_set_tRNS(png, info, alpha, 2, nullptr);
                              });
  const Bitmap bitmap = decode(bytes).bitmap;
  EXPECT_EQ(bitmap.at(0, 0), (Pixel{1, 2, 3, 0}));
  EXPECT_EQ(bitmap.at(1, 0), (Pixel{4, 5, 6, 100}));
  EXPECT_EQ(bitmap.at(2, 0), (Pixel{7, 8, 9, 255}));
}

TEST(Png, ReadsATransparentColor) {
  const auto bytes = writePng(2, {{10, 20, 30, 10, 20, 31}}, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                              [](png_structp png, png_infop info) {
                                png_color_16 color{};
                                color.red = 10, color.green = 20, color.blue = 30;
                                png_set_tRNS(png, info, nullptr, 0, &color);
                              });
  const Decoded decoded = decode(bytes);
  EXPECT_EQ(decoded.bitmap.at(0, 0), (Pixel{10, 20, 30, 0}));
  EXPECT_EQ(decoded.bitmap.at(1, 0), (Pixel{10, 20, 31, 255}));
  EXPECT_TRUE(decoded.stored.hasAlpha);
}

std::vector<std::vector<std::uint8_t>> rowsOf(const Bitmap& bitmap) {
  std::vector<std::vector<std::uint8_t>> rows;
  for (int y = 0; y < bitmap.height(); ++y) {
    const std::uint8_t* const row = bitmap.pixels().row(y);
    rows.emplace_back(row, row + 4 * bitmap.width());
  }
  return rows;
}

TEST(Png, ReadsInterlacedPictures) {
  for (const int size : {1, 3, 8, 37}) {
    const Bitmap picture = test::noise(size, size, false);
    const auto bytes = writePng(static_cast<std::uint32_t>(size), rowsOf(picture), 8, PNG_COLOR_TYPE_RGBA,
                                PNG_INTERLACE_ADAM7);
    EXPECT_TRUE(isPicture(decode(bytes).bitmap, picture)) << size;
  }
}

TEST(Png, ATruncatedFileShowsItsRowsAndTheRestTransparent) {
  const Bitmap picture = test::noise(50, 100, true);
  const auto whole = encode(picture, {}, format::kPng);
  const Decoded decoded = decode(Bytes(whole).first(whole.size() / 2));
  EXPECT_NE(decoded.notice.find("of 100 rows could be read."), std::string::npos) << decoded.notice;
  EXPECT_EQ(decoded.bitmap.at(20, 10), picture.at(20, 10));
  EXPECT_EQ(decoded.bitmap.at(20, 99), (Pixel{0, 0, 0, 0}));
}

TEST(Png, ATruncatedInterlacedFileShowsWhatItHolds) {
  const Bitmap picture = test::noise(64, 64, true);
  const auto whole = writePng(64, rowsOf(picture), 8, PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_ADAM7);
  const Decoded decoded = decode(Bytes(whole).first(whole.size() / 2));
  EXPECT_FALSE(decoded.notice.empty());
  EXPECT_EQ(decoded.bitmap.at(0, 0), picture.at(0, 0));
  EXPECT_EQ(decoded.bitmap.at(63, 63), (Pixel{0, 0, 0, 0}));
}

TEST(Png, AFileThatEndsBeforeItsFirstRowIsRefused) {
  const auto whole = encode(test::noise(50, 100, true), {}, format::kPng);
  EXPECT_EQ(errorOf([&] { decode(Bytes(whole).first(20)); }), 481);
  EXPECT_EQ(errorOf([&] { decode(Bytes(whole).first(45)); }), 481);
}

TEST(Png, AnAbsurdSizeInASmallFileIsRefused) {
  auto bytes = encode(test::gradient(4, 4), {}, format::kPng);
  const auto crcOf = [](Bytes data) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const std::uint8_t byte : data) {
      crc ^= byte;
      for (int i = 0; i < 8; ++i) crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320 : crc >> 1;
    }
    return ~crc;
  };
  for (const auto& [side, number] : {std::pair{65'536U, 7}, {40'000U, 481}}) {
    for (std::size_t i = 0; i < 4; ++i) {
      bytes[16 + i] = bytes[20 + i] = static_cast<std::uint8_t>(side >> (24 - 8 * i));
    }
    const std::uint32_t crc = crcOf(Bytes(bytes).subspan(12, 17));
    for (std::size_t i = 0; i < 4; ++i) bytes[29 + i] = static_cast<std::uint8_t>(crc >> (24 - 8 * i));
    EXPECT_EQ(errorOf([&] { decode(bytes); }), number) << side;
  }
}

TEST(Png, ASavedFileIsReadByLibpng) {
  const Bitmap picture = test::noise(23, 9, false);
  const auto bytes = encode(picture, {}, format::kPng);
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  ASSERT_NE(png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()), 0);
  image.format = PNG_FORMAT_RGBA;
  std::vector<std::uint8_t> pixels(PNG_IMAGE_SIZE(image));
  ASSERT_NE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr), 0);
  for (int y = 0; y < 9; ++y) {
    EXPECT_EQ(std::memcmp(pixels.data() + 23 * 4 * y, picture.pixels().row(y), 23 * 4), 0) << y;
  }
}

}  // namespace
}  // namespace kestrel::engine
