// Pictures in memory go in and out of an editor, as images of the toolkit and as picture files.

#include <QBuffer>
#include <QColorSpace>
#include <QtEndian>
#include <algorithm>
#include <cstdlib>

#include "HostProgram.h"
#include "base/RuntimeError.h"
#include "settings/Options.h"

namespace kestrel::desktop {
namespace {

QByteArray encodedBy(const QImage& picture, const char* format, int quality = -1) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  EXPECT_TRUE(picture.save(&buffer, format, quality));
  return bytes;
}

/// The JPEG file with an EXIF block that has nothing but an orientation.
QByteArray withOrientation(const QByteArray& jpeg, char orientation) {
  QByteArray exif("Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0", 25);
  exif += orientation;
  exif += QByteArray(6, '\0');
  QByteArray length(2, '\0');
  qToBigEndian(static_cast<quint16>(exif.size() + 2), length.data());
  return jpeg.left(2) + QByteArray("\xff\xe1", 2) + length + exif + jpeg.mid(2);
}

int distance(const QColor& a, const QColor& b) {
  return std::max(
      {std::abs(a.red() - b.red()), std::abs(a.green() - b.green()), std::abs(a.blue() - b.blue())});
}

class PicturesInMemory : public HostProgram {
 protected:
  PicturesInMemory() { editor_.control().Initialize(); }

  IImageProcessingCtl& control() { return editor_.control(); }

  template <typename Act>
  static std::int32_t numberOf(Act act) {
    try {
      act();
    } catch (const RuntimeError& error) {
      EXPECT_FALSE(error.Description().empty());
      return error.Number();
    }
    return 0;
  }

