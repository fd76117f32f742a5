#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "../undo/Pictures.h"
#include "../view/TestView.h"
#include "engine/codecs/Codecs.h"
#include "engine/imgx/ImgXObject.h"

namespace kestrel::engine {
namespace {

struct WriterTest : ::testing::Test {
  WriterTest() { object.Document().FromPicture(PictureObject(noise(40, 30))); }
  ~WriterTest() override {
    for (const std::string& name : files) std::filesystem::remove(name);
  }

  std::string file(const std::string& name) {
    return files.emplace_back(::testing::TempDir() + "kestrel-" + name);
  }

  std::vector<std::string> files;
  FakeClipboard clipboard;
  ImgXObject object{clipboard};
};

TEST_F(WriterTest, ThePictureObjectKeepsItsPixelsThroughEdits) {
  const PicturePtr picture = object.Writer().ToPicture();
  EXPECT_EQ(picture->Pixels().Data, object.Image()->Pixels().Data);
  object.Draw().Rectangle({0, 0}, {20, 20});
  EXPECT_TRUE(samePixels(bitmapOf(*picture), noise(40, 30)));
}

TEST_F(WriterTest, TheClipboardSharesThePixels) {
  object.Writer().ToClipboard();
  EXPECT_EQ(clipboard.bitmap.pixels().data, object.Image()->Pixels().Data);
  object.Effects().Flip(0);
  EXPECT_TRUE(samePixels(clipboard.bitmap, noise(40, 30)));
}

TEST_F(WriterTest, TheCodeDecidesTheFormatAndForCode0TheName) {
  const std::string misnamed = file("misnamed.jpg"), named = file("named.png");
  object.Writer().ToFile(misnamed, 2);
  EXPECT_EQ(decodeFile(misnamed).format, 2);
  object.Writer().ToFile(named, 0);
  EXPECT_EQ(decodeFile(named).format, 2);
  EXPECT_TRUE(samePixels(decodeFile(named).bitmap, noise(40, 30)));
}

TEST_F(WriterTest, QualityDecidesTheSizeOfAJpeg) {
  const std::string low = file("low.jpg"), high = file("high.jpg");
  object.JPEGQuality(5);
  object.Writer().ToFile(low, 1);
  object.JPEGQuality(95);
  object.Writer().ToFile(high, 1);
  EXPECT_LT(std::filesystem::file_size(low) * 2, std::filesystem::file_size(high));
}

TEST_F(WriterTest, AnExistingFileIsReplacedOnlyWithOverwrite) {
  const std::string name = file("old.png");
  std::ofstream(name) << "old";
  try {
    object.Writer().ToFile(name, 2, 0, false);
    FAIL();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kFileExists);
  }
  EXPECT_EQ(std::filesystem::file_size(name), 3U);
  object.Writer().ToFile(name, 2, 0, true);
  EXPECT_EQ(decodeFile(name).format, 2);
}

TEST_F(WriterTest, MetadataSurvivesEdits) {
  const std::string source = file("source.png"), target = file("target.png");
  Metadata metadata;
  metadata.resolutionX = metadata.resolutionY = 300;
  encodeFile(noise(40, 30), metadata, format::kPng, {}, source);
  object.Document().FromFile(source);
  object.Effects().Crop(0, 0, 20, 20);
  object.Effects().Flip(1);
  object.Draw().Rectangle({0, 0}, {5, 5});
  object.Writer().ToFile(target, object.Image()->Format());
  EXPECT_NEAR(decodeFile(target).metadata.resolutionX, 300, 0.1);
  object.Document().NewImage(5, 5, nullptr);
  object.Writer().ToFile(target, 2);
  EXPECT_EQ(decodeFile(target).metadata.resolutionX, 0);
}

TEST_F(WriterTest, SavingChangesNeitherPictureNorUndo) {
  TestView view;
  view.load(noise(40, 30));
  view.Effects().Flip(0, "Mirror");
  view.take();
  view.Writer().ToFile(file("saved.png"), 2);
  view.Writer().ToClipboard();
  view.Writer().ToPicture();
  EXPECT_TRUE(view.take().empty());
  EXPECT_TRUE(view.Modified());
  EXPECT_EQ(view.UndoName(), "Mirror");
  EXPECT_EQ(view.Image()->Format(), 0);
}

}  // namespace
}  // namespace kestrel::engine
