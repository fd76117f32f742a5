#include <tiffio.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "../TestPictures.h"

namespace kestrel::engine {
namespace {

namespace fs = std::filesystem;
using test::errorOf;
using test::isPicture;

struct Form {
  int width = 37, height = 29;
  int samples = 3;
  int bits = 8;
  int photometric = PHOTOMETRIC_RGB;
  int compression = COMPRESSION_NONE;
  int planar = PLANARCONFIG_CONTIG;
  int format = SAMPLEFORMAT_UINT;
  int tile = 0;  ///< side of a tile, 0 for strips
  int rowsPerStrip = 8;
  int extra = -1;
  const char* mode = "w";  ///< with l or b for the byte order, 8 for the 64-bit form
};

/// Packs one row of samples as the file stores them.
std::vector<std::uint8_t> pack(const std::vector<double>& samples, const Form& form) {
  std::vector<std::uint8_t> bytes;
  if (form.format == SAMPLEFORMAT_IEEEFP) {
    for (const double s : samples) {
      const auto value = static_cast<float>(s);
      std::uint8_t raw[4];
      std::memcpy(raw, &value, 4);
      bytes.insert(bytes.end(), raw, raw + 4);
    }
    return bytes;
  }
  const auto largest = static_cast<double>((std::uint64_t{1} << form.bits) - 1);
  std::uint64_t window = 0;
  int held = 0;
  for (const double s : samples) {
    const auto value = static_cast<std::uint64_t>(s * largest + 0.5);
    if (form.bits == 16 || form.bits == 32) {
      for (int i = 0; i < form.bits; i += 8) bytes.push_back(static_cast<std::uint8_t>(value >> i & 255));
      continue;
    }
    window = window << form.bits | value;
    held += form.bits;
    for (; held >= 8; held -= 8) bytes.push_back(static_cast<std::uint8_t>(window >> (held - 8) & 255));
  }
  if (held > 0) bytes.push_back(static_cast<std::uint8_t>(window << (8 - held) & 255));
  return bytes;
}

/// A file written by libtiff; `sample` returns sample c at (x, y), 0 to 1.
std::vector<std::uint8_t> writeTiff(const Form& f, const std::function<double(int x, int y, int c)>& sample,
                                    const std::function<void(TIFF*)>& prepare = {}) {
  const fs::path path = fs::temp_directory_path() / ("kestrel_" + std::to_string(getpid()) + ".tif");
  TIFF* const tiff = TIFFOpen(path.c_str(), f.mode);
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, f.width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, f.height);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, f.samples);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, f.bits);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, f.photometric);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, f.compression);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, f.planar);
  TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, f.format);
  if (f.extra >= 0) {
    const auto extra = static_cast<std::uint16_t>(f.extra);
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &extra);
  }
  if (f.tile > 0) {
    TIFFSetField(tiff, TIFFTAG_TILEWIDTH, f.tile);
    TIFFSetField(tiff, TIFFTAG_TILELENGTH, f.tile);
  } else {
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, f.rowsPerStrip);
  }
  if (prepare) prepare(tiff);

  const bool planar = f.planar == PLANARCONFIG_SEPARATE;
  const int planes = planar ? f.samples : 1;
  const auto rowOf = [&](int x0, int y, int columns, int plane) {
    std::vector<double> samples;
    for (int x = x0; x < x0 + columns; ++x) {
      for (int c = 0; c < f.samples; ++c) {
        if (!planar || c == plane) samples.push_back(x < f.width && y < f.height ? sample(x, y, c) : 0);
      }
    }
    return pack(samples, f);
  };
  for (int plane = 0; plane < planes; ++plane) {
    const auto p = static_cast<std::uint16_t>(plane);
    if (f.tile == 0) {
      for (int y = 0; y < f.height; ++y) {
        auto row = rowOf(0, y, f.width, plane);
        TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y), p);
      }
      continue;
    }
    for (int ty = 0; ty < f.height; ty += f.tile) {
      for (int tx = 0; tx < f.width; tx += f.tile) {
        std::vector<std::uint8_t> tile;
        for (int y = ty; y < ty + f.tile; ++y) {
          const auto row = rowOf(tx, y, f.tile, plane);
          tile.insert(tile.end(), row.begin(), row.end());
        }
        TIFFWriteTile(tiff, tile.data(), static_cast<std::uint32_t>(tx), static_cast<std::uint32_t>(ty), 0,
                      p);
      }
    }
  }
  TIFFClose(tiff);
  std::ifstream stream(path, std::ios::binary);
  std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(stream), {}};
  fs::remove(path);
  return bytes;
}

