#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "../undo/Pictures.h"
#include "../view/TestView.h"
#include "engine/imgx/ImgXObject.h"

namespace kestrel::engine {
namespace {

struct ForeignPicture final : kestrel::Picture {
  std::string TypeName() const override { return "Picture"; }
  std::int32_t Width() const override { return 2; }
  std::int32_t Height() const override { return 2; }
  PixelRows Pixels() const override { return {data.data(), 12, 2, 2}; }
  /// Rows of 12 bytes, the last four of which are padding.
  std::vector<std::uint8_t> data = {1, 2, 3, 4, 5, 6, 7, 8, 99, 99, 99, 99, 9, 10, 11, 12, 13, 14, 15, 16};
};

struct DocumentTest : ::testing::Test {
  template <typename Call>
  static std::int32_t numberOf(const Call& call) {
    try {
      call();
    } catch (const RuntimeError& error) {
      return error.Number();
    }
    return 0;
  }

  FakeClipboard clipboard;
  ImgXObject object{clipboard};
};

TEST_F(DocumentTest, ANewObjectHoldsNoPicture) { EXPECT_EQ(object.Image(), nullptr); }

TEST_F(DocumentTest, NewImageHasTheColorOrIsTransparentOrHasTheBackColor) {
  const Colour red(0x0000FF, 200);
  object.Document().NewImage(3, 2, &red);
  EXPECT_EQ(object.Image()->Width(), 3);
  EXPECT_EQ(object.Image()->Height(), 2);
  EXPECT_EQ(object.Image()->GetPixel(2, 1).Value(), 0x0000FF);
  EXPECT_EQ(object.Image()->GetPixel(2, 1).Alpha(), 200);
  object.Document().NewImage(3, 2, nullptr);
  EXPECT_EQ(object.Image()->GetPixel(0, 0).Alpha(), 0);
  const Colour none(kNoColor);
  object.BackColor(0x00FF00);
  object.Document().NewImage(3, 2, nullptr);
  EXPECT_EQ(object.Image()->GetPixel(0, 0).Value(), 0x00FF00);
  EXPECT_EQ(object.Image()->GetPixel(0, 0).Alpha(), 255);
  object.Document().NewImage(3, 2, &none);
  EXPECT_EQ(object.Image()->GetPixel(0, 0).Alpha(), 0);
  EXPECT_EQ(object.Image()->Format(), 0);
}

TEST_F(DocumentTest, NewImageRefusesOtherPixelFormatsAndInvalidSizes) {
  EXPECT_EQ(numberOf([&] { object.Document().NewImage(3, 2, nullptr, 4); }), 5);
  EXPECT_EQ(numberOf([&] { object.Document().NewImage(0, 2, nullptr); }), 5);
  EXPECT_EQ(numberOf([&] { object.Document().NewImage(-3, 2, nullptr); }), 5);
  EXPECT_EQ(numberOf([&] { object.Document().NewImage(2000000000, 2000000000, nullptr); }), 7);
  EXPECT_EQ(object.Image(), nullptr);
}

TEST_F(DocumentTest, AnEnginePictureIsSharedAndAForeignOneCopied) {
  const PictureObject own(noise(9, 9));
  object.Document().FromPicture(own);
  EXPECT_EQ(object.Image()->Pixels().Data, own.Pixels().Data);
  {
    const ForeignPicture foreign;
    object.Document().FromPicture(foreign);
  }
  EXPECT_EQ(bitmapOf(*object.Writer().ToPicture()).at(0, 1), (Pixel{9, 10, 11, 12}));
  EXPECT_EQ(bitmapOf(*object.Writer().ToPicture()).at(1, 1), (Pixel{13, 14, 15, 16}));
}

TEST_F(DocumentTest, PasteTakesTheClipboardsPictureOrRaises521) {
  EXPECT_EQ(numberOf([&] { object.Document().Paste(); }), 521);
  clipboard.bitmap = noise(5, 4);
  object.Document().Paste();
  EXPECT_TRUE(samePixels(bitmapOf(*object.Writer().ToPicture()), clipboard.bitmap));
  EXPECT_EQ(object.Image()->Format(), 0);
}

TEST_F(DocumentTest, CopyFromCopiesTheFormatToo) {
  ImgXObject source(clipboard);
  const std::string name = ::testing::TempDir() + "kestrel-copy.png";
  source.Document().NewImage(4, 4, nullptr);
  source.Writer().ToFile(name, 2);
  source.Document().FromFile(name);
  object.Document().CopyFrom(source);
  EXPECT_EQ(object.Image()->Format(), 2);
  std::filesystem::remove(name);
}

TEST_F(DocumentTest, CopyFromAnEmptyObjectRaises91AndKeepsThePicture) {
  ImgXObject source(clipboard);
  object.Document().NewImage(4, 4, nullptr);
  EXPECT_EQ(numberOf([&] { object.Document().CopyFrom(source); }), 91);
  EXPECT_EQ(object.Image()->Width(), 4);
}

TEST_F(DocumentTest, AFileIsRecognizedByItsContent) {
  const std::string name = ::testing::TempDir() + "kestrel-misnamed.jpg";
  object.Document().NewImage(4, 3, nullptr);
  object.Writer().ToFile(name, 2);
  object.Document().FromFile(name);
  EXPECT_EQ(object.Image()->Format(), 2);
  EXPECT_EQ(object.Image()->Width(), 4);
  std::filesystem::remove(name);
}

TEST_F(DocumentTest, AnInvalidFileKeepsThePicture) {
  object.Document().NewImage(4, 3, nullptr);
  const std::string name = ::testing::TempDir() + "kestrel-text.png";
  std::ofstream(name) << "no picture at all";
  EXPECT_EQ(numberOf([&] { object.Document().FromFile(name); }), 481);
  EXPECT_EQ(numberOf([&] { object.Document().FromFile(name + ".missing"); }), 53);
  EXPECT_EQ(numberOf([&] { object.Document().FromFile(::testing::TempDir()); }), 75);
  EXPECT_EQ(numberOf([&] { object.Document().FromFile(name, 1); }), 5);
  EXPECT_EQ(object.Image()->Width(), 4);
  std::filesystem::remove(name);
}

TEST_F(DocumentTest, ConvertAcceptsOnlyTheEnginesFormat) {
  object.Document().NewImage(4, 3, nullptr);
  object.Image()->Convert();
  EXPECT_EQ(numberOf([&] { object.Image()->Convert(nullptr, 3); }), 5);
}

TEST_F(DocumentTest, GetPixelRaises5OutsideThePicture) {
  object.Document().NewImage(4, 3, nullptr);
  EXPECT_EQ(numberOf([&] { object.Image()->GetPixel(3, 2); }), 0);
  EXPECT_EQ(numberOf([&] { object.Image()->GetPixel(4, 2); }), 5);
  EXPECT_EQ(numberOf([&] { object.Image()->GetPixel(3, 3); }), 5);
  EXPECT_EQ(numberOf([&] { object.Image()->GetPixel(-1, 0); }), 5);
}

}  // namespace
}  // namespace kestrel::engine
