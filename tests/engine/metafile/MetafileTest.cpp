#include "MetafileBuilders.h"

namespace kestrel::engine {
namespace {

using namespace test;

TEST(EmfFile, ShapesAreFilledWithTheBrush) {
  const Bitmap bitmap = Emf()
                            .noPen()
                            .brush(kRedColor)
                            .record(43, {5, 5, 15, 15})
                            .brush(kBlueColor)
                            .record(42, {20, 5, 40, 25})
                            .play();
  EXPECT_EQ(bitmap.width(), 40);
  EXPECT_EQ(bitmap.height(), 30);
  EXPECT_EQ(bitmap.at(10, 10), kRed);
  EXPECT_EQ(bitmap.at(17, 10), kNothing);
  EXPECT_EQ(bitmap.at(30, 15), kBlue);
  EXPECT_EQ(bitmap.at(21, 6), kNothing) << "outside the ellipse, inside its box";
}

TEST(EmfFile, PolygonsOfBothPointSizes) {
  const Bitmap narrow =
      Emf().noPen().brush(kRedColor).record(86, {0, 0, 0, 0, 3, pair(0, 0), pair(20, 0), pair(0, 20)}).play();
  const Bitmap wide = Emf().noPen().brush(kRedColor).record(3, {0, 0, 0, 0, 3, 0, 0, 20, 0, 0, 20}).play();
  EXPECT_EQ(narrow.at(3, 3), kRed);
  EXPECT_EQ(narrow.at(18, 18), kNothing);
  EXPECT_TRUE(test::isPicture(narrow, wide));
}

TEST(EmfFile, LinesAreDrawnWithThePen) {
  const Bitmap bitmap = Emf()
                            .record(38, {1, 0, 4, 0, kBlueColor})
                            .record(37, {1})
                            .record(27, {0, 10})
                            .record(54, {40, 10})
                            .play();
  EXPECT_EQ(bitmap.at(20, 9), kBlue);
  EXPECT_EQ(bitmap.at(20, 10), kBlue);
  EXPECT_EQ(bitmap.at(20, 15), kNothing);
}

TEST(EmfFile, PathsWithCurvesAreFilledAndClippedTo) {
  const auto withPath = [](Emf emf) {
    return emf.noPen()
        .brush(kRedColor)
        .record(59, {})
        .record(27, {0, 15})
        .record(5, {0, 0, 0, 0, 3, 10, 0, 30, 0, 40, 15})
        .record(61, {})
        .record(60, {});
  };
  const Bitmap filled = withPath(Emf()).record(62, {0, 0, 0, 0}).play();
  EXPECT_EQ(filled.at(20, 10), kRed);
  EXPECT_EQ(filled.at(1, 1), kNothing);
  EXPECT_EQ(filled.at(20, 20), kNothing);
  const Bitmap clipped = withPath(Emf()).record(67, {5}).record(43, {0, 0, 40, 30}).play();
  EXPECT_EQ(clipped.at(20, 10), kRed);
  EXPECT_EQ(clipped.at(20, 20), kNothing);
}

TEST(EmfFile, WorldTransformAndWindowMoveAndScale) {
  const Bitmap world = Emf()
                           .noPen()
                           .brush(kRedColor)
                           .record(35, {bits(2), 0, 0, bits(2), bits(10), bits(0)})
                           .record(43, {0, 0, 5, 5})
                           .play();
  EXPECT_EQ(world.at(11, 1), kRed);
  EXPECT_EQ(world.at(19, 9), kRed);
  EXPECT_EQ(world.at(9, 1), kNothing);
  EXPECT_EQ(world.at(21, 1), kNothing);
  const Bitmap window = Emf()
                            .noPen()
                            .brush(kRedColor)
                            .record(17, {8})
                            .record(9, {1000, 1000})
                            .record(11, {40, 30})
                            .record(43, {500, 0, 1000, 500})
                            .play();
  EXPECT_EQ(window.at(30, 5), kRed);
  EXPECT_EQ(window.at(10, 5), kNothing);
  EXPECT_EQ(window.at(30, 20), kNothing);
}

TEST(EmfFile, PhysicalUnitsHaveTheYAxisUp) {
  // 15 twips per pixel.
  const Bitmap bitmap = Emf()
                            .noPen()
                            .brush(kRedColor)
                            .record(17, {6})
                            .record(43, {0, 0, 150, static_cast<std::uint32_t>(-150)})
                            .play();
  EXPECT_EQ(bitmap.at(5, 5), kRed);
  EXPECT_EQ(bitmap.at(12, 5), kNothing);
}

TEST(EmfFile, SavedStatesAreRestored) {
  const Bitmap bitmap = Emf()
                            .noPen()
                            .brush(kRedColor)
                            .record(33, {})
                            .record(39, {2, 0, kBlueColor, 0})
                            .record(37, {2})
                            .record(30, {0, 0, 10, 10})
                            .record(34, {static_cast<std::uint32_t>(-1)})
                            .record(43, {0, 0, 40, 30})
                            .play();
  EXPECT_EQ(bitmap.at(30, 20), kRed) << "neither the clip nor the brush outlives the restore";
}

TEST(EmfFile, TextIsDrawnAtItsPosition) {
  Emf emf;
  emf.record(18, {1}).record(84,
                             {0, 0, 0, 0, 1, bits(1), bits(1), 2, 2, 2, 76, 0, 0, 0, 0, 0, 0, 0x00480048});
  const Bitmap bitmap = emf.play();
  int covered = 0;
  for (int y = 0; y < 30; ++y) {
    for (int x = 0; x < 40; ++x) covered += bitmap.at(x, y).a > 128 ? 1 : 0;
  }
  EXPECT_GT(covered, 10);
  EXPECT_EQ(bitmap.at(39, 29), kNothing);
}

TEST(EmfFile, InvalidRecordsAreSkipped) {
  const Bitmap bitmap = Emf()
                            .noPen()
                            .brush(kRedColor)
                            .record(86, {0, 0, 0, 0, 0xFFFFFFFF, 1})
                            .record(81, {1, 2, 3})
                            .record(9999, {1})
                            .record(37, {777})
                            .record(43, {5, 5, 15, 15})
                            .play();
  EXPECT_EQ(bitmap.at(10, 10), kRed);
}

TEST(EmfFile, ATruncatedFileShowsTheRecordsThatItHolds) {
  const auto bytes =
      Emf().noPen().brush(kRedColor).record(43, {5, 5, 15, 15}).record(43, {20, 5, 30, 15}).file();
  const Decoded decoded = decode(Bytes(bytes).first(bytes.size() - 30));
  EXPECT_FALSE(decoded.notice.empty());
  EXPECT_EQ(decoded.bitmap.at(10, 10), kRed);
  EXPECT_EQ(decoded.bitmap.at(25, 10), kNothing);
}

Wmf redBox() {
  return Wmf()
      .record(0x020B, {0, 0})
      .record(0x020C, {60, 80})
      .record(0x02FA, {5, 0, 0, 0, 0})
      .record(0x012D, {0})
      .record(0x02FC, {0, 255, 0, 0})
      .record(0x012D, {1})
      .record(0x041B, {30, 40, 10, 20});
}

TEST(WmfFile, APlaceableFileHasTheSizeOfItsFrame) {
  const Decoded decoded = decode(redBox().file(true));
  EXPECT_EQ(decoded.format, 7);
  EXPECT_EQ(decoded.bitmap.width(), 40);
  EXPECT_EQ(decoded.bitmap.height(), 30);
  EXPECT_EQ(decoded.bitmap.at(15, 10), kRed);
  EXPECT_EQ(decoded.bitmap.at(8, 10), kNothing);
  EXPECT_EQ(decoded.bitmap.at(25, 10), kNothing);
}

TEST(WmfFile, APlainFileHasTheSizeOfItsWindow) {
  const Decoded decoded = decode(redBox().file(false));
  EXPECT_EQ(decoded.bitmap.width(), 80);
  EXPECT_EQ(decoded.bitmap.height(), 60);
  EXPECT_EQ(decoded.bitmap.at(30, 20), kRed);
  EXPECT_EQ(decoded.bitmap.at(10, 20), kNothing);
}

TEST(WmfFile, PolygonsLinesAndFreedSlots) {
  // The pen's slot is freed and taken by the blue brush.
  Wmf wmf = redBox();
  wmf.record(0x01F0, {0}).record(0x02FC, {0, 0, 255, 0}).record(0x012D, {0});
  wmf.record(0x0324, {3, 50, 0, 80, 0, 80, 40});
  const Bitmap bitmap = decode(wmf.file(false)).bitmap;
  EXPECT_EQ(bitmap.at(75, 10), kBlue);
  EXPECT_EQ(bitmap.at(30, 20), kRed);
}

class MetafileWriting : public testing::TestWithParam<std::int32_t> {};

TEST_P(MetafileWriting, ThePictureRoundTripsExactlyAtItsSize) {
  for (const auto& [width, height] : {std::pair{1, 1}, {7, 3}, {100, 61}, {1921, 5}}) {
    const Bitmap picture = test::noise(width, height, true);
    EXPECT_TRUE(test::isPicture(decode(encode(picture, {}, GetParam())).bitmap, picture)) << width;
  }
}

TEST_P(MetafileWriting, TransparencyIsFlattenedOnWhite) {
  const Bitmap clear = Bitmap::filled(6, 6, kNothing);
  EXPECT_TRUE(test::isPicture(decode(encode(clear, {}, GetParam())).bitmap, Bitmap::filled(6, 6, kWhite)));
}

INSTANTIATE_TEST_SUITE_P(Formats, MetafileWriting, testing::Values(format::kWmf, format::kEmf),
                         [](const auto& format) { return std::string(format.param == 7 ? "WMF" : "EMF"); });

TEST(WmfFile, IsNotWrittenBeyond16BitCoordinates) {
  EXPECT_EQ(errorOf([] { encode(Bitmap::filled(32'768, 1), {}, format::kWmf); }), 5);
}

TEST(EmfFrame, ADrawingAboveItsFrameIsFlipped) {
  std::vector<std::uint8_t> file = Emf().noPen().brush(kRedColor).record(43, {0, number(-10), 40, 0}).file();
  // Bounds from -29 to -1.
  const Builder bounds = words({0, -29, 39, -1});
  std::copy(bounds.bytes.begin(), bounds.bytes.end(), file.begin() + 8);
  const Bitmap bitmap = decode(file).bitmap;
  EXPECT_EQ(bitmap.height(), 30);
  EXPECT_EQ(bitmap.at(20, 5), kRed);
  EXPECT_EQ(bitmap.at(20, 15), kNothing);
}

/// A red box over a whole page whose frame is `width` x `height` hundredths of a millimeter.
Decoded framed(int width, int height, const Builder& bounds) {
  Emf emf;
  emf.noPen().brush(kRedColor).record(17, {3});  // hundredths of a millimeter, counted upwards
  std::vector<std::uint8_t> file = emf.box(0, 0, number(width), number(-height)).file();
  const Builder frame = words({0, 0, width, height});
  std::copy(bounds.bytes.begin(), bounds.bytes.end(), file.begin() + 8);
  std::copy(frame.bytes.begin(), frame.bytes.end(), file.begin() + 24);
  return decode(file);
}

TEST(EmfFrame, ATooLargeDrawingOpensSmallerWithANotice) {
  // 3200 mm are 12094 pixels at 96 per inch; 146 megapixels are reduced to 25. 20000 mm are 75591 pixels,
  // reduced to 32000.
  const Decoded square = framed(320'000, 320'000, words({0, 0, 12093, 12093}));
  EXPECT_EQ(square.bitmap.width(), 5000);
  EXPECT_EQ(square.bitmap.height(), 5000);
  EXPECT_NEAR(square.metadata.resolutionX, 96.0 * 5000 / 12094, 0.01);
  EXPECT_EQ(
      square.notice,
      "The drawing is too large at its natural size of 12094 x 12094 pixels: it was opened at 5000 x 5000 "
      "pixels.");
  EXPECT_EQ(square.bitmap.at(10, 10), kRed);
  EXPECT_EQ(square.bitmap.at(4990, 4990), kRed) << "the drawing shrinks with the picture";

  const Decoded wide = framed(2'000'000, 100, words({0, 0, 75590, 3}));
  EXPECT_EQ(wide.bitmap.width(), 32000);
  EXPECT_EQ(wide.bitmap.height(), 2);
  EXPECT_NEAR(wide.metadata.resolutionY, 96.0 * 32000 / 75591, 0.01);
}

TEST(EmfFrame, AnEmptyDrawingHasItsFramesSize) {
  // 25.4 mm are an inch.
  const Decoded empty = framed(2540, 1270, words({0, 0, -1, -1}));
  EXPECT_EQ(empty.bitmap.width(), 96);
  EXPECT_EQ(empty.bitmap.height(), 48);
  EXPECT_TRUE(empty.notice.empty());
  EXPECT_EQ(empty.metadata.resolutionX, 96);
}

TEST(WmfFrame, WithoutUnitsTheLongerSideHasAtMost1024Pixels) {
  const Decoded decoded = decode(Wmf()
                                     .record(0x020B, {0, 0})
                                     .record(0x020C, {4096, 1024})
                                     .record(0x02FA, {5, 0, 0, 0, 0})
                                     .record(0x012D, {0})
                                     .record(0x02FC, {0, 255, 0, 0})
                                     .record(0x012D, {1})
                                     .record(0x041B, {4096, 1024, 2048, 512})
                                     .file(false));
  EXPECT_EQ(decoded.bitmap.width(), 256);
  EXPECT_EQ(decoded.bitmap.height(), 1024);
  EXPECT_EQ(decoded.bitmap.at(130, 520), kRed);
  EXPECT_EQ(decoded.bitmap.at(120, 520), kNothing);
  EXPECT_EQ(decoded.bitmap.at(130, 500), kNothing);
  EXPECT_TRUE(decoded.notice.empty()) << decoded.notice;
}

}  // namespace
}  // namespace kestrel::engine