double sampleAt(const Form& f, int x, int y, int c) {
  const double v[4] = {static_cast<double>(x) / (f.width - 1), static_cast<double>(y) / (f.height - 1),
                       static_cast<double>(x + y) / (f.width + f.height - 2), 1};
  return v[c];
}

std::uint8_t level(double v) { return static_cast<std::uint8_t>(v * 255 + 0.5); }

/// Succeeds if a file of this form with the gradient decodes to the gradient.
testing::AssertionResult readsGradient(const Form& f, int tolerance = 1) {
  const bool gray = f.samples < 3;
  const auto bytes = writeTiff(f, [&](int x, int y, int c) { return sampleAt(f, x, y, c); });
  const Decoded decoded = decode(bytes);
  if (!decoded.notice.empty()) return testing::AssertionFailure() << decoded.notice;
  return isPicture(
      decoded.bitmap,
      test::pictureOf(f.width, f.height,
                      [&](int x, int y) {
                        const std::uint8_t r = level(sampleAt(f, x, y, 0));
                        if (f.photometric == PHOTOMETRIC_MINISWHITE) {
                          const auto v = static_cast<std::uint8_t>(255 - r);
                          return Pixel{v, v, v, 255};
                        }
                        if (gray) return Pixel{r, r, r, 255};
                        return Pixel{r, level(sampleAt(f, x, y, 1)), level(sampleAt(f, x, y, 2)), 255};
                      }),
      tolerance);
}

TEST(Tiff, ReadsStripsAndTilesOfAllLayoutsInBothByteOrders) {
  for (const int tile : {0, 16}) {
    for (const int planar : {PLANARCONFIG_CONTIG, PLANARCONFIG_SEPARATE}) {
      for (const int bits : {8, 16, 32}) {
        for (const char* mode : {"wl", "wb", "wl8"}) {
          Form f;
          f.tile = tile, f.planar = planar, f.bits = bits, f.mode = mode;
          EXPECT_TRUE(readsGradient(f)) << tile << " " << planar << " " << bits << " " << mode;
        }
      }
    }
  }
}

TEST(Tiff, ReadsTheCommonCompressions) {
  for (const int compression : {COMPRESSION_LZW, COMPRESSION_PACKBITS, COMPRESSION_ADOBE_DEFLATE,
                                COMPRESSION_DEFLATE, COMPRESSION_LZMA, COMPRESSION_ZSTD}) {
    if (TIFFIsCODECConfigured(static_cast<std::uint16_t>(compression)) == 0) continue;
    Form f;
    f.compression = compression;
    EXPECT_TRUE(readsGradient(f)) << compression;
  }
}

TEST(Tiff, ReadsJpegInsideTiff) {
  Form f;
  f.compression = COMPRESSION_JPEG;
  f.rowsPerStrip = 16;
  EXPECT_TRUE(readsGradient(f, 24));
}

TEST(Tiff, ReadsJpegInsideTiffWithSubsampledChroma) {
  Form f;
  f.width = f.height = 64;
  f.rowsPerStrip = 16;
  f.compression = COMPRESSION_JPEG;
  f.photometric = PHOTOMETRIC_YCBCR;
  const auto bytes = writeTiff(
      f, [&](int x, int y, int c) { return sampleAt(f, x, y, c); },
      [](TIFF* tiff) {
        TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        TIFFSetField(tiff, TIFFTAG_YCBCRSUBSAMPLING, 2, 2);
      });
  EXPECT_TRUE(isPicture(decode(bytes).bitmap, test::gradient(64, 64), 24));
}

TEST(Tiff, ReadsFaxCompressions) {
  for (const int compression : {COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4}) {
    Form f;
    f.samples = f.bits = 1;
    f.photometric = PHOTOMETRIC_MINISWHITE;
    f.compression = compression;
    const auto bytes = writeTiff(f, [](int x, int y, int) { return (x / 3 + y / 2) % 2; });
    const Bitmap wanted = test::pictureOf(f.width, f.height, [](int x, int y) {
      return (x / 3 + y / 2) % 2 == 1 ? Pixel{0, 0, 0, 255} : Pixel{255, 255, 255, 255};
    });
    EXPECT_TRUE(isPicture(decode(bytes).bitmap, wanted)) << compression;
  }
}

