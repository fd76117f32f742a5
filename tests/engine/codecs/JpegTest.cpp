#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

#include "TestPictures.h"

namespace kestrel::engine {
namespace {

using test::errorOf;
using test::isPicture;

struct JpegForm {
  J_COLOR_SPACE input = JCS_RGB;
  J_COLOR_SPACE stored = JCS_YCbCr;
  bool progressive = false;
  bool arithmetic = false;
  int sampling = 1;
  unsigned restart = 0;
};

/// A file written straight by the library; `sample` tells the c-th sample of the pixel at (x, y).
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

TEST(Jpeg, ReadsGray) {
  const auto bytes = writeJpeg(20, 10, 1, {.input = JCS_GRAYSCALE, .stored = JCS_GRAYSCALE},
                               [](int x, int, int) { return x * 10; });
  const Bitmap wanted = test::pictureOf(20, 10, [](int x, int) {
    const auto v = static_cast<std::uint8_t>(x * 10);
    return Pixel{v, v, v, 255};
  });
  EXPECT_TRUE(isPicture(decode(bytes).bitmap, wanted, 3));
}

TEST(Jpeg, ReadsInkAsItsPaperWouldLook) {
  // Half of cyan and a fifth of black on white paper, stored inverted as the marker of such files means.
  const auto ink = [](int, int, int c) { return 255 - (c == 0 ? 128 : c == 3 ? 51 : 0); };
  for (const J_COLOR_SPACE stored : {JCS_CMYK, JCS_YCCK}) {
    const Decoded decoded = decode(writeJpeg(16, 16, 4, {.input = JCS_CMYK, .stored = stored}, ink));
    const Pixel p = decoded.bitmap.at(8, 8);
    EXPECT_NEAR(p.r, 102, 3);
    EXPECT_NEAR(p.g, 204, 3);
    EXPECT_NEAR(p.b, 204, 3);
    EXPECT_EQ(p.a, 255);
  }
}

TEST(Jpeg, HigherQualityIsNearerToThePictureAndLarger) {
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

TEST(Jpeg, AFileThatEndsBeforeItsFirstRowIsRefused) {
  const auto whole = writeGradient({});
  const auto scan = std::ranges::search(whole, std::initializer_list<std::uint8_t>{0xFF, 0xDA});
  const auto header = static_cast<std::size_t>(scan.begin() - whole.begin()) + 14;
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
  const auto frame = std::ranges::search(bytes, std::initializer_list<std::uint8_t>{0xFF, 0xC0});
  const auto at = static_cast<std::size_t>(frame.begin() - bytes.begin());
  for (std::size_t i = 5; i < 9; ++i) bytes[at + i] = i % 2 == 1 ? 0xFF : 0xDC;  // 65,500 x 65,500
  const std::int32_t number = errorOf([&] { decode(bytes); });
  EXPECT_TRUE(number == 7 || number == 481) << number;
}

}  // namespace
}  // namespace kestrel::engine
