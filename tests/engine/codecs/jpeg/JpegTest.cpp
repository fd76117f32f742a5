#include <array>
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

#include "../TestPictures.h"
#include "engine/codecs/jpeg/Jpeg.h"

namespace kestrel::engine {
namespace {

using test::errorOf;
using test::isPicture;
using test::positionOf;

struct JpegForm {
  J_COLOR_SPACE input = JCS_RGB;
  J_COLOR_SPACE stored = JCS_YCbCr;
  bool progressive = false;
  bool arithmetic = false;
  int sampling = 1;
  unsigned restart = 0;
};

/// A file written by the library; `sample` returns sample c of the pixel at (x, y).
std::vector<std::uint8_t> writeJpeg(int width, int height, int samples, const JpegForm& form,
                                    const std::function<int(int x, int y, int c)>& sample) {
  jpeg_compress_struct info{};
  jpeg_error_mgr errors{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* buffer = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&info, &buffer, &size);
  info.image_width = static_cast<JDIMENSION>(width);
  info.image_height = static_cast<JDIMENSION>(height);
  info.input_components = samples;
  info.in_color_space = form.input;
  jpeg_set_defaults(&info);
  jpeg_set_colorspace(&info, form.stored);
  jpeg_set_quality(&info, 98, TRUE);
  info.comp_info[0].h_samp_factor = info.comp_info[0].v_samp_factor = form.sampling;
  info.arith_code = form.arithmetic ? TRUE : FALSE;
  info.restart_interval = form.restart;
  if (form.progressive) jpeg_simple_progression(&info);
  jpeg_start_compress(&info, TRUE);
  std::vector<JSAMPLE> row(static_cast<std::size_t>(width * samples));
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      for (int c = 0; c < samples; ++c) {
        row[static_cast<std::size_t>(x * samples + c)] = static_cast<JSAMPLE>(sample(x, y, c));
      }
    }
    JSAMPROW pointer = row.data();
    jpeg_write_scanlines(&info, &pointer, 1);
  }
  jpeg_finish_compress(&info);
  std::vector<std::uint8_t> bytes(buffer, buffer + size);
  std::free(buffer);
  jpeg_destroy_compress(&info);
  return bytes;
}

constexpr int kWidth = 61, kHeight = 45;

int sampleOf(const Bitmap& picture, int x, int y, int c) {
  const Pixel p = picture.at(x, y);
  return c == 0 ? p.r : c == 1 ? p.g : p.b;
}

std::vector<std::uint8_t> writeGradient(const JpegForm& form) {
  const Bitmap picture = test::gradient(kWidth, kHeight);
  return writeJpeg(kWidth, kHeight, 3, form, [&](int x, int y, int c) { return sampleOf(picture, x, y, c); });
}

TEST(Jpeg, ReadsWhatOtherProgramsWrite) {
  const Bitmap picture = test::gradient(kWidth, kHeight);
  const std::vector<std::pair<const char*, JpegForm>> forms{
      {"baseline", {}},
      {"progressive", {.progressive = true}},
      {"arithmetic", {.arithmetic = true}},
      {"subsampled", {.sampling = 2}},
      {"subsampled and progressive", {.progressive = true, .sampling = 2}},
      {"with restarts", {.restart = 3}},
      {"stored as RGB", {.stored = JCS_RGB}}};
  for (const auto& [name, form] : forms) {
    const Decoded decoded = decode(writeGradient(form));
    EXPECT_EQ(decoded.format, 1) << name;
    EXPECT_TRUE(isPicture(decoded.bitmap, picture, 12)) << name;
    EXPECT_TRUE(decoded.notice.empty()) << name;
  }
}

TEST(Jpeg, ZeroBytesBetweenSegmentsAreSkipped) {
  const auto bytes = writeGradient({});
  const Bitmap picture = decode(bytes).bitmap;
  // Before each segment up to the scan. A segment's length follows its marker.
  for (std::size_t at = 2; bytes[at + 1] != 0xDA; at += 2 + bytes[at + 2] * 256U + bytes[at + 3]) {
    auto padded = bytes;
    padded.insert(padded.begin() + static_cast<std::ptrdiff_t>(at), 3, 0);
    const Decoded decoded = decode(padded);
    EXPECT_TRUE(isPicture(decoded.bitmap, picture)) << at;
    EXPECT_EQ(decoded.notice, "") << at;
  }
}