/// Changes the value of an entry of the first directory of a little-endian file.
void setEntry(std::vector<std::uint8_t>& file, std::uint16_t tag, std::uint8_t value) {
  const std::size_t directory = file[4] + file[5] * 0x100U + file[6] * 0x10000U;
  const std::size_t count = file[directory] + file[directory + 1] * 0x100U;
  for (std::size_t at = directory + 2; at < directory + 2 + 12 * count; at += 12) {
    if ((file[at] | file[at + 1] << 8) == tag) file[at + 8] = value;
  }
}

TEST(Tiff, ReadsFaxCompressionsWithAWrongTag) {
  const auto sample = [](int x, int y, int) { return (x / 3 + y / 2) % 2; };
  const Bitmap wanted = test::pictureOf(37, 29, [&](int x, int y) {
    return sample(x, y, 0) == 1 ? Pixel{0, 0, 0, 255} : Pixel{255, 255, 255, 255};
  });
  for (const auto& [written, named] : {std::pair{COMPRESSION_CCITTFAX4, COMPRESSION_CCITTFAX3},
                                       {COMPRESSION_CCITTFAX4, COMPRESSION_CCITTRLE},
                                       {COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4},
                                       {COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX4}}) {
    Form f;
    f.samples = f.bits = 1;
    f.photometric = PHOTOMETRIC_MINISWHITE;
    f.compression = written;
    f.mode = "wl";
    auto bytes = writeTiff(f, sample);
    setEntry(bytes, TIFFTAG_COMPRESSION, static_cast<std::uint8_t>(named));
    const Decoded decoded = decode(bytes);
    EXPECT_TRUE(isPicture(decoded.bitmap, wanted)) << written << " named " << named;
    EXPECT_EQ(decoded.notice, "") << written << " named " << named;
  }
}

TEST(Tiff, ReadsLabWithAlphaOf8And16Bits) {
  // The sRGB primaries as CIE L*a*b* relative to D65.
  constexpr double kLab[3][3] = {
      {53.2408, 80.0925, 67.2032}, {87.7347, -86.1827, 83.1793}, {32.2970, 79.1875, -107.8602}};
  constexpr Pixel kColors[3] = {{255, 0, 0, 128}, {0, 255, 0, 128}, {0, 0, 255, 128}};
  for (const int bits : {8, 16}) {
    Form f;
    f.width = 3;
    f.height = 2;
    f.samples = 4;
    f.bits = bits;
    f.photometric = PHOTOMETRIC_CIELAB;
    f.extra = EXTRASAMPLE_UNASSALPHA;
    const auto bytes = writeTiff(
        f,
        [&](int x, int, int c) {
          if (c == 3) return 128.0 / 255;
          if (c == 0) return kLab[x][0] / 100;
          // Two's complement; 16 bits in units of 1/256.
          const double value = kLab[x][c] < 0 ? kLab[x][c] + 256 : kLab[x][c];
          return bits == 8 ? value / 255 : value * 256 / 65535;
        },
        [](TIFF* tiff) {
          const float white[2] = {0.3127F, 0.3290F};
          TIFFSetField(tiff, TIFFTAG_WHITEPOINT, white);
        });
    const Decoded decoded = decode(bytes);
    EXPECT_TRUE(decoded.stored.hasAlpha);
    for (int x = 0; x < 3; ++x) {
      const Pixel got = decoded.bitmap.at(x, 1);
      EXPECT_NEAR(got.r, kColors[x].r, 12) << bits << " bits, " << test::text(got);
      EXPECT_NEAR(got.g, kColors[x].g, 12) << bits << " bits, " << test::text(got);
      EXPECT_NEAR(got.b, kColors[x].b, 12) << bits << " bits, " << test::text(got);
      EXPECT_EQ(got.a, 128);
    }
  }
}

