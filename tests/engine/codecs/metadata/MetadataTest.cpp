#include <cstring>

#include "../TestPictures.h"
#include "engine/codecs/CodecTable.h"
#include "engine/codecs/metadata/Exif.h"
#include "engine/codecs/metadata/Xmp.h"

namespace kestrel::engine {
namespace {

using test::Builder;
using test::contains;
using test::isPicture;

const std::string kXmp =
    "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF><rdf:Description tiff:Orientation=\"6\" "
    "dc:title=\"Gr\xC3\xBC\xC3\x9F\"/></rdf:RDF></x:xmpmeta>";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  return text.replace(text.find(from), from.size(), to);
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

TEST_P(MetadataTest, XmpSurvivesWithANormalOrientation) {
  Metadata metadata;
  metadata.xmp.assign(kXmp.begin(), kXmp.end());
  const Metadata read = loadAndSave(metadata).metadata;
  const std::string wanted = replaced(kXmp, "Orientation=\"6\"", "Orientation=\"1\"");
  EXPECT_EQ(std::string(read.xmp.begin(), read.xmp.end()), wanted);
}

TEST_P(MetadataTest, ExifSurvives) {
  Metadata metadata;
  metadata.exif = test::cameraBlock(1);
  const Metadata read = loadAndSave(metadata).metadata;
  EXPECT_TRUE(contains(read.exif, "Kestrel"));
  EXPECT_TRUE(contains(read.exif, "2026:01:02 03:04:05"));
  const Metadata again = loadAndSave(read).metadata;
  EXPECT_EQ(again.exif, read.exif);
}

TEST_P(MetadataTest, ExifHoldsTheSizeOfTheSavedPicture) {
  Metadata metadata;
  metadata.exif = test::cameraBlock(1);
  const std::vector<std::uint8_t> exif = loadAndSave(metadata).metadata.exif;
  // Each entry: tag, type, count 1, value.
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

TEST_P(MetadataTest, InvalidExifIsDropped) {
  Metadata metadata;
  metadata.exif = Builder().text("This is no camera data at all.").bytes;
  EXPECT_TRUE(loadAndSave(metadata).metadata.exif.empty());
}

TEST_P(MetadataTest, NoMetadataStaysNone) {
  const Metadata read = loadAndSave({}).metadata;
  EXPECT_TRUE(read.exif.empty());
  EXPECT_TRUE(read.xmp.empty());
  EXPECT_TRUE(read.iptc.empty());
  EXPECT_TRUE(read.iccProfile.empty());
}

TEST_P(MetadataTest, LongXmpSurvives) {
  // Longer than one JPEG marker can hold, in attributes as well as in elements.
  const std::string history(90'000, 'h'), layers(150'000, 'l');
  const std::string text =
      "<?xpacket begin=\"\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?><x:xmpmeta xmlns:x=\"adobe:ns:meta/\">"
      "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\" xmlns:k=\"http://kestrel/\">"
      "<rdf:Description rdf:about=\"\" xmlns:photoshop=\"http://ns.adobe.com/photoshop/1.0/\" "
      "photoshop:City='Oslo' photoshop:History=\"" +
      history + "\"><k:Kept>yes</k:Kept><k:Layers><rdf:Bag><rdf:li>" + layers +
      "</rdf:li></rdf:Bag></k:Layers></rdf:Description></rdf:RDF></x:xmpmeta><?xpacket end=\"w\"?>";
  Metadata metadata;
  metadata.xmp.assign(text.begin(), text.end());
  const Metadata read = loadAndSave(metadata).metadata;
  EXPECT_TRUE(contains(read.xmp, " photoshop:City='Oslo'"));
  EXPECT_TRUE(contains(read.xmp, " photoshop:History=\"" + history + "\""));
  EXPECT_TRUE(contains(read.xmp, "<k:Kept>yes</k:Kept>"));
  EXPECT_TRUE(contains(read.xmp, "<k:Layers><rdf:Bag><rdf:li>" + layers + "</rdf:li></rdf:Bag></k:Layers>"));
  EXPECT_FALSE(contains(read.xmp, "HasExtendedXMP"));
  EXPECT_LE(read.xmp.size(), text.size() + 1000);
  EXPECT_EQ(loadAndSave(read).metadata.xmp, read.xmp);
}

TEST_P(MetadataTest, LongIptcSurvives) {
  Metadata metadata;
  while (metadata.iptc.size() < 150'000) {
    const auto record = Builder().u8({0x1C, 2, 25}).be16(1001).fill(1001, 'k').bytes;
    metadata.iptc.insert(metadata.iptc.end(), record.begin(), record.end());
  }
  EXPECT_EQ(loadAndSave(metadata).metadata.iptc, metadata.iptc);
}

/// An EXIF block with a maker's note of this length.
std::vector<std::uint8_t> blockWithNote(std::uint32_t length) {
  Builder b;
  b.text("II").le16(42).le32(8);
  b.le16(2);
  b.le16(0x010F).le16(2).le32(8).le32(100);  // make, at 100
  b.le16(0x8769).le16(4).le32(1).le32(120);  // EXIF directory, at 120
  b.le32(0).fillTo(100).text("Kestrel").u8({0});
  b.fillTo(120);
  b.le16(2);
  b.le16(0x9003).le16(2).le32(20).le32(160);      // date and time, at 160
  b.le16(0x927C).le16(7).le32(length).le32(200);  // the note, at 200
  b.le32(0).fillTo(160).text("2026:01:02 03:04:05").u8({0});
  b.fillTo(200).fill(length, 0xAB);
  return b.bytes;
}

TEST_P(MetadataTest, ExifIsKeptUpToTheLimitOfTheFormat) {
  for (const std::uint32_t length : {65'000U, 100'000U}) {
    Metadata metadata;
    metadata.exif = blockWithNote(length);
    const std::vector<std::uint8_t> exif = loadAndSave(metadata).metadata.exif;
    EXPECT_TRUE(contains(exif, "Kestrel"));
    EXPECT_TRUE(contains(exif, "2026:01:02 03:04:05"));
    // EXIF must fit into one JPEG marker.
    const bool fits = GetParam() != format::kJpg || length < 65'500;
    EXPECT_EQ(contains(exif, std::string(length, '\xAB')), fits) << length;
  }
}

TEST_P(MetadataTest, XmpHoldsTheSavedSizeAndNoOldPreview) {
  const std::string text =
      "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF><rdf:Description tiff:ImageWidth=\"4000\" a:b=\"4000\">"
      "<exif:PixelYDimension>3000</exif:PixelYDimension><xmp:Thumbnails><rdf:Alt><rdf:li>OLD</rdf:li></"
      "rdf:Alt>"
      "</xmp:Thumbnails><c:d>3000</c:d></rdf:Description></rdf:RDF></x:xmpmeta>";
  Metadata metadata;
  metadata.xmp.assign(text.begin(), text.end());
  const Metadata read = loadAndSave(metadata).metadata;
  EXPECT_EQ(
      std::string(read.xmp.begin(), read.xmp.end()),
      "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF><rdf:Description tiff:ImageWidth=\"24\" a:b=\"4000\">"
      "<exif:PixelYDimension>16</exif:PixelYDimension><c:d>3000</c:d></rdf:Description></rdf:RDF>"
      "</x:xmpmeta>");
}

INSTANTIATE_TEST_SUITE_P(Formats, MetadataTest,
                         testing::Values(format::kJpg, format::kPng, format::kTif, format::kPsd,
                                         format::kTla),
                         [](const auto& format) { return std::string(codecOf(format.param)->name); });

/// The pixels that a file with this orientation stores for the picture `upright`.
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

TEST(Orientation, AllEightAreAppliedOnLoadAndSavedAsNormal) {
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

TEST(Orientation, InvalidValuesCountAsNormal) {
  for (const std::uint32_t value : {0U, 9U, 65535U}) {
    Metadata metadata;
    metadata.exif = test::cameraBlock(value);
    const Bitmap picture = test::noise(5, 3, true);
    EXPECT_TRUE(isPicture(decode(encode(picture, metadata, format::kPng)).bitmap, picture)) << value;
  }
}

TEST(Metadata, SurvivesConversionBetweenFormats) {
  Metadata metadata;
  metadata.resolutionX = metadata.resolutionY = 240;
  metadata.exif = test::cameraBlock(6, 300);
  metadata.xmp.assign(kXmp.begin(), kXmp.end());
  metadata.iptc = Builder().u8({0x1C, 2, 5}).be16(5).text("Title").bytes;
  Decoded decoded = decode(encode(test::gradient(24, 16), metadata, format::kJpg, {100}));
  EXPECT_EQ(decoded.bitmap.width(), 16);
  for (const std::int32_t next : {format::kPng, format::kTif, format::kJpg, format::kTif, format::kPng}) {
    decoded = decode(encode(decoded.bitmap, decoded.metadata, next, {100}));
    EXPECT_EQ(decoded.bitmap.width(), 16) << next;
    EXPECT_EQ(decoded.stored.orientation, 1) << next;
    EXPECT_NEAR(decoded.metadata.resolutionX, 240, 0.02) << next;
    EXPECT_TRUE(contains(decoded.metadata.exif, "Kestrel")) << next;
    EXPECT_TRUE(contains(decoded.metadata.exif, "2026:01:02 03:04:05")) << next;
    EXPECT_FALSE(contains(decoded.metadata.exif, std::string(20, '\xAB'))) << next;
    EXPECT_EQ(decoded.metadata.iptc, metadata.iptc) << next;
    EXPECT_TRUE(contains(decoded.metadata.xmp, "tiff:Orientation=\"1\" dc:title=\"Gr\xC3\xBC\xC3\x9F\""))
        << next;
  }
}

TEST(Metadata, CommentsOfJpegFilesSurvive) {
  for (const std::size_t length : {1U, 70'000U}) {
    Metadata metadata;
    metadata.comment = std::string(length, 'c');
    EXPECT_EQ(decode(encode(test::gradient(9, 9), metadata, format::kJpg)).metadata.comment,
              metadata.comment);
  }
}

TEST(Metadata, CommentsSurviveFromJpegToPngAndBack) {
  // UTF-8, Latin-1 and ASCII.
  for (const std::string comment : {"Gr\xC3\xBC\xC3\x9F", "Gr\xFC\xDF", "Greeting"}) {
    Metadata metadata;
    metadata.comment = comment;
    const Decoded png = decode(encode(test::gradient(9, 9), metadata, format::kPng));
    EXPECT_EQ(png.metadata.comment, comment);
    EXPECT_EQ(decode(encode(png.bitmap, png.metadata, format::kJpg)).metadata.comment, comment);
  }
}

TEST(Metadata, TextsOfPngFilesSurvive) {
  Metadata metadata;
  metadata.texts = {{"Title", "Lake", false, "", ""},
                    {"Author", "J\xFCrgen", false, "", ""},
                    {"Description", std::string(5000, 'd'), false, "", ""},
                    {"Title", "\xE6\xB9\x96", true, "zh-Hans", "\xE6\xA0\x87\xE9\xA2\x98"}};
  const Metadata read = decode(encode(test::gradient(9, 9), metadata, format::kPng)).metadata;
  ASSERT_EQ(read.texts.size(), metadata.texts.size());
  for (std::size_t i = 0; i < read.texts.size(); ++i) {
    EXPECT_EQ(read.texts[i].key, metadata.texts[i].key);
    EXPECT_EQ(read.texts[i].text, metadata.texts[i].text);
    EXPECT_EQ(read.texts[i].international, metadata.texts[i].international);
    EXPECT_EQ(read.texts[i].language, metadata.texts[i].language);
    EXPECT_EQ(read.texts[i].translatedKey, metadata.texts[i].translatedKey);
  }
}

TEST(Metadata, ExifHoldsTheResolutionOfTheFile) {
  // The block says 72 by 72 per inch, the default of cameras.
  Builder b;
  b.text("MM").be16(42).be32(8).be16(3);
  b.be16(0x011A).be16(5).be32(1).be32(60);
  b.be16(0x011B).be16(5).be32(1).be32(68);
  b.be16(0x0128).be16(3).be32(1).be16(3).be16(0);
  b.be32(0).fillTo(60).be32(72).be32(1).be32(72).be32(1);
  Metadata metadata;
  metadata.exif = b.bytes;
  metadata.resolutionX = 300;
  metadata.resolutionY = 150.5;
  const Metadata read = decode(encode(test::gradient(9, 9), metadata, format::kPng)).metadata;
  Metadata written;
  readExifResolution(read.exif, written);
  EXPECT_NEAR(written.resolutionX, 300, 0.02);
  EXPECT_NEAR(written.resolutionY, 150.5, 0.02);
}

TEST(Xmp, InvalidPacketsStayUnchanged) {
  for (const std::string text :
       {"", "<", "<x", "<x:xmpmeta><rdf:RDF>", "</rdf:RDF><rdf:RDF/>", "no packet at all",
        "<rdf:RDF><rdf:Description xmp:Thumbnails='</rdf:RDF>"}) {
    xmp::Packet packet(text.begin(), text.end());
    xmp::dropThumbnails(packet);
    xmp::setSize(packet, 1, 2);
    EXPECT_EQ(xmp::join(packet, packet), packet);
    EXPECT_EQ(std::string(packet.begin(), packet.end()), text);
  }
  EXPECT_FALSE(xmp::split(xmp::Packet(200, 'x'), 100));
}

TEST(Xmp, AMissingExtendedPacketLeavesTheStandardOne) {
  const std::string text = "<rdf:RDF><rdf:Description a:b='c' xmpNote:HasExtendedXMP='0123'/></rdf:RDF>";
  const xmp::Packet packet(text.begin(), text.end());
  EXPECT_EQ(xmp::extendedName(packet), "0123");
  const xmp::Packet joined = xmp::join(packet, {});
  EXPECT_EQ(std::string(joined.begin(), joined.end()), "<rdf:RDF><rdf:Description a:b='c' /></rdf:RDF>");
}

TEST(Xmp, DamagedPacketsAreHarmless) {
  std::mt19937 random(5);
  const std::string whole = "<?x?><x:xmpmeta><rdf:RDF a='b'><rdf:Description xmpNote:HasExtendedXMP='1' c='" +
                            std::string(60, 'v') +
                            "'><d>1</d><!-- e --><f/></rdf:Description></rdf:RDF></x:xmpmeta>";
  for (int round = 0; round < 20'000; ++round) {
    xmp::Packet packet(whole.begin(), whole.end());
    for (int i = 0; i < 4; ++i)
      packet[random() % packet.size()] = static_cast<std::uint8_t>("<>/'\"=! -:"[random() % 10]);
    packet.resize(1 + random() % packet.size());
    xmp::dropThumbnails(packet);
    xmp::setSize(packet, 3, 4);
    if (const auto parts = xmp::split(packet, 150)) {
      EXPECT_LE(parts->standard.size(), 150U);
      EXPECT_EQ(xmp::extendedName(parts->standard).size(), parts->extended.empty() ? 0U : 32U);
    }
    xmp::join(packet, packet);
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

TEST(Exif, OffsetsOutsideTheBlockAreHarmless) {
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
    describePicture(metadata, 10, 20);
    readExifResolution(metadata.exif, metadata);
    EXPECT_LE(metadata.exif.size(), size);
  }
}

}  // namespace
}  // namespace kestrel::engine
