// Picture files in memory.

#include "engine/imgx/EncodedPicture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "../undo/Pictures.h"
#include "../view/TestView.h"
#include "engine/codecs/Codecs.h"
#include "engine/imgx/ImgXObject.h"

namespace kestrel::engine {
namespace {

using File = std::vector<std::uint8_t>;

/// A file of 150 by 300 pixels per inch with a comment.
File described(std::int32_t formatCode) {
  Metadata metadata;
  metadata.resolutionX = 150;
  metadata.resolutionY = 300;
  metadata.comment = "by ann";
  return encode(noise(40, 30), metadata, formatCode, {});
}

struct EncodedPictureTest : ::testing::Test {
  template <typename Call>
  static std::int32_t numberOf(const Call& call) {
    try {
      call();
    } catch (const RuntimeError& error) {
      EXPECT_FALSE(error.Description().empty());
      return error.Number();
    }
    return 0;
  }

  FakeClipboard clipboard;
  ImgXObject object{clipboard};
};

TEST_F(EncodedPictureTest, IsLoadedAsTheSameFileFromTheDisk) {
  for (const std::int32_t code : {format::kPng, format::kJpg, format::kTif}) {
    SCOPED_TRACE(code);
    const File file = described(code);
    const std::filesystem::path name = ::testing::TempDir() + "kestrel-encoded-picture";
    std::ofstream(name, std::ios::binary)
        .write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
    ImgXObject opened{clipboard};
    opened.Document().FromFile(name.string());
    std::filesystem::remove(name);

    object.Document().FromPicture(*decodedPicture(file));
    EXPECT_EQ(object.Image()->Format(), code);
    EXPECT_EQ(object.Image()->Format(), opened.Image()->Format());
    EXPECT_EQ(object.Image()->Pages(), opened.Image()->Pages());
    EXPECT_TRUE(samePixels(bitmapOf(*object.Image()), bitmapOf(*opened.Image())));
    EXPECT_EQ(encodedPicture(object, code, {}), encodedPicture(opened, code, {}));
    EXPECT_NEAR(decode(encodedPicture(object, code, {})).metadata.resolutionY, 300, 0.5);
  }
}

TEST_F(EncodedPictureTest, KeepsTheDecodeErrorsOfATruncatedFile) {
  File file = described(format::kJpg);
  file.resize(file.size() - 20);  // within the rows of the picture
  object.Document().FromPicture(*decodedPicture(file));
  EXPECT_EQ(object.Image()->Width(), 40);
  EXPECT_NE(object.Image()->DecodeErrors(), "");
}

TEST_F(EncodedPictureTest, PicturesWithoutAFileHaveNoFacts) {
  object.Document().FromPicture(*decodedPicture(described(format::kPng)));
  object.Document().FromPicture(*object.Writer().ToPicture());
  EXPECT_EQ(object.Image()->Format(), format::kNone);
  EXPECT_EQ(object.Image()->DecodeErrors(), "");
}

TEST_F(EncodedPictureTest, RaisesWhatDecodingAndEncodingRaise) {
  EXPECT_EQ(numberOf([] { decodedPicture({}); }), 481);
  const File text = {'n', 'o', ' ', 'p', 'i', 'c', 't', 'u', 'r', 'e'};
  EXPECT_EQ(numberOf([&] { decodedPicture(text); }), 481);
  EXPECT_EQ(numberOf([&] { encodedPicture(object, format::kPng, {}); }), 91);
  object.Document().FromPicture(PictureObject(noise(4, 3)));
  EXPECT_EQ(numberOf([&] { encodedPicture(object, format::kPcd, {}); }), 5);
  EXPECT_EQ(numberOf([&] { encodedPicture(object, 99, {}); }), 5);
  EXPECT_EQ(numberOf([&] { encodedPicture(object, format::kJpg, {.jpegQuality = 0}); }), 5);
}

}  // namespace
}  // namespace kestrel::engine