  qt::ImageEditor editor_{component_};
};

TEST_F(PicturesInMemory, AnImageKeepsItsPixelsItsTransparencyAndItsResolution) {
  QImage picture = motley(30, 20);
  picture.setPixelColor(3, 4, QColor(200, 100, 50, 128));
  picture.setPixelColor(5, 6, QColor(0, 0, 0, 0));
  picture.setDotsPerMeterX(11811);
  picture.setDotsPerMeterY(5906);
  for (const QImage::Format format : {QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied,
                                      QImage::Format_RGBA64, QImage::Format_RGB32}) {
    SCOPED_TRACE(format);
    const QImage given = picture.convertToFormat(format);
    editor_.setPicture(given);
    const QImage taken = editor_.picture();
    EXPECT_EQ(taken.format(), QImage::Format_RGBA8888);
    const QImage pixels = given.convertToFormat(QImage::Format_RGBA8888);
    for (int y = 0; y < 20; ++y) {
      for (int x = 0; x < 30; ++x) ASSERT_EQ(taken.pixel(x, y), pixels.pixel(x, y)) << x << ", " << y;
    }
    EXPECT_EQ(taken.dotsPerMeterX(), 11811);
    EXPECT_EQ(taken.dotsPerMeterY(), 5906);
    EXPECT_EQ(taken.colorSpace(), QColorSpace(QColorSpace::SRgb));
  }
}

TEST_F(PicturesInMemory, AnImageIsSetAsThePropertyPictureIs) {
  ASSERT_TRUE(control().OpenImage(file("open.png")));
  control().Changed(true);
  int set = 0, opened = 0;
  const Connection first = control().PictureSet.Connect([&] { ++set; });
  const Connection second = control().ImageOpen.Connect([&](const std::string&) { ++opened; });
  editor_.setPicture(motley(7, 5));
  EXPECT_EQ(control().Image()->Width(), 7);
  EXPECT_EQ(control().Filename(), file("open.png"));
  EXPECT_FALSE(control().Changed());
  EXPECT_FALSE(control().ImageControl().Modified());
  EXPECT_FALSE(control().ImageControl().CanUndo());
  EXPECT_EQ(set, 1);
  EXPECT_EQ(opened, 0);
  editor_.setPicture({});
  EXPECT_EQ(control().Image(), nullptr);
  EXPECT_TRUE(editor_.picture().isNull());
}

TEST_F(PicturesInMemory, AnImageOfAnotherColorSpaceIsConvertedToSRgb) {
  QImage picture(4, 4, QImage::Format_RGB32);
  picture.fill(QColor(180, 90, 30));
  picture.setColorSpace(QColorSpace(QColorSpace::DisplayP3));
  const QColor expected = picture.convertedToColorSpace(QColorSpace(QColorSpace::SRgb)).pixelColor(0, 0);
  ASSERT_GT(distance(expected, QColor(180, 90, 30)), 5);
  editor_.setPicture(picture);
  EXPECT_LE(distance(editor_.picture().pixelColor(0, 0), expected), 1);
  // So does the profile of a file.
  editor_.setEncodedPicture(encodedBy(picture, "PNG"));
  EXPECT_LE(distance(editor_.picture().pixelColor(0, 0), expected), 2);
}

TEST_F(PicturesInMemory, AnImageSharesThePixelsUntilOneOfTheTwoChanges) {
  editor_.setPicture(motley(30, 20));
  QImage taken = editor_.picture();
  EXPECT_EQ(taken.constBits(), control().Image()->Pixels().Data);
  show(editor_);
  mirror(editor_);
  EXPECT_EQ(taken.pixelColor(0, 0), motley(30, 20).pixelColor(0, 0));
  QImage mirrored = editor_.picture();
  EXPECT_EQ(mirrored.pixelColor(29, 0), motley(30, 20).pixelColor(0, 0));
  mirrored.fill(Qt::red);
  EXPECT_NE(editor_.picture().pixelColor(3, 3), QColor(Qt::red));
  editor_.setAsksOnClose(false);
}

TEST_F(PicturesInMemory, AnImageOutlivesTheEditor) {
  QImage taken;
  {
    qt::ImageEditor other(component_);
    other.control().Initialize();
    other.setPicture(motley(30, 20));
    taken = other.picture();
  }
  settle();
  taken.setColorSpace({});  // sRGB, which the other has not
  EXPECT_EQ(taken, motley(30, 20));
}

TEST_F(PicturesInMemory, AFileInMemoryIsShownAsAFileOfTheDisk) {
  int set = 0;
  const Connection connection = control().PictureSet.Connect([&] { ++set; });
  QImage picture = motley(30, 20);
  picture.setPixelColor(3, 4, QColor(200, 100, 50, 128));
  picture.setDotsPerMeterX(11811);
  picture.setDotsPerMeterY(11811);
  editor_.setEncodedPicture(encodedBy(picture, "PNG"));
  EXPECT_EQ(set, 1);
  EXPECT_EQ(control().Image()->Format(), format::kPng);
  EXPECT_EQ(control().Filename(), "");
  EXPECT_EQ(editor_.picture().pixelColor(3, 4), QColor(200, 100, 50, 128));
  EXPECT_EQ(editor_.picture().dotsPerMeterX(), 11811);
  editor_.setEncodedPicture(withOrientation(encodedBy(motley(30, 20), "JPG", 95), 6));
  EXPECT_EQ(control().Image()->Format(), format::kJpg);
  EXPECT_EQ(editor_.picture().size(), QSize(20, 30)) << "upright";
}

TEST_F(PicturesInMemory, APictureWithoutANameAsksForOneAtItsSave) {
  editor_.setEncodedPicture(encodedBy(motley(30, 20), "PNG"));
  const Connection connection =
      control().RequestSaveFilename.Connect([&](std::string& name, bool&) { name = file("named.png"); });
  EXPECT_TRUE(control().SaveImage());
  EXPECT_EQ(QImage(path("named.png")).size(), QSize(30, 20));
}

TEST_F(PicturesInMemory, AnIncompleteFileIsShownWithANotice) {
  const QByteArray whole = encodedBy(motley(300, 200), "JPG", 90);
  editor_.setEncodedPicture(whole.left(whole.size() / 2));
  EXPECT_EQ(control().Image()->Height(), 200);
  EXPECT_NE(control().Image()->DecodeErrors(), "");
  EXPECT_NE(control().ImageControl().Notice(), "");
}

TEST_F(PicturesInMemory, WhatCannotBeReadRaisesAndLeavesThePicture) {
  editor_.setPicture(motley(7, 5));
  int set = 0;
  const Connection connection = control().PictureSet.Connect([&] { ++set; });
  EXPECT_EQ(numberOf([&] { editor_.setEncodedPicture({}); }), err::kInvalidPicture);
  EXPECT_EQ(numberOf([&] { editor_.setEncodedPicture("no picture"); }), err::kInvalidPicture);
  EXPECT_EQ(control().Image()->Width(), 7);
  EXPECT_EQ(set, 0);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(PicturesInMemory, ThePictureIsEncodedInEachFormat) {
  QImage picture = motley(30, 20);
  picture.setPixelColor(3, 4, QColor(200, 100, 50, 128));
  picture.setPixelColor(5, 6, QColor(0, 0, 0, 0));
  picture.setDotsPerMeterX(11811);
  picture.setDotsPerMeterY(11811);
  editor_.setPicture(picture);

  const QImage png = QImage::fromData(editor_.encodedPicture(format::kPng), "PNG");
  EXPECT_EQ(png.pixelColor(3, 4), QColor(200, 100, 50, 128));
  EXPECT_EQ(png.pixelColor(7, 8), picture.pixelColor(7, 8));
  EXPECT_EQ(png.dotsPerMeterX(), 11811);
  const QImage bmp = QImage::fromData(editor_.encodedPicture(format::kBmp), "BMP");
  EXPECT_EQ(bmp.size(), QSize(30, 20));

  QImage clear(64, 64, QImage::Format_RGBA8888);
  clear.fill(Qt::transparent);
  editor_.setPicture(clear);
  const QImage jpeg = QImage::fromData(editor_.encodedPicture(format::kJpg, 95), "JPG");
  EXPECT_LE(distance(jpeg.pixelColor(20, 20), Qt::white), 2);

  editor_.setPicture(motley(300, 200));
  EXPECT_LT(2 * editor_.encodedPicture(format::kJpg, 5).size(),
            editor_.encodedPicture(format::kJpg, 95).size());
  const std::int32_t users = control().Options()->JPEGQuality();
  EXPECT_EQ(editor_.encodedPicture(format::kJpg), editor_.encodedPicture(format::kJpg, users));
}

TEST_F(PicturesInMemory, WhatCannotBeEncodedRaises) {
  EXPECT_EQ(numberOf([&] { editor_.encodedPicture(format::kPng); }), err::kObjectNotSet);
  editor_.setPicture(motley(7, 5));
  EXPECT_EQ(numberOf([&] { editor_.encodedPicture(format::kPcd); }), err::kInvalidCall);
  EXPECT_EQ(numberOf([&] { editor_.encodedPicture(format::kNone); }), err::kInvalidCall);
  EXPECT_EQ(numberOf([&] { editor_.encodedPicture(format::kJpg, 101); }), err::kInvalidCall);
  EXPECT_EQ(numberOf([&] { editor_.encodedPicture(format::kJpg, 0); }), err::kInvalidCall);
}

}  // namespace
}  // namespace kestrel::desktop