TEST(Tiff, AnInvalidYCbCrStripShowsTheRowsBeforeTheError) {
  Form f;
  f.width = f.height = f.rowsPerStrip = 64;
  f.photometric = PHOTOMETRIC_YCBCR;
  f.compression = COMPRESSION_LZW;
  const Bitmap noise = test::noise(64, 64, true);
  const auto whole = writeTiff(
      f,
      [&](int x, int y, int c) {
        const Pixel p = noise.at(x, y);
        return (c == 0 ? p.r : c == 1 ? p.g : p.b) / 255.0;
      },
      [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_YCBCRSUBSAMPLING, 1, 1); });
  const Bitmap picture = decode(whole).bitmap;
  auto broken = whole;
  // Invalid codes (all ones) in the middle of the only strip, which follows the header.
  std::fill_n(broken.begin() + 8 + static_cast<std::ptrdiff_t>(broken.size() / 2), 600, 0xFF);
  const Decoded decoded = decode(broken);
  EXPECT_NE(decoded.notice.find("of 64 rows could be read"), std::string::npos) << decoded.notice;
  for (int y = 0; y < 25; ++y) EXPECT_EQ(decoded.bitmap.at(y, y), picture.at(y, y)) << y;
  EXPECT_EQ(decoded.bitmap.at(5, 50).a, 0);
}

TEST(Tiff, ReadsGrayOfManyDepthsAndBothDirections) {
  for (const int photometric : {PHOTOMETRIC_MINISBLACK, PHOTOMETRIC_MINISWHITE}) {
    for (const int bits : {1, 2, 4, 6, 8, 10, 12, 14, 16, 32}) {
      Form f;
      f.samples = 1, f.bits = bits, f.photometric = photometric;
      // Rounding to the levels of a small depth is at most half a step off.
      EXPECT_TRUE(readsGradient(f, 1 + 128 / ((1 << std::min(bits, 8)) - 1))) << bits << " " << photometric;
    }
  }
}

TEST(Tiff, ReadsFloatingPointSamples) {
  Form f;
  f.bits = 32, f.format = SAMPLEFORMAT_IEEEFP;
  EXPECT_TRUE(readsGradient(f));
  f.samples = 1, f.photometric = PHOTOMETRIC_MINISBLACK;
  EXPECT_TRUE(readsGradient(f));
}

TEST(Tiff, ReadsPalettes) {
  for (const int bits : {1, 2, 4, 8}) {
    Form f;
    f.width = 16, f.samples = 1, f.bits = bits, f.photometric = PHOTOMETRIC_PALETTE;
    const int count = 1 << bits;
    const auto bytes = writeTiff(
        f, [&](int x, int, int) { return static_cast<double>(x % count) / (count - 1); },
        [&](TIFF* tiff) {
          std::vector<std::uint16_t> red(256), green(256), blue(256);
          for (int i = 0; i < count; ++i) {
            const auto at = static_cast<std::size_t>(i);
            red[at] = static_cast<std::uint16_t>(i * 257);
            green[at] = static_cast<std::uint16_t>((255 - i) * 257);
            blue[at] = 0x8080;
          }
          TIFFSetField(tiff, TIFFTAG_COLORMAP, red.data(), green.data(), blue.data());
        });
    const Bitmap wanted = test::pictureOf(16, f.height, [&](int x, int) {
      const auto i = static_cast<std::uint8_t>(x % count);
      return Pixel{i, static_cast<std::uint8_t>(255 - i), 128, 255};
    });
    EXPECT_TRUE(isPicture(decode(bytes).bitmap, wanted)) << bits;
  }
}

TEST(Tiff, ReadsCmyk) {
  for (const int bits : {8, 16}) {
    Form f;
    f.samples = 4, f.bits = bits, f.photometric = PHOTOMETRIC_SEPARATED;
    const auto bytes = writeTiff(f, [](int, int, int c) { return c == 0 ? 0.5 : c == 3 ? 0.2 : 0.0; });
    const Pixel p = decode(bytes).bitmap.at(3, 3);
    EXPECT_NEAR(p.r, 102, 1);
    EXPECT_NEAR(p.g, 204, 1);
    EXPECT_NEAR(p.b, 204, 1);
    EXPECT_EQ(p.a, 255);
  }
}

TEST(Tiff, ReadsStraightAndPremultipliedAlpha) {
  Form f;
  f.samples = 4;
  for (const auto& [extra, color] : {std::pair{EXTRASAMPLE_UNASSALPHA, 0.8}, {EXTRASAMPLE_ASSOCALPHA, 0.4}}) {
    f.extra = extra;
    const auto bytes = writeTiff(f, [color = color](int, int, int c) { return c == 3 ? 0.5 : color; });
    const Decoded decoded = decode(bytes);
    EXPECT_NEAR(decoded.bitmap.at(1, 1).r, 204, 1) << extra;
    EXPECT_EQ(decoded.bitmap.at(1, 1).a, 128) << extra;
    EXPECT_TRUE(decoded.stored.hasAlpha);
  }
}