TEST(Jpeg, ReadsGray) {
  const auto bytes = writeJpeg(20, 10, 1, {.input = JCS_GRAYSCALE, .stored = JCS_GRAYSCALE},
                               [](int x, int, int) { return x * 10; });
  const Bitmap wanted = test::pictureOf(20, 10, [](int x, int) {
    const auto v = static_cast<std::uint8_t>(x * 10);
    return Pixel{v, v, v, 255};
  });
  EXPECT_TRUE(isPicture(decode(bytes).bitmap, wanted, 3));
}

TEST(Jpeg, ReadsCmyk) {
  // 50% cyan and 20% black, stored inverted as the Adobe marker requires.
  const auto cmyk = [](int, int, int c) { return 255 - (c == 0 ? 128 : c == 3 ? 51 : 0); };
  for (const J_COLOR_SPACE stored : {JCS_CMYK, JCS_YCCK}) {
    const Decoded decoded = decode(writeJpeg(16, 16, 4, {.input = JCS_CMYK, .stored = stored}, cmyk));
    const Pixel p = decoded.bitmap.at(8, 8);
    EXPECT_NEAR(p.r, 102, 3);
    EXPECT_NEAR(p.g, 204, 3);
    EXPECT_NEAR(p.b, 204, 3);
    EXPECT_EQ(p.a, 255);
  }
}

TEST(Jpeg, HigherQualityIsMoreAccurateAndLarger) {
  const Bitmap picture = test::gradient(64, 64);
  const auto low = encode(picture, {}, format::kJpg, {20}), high = encode(picture, {}, format::kJpg, {95});
  EXPECT_LT(low.size(), high.size());
  EXPECT_TRUE(isPicture(decode(high).bitmap, picture, 6));
  EXPECT_FALSE(isPicture(decode(low).bitmap, picture, 6));
}

TEST(Jpeg, TransparencyIsFlattenedOnWhite) {
  const Bitmap picture = test::pictureOf(16, 16, [](int x, int) {
    return x < 8 ? Pixel{0, 0, 0, 0} : Pixel{0, 0, 255, 128};
  });
  const Bitmap read = decode(encode(picture, {}, format::kJpg, {100})).bitmap;
  EXPECT_TRUE(
      isPicture(read,
                test::pictureOf(16, 16,
                                [](int x, int) {
                                  return x < 8 ? Pixel{255, 255, 255, 255} : Pixel{127, 127, 255, 255};
                                }),
                4));
}

TEST(Jpeg, ATruncatedFileShowsTheRowsThatItHolds) {
  for (const bool progressive : {false, true}) {
    const Bitmap picture = test::noise(64, 160, true);
    const auto whole = writeJpeg(64, 160, 3, {.progressive = progressive},
                                 [&](int x, int y, int c) { return sampleOf(picture, x, y, c); });
    const Decoded decoded = decode(Bytes(whole).first(whole.size() * 3 / 4));
    EXPECT_FALSE(decoded.notice.empty());
    EXPECT_EQ(decoded.notice.back(), '.');
    EXPECT_EQ(decoded.bitmap.height(), 160);
    if (!progressive) {
      const Bitmap all = decode(whole).bitmap;
      for (int y = 0; y < 80; ++y) EXPECT_EQ(decoded.bitmap.at(5, y), all.at(5, y)) << y;
    }
  }
}

