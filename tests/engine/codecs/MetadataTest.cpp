#include <cstring>

#include "TestPictures.h"
#include "engine/codecs/CodecTable.h"
#include "engine/codecs/Exif.h"

namespace kestrel::engine {
namespace {

using test::Builder;
using test::isPicture;

const std::string kXmp =
    "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF><rdf:Description tiff:Orientation=\"6\" "
    "dc:title=\"Gr\xC3\xBC\xC3\x9F\"/></rdf:RDF></x:xmpmeta>";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  return text.replace(text.find(from), from.size(), to);
}

bool contains(Bytes data, const std::string& text) {
  const std::vector<std::uint8_t> bytes(text.begin(), text.end());
  return !std::ranges::search(data, bytes).empty();
}

class MetadataTest : public testing::TestWithParam<std::int32_t> {
 protected:
  Decoded loadAndSave(const Metadata& metadata) const {
    return decode(encode(test::gradient(24, 16), metadata, GetParam(), {100}));
  }
};

TEST_P(MetadataTest, ResolutionSurvives) {
  Metadata metadata;
  metadata.resolutionX = 300;
  metadata.resolutionY = 144;
  const Metadata read = loadAndSave(metadata).metadata;
  EXPECT_NEAR(read.resolutionX, 300, 0.02);
  EXPECT_NEAR(read.resolutionY, 144, 0.02);
  EXPECT_EQ(loadAndSave({}).metadata.resolutionX, 0);
}

TEST_P(MetadataTest, IptcSurvives) {
  for (const std::size_t extra : {0U, 1U}) {
    Metadata metadata;
    metadata.iptc = Builder()
                        .u8({0x1C, 2, 5})
                        .be16(static_cast<std::uint32_t>(5 + extra))
                        .text("Title")
                        .fill(extra, 'x')
                        .bytes;
    EXPECT_EQ(loadAndSave(metadata).metadata.iptc, metadata.iptc);
  }
}

TEST_P(MetadataTest, XmpSurvivesAndTellsTheOrientationAsNormal) {
  Metadata metadata;
  metadata.xmp.assign(kXmp.begin(), kXmp.end());
  const Metadata read = loadAndSave(metadata).metadata;
  const std::string wanted = replaced(kXmp, "Orientation=\"6\"", "Orientation=\"1\"");
  EXPECT_EQ(std::string(read.xmp.begin(), read.xmp.end()), wanted);
}

TEST_P(MetadataTest, CameraDataSurvives) {
  Metadata metadata;
  metadata.exif = test::cameraBlock(1);
  const Metadata read = loadAndSave(metadata).metadata;
  EXPECT_TRUE(contains(read.exif, "Kestrel"));
  EXPECT_TRUE(contains(read.exif, "2026:01:02 03:04:05"));
  const Metadata again = loadAndSave(read).metadata;
  EXPECT_EQ(again.exif, read.exif);
}

TEST_P(MetadataTest, CameraDataTellsTheSizeOfTheSavedPicture) {
  Metadata metadata;
  metadata.exif = test::cameraBlock(1);
  const std::vector<std::uint8_t> exif = loadAndSave(metadata).metadata.exif;
  // Both entries name their tag, a type, one value and the value itself.
  EXPECT_TRUE(contains(exif, std::string("\x02\xA0\x04\x00\x01\x00\x00\x00\x18\x00\x00\x00", 12)));
  EXPECT_TRUE(contains(exif, std::string("\x03\xA0\x03\x00\x01\x00\x00\x00\x10\x00", 10)));
}

TEST_P(MetadataTest, TheCamerasThumbnailIsDropped) {
  Metadata metadata;
  metadata.exif = test::cameraBlock(1, 500);
  const std::vector<std::uint8_t> exif = loadAndSave(metadata).metadata.exif;
  EXPECT_TRUE(contains(exif, "Kestrel"));
  EXPECT_FALSE(contains(exif, std::string(20, '\xAB')));
}

TEST_P(MetadataTest, CameraDataThatIsNoneIsDropped) {
  Metadata metadata;
  metadata.exif = Builder().text("This is no camera data at all.").bytes;
  EXPECT_TRUE(loadAndSave(metadata).metadata.exif.empty());
}

TEST_P(MetadataTest, NothingComesFromNothing) {
  const Metadata read = loadAndSave({}).metadata;
  EXPECT_TRUE(read.exif.empty());
  EXPECT_TRUE(read.xmp.empty());
  EXPECT_TRUE(read.iptc.empty());
  EXPECT_TRUE(read.iccProfile.empty());
}

INSTANTIATE_TEST_SUITE_P(Formats, MetadataTest,
                         testing::Values(format::kJpg, format::kPng, format::kTif, format::kPsd,
                                         format::kTla),
                         [](const auto& format) { return std::string(codecOf(format.param)->name); });

/// A picture as the camera stored it, whose upright form is `upright`.
Bitmap storedFor(const Bitmap& upright, int orientation) {
  const int w = upright.width(), h = upright.height();
  const bool turned = orientation >= 5;
  return test::pictureOf(turned ? h : w, turned ? w : h, [&](int x, int y) {
    switch (orientation) {
      case 2:
        return upright.at(w - 1 - x, y);
      case 3:
        return upright.at(w - 1 - x, h - 1 - y);
      case 4:
        return upright.at(x, h - 1 - y);
      case 5:
        return upright.at(y, x);  // row 0 is the left side, column 0 the top
      case 6:
        return upright.at(w - 1 - y, x);  // row 0 is the right side, column 0 the top
      case 7:
        return upright.at(w - 1 - y, h - 1 - x);
      case 8:
        return upright.at(y, h - 1 - x);  // row 0 is the left side, column 0 the bottom
      default:
        return upright.at(x, y);
    }
  });
}

TEST(Orientation, AllEightAreAppliedOnLoadAndWrittenAsNormal) {
  const Bitmap upright = test::noise(37, 22, true);
  for (int orientation = 1; orientation <= 8; ++orientation) {
    Metadata metadata;
    metadata.exif = test::cameraBlock(static_cast<std::uint32_t>(orientation));
    metadata.resolutionX = 100;
    metadata.resolutionY = 200;
    const Decoded decoded = decode(encode(storedFor(upright, orientation), metadata, format::kPng));
    EXPECT_TRUE(isPicture(decoded.bitmap, upright)) << orientation;
    EXPECT_EQ(decoded.stored.orientation, orientation);
    EXPECT_EQ(exifOrientation(decoded.metadata.exif), 1) << orientation;
    EXPECT_NEAR(decoded.metadata.resolutionX, orientation >= 5 ? 200 : 100, 0.02) << orientation;

    const Decoded again = decode(encode(decoded.bitmap, decoded.metadata, format::kPng));
    EXPECT_TRUE(isPicture(again.bitmap, upright)) << orientation;
    EXPECT_EQ(again.stored.orientation, 1);
  }
}

TEST(Orientation, IsAppliedInJpegFiles) {
  const Bitmap upright = test::gradient(64, 32);
  Metadata metadata;
  metadata.exif = test::cameraBlock(6);
  const Decoded decoded = decode(encode(storedFor(upright, 6), metadata, format::kJpg, {100}));
  EXPECT_TRUE(isPicture(decoded.bitmap, upright, 5));
}

TEST(Orientation, SenselessValuesAreNormal) {
  for (const std::uint32_t value : {0U, 9U, 65535U}) {
    Metadata metadata;
    metadata.exif = test::cameraBlock(value);
    const Bitmap picture = test::noise(5, 3, true);
    EXPECT_TRUE(isPicture(decode(encode(picture, metadata, format::kPng)).bitmap, picture)) << value;
  }
}

TEST(Exif, BigEndianBlocksAreUnderstood) {
  const auto exif = Builder()
                        .text("MM")
                        .be16(42)
                        .be32(8)
                        .be16(1)
                        .be16(0x0112)
                        .be16(3)
                        .be32(1)
                        .be16(8)
                        .be16(0)
                        .be32(0)
                        .bytes;
  EXPECT_EQ(exifOrientation(exif), 8);
}

TEST(Exif, BlocksThatPointOutsideThemselvesAreHarmless) {
  const std::vector<std::uint8_t> whole = test::cameraBlock(6, 100);
  std::mt19937 random(11);
  for (int round = 0; round < 20'000; ++round) {
    Metadata metadata;
    metadata.exif = whole;
    for (int i = 0; i < 4; ++i)
      metadata.exif[random() % metadata.exif.size()] = static_cast<std::uint8_t>(random());
    metadata.exif.resize(1 + random() % metadata.exif.size());
    EXPECT_LE(exifOrientation(metadata.exif), 8);
    const std::size_t size = metadata.exif.size();
    normalizeCameraData(metadata);
    setExifSize(metadata.exif, 10, 20);
    readExifResolution(metadata.exif, metadata);
    EXPECT_LE(metadata.exif.size(), size);
  }
}

}  // namespace
}  // namespace kestrel::engine