TEST(Tiff, ReadsTheFirstOfSeveralPagesAndCountsThem) {
  const fs::path path = fs::temp_directory_path() / ("kestrel_pages_" + std::to_string(getpid()) + ".tif");
  TIFF* const tiff = TIFFOpen(path.c_str(), "w");
  for (int page = 0; page < 3; ++page) {
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 4 + page);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 1);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    std::uint8_t row[8] = {};
    TIFFWriteScanline(tiff, row, 0);
    TIFFWriteDirectory(tiff);
  }
  TIFFClose(tiff);
  const Decoded decoded = decodeFile(path);
  fs::remove(path);
  EXPECT_EQ(decoded.bitmap.width(), 4);
  EXPECT_EQ(decoded.stored.pages, 3);
}

/// 8-bit gray, one strip of `height` rows, with the directory first. libtiff writes it last, where truncation
/// would remove it.
std::vector<std::uint8_t> directoryFirst(std::uint32_t width, std::uint32_t height,
                                         std::uint32_t bytesClaimed) {
  test::Builder b;
  b.text("II").le16(42).le32(8).le16(8);
  const auto entry = [&](std::uint32_t tag, std::uint32_t value) { b.le16(tag).le16(4).le32(1).le32(value); };
  entry(256, width), entry(257, height), entry(258, 8), entry(259, 1), entry(262, 1);
  entry(273, 8 + 2 + 8 * 12 + 4), entry(278, height), entry(279, bytesClaimed);
  b.le32(0);
  for (std::uint32_t i = 0; i < width * height; ++i) b.u8({static_cast<int>(i / width)});
  return b.bytes;
}

TEST(Tiff, ATruncatedFileShowsTheRowsThatItHolds) {
  const auto whole = directoryFirst(20, 100, 2000);
  const Decoded decoded = decode(Bytes(whole).first(whole.size() - 1234));
  EXPECT_EQ(decoded.notice, "The file is damaged or truncated: only 38 of 100 rows could be read.");
  EXPECT_EQ(decoded.bitmap.at(19, 37), (Pixel{37, 37, 37, 255}));
  EXPECT_EQ(decoded.bitmap.at(0, 38), (Pixel{0, 0, 0, 0}));
  EXPECT_EQ(errorOf([&] { decode(Bytes(whole).first(whole.size() - 1990)); }), 481);
}

TEST(Tiff, EntriesOfAnUnknownTypeAreSkipped) {
  test::Builder b;
  b.text("MM").be16(42).be32(8).be16(7);
  const auto entry = [&](std::uint32_t tag, std::uint32_t type, std::uint32_t value) {
    b.be16(tag).be16(type).be32(1).be32(value);
  };
  entry(256, 4, 1), entry(257, 4, 1), entry(258, 4, 8), entry(262, 4, 1);
  entry(273, 4, 98), entry(279, 4, 1), entry(700, 99, 12345);
  b.be32(0).u8({77});
  EXPECT_EQ(decode(b.bytes).bitmap.at(0, 0), (Pixel{77, 77, 77, 255}));
}

TEST(Tiff, AnAbsurdSizeInASmallFileIsRefused) {
  auto bytes = directoryFirst(20, 10, 200);
  for (std::size_t i = 0; i < 4; ++i) bytes[18 + i] = bytes[30 + i] = i == 2 ? 1 : 0;  // 65,536 x 65,536
  EXPECT_EQ(errorOf([&] { decode(bytes); }), 7);
}

TEST(Tiff, ASavedFileIsReadByLibtiff) {
  const Bitmap picture = test::noise(23, 9, true);
  const fs::path path = fs::temp_directory_path() / ("kestrel_own_" + std::to_string(getpid()) + ".tif");
  encodeFile(picture, {}, format::kTif, {}, path);
  TIFF* const tiff = TIFFOpen(path.c_str(), "r");
  ASSERT_NE(tiff, nullptr);
  std::vector<std::uint32_t> raster(23 * 9);
  EXPECT_EQ(TIFFReadRGBAImageOriented(tiff, 23, 9, raster.data(), ORIENTATION_TOPLEFT, 1), 1);
  TIFFClose(tiff);
  fs::remove(path);
  for (int y = 0; y < 9; ++y) {
    EXPECT_EQ(std::memcmp(raster.data() + 23 * y, picture.pixels().row(y), 23 * 4), 0) << y;
  }
}

}  // namespace
}  // namespace kestrel::engine