TEST(Jpeg, AProgressiveFileMayEndAnywhereAfterItsFirstRow) {
  const Bitmap picture = test::noise(24, 32, true);
  const auto whole = writeJpeg(24, 32, 3, {.progressive = true},
                               [&](int x, int y, int c) { return sampleOf(picture, x, y, c); });
  std::size_t shown = 0;
  for (std::size_t size = 0; size + 2 < whole.size(); ++size) {
    SCOPED_TRACE(size);
    Decoded decoded;
    if (errorOf([&] { decoded = decode(Bytes(whole).first(size)); }) != 0) {
      EXPECT_EQ(shown, 0U) << "a shorter file was shown";
      continue;
    }
    ++shown;
    EXPECT_EQ(decoded.bitmap.height(), 32);
    EXPECT_FALSE(decoded.notice.empty());
  }
  EXPECT_GT(shown, whole.size() / 2);
}

TEST(Jpeg, AFileThatEndsBeforeItsFirstRowIsRefused) {
  const auto whole = writeGradient({});
  const std::size_t header = positionOf("\xFF\xDA", whole) + 14;
  EXPECT_EQ(errorOf([&] { decode(Bytes(whole).first(header)); }), 481);
  EXPECT_EQ(errorOf([&] { decode(Bytes(whole).first(header + 10)); }), 481);
  EXPECT_EQ(errorOf([&] { decode(Bytes(whole).first(20)); }), 481);
}

TEST(Jpeg, AMissingEndMarkerLosesNothing) {
  const auto whole = writeGradient({});
  const Decoded decoded = decode(Bytes(whole).first(whole.size() - 2));
  EXPECT_TRUE(isPicture(decoded.bitmap, decode(whole).bitmap));
}

TEST(Jpeg, AnAbsurdSizeInASmallFileIsRefused) {
  auto bytes = writeGradient({});
  const std::size_t at = positionOf("\xFF\xC0", bytes);
  for (std::size_t i = 5; i < 9; ++i) bytes[at + i] = i % 2 == 1 ? 0xFF : 0xDC;  // 65,500 x 65,500
  const std::int32_t number = errorOf([&] { decode(bytes); });
  EXPECT_TRUE(number == 7 || number == 481) << number;
}

TEST(Jpeg, ATransparentRowAmongOpaqueOnesIsFlattenedOnWhite) {
  const auto pixel = [](int, int y) {
    return Pixel{200, 100, 0, y == 24 ? std::uint8_t{0} : std::uint8_t{255}};
  };
  const Bitmap read = decode(encode(test::pictureOf(37, 50, pixel), {}, format::kJpg, {100})).bitmap;
  EXPECT_GT(read.at(20, 24).b, 240);
  EXPECT_LT(read.at(20, 10).b, 12);
  EXPECT_LT(read.at(20, 40).b, 12);
}

/// Means of the 8 x 8 blocks, with the right and bottom edge pixels repeated.
Bitmap blockMeansOf(const Bitmap& picture) {
  return test::pictureOf((picture.width() + 7) / 8, (picture.height() + 7) / 8, [&](int column, int row) {
    std::array<int, 3> sums{};
    for (int y = 8 * row; y < 8 * row + 8; ++y) {
      for (int x = 8 * column; x < 8 * column + 8; ++x) {
        const int insideX = std::min(x, picture.width() - 1), insideY = std::min(y, picture.height() - 1);
        for (int c = 0; c < 3; ++c)
          sums[static_cast<std::size_t>(c)] += sampleOf(picture, insideX, insideY, c);
      }
    }
    const auto average = [](int sum) { return static_cast<std::uint8_t>((sum + 32) / 64); };
    return Pixel{average(sums[0]), average(sums[1]), average(sums[2]), 255};
  });
}

