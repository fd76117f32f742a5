#include <zlib.h>

#include "../TestPictures.h"

namespace kestrel::engine {
namespace {

using test::Builder;
using test::errorOf;
using test::positionOf;

struct Form {
  int mode = 3, channels = 3, depth = 8;
  std::uint32_t width = 2, height = 1;
  Builder map = {}, resources = {}, layers = {};
  int compression = 0;
  bool large = false;
};

std::vector<std::uint8_t> psdFile(const Form& f, std::initializer_list<int> rows) {
  const auto section = [](Builder& b, const Builder& content, bool wide = false) {
    if (wide) b.be32(0);
    b.be32(static_cast<std::uint32_t>(content.bytes.size()));
    b.bytes.insert(b.bytes.end(), content.bytes.begin(), content.bytes.end());
  };
  Builder b;
  b.text("8BPS").be16(f.large ? 2 : 1).fill(6).be16(static_cast<std::uint32_t>(f.channels));
  b.be32(f.height)
      .be32(f.width)
      .be16(static_cast<std::uint32_t>(f.depth))
      .be16(static_cast<std::uint32_t>(f.mode));
  section(b, f.map);
  section(b, f.resources);
  section(b, f.layers, f.large);
  b.be16(static_cast<std::uint32_t>(f.compression)).u8(rows);
  return b.bytes;
}

/// The start of a layer section with this many layers: all that a reader of the merged picture uses.
Builder layers(std::uint32_t count) { return Builder().be32(4).be16(count).be16(0); }

TEST(Psd, ReadsRgbOf8And16And32Bits) {
  EXPECT_EQ(decode(psdFile({}, {1, 2, 3, 4, 5, 6})).bitmap.at(1, 0), (Pixel{2, 4, 6, 255}));
  const Decoded deep = decode(psdFile({.depth = 16, .width = 1}, {0xFF, 0xFF, 0x80, 0, 0, 0x7F}));
  EXPECT_EQ(deep.bitmap.at(0, 0), (Pixel{255, 128, 0, 255}));
  EXPECT_EQ(deep.stored.bitsPerSample, 16);
  const auto real =
      psdFile({.depth = 32, .width = 1}, {0x3F, 0x80, 0, 0, 0x3F, 0, 0, 0, 0, 0, 0, 0});  // 1, 0.5, 0
  EXPECT_EQ(decode(real).bitmap.at(0, 0), (Pixel{255, 128, 0, 255}));
}

TEST(Psd, ReadsRunLengths) {
  const auto bytes =
      psdFile({.width = 4, .compression = 1}, {0, 2, 0, 5, 0, 3, 0xFD, 9, 3, 1, 2, 3, 4, 0xFE, 7, 0x80});
  EXPECT_EQ(errorOf([&] { decode(bytes); }), 481) << "the last row is too short";
  const auto whole =
      psdFile({.width = 4, .compression = 1}, {0, 2, 0, 5, 0, 4, 0xFD, 9, 3, 1, 2, 3, 4, 0xFE, 7, 0, 8});
  EXPECT_EQ(decode(whole).bitmap.at(0, 0), (Pixel{9, 1, 7, 255}));
  EXPECT_EQ(decode(whole).bitmap.at(3, 0), (Pixel{9, 4, 8, 255}));
}

/// Compressed to a zlib stream.
std::vector<std::uint8_t> zipped(const std::vector<std::uint8_t>& bytes) {
  uLongf size = compressBound(bytes.size());
  std::vector<std::uint8_t> packed(size);
  EXPECT_EQ(compress(packed.data(), &size, bytes.data(), bytes.size()), Z_OK);
  packed.resize(size);
  return packed;
}

std::vector<std::uint8_t> psdFile(const Form& f, const std::vector<std::uint8_t>& data) {
  auto file = psdFile(f, std::initializer_list<int>{});
  file.insert(file.end(), data.begin(), data.end());
  return file;
}

TEST(Psd, ReadsZippedChannels) {
  // Two pixels, planar; then the same with horizontal prediction.
  const Pixel first{10, 20, 30, 255}, second{13, 15, 31, 255};
  const auto plain = psdFile({.compression = 2}, zipped({10, 13, 20, 15, 30, 31}));
  EXPECT_EQ(decode(plain).bitmap.at(0, 0), first);
  EXPECT_EQ(decode(plain).bitmap.at(1, 0), second);
  const auto differences = psdFile({.compression = 3}, zipped({10, 3, 20, 251, 30, 1}));
  EXPECT_EQ(decode(differences).bitmap.at(0, 0), first);
  EXPECT_EQ(decode(differences).bitmap.at(1, 0), second);
  // 16 bits: FFFF and 8000; their difference is 8001.
  const auto deep = psdFile({.channels = 3, .depth = 16, .compression = 3},
                            zipped({0xFF, 0xFF, 0x80, 0x01, 0, 0, 0, 0, 0x80, 0, 0, 0}));
  EXPECT_EQ(decode(deep).bitmap.at(0, 0), (Pixel{255, 0, 128, 255}));
  EXPECT_EQ(decode(deep).bitmap.at(1, 0), (Pixel{128, 0, 128, 255}));
  // Floats 1 and 0.5: 3F800000 and 3F000000, split into byte planes: 3F 3F, 80 00, 00 00, 00 00.
  const std::vector<std::uint8_t> ones{0x3F, 0, 0x41, 0x80, 0, 0, 0, 0};
  std::vector<std::uint8_t> all;
  for (int i = 0; i < 3; ++i) all.insert(all.end(), ones.begin(), ones.end());
  const auto real = psdFile({.depth = 32, .compression = 3}, zipped(all));
  EXPECT_EQ(decode(real).bitmap.at(0, 0), (Pixel{255, 255, 255, 255}));
  EXPECT_EQ(decode(real).bitmap.at(1, 0), (Pixel{128, 128, 128, 255}));
}

TEST(Psd, ATruncatedZlibStreamShowsTheRowsThatItHolds) {
  std::vector<std::uint8_t> gray;
  for (int i = 0; i < 100 * 100; ++i) gray.push_back(static_cast<std::uint8_t>(i * i / 7));
  auto packed = zipped(gray);
  packed.resize(packed.size() / 2);
  const Decoded decoded =
      decode(psdFile({.mode = 1, .channels = 1, .width = 100, .height = 100, .compression = 2}, packed));
  EXPECT_NE(decoded.notice, "");
  EXPECT_EQ(decoded.bitmap.at(7, 3), (Pixel{gray[307], gray[307], gray[307], 255}));
  EXPECT_EQ(decoded.bitmap.at(7, 99).a, 0);
}

TEST(Psd, ColorsComeFromAZippedLayer) {
  // One pixel, half transparent: the merged picture holds it over white, the layer as it is.
  Builder record = Builder().be16(0xFFFF).be32(0).be32(0).be32(1).be32(1).be16(4);
  Builder channels;
  constexpr int kPixel[] = {200, 100, 50, 20};
  for (int i = 0; i < 4; ++i) {
    const auto packed = zipped({static_cast<std::uint8_t>(kPixel[i])});
    record.be16(i < 3 ? static_cast<std::uint32_t>(i) : 0xFFFF);
    record.be32(static_cast<std::uint32_t>(2 + packed.size()));
    channels.be16(i % 2 == 0 ? 2 : 3);
    channels.bytes.insert(channels.bytes.end(), packed.begin(), packed.end());
  }
  record.text("8BIMnorm").u8({255, 0, 0, 0}).be32(12).be32(0).be32(0).u8({1}).text("A").fill(2);
  record.bytes.insert(record.bytes.end(), channels.bytes.begin(), channels.bytes.end());
  Builder section = Builder().be32(static_cast<std::uint32_t>(record.bytes.size()));
  section.bytes.insert(section.bytes.end(), record.bytes.begin(), record.bytes.end());
  const Form form{.channels = 4, .width = 1, .layers = section};
  EXPECT_EQ(decode(psdFile(form, {251, 243, 239, 20})).bitmap.at(0, 0), (Pixel{200, 100, 50, 20}));
}

/// One half transparent pixel of 16 bits a channel as the only layer, in a block behind the mask for all.
Builder deepLayer(const std::string& key, const std::string& mode = "norm") {
  Builder info = Builder().be16(0xFFFF).be32(0).be32(0).be32(1).be32(1).be16(4);
  for (const std::uint32_t channel : {0U, 1U, 2U, 0xFFFFU}) info.be16(channel).be32(4);
  info.text("8BIM" + mode).u8({255, 0, 0, 0}).be32(12).be32(0).be32(0).u8({1}).text("A").fill(2);
  for (const std::uint32_t sample : {200U, 100U, 50U, 128U}) info.be16(0).be16(sample * 257);
  // No layers of 8 bits, a mask of six bytes, another block, whose length is filled up to four.
  Builder section = Builder().be32(0).be32(6).fill(6).text("8BIMPatt").be32(3).fill(4);
  section.text("8BIM" + key).be32(static_cast<std::uint32_t>(info.bytes.size()));
  section.bytes.insert(section.bytes.end(), info.bytes.begin(), info.bytes.end());
  return section;
}

TEST(Psd, LayersOfSixteenBitsAreInABlockOfTheirOwn) {
  // The merged picture is over white: 255 - (255 - 200) * 128 / 255 = 227, 177, 152.
  Builder merged;
  for (const std::uint32_t sample : {227U, 177U, 152U, 128U}) merged.be16(sample * 257);
  const auto shown = [&](const Builder& section) {
    const Form form{.channels = 4, .depth = 16, .width = 1, .layers = section};
    return decode(psdFile(form, merged.bytes)).bitmap.at(0, 0);
  };
  EXPECT_EQ(shown(deepLayer("Lr16")), (Pixel{200, 100, 50, 128}));
  const Pixel unmixed = shown(deepLayer("Lr16", "mul "));
  EXPECT_NEAR(unmixed.r, 200, 2) << "the merged picture, without the white";
  EXPECT_NEAR(unmixed.b, 50, 2);
  EXPECT_EQ(unmixed.a, 128);
  Builder cut = deepLayer("Lr16");
  cut.bytes.resize(30);
  EXPECT_EQ(shown(cut), (Pixel{227, 177, 152, 128})) << "a damaged block is none";
}

TEST(Psd, ReadsGrayBitsAndPalettes) {
  EXPECT_EQ(decode(psdFile({.mode = 1, .channels = 1}, {5, 6})).bitmap.at(1, 0), (Pixel{6, 6, 6, 255}));
  const Bitmap bits = decode(psdFile({.mode = 0, .channels = 1, .depth = 1}, {0b01000000})).bitmap;
  EXPECT_EQ(bits.at(0, 0), (Pixel{255, 255, 255, 255}));
  EXPECT_EQ(bits.at(1, 0), (Pixel{0, 0, 0, 255}));
  Builder map;
  map.fill(768);
  map.bytes[3] = 10, map.bytes[256 + 3] = 20, map.bytes[512 + 3] = 30;
  EXPECT_EQ(decode(psdFile({.mode = 2, .channels = 1, .map = map}, {3, 0})).bitmap.at(0, 0),
            (Pixel{10, 20, 30, 255}));
  EXPECT_EQ(errorOf([] { decode(psdFile({.mode = 2, .channels = 1}, {3, 0})); }), 481);
}

TEST(Psd, ReadsCmykAndLab) {
  const Pixel cmyk =
      decode(psdFile({.mode = 4, .channels = 4, .width = 1}, {127, 255, 255, 204})).bitmap.at(0, 0);
  EXPECT_NEAR(cmyk.r, 102, 1);
  EXPECT_NEAR(cmyk.g, 204, 1);
  EXPECT_NEAR(cmyk.b, 204, 1);
  EXPECT_EQ(cmyk.a, 255);
  // L 53.2, a 80.1, b 67.2 is the red of sRGB.
  const Pixel red = decode(psdFile({.mode = 9, .width = 1}, {136, 208, 195})).bitmap.at(0, 0);
  EXPECT_GT(red.r, 245);
  EXPECT_LT(red.g, 25);
  EXPECT_LT(red.b, 25);
  EXPECT_EQ(red.a, 255);
}

TEST(Psd, TheFourthChannelIsAlphaInAFileWithoutLayers) {
  EXPECT_EQ(decode(psdFile({.channels = 4, .width = 1}, {10, 20, 30, 40})).bitmap.at(0, 0),
            (Pixel{10, 20, 30, 40}));
}

TEST(Psd, AStoredSelectionIsNotAlpha) {
  const Form named{.channels = 4,
                   .width = 1,
                   .resources = Builder().text("8BIM").be16(1006).be16(0).be32(8).u8({7}).text("Alpha 1")};
  EXPECT_EQ(decode(psdFile(named, {10, 20, 30, 40})).bitmap.at(0, 0), (Pixel{10, 20, 30, 255}));
  EXPECT_EQ(
      decode(psdFile({.channels = 4, .width = 1, .layers = layers(1)}, {10, 20, 30, 40})).bitmap.at(0, 0),
      (Pixel{10, 20, 30, 255}));
}

TEST(Psd, MergedColorsAreSeparatedFromTheWhiteBehindThem) {
  // Half of pure red over white is 255, 127, 127.
  const Form f{.channels = 4, .width = 1, .layers = layers(0xFFFF)};
  const Pixel p = decode(psdFile(f, {255, 127, 127, 128})).bitmap.at(0, 0);
  EXPECT_EQ(p.r, 255);
  EXPECT_NEAR(p.g, 0, 1);
  EXPECT_NEAR(p.b, 0, 1);
  EXPECT_EQ(p.a, 128);
}

TEST(Psd, ColorsComeFromTheOnlyLayerIfItIsShownUnchanged) {
  const Pixel pixel{200, 100, 50, 20};
  const auto whole = encode(Bitmap::filled(5, 3, pixel), {}, format::kPsd);
  EXPECT_EQ(decode(whole).bitmap.at(4, 2), pixel);
  const auto mode = static_cast<std::ptrdiff_t>(positionOf("8BIMnorm", whole));
  // Another blend mode, half transparent, clipped, hidden; at another position; with a mask.
  for (const auto& [place, value] :
       {std::pair{7, 'x'}, {8, '\x7F'}, {9, '\1'}, {10, '\2'}, {-35, '\1'}, {19, '\1'}}) {
    auto changed = whole;
    changed.at(static_cast<std::size_t>(mode + place)) = static_cast<std::uint8_t>(value);
    const Decoded merged = decode(changed);
    EXPECT_EQ(merged.notice, "") << place;
    EXPECT_NE(merged.bitmap.at(4, 2), pixel) << place;
    EXPECT_NEAR(merged.bitmap.at(4, 2).r, pixel.r, 7) << place;
    EXPECT_EQ(merged.bitmap.at(4, 2).a, pixel.a) << place;
  }
}

TEST(Psd, ReadsTheLargeDocumentForm) {
  EXPECT_EQ(decode(psdFile({.large = true}, {1, 2, 3, 4, 5, 6})).bitmap.at(1, 0), (Pixel{2, 4, 6, 255}));
}

TEST(Psd, InvalidHeadersAreRefused) {
  EXPECT_EQ(errorOf([] { decode(psdFile({.channels = 2}, {1, 2, 3, 4})); }), 481);
  EXPECT_EQ(errorOf([] { decode(psdFile({.mode = 5}, {1, 2, 3, 4, 5, 6})); }), 481);
  EXPECT_EQ(errorOf([] { decode(psdFile({.depth = 5}, {1, 2, 3, 4, 5, 6})); }), 481);
  EXPECT_EQ(errorOf([] { decode(psdFile({.width = 0}, {1, 2, 3, 4, 5, 6})); }), 481);
  EXPECT_EQ(errorOf([] { decode(psdFile({.compression = 9}, {1, 2, 3, 4, 5, 6})); }), 481);
  EXPECT_EQ(errorOf([] { decode(psdFile({.width = 65'536, .height = 65'536}, {1, 2, 3})); }), 7);
}

}  // namespace
}  // namespace kestrel::engine
