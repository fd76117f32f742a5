#include <filesystem>
#include <fstream>
#include <set>

#include "TestPictures.h"
#include "engine/codecs/CodecTable.h"

namespace kestrel::engine {
namespace {

namespace fs = std::filesystem;
using test::errorOf;
using test::isPicture;

class FormatsTest : public testing::Test {
 protected:
  FormatsTest()
      : folder_(fs::temp_directory_path() / ("kestrel_formats_" + std::to_string(std::random_device{}()))) {
    fs::create_directories(folder_);
  }
  ~FormatsTest() override { fs::remove_all(folder_); }

  fs::path file(const std::string& name) const { return folder_ / name; }
  void put(const std::string& name, Bytes bytes) const {
    std::ofstream(file(name), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  }

  fs::path folder_;
};

TEST_F(FormatsTest, EachRowOfTheTableHasItsOwnCodeAndExtensions) {
  std::set<std::int32_t> codes;
  std::set<std::string_view> extensions;
  for (const FileFormat& row : kFileFormats) {
    EXPECT_TRUE(codes.insert(row.Code).second) << row.Name;
    EXPECT_FALSE(row.Extensions[0].empty()) << row.Name;
    for (const auto extension : row.Extensions) {
      if (extension.empty()) continue;
      EXPECT_TRUE(extensions.insert(extension).second) << extension;
    }
  }
}

TEST_F(FormatsTest, EveryWrittenFormatIsRecognizedByItsContentAlone) {
  const Bitmap picture = test::gradient(40, 30);
  for (const Codec& codec : codecTable()) {
    if (codec.encode == nullptr) continue;
    const auto bytes = encode(picture, {}, codec.format);
    const Codec* const found = codecOfContent(bytes);
    ASSERT_NE(found, nullptr) << codec.name;
    EXPECT_EQ(found->format, codec.format) << codec.name;
    put("wrong.name", bytes);
    const Decoded decoded = decodeFile(file("wrong.name"));
    EXPECT_EQ(decoded.format, codec.format) << codec.name;
    EXPECT_EQ(decoded.bitmap.width(), 40) << codec.name;
    EXPECT_EQ(decoded.bitmap.height(), 30) << codec.name;
    EXPECT_TRUE(decoded.notice.empty()) << codec.name << ": " << decoded.notice;
  }
}

TEST_F(FormatsTest, EachWrittenFormatKeepsTheAlphaThatTheTableStatesAndHasWhiteForTheRest) {
  // Blocks of 16 pixels, so that no block of a JPEG file holds two of them.
  constexpr std::uint8_t kAlphas[] = {0, 100, 200, 255};
  const Bitmap black = test::pictureOf(64, 16, [&](std::int32_t x, std::int32_t) {
    return Pixel{0, 0, 0, kAlphas[x / 16]};
  });
  for (const FileFormat& row : kFileFormats) {
    if (!row.Writable) continue;
    const Decoded decoded = decode(encode(black, {}, row.Code));
    const std::uint8_t* const p = decoded.bitmap.pixels().row(8);
    for (std::size_t i = 0; i < std::size(kAlphas); ++i) {
      const std::size_t at = 4 * (16 * i + 8);
      const int wanted = row.Alpha == KeptAlpha::kAll    ? kAlphas[i]
                         : row.Alpha == KeptAlpha::kNone ? 255
                         : kAlphas[i] < 128              ? 0
                                                         : 255;
      EXPECT_EQ(p[at + 3], wanted) << row.Name << ", alpha " << int{kAlphas[i]};
      if (row.Code == format::kWbmp || wanted == 0 || row.Alpha == KeptAlpha::kAll) continue;
      EXPECT_NEAR(p[at], 255 - kAlphas[i], 8) << row.Name << ", alpha " << int{kAlphas[i]};
    }
  }
}

TEST_F(FormatsTest, APngFileNamedJpgIsReadAsPng) {
  put("picture.jpg", encode(test::gradient(5, 5), {}, format::kPng));
  EXPECT_EQ(decodeFile(file("picture.jpg")).format, format::kPng);
}

TEST_F(FormatsTest, LosslessFormatsRoundTripExactly) {
  for (const std::int32_t code :
       {format::kPng, format::kTif, format::kBmp, format::kTla, format::kTga, format::kPsd}) {
    if (codecOf(code) == nullptr) continue;
    for (const auto& [width, height] : {std::pair{1, 1}, {1, 70}, {70, 1}, {33, 17}, {300, 5}}) {
      const Bitmap opaque = test::noise(width, height, true), seeThrough = test::noise(width, height, false);
      EXPECT_TRUE(isPicture(decode(encode(opaque, {}, code)).bitmap, opaque)) << code;
      EXPECT_TRUE(isPicture(decode(encode(seeThrough, {}, code)).bitmap, seeThrough)) << code;
    }
  }
}

TEST_F(FormatsTest, CodeZeroMeansTheFormatOfTheExtensionInAnyCase) {
  const Bitmap picture = test::gradient(8, 8);
  for (const auto& [name, code] : {std::pair{"a.png", format::kPng},
                                   {"a.JPG", format::kJpg},
                                   {"a.jpeg", format::kJpg},
                                   {"a.Tiff", format::kTif},
                                   {"a.tif", format::kTif},
                                   {"a.gif", format::kGif},
                                   {"a.dib", format::kBmp}}) {
    encodeFile(picture, {}, format::kNone, {}, file(name));
    EXPECT_EQ(decodeFile(file(name)).format, code) << name;
  }
}

TEST_F(FormatsTest, CodeZeroWithoutAKnownExtensionIsAnInvalidCall) {
  for (const char* name : {"picture", "picture.", "picture.xyz", ".png"}) {
    EXPECT_EQ(errorOf([&] { encodeFile(test::gradient(8, 8), {}, 0, {}, file(name)); }), 5) << name;
    EXPECT_FALSE(fs::exists(file(name))) << name;
  }
}

TEST_F(FormatsTest, SavingInAReadOnlyFormatIsAnInvalidCall) {
  for (const std::int32_t code : {-1, 13, 14, 1000}) {
    EXPECT_EQ(errorOf([&] { encodeFile(test::gradient(8, 8), {}, code, {}, file("a.png")); }), 5) << code;
    EXPECT_FALSE(fs::exists(file("a.png"))) << code;
  }
}

TEST_F(FormatsTest, AnEmptyPictureOrAQualityOutside1To100IsAnInvalidCall) {
  EXPECT_EQ(errorOf([] { encode(Bitmap(), {}, format::kPng); }), 5);
  EXPECT_EQ(errorOf([] { encode(test::gradient(8, 8), {}, format::kJpg, {0}); }), 5);
  EXPECT_EQ(errorOf([] { encode(test::gradient(8, 8), {}, format::kJpg, {101}); }), 5);
  EXPECT_EQ(errorOf([] { encode(test::gradient(8, 8), {}, format::kJpg, {1}); }), 0);
  EXPECT_EQ(errorOf([] { encode(test::gradient(8, 8), {}, format::kJpg, {100}); }), 0);
}

TEST_F(FormatsTest, FilesOfNoKnownFormatAreRefusedWithAReason) {
  std::string reason;
  const test::Builder words = test::Builder().text("These are only words, and not a picture at all.");
  put("words.jpg", words.bytes);
  put("words.txt", words.bytes);
  put("empty.png", {});
  EXPECT_EQ(errorOf([&] { decodeFile(file("words.jpg")); }, &reason), 481);
  EXPECT_EQ(reason, "The file is not a JPEG image: no start marker.");
  EXPECT_EQ(errorOf([&] { decodeFile(file("words.txt")); }, &reason), 481);
  EXPECT_EQ(reason, "The file is not a picture of any known format.");
  EXPECT_EQ(errorOf([&] { decodeFile(file("empty.png")); }, &reason), 481);
  EXPECT_EQ(reason, "The file is empty.");
  EXPECT_EQ(errorOf([] { decode({}); }), 481);
}

}  // namespace
}  // namespace kestrel::engine