TEST(Jpeg, AReducedPictureHoldsTheMeansOfTheBlocks) {
  const std::vector<std::pair<const char*, JpegForm>> forms{
      {"baseline", {}},
      {"subsampled", {.sampling = 2}},
      {"with restarts", {.restart = 3}},
      {"subsampled with restarts", {.sampling = 2, .restart = 5}},
      {"progressive", {.progressive = true}},
      {"arithmetic", {.arithmetic = true}},
      {"stored as RGB", {.stored = JCS_RGB}}};
  for (const auto& [name, form] : forms) {
    for (const bool noisy : {false, true}) {
      const int width = 1003, height = 517;
      const Bitmap gradient = test::gradient(width, height), noise = test::noise(width, height, true);
      // Noise of luma alone, since subsampling changes the means of chroma noise.
      const auto file = writeJpeg(width, height, 3, form, [&](int x, int y, int c) {
        return noisy ? noise.at(x, y).g : sampleOf(gradient, x, y, c);
      });
      const Decoded reduced = jpeg::decodeReduced(file, 100);
      EXPECT_TRUE(reduced.notice.empty()) << name;
      ASSERT_EQ(reduced.bitmap.width(), 126) << name;
      const Bitmap whole = decode(file).bitmap;
      EXPECT_TRUE(isPicture(reduced.bitmap, blockMeansOf(whole), 6)) << name << noisy;
    }
  }
}

TEST(Jpeg, AReducedPictureIsNoSmallerThanAskedFor) {
  const auto file = writeGradient({});  // 61 x 45
  const std::vector<std::pair<std::int32_t, std::int32_t>> widths{
      {1, 8}, {8, 8}, {9, 16}, {16, 16}, {17, 31}, {31, 31}, {32, 61}, {61, 61}, {900, 61}};
  for (const auto& [wanted, width] : widths) {
    EXPECT_EQ(jpeg::decodeReduced(file, wanted).bitmap.width(), width) << wanted;
  }
}

TEST(Jpeg, AReducedGrayOrCmykPictureKeepsItsColors) {
  const auto gray = writeJpeg(80, 80, 1, {.input = JCS_GRAYSCALE, .stored = JCS_GRAYSCALE},
                              [](int, int, int) { return 77; });
  const Pixel p = jpeg::decodeReduced(gray, 1).bitmap.at(5, 5);
  EXPECT_NEAR(p.r, 77, 1);
  EXPECT_EQ(p.r, p.b);
  EXPECT_EQ(p.a, 255);
  const auto cmyk = writeJpeg(80, 80, 4, {.input = JCS_CMYK, .stored = JCS_YCCK},
                              [](int, int, int c) { return c == 0 ? 127 : 255; });
  const Pixel q = jpeg::decodeReduced(cmyk, 1).bitmap.at(5, 5);
  EXPECT_NEAR(q.r, 127, 3);
  EXPECT_NEAR(q.g, 255, 3);
}

TEST(Jpeg, AReducedPictureOfATruncatedFileHasANotice) {
  const Bitmap picture = test::noise(640, 480, true);
  const auto whole = writeJpeg(640, 480, 3, {.sampling = 2},
                               [&](int x, int y, int c) { return sampleOf(picture, x, y, c); });
  const Bitmap all = jpeg::decodeReduced(whole, 1).bitmap;
  const Decoded cut = jpeg::decodeReduced(Bytes(whole).first(whole.size() / 2), 1);
  EXPECT_FALSE(cut.notice.empty());
  ASSERT_EQ(cut.bitmap.width(), 80);
  // Chroma may differ a little between the fast decoder and the library's.
  for (int x = 0; x < 80; ++x) EXPECT_NEAR(cut.bitmap.at(x, 9).g, all.at(x, 9).g, 40) << x;
}

TEST(Jpeg, ReducedPicturesOfBrokenFilesAreHarmless) {
  const Bitmap picture = test::noise(320, 240, true);
  std::mt19937 random(3);
  for (const int sampling : {1, 2}) {
    const auto whole = writeJpeg(320, 240, 3, {.sampling = sampling, .restart = 7},
                                 [&](int x, int y, int c) { return sampleOf(picture, x, y, c); });
    for (int round = 0; round < 300; ++round) {
      auto bytes = whole;
      for (int i = 0; i < 5; ++i) bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
      const std::int32_t number =
          errorOf([&] { EXPECT_FALSE(jpeg::decodeReduced(bytes, 1).bitmap.empty()); });
      EXPECT_TRUE(number == 0 || number == 481 || number == 7) << number;
    }
  }
}

}  // namespace
}  // namespace kestrel::engine
