#include "ImagingTest.h"

namespace kestrel {
namespace {

using namespace modImgX;

class Formats : public ImagingTest {};

TEST_F(Formats, EachCodeFrom1To13HasItsExtensionAndNoOtherHasOne) {
  const char* const extensions[] = {"jpg", "png", "tif",  "pcx", "tga", "bmp", "wmf",
                                    "emf", "psd", "wbmp", "gif", "tla", "pcd"};
  for (std::int32_t code = 1; code <= 13; ++code) EXPECT_EQ(GetImageExtension(code), extensions[code - 1]);
  for (const std::int32_t code : {0, -1, 14, 1000}) EXPECT_EQ(GetImageExtension(code), "") << code;
}

TEST_F(Formats, Codes1To12AreValidForSavingAnd0And13AreNot) {
  for (std::int32_t code = 1; code <= 12; ++code) EXPECT_TRUE(IsValidSaveFormat(code)) << code;
  for (const std::int32_t code : {0, 13, -1, 14}) EXPECT_FALSE(IsValidSaveFormat(code)) << code;
}

TEST_F(Formats, TheExtensionInAnyCaseGivesTheFormatToSaveIn) {
  const std::pair<const char*, std::int32_t> rows[] = {
      {"bmp", 6}, {"emf", 8}, {"gif", 11}, {"jpg", 1},  {"jpeg", 1},  {"pcx", 4}, {"png", 2},
      {"psd", 9}, {"tga", 5}, {"tif", 3},  {"tla", 12}, {"wbmp", 10}, {"wmf", 7}};
  FileHelpers& files = platform().FileHelpers();
  for (const auto& [extension, code] : rows) {
    EXPECT_EQ(GetSaveFormatFromFilename(std::string("/a/b.") + extension, files), code) << extension;
  }
  EXPECT_EQ(GetSaveFormatFromFilename("c:\\a\\B.PNG", files), 2);
}

TEST_F(Formats, AnyOtherNameIsABitmap) {
  FileHelpers& files = platform().FileHelpers();
  for (const char* name : {"/a/b.tiff", "/a/b.pcd", "/a/b.txt", "/a/b", "", "/a.png/b"}) {
    EXPECT_EQ(GetSaveFormatFromFilename(name, files), 6) << name;
  }
}

TEST_F(Formats, ASecondExtensionAfterTheFirstBackslashIsCut) {
  EXPECT_EQ(FixDuplicateExtension("C:\\a.b.png"), "C:\\a.b");
  EXPECT_EQ(FixDuplicateExtension("C:\\a.png.png"), "C:\\a.png");
  EXPECT_EQ(FixDuplicateExtension("C:\\a.b.c.png"), "C:\\a.b");
}

TEST_F(Formats, AFolderWithAPointCountsAsTheFirstExtension) {
  EXPECT_EQ(FixDuplicateExtension("C:\\my.dir\\a.png"), "C:\\my.dir\\a");
}

TEST_F(Formats, OtherNamesStayUnchanged) {
  for (const char* name :
       {"", "a.b.png", "/home/a.b.png", "C:\\a.png", "C:\\a", "C:\\folder\\a.png", "a.b\\c.png"}) {
    EXPECT_EQ(FixDuplicateExtension(name), name) << name;
  }
}

TEST_F(Formats, APictureIsSavedThroughACopyInFormatAndQuality) {
  const auto source = platform().CreateCanvas(9, 7);
  source->FillRectangle({0, 0, 9, 7}, 0x00112233);
  const auto work = platform().CreateImgX();
  EXPECT_TRUE(SavePictureToFile(*work, *source->Picture(), path("a.png"), 2, 42));
  EXPECT_EQ(work->JPEGQuality(), 42);
  const auto read = platform().CreateImgX();
  read->Document().FromFile(path("a.png"));
  EXPECT_EQ(read->Image()->Format(), 2);
  EXPECT_EQ(read->Image()->Width(), 9);
  EXPECT_EQ(colorAt(*read->Image(), 8, 6), 0x00112233);
}

TEST_F(Formats, APictureThatCannotBeSavedRaises) {
  const auto work = platform().CreateImgX();
  const PicturePtr picture = platform().CreateCanvas(2, 2)->Picture();
  EXPECT_THROW(SavePictureToFile(*work, *picture, path("no folder/a.png"), 2, 75), RuntimeError);
}

}  // namespace
}  // namespace kestrel
