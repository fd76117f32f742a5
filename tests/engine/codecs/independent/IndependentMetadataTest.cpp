// Metadata interoperability with ExifTool: it reads what we write, and we read what it writes.

#include "IndependentPrograms.h"
#include "engine/codecs/CodecTable.h"

namespace kestrel::engine {
namespace {

using test::Builder;
using test::contains;
using test::Workshop;

class IndependentMetadata : public testing::TestWithParam<std::int32_t> {
 protected:
  std::string extension() const { return std::string(FormatOf(GetParam())->Extensions[0]); }

  /// The tags of the file as ExifTool lists them, one per line.
  std::string tagsOf(const std::string& name) const {
    shop_.run({"exiftool -a -G1 -s -struct -Warning -Error -All " + name + " > tags.txt"});
    const auto bytes = shop_.bytes("tags.txt");
    return {bytes.begin(), bytes.end()};
  }

  Workshop shop_;
};

/// Whether the listing has this tag with this value, in any group.
testing::AssertionResult hasTag(const std::string& text, const std::string& tag, const std::string& value) {
  std::size_t begin = 0;
  while (begin < text.size()) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    const std::string line = text.substr(begin, end - begin);
    if (line.find(" " + tag + " ") != std::string::npos && line.ends_with(": " + value)) {
      return testing::AssertionSuccess();
    }
    begin = end + 1;
  }
  return testing::AssertionFailure() << "no " << tag << " of " << value << " in\n" << text.substr(0, 4000);
}

TEST_P(IndependentMetadata, ExifToolReadsOurs) {
  Metadata metadata;
  metadata.resolutionX = metadata.resolutionY = 300;
  metadata.exif = test::cameraBlock(6, 200);
  metadata.iptc = Builder().u8({0x1C, 2, 90}).be16(4).text("Oslo").bytes;
  const std::string xmp =
      "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
      "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
      "<rdf:Description rdf:about=\"\" xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\" xmp:Nickname=\"Gyr\"/>"
      "</rdf:RDF></x:xmpmeta>";
  metadata.xmp.assign(xmp.begin(), xmp.end());
  // Decode once, so that the orientation is applied and written as normal.
  const Decoded opened = decode(encode(test::gradient(40, 30), metadata, GetParam(), {90}));
  shop_.put("ours." + extension(), encode(opened.bitmap, opened.metadata, GetParam(), {90}));
  const std::string text = tagsOf("ours." + extension());
  EXPECT_TRUE(hasTag(text, "Make", "Kestrel"));
  EXPECT_TRUE(hasTag(text, "DateTimeOriginal", "2026:01:02 03:04:05"));
  EXPECT_TRUE(hasTag(text, "City", "Oslo"));
  EXPECT_TRUE(hasTag(text, "Nickname", "Gyr"));
  const std::string width = std::to_string(opened.bitmap.width()),
                    height = std::to_string(opened.bitmap.height());
  EXPECT_TRUE(hasTag(text, "ExifImageWidth", width));
  EXPECT_TRUE(hasTag(text, "ExifImageHeight", height));
  EXPECT_FALSE(hasTag(text, "Orientation", "Rotate 90 CW"));
  EXPECT_EQ(text.find("ThumbnailImage"), std::string::npos);
  EXPECT_EQ(text.find(" Warning "), std::string::npos) << text;
  EXPECT_EQ(text.find(" Error "), std::string::npos) << text;
}

TEST_P(IndependentMetadata, MetadataOfExifToolSurvivesALoadAndSave) {
  const std::string name = "theirs." + extension(), saved = "saved." + extension();
  shop_.put(name, encode(test::gradient(40, 30), {}, GetParam(), {90}));
  shop_.run(
      {"exiftool -q -overwrite_original -EXIF:Make=Kestrel -EXIF:UserComment=Gyr -EXIF:FNumber=5.6 "
       "-EXIF:GPSLatitude=59.91 -EXIF:GPSLatitudeRef=N -EXIF:Orientation#=6 -EXIF:XPTitle=Bird "
       "-IPTC:Keywords=falcon -IPTC:Keywords=owl -XMP:Creator=Merlin -XMP:Rating=4 -XMP:Orientation#=6 " +
       name});
  const Decoded opened = decodeFile(shop_.path(name));
  ASSERT_EQ(opened.bitmap.width(), 30);
  shop_.put(saved, encode(opened.bitmap, opened.metadata, GetParam(), {90}));
  const std::string text = tagsOf(saved);
  EXPECT_TRUE(hasTag(text, "Make", "Kestrel"));
  EXPECT_TRUE(hasTag(text, "UserComment", "Gyr"));
  EXPECT_TRUE(hasTag(text, "FNumber", "5.6"));
  EXPECT_TRUE(hasTag(text, "GPSLatitude", "59 deg 54' 36.00\" N"));
  EXPECT_TRUE(hasTag(text, "XPTitle", "Bird"));
  EXPECT_TRUE(hasTag(text, "Keywords", "[falcon,owl]"));
  EXPECT_TRUE(hasTag(text, "Creator", "[Merlin]"));
  EXPECT_TRUE(hasTag(text, "Rating", "4"));
  EXPECT_FALSE(hasTag(text, "Orientation", "Rotate 90 CW"));
  EXPECT_EQ(text.find(" Warning "), std::string::npos) << text;
}

INSTANTIATE_TEST_SUITE_P(Formats, IndependentMetadata,
                         testing::Values(format::kJpg, format::kPng, format::kTif),
                         [](const auto& format) { return std::string(codecOf(format.param)->name); });

class IndependentJpegMetadata : public IndependentMetadata {};

TEST_P(IndependentJpegMetadata, ExifToolReadsOurExtendedXmp) {
  const std::string xmp =
      "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
      "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
      "<rdf:Description rdf:about=\"\" xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\" "
      "xmlns:photoshop=\"http://ns.adobe.com/photoshop/1.0/\" xmp:Nickname=\"Gyr\"><photoshop:History>" +
      std::string(150'000, 'h') + "</photoshop:History></rdf:Description></rdf:RDF></x:xmpmeta>";
  Metadata metadata;
  metadata.xmp.assign(xmp.begin(), xmp.end());
  shop_.put("ours.jpg", encode(test::gradient(40, 30), metadata, format::kJpg, {90}));
  const std::string text = tagsOf("ours.jpg");
  EXPECT_TRUE(hasTag(text, "Nickname", "Gyr"));
  EXPECT_TRUE(hasTag(text, "History", std::string(150'000, 'h')));
  EXPECT_EQ(text.find(" Warning "), std::string::npos);
}

TEST_P(IndependentJpegMetadata, ExtendedXmpOfExifToolIsRead) {
  shop_.put("theirs.jpg", encode(test::gradient(40, 30), {}, format::kJpg, {90}));
  shop_.put("history.txt", std::vector<std::uint8_t>(150'000, 'h'));
  shop_.run(
      {"exiftool -q -overwrite_original -XMP:Nickname=Gyr '-XMP-photoshop:History<=history.txt' theirs.jpg"});
  ASSERT_TRUE(contains(shop_.bytes("theirs.jpg"), "http://ns.adobe.com/xmp/extension/"));
  const Metadata read = decodeFile(shop_.path("theirs.jpg")).metadata;
  EXPECT_TRUE(contains(read.xmp, "Gyr"));
  EXPECT_TRUE(contains(read.xmp, std::string(150'000, 'h')));
}

TEST_P(IndependentJpegMetadata, ExifToolReadsOurLongIptc) {
  Builder records;
  for (int i = 0; i < 100; ++i) records.u8({0x1C, 2, 120}).be16(1500).fill(1500, 'c');
  Metadata metadata;
  metadata.iptc = records.u8({0x1C, 2, 90}).be16(4).text("Oslo").bytes;
  shop_.put("ours.jpg", encode(test::gradient(40, 30), metadata, format::kJpg, {90}));
  EXPECT_TRUE(hasTag(tagsOf("ours.jpg"), "City", "Oslo"));
}

INSTANTIATE_TEST_SUITE_P(Jpeg, IndependentJpegMetadata, testing::Values(format::kJpg));

}  // namespace
}  // namespace kestrel::engine
