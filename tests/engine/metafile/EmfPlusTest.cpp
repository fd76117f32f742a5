#include <string>
#include <utility>

#include "MetafileBuilders.h"

// Enhanced metafiles whose drawing stands in comments with commands of GDI+.

namespace kestrel::engine {
namespace {

using namespace test;

constexpr std::uint32_t kArgbRed = 0xFFFF0000, kArgbBlue = 0xFF0000FF, kArgbGreen = 0xFF00FF00;

Builder reals(std::initializer_list<float> values) { return Plus::reals({}, values); }

Builder solidBrush(std::uint32_t color) { return Builder().le32(kVersion).le32(0).le32(color); }

/// A pen of the world's unit; `flags` say which of `more` follow.
Builder pen(float width, std::uint32_t color, std::uint32_t flags = 0, const Builder& more = {}) {
  Builder b = Builder().le32(kVersion).le32(0).le32(flags).le32(0).le32(bits(width));
  b.bytes.insert(b.bytes.end(), more.bytes.begin(), more.bytes.end());
  return b.le32(kVersion).le32(0).le32(color);
}

/// A path of points in fractions and their types.
Builder path(std::initializer_list<std::pair<float, float>> points, std::initializer_list<int> types,
             std::uint32_t flags = 0) {
  Builder b = Builder().le32(kVersion).le32(static_cast<std::uint32_t>(points.size())).le32(flags);
  for (const auto& [x, y] : points) b = Plus::reals(b, {x, y});
  b.u8(types);
  return b.fill((4 - types.size() % 4) % 4);
}

Builder squarePath(float left, float top, float right, float bottom) {
  return path({{left, top}, {right, top}, {right, bottom}, {left, bottom}}, {0, 1, 1, 0x81});
}

TEST(EmfPlus, FillsBoxesToldInFractionsOrWholeNumbers) {
  const Bitmap bitmap = Plus()
                            .fillRect(kArgbRed, 5, 5, 10, 10)
                            .command(0x400A, kColor | 0x4000,
                                     Builder().le32(kArgbBlue).le32(1).le16(20).le16(5).le16(10).le16(10))
                            .play();
  EXPECT_EQ(bitmap.at(10, 10), kRed);
  EXPECT_EQ(bitmap.at(17, 10), kNothing);
  EXPECT_EQ(bitmap.at(25, 10), kBlue);
}

TEST(EmfPlus, GivesWayToPlainRecordsThatHoldTheDrawingToo) {
  Emf emf;
  Plus(true).fillRect(kArgbRed, 0, 0, 40, 30).addTo(emf);
  const Bitmap bitmap = emf.noPen().brush(kBlueColor).box(5, 5, 15, 15).play();
  EXPECT_EQ(bitmap.at(10, 10), kBlue);
  EXPECT_EQ(bitmap.at(30, 20), kNothing);
}

TEST(EmfPlus, IsPlayedWherePlainRecordsSayTheyHoldTheDrawingButDoNot) {
  EXPECT_EQ(Plus(true).fillRect(kArgbRed, 0, 0, 40, 30).play().at(10, 10), kRed);
}

TEST(EmfPlus, PlainRecordsCountOnlyAfterTheCommandThatCallsThem) {
  Emf emf;
  Plus().fillRect(kArgbRed, 0, 0, 5, 5).addTo(emf);
  emf.noPen().brush(kBlueColor).box(10, 0, 15, 5);
  Plus().command(0x4004, 0).addTo(emf);
  emf.noPen().brush(kBlueColor).box(20, 0, 25, 5);
  Plus().fillRect(kArgbRed, 30, 0, 5, 5).addTo(emf);
  const Bitmap bitmap = emf.play();
  EXPECT_EQ(bitmap.at(2, 2), kRed);
  EXPECT_EQ(bitmap.at(12, 2), kNothing);
  EXPECT_EQ(bitmap.at(22, 2), kBlue);
  EXPECT_EQ(bitmap.at(32, 2), kRed);
}

TEST(EmfPlus, BrushesOfHatchesHaveBothColours) {
  // The cross has a line at every eighth pixel, both ways.
  const Bitmap bitmap =
      Plus()
          .object(1, 0, Builder().le32(kVersion).le32(1).le32(4).le32(kArgbRed).le32(kArgbBlue))
          .fillAll(0)
          .play();
  EXPECT_EQ(bitmap.at(8, 3), kRed);
  EXPECT_EQ(bitmap.at(3, 16), kRed);
  EXPECT_EQ(bitmap.at(3, 3), kBlue);
}

TEST(EmfPlus, LinearGradientsRunFromColourToColour) {
  Builder brush = Builder().le32(kVersion).le32(4).le32(0).le32(4);
  brush = Plus::reals(brush, {0, 0, 40, 30}).le32(kArgbRed).le32(kArgbBlue).fill(8);
  const Bitmap bitmap = Plus().object(1, 3, brush).fillAll(3).play();
  EXPECT_GT(bitmap.at(0, 15).r, 245);
  EXPECT_NEAR(bitmap.at(20, 15).r, 127, 6);
  EXPECT_NEAR(bitmap.at(20, 15).b, 127, 6);
  EXPECT_GT(bitmap.at(39, 15).b, 245);
}

TEST(EmfPlus, LinearGradientsPassThroughTheirListedColours) {
  Builder brush = Builder().le32(kVersion).le32(4).le32(0x4).le32(4);
  brush = Plus::reals(brush, {0, 0, 40, 30}).le32(kArgbRed).le32(kArgbRed).fill(8).le32(3);
  brush = Plus::reals(brush, {0, 0.5F, 1}).le32(kArgbRed).le32(kArgbGreen).le32(kArgbBlue);
  const Bitmap bitmap = Plus().object(1, 3, brush).fillAll(3).play();
  EXPECT_GT(bitmap.at(20, 15).g, 240);
  EXPECT_GT(bitmap.at(39, 15).b, 240);
}

TEST(EmfPlus, PathGradientsRunFromTheOutlineToTheCentre) {
  Builder brush = Builder().le32(kVersion).le32(3).le32(0).le32(4).le32(kArgbRed);
  brush = Plus::reals(brush, {20, 15}).le32(1).le32(kArgbBlue).le32(4);
  brush = Plus::reals(brush, {0, 0, 40, 0, 40, 30, 0, 30});
  const Bitmap bitmap = Plus().object(1, 0, brush).fillAll(0).play();
  EXPECT_GT(bitmap.at(20, 15).r, 235);
  EXPECT_GT(bitmap.at(1, 15).b, 225);
  EXPECT_NEAR(bitmap.at(10, 15).r, 127, 12);
  EXPECT_NEAR(bitmap.at(20, 7).b, 127, 12);
}

TEST(EmfPlus, TexturesRepeatTheirPicture) {
  // 2 x 1 pixels, red and blue, of 32 bits.
  Builder brush = Builder().le32(kVersion).le32(2).le32(0).le32(0);
  brush.le32(kVersion)
      .le32(1)
      .le32(2)
      .le32(1)
      .le32(8)
      .le32(0x0026200A)
      .le32(0)
      .le32(kArgbRed)
      .le32(kArgbBlue);
  const Bitmap bitmap = Plus().object(1, 0, brush).fillAll(0).play();
  for (const int x : {0, 2, 38}) {
    EXPECT_EQ(bitmap.at(x, 7), kRed) << x;
    EXPECT_EQ(bitmap.at(x + 1, 7), kBlue) << x;
  }
}

TEST(EmfPlus, LinesAreAsWideAsTheirPen) {
  const Bitmap bitmap = Plus()
                            .object(2, 1, pen(4, kArgbBlue))
                            .command(0x400D, 1, Plus::reals(Builder().le32(2), {0, 10, 40, 10}))
                            .play();
  EXPECT_EQ(bitmap.at(20, 8), kBlue);
  EXPECT_EQ(bitmap.at(20, 11), kBlue);
  EXPECT_EQ(bitmap.at(20, 7), kNothing);
  EXPECT_EQ(bitmap.at(20, 12), kNothing);
}

TEST(EmfPlus, LinesAreAtLeastAPixelWide) {
  const auto line = [](float width) {
    return Plus()
        .object(2, 1, pen(width, kArgbBlue))
        .command(0x400D, 1, Plus::reals(Builder().le32(2), {5, 10.5F, 35, 10.5F}))
        .play();
  };
  for (const float width : {0.0F, 0.1F, 0.5F, 1.0F}) {
    EXPECT_EQ(line(width).at(20, 10), kBlue) << width;
    EXPECT_EQ(line(width).at(20, 9), kNothing) << width;
    EXPECT_EQ(line(width).at(20, 11), kNothing) << width;
  }
}

TEST(EmfPlus, LinesAreDrawnInAWorldThatCountsUpwards) {
  const Bitmap bitmap = Plus()
                            .object(2, 1, pen(2, kArgbBlue))
                            .command(0x402A, 0, reals({1, 0, 0, -2, 0, 30}))
                            .command(0x400D, 1, Plus::reals(Builder().le32(2), {0, 10, 40, 10}))
                            .play();
  for (int y = 8; y < 12; ++y) EXPECT_EQ(bitmap.at(20, y), kBlue) << y;
  EXPECT_EQ(bitmap.at(20, 7), kNothing);
  EXPECT_EQ(bitmap.at(20, 12), kNothing);
}

TEST(EmfPlus, DashesAreToldInWidths) {
  // On for two widths of 4 pixels, off for one.
  const Builder dashes = Plus::reals(Builder().le32(2), {2, 1});
  const Bitmap bitmap = Plus()
                            .object(2, 1, pen(4, kArgbBlue, 0x100, dashes))
                            .command(0x400D, 1, Plus::reals(Builder().le32(2), {0, 10, 40, 10}))
                            .play();
  EXPECT_EQ(bitmap.at(4, 10), kBlue);
  EXPECT_EQ(bitmap.at(10, 10), kNothing);
  EXPECT_EQ(bitmap.at(16, 10), kBlue);
  EXPECT_EQ(bitmap.at(22, 10), kNothing);
}

TEST(EmfPlus, ArrowsStandAtTheEndOfALine) {
  const auto line = [](std::uint32_t flags, const Builder& more) {
    return Plus()
        .object(2, 1, pen(4, kArgbBlue, flags, more))
        .command(0x400D, 1, Plus::reals(Builder().le32(2), {5, 15, 30, 15}))
        .play();
  };
  EXPECT_EQ(line(0, {}).at(24, 18), kNothing);
  EXPECT_GT(line(0x4, Builder().le32(0x14)).at(24, 17).a, 200) << "the arrow is wider than the line";
}

TEST(EmfPlus, PathsOfCurvesAreFilledAndStroked) {
  const Builder arch = path({{0, 15}, {10, 0}, {30, 0}, {40, 15}}, {0, 3, 3, 0x83});
  const Bitmap filled =
      Plus().object(3, 2, arch).command(0x4014, kColor | 2, Builder().le32(kArgbRed)).play();
  EXPECT_EQ(filled.at(20, 10), kRed);
  EXPECT_EQ(filled.at(1, 1), kNothing);
  EXPECT_EQ(filled.at(20, 20), kNothing);
  const Bitmap stroked =
      Plus().object(3, 2, arch).object(2, 5, pen(4, kArgbBlue)).command(0x4015, 2, Builder().le32(5)).play();
  EXPECT_EQ(stroked.at(20, 4), kBlue);
  EXPECT_EQ(stroked.at(20, 10), kNothing);
}

TEST(EmfPlus, PathsMayBeStoredShort) {
  const auto fill = [](const Builder& stored) {
    return Plus().object(3, 0, stored).command(0x4014, kColor, Builder().le32(kArgbRed)).play();
  };
  const Bitmap wanted = fill(squarePath(5, 5, 25, 20));
  EXPECT_EQ(wanted.at(10, 10), kRed);
  const Builder whole = Builder()
                            .le32(kVersion)
                            .le32(4)
                            .le32(0x4000)
                            .le16(5)
                            .le16(5)
                            .le16(25)
                            .le16(5)
                            .le16(25)
                            .le16(20)
                            .le16(5)
                            .le16(20)
                            .u8({0, 1, 1, 0x81});
  EXPECT_TRUE(isPicture(fill(whole), wanted)) << "in whole numbers";
  const Builder steps =
      Builder().le32(kVersion).le32(4).le32(0x0800).u8({5, 5, 20, 0, 0, 15, 0x80 - 20, 0, 0, 1, 1, 0x81});
  EXPECT_TRUE(isPicture(fill(steps), wanted)) << "by their distances";
  const Builder runs = Builder()
                           .le32(kVersion)
                           .le32(4)
                           .le32(0x5000)
                           .le16(5)
                           .le16(5)
                           .le16(25)
                           .le16(5)
                           .le16(25)
                           .le16(20)
                           .le16(5)
                           .le16(20)
                           .u8({1, 0, 2, 1, 1, 0x81});
  EXPECT_TRUE(isPicture(fill(runs), wanted)) << "with types in runs";
}

TEST(EmfPlus, PathsThatOverlapThemselvesFollowTheirFillMode) {
  const auto star = [](std::uint32_t flags) {
    const Builder twice = path({{5, 5}, {25, 5}, {25, 25}, {5, 25}, {10, 10}, {20, 10}, {20, 20}, {10, 20}},
                               {0, 1, 1, 0x81, 0, 1, 1, 0x81}, flags);
    return Plus().object(3, 0, twice).command(0x4014, kColor, Builder().le32(kArgbRed)).play();
  };
  EXPECT_EQ(star(0).at(15, 15), kNothing);
  EXPECT_EQ(star(0x2000).at(15, 15), kRed);
}

TEST(EmfPlus, EllipsesPiesAndArcs) {
  const Bitmap ellipse =
      Plus().command(0x400E, kColor, Plus::reals(Builder().le32(kArgbRed), {10, 5, 20, 20})).play();
  EXPECT_EQ(ellipse.at(20, 15), kRed);
  EXPECT_EQ(ellipse.at(11, 6), kNothing);
  // From the right a quarter clockwise: the lower right one.
  const Bitmap pie =
      Plus().command(0x4010, kColor, Plus::reals(Builder().le32(kArgbRed), {0, 90, 10, 5, 20, 20})).play();
  EXPECT_EQ(pie.at(23, 18), kRed);
  EXPECT_EQ(pie.at(23, 12), kNothing);
  EXPECT_EQ(pie.at(17, 18), kNothing);
  const Bitmap arc =
      Plus().object(2, 0, pen(3, kArgbBlue)).command(0x4012, 0, reals({180, 180, 10, 5, 20, 20})).play();
  EXPECT_EQ(arc.at(20, 5), kBlue) << "the upper half";
  EXPECT_EQ(arc.at(20, 24), kNothing);
}

TEST(EmfPlus, CurvesPassThroughTheirPoints) {
  const Bitmap open =
      Plus()
          .object(2, 0, pen(3, kArgbBlue))
          .command(0x4018, 0,
                   Plus::reals(Builder().le32(bits(0.5F)).le32(0).le32(2).le32(3), {2, 15, 20, 5, 38, 15}))
          .play();
  for (const auto& [x, y] : {std::pair{3, 14}, {20, 5}, {37, 14}}) EXPECT_GT(open.at(x, y).a, 100) << x;
  const Bitmap closed = Plus()
                            .command(0x4016, kColor,
                                     Plus::reals(Builder().le32(kArgbRed).le32(bits(0.5F)).le32(4),
                                                 {20, 2, 35, 15, 20, 28, 5, 15}))
                            .play();
  EXPECT_EQ(closed.at(20, 15), kRed);
  EXPECT_EQ(closed.at(2, 2), kNothing);
}

/// Two by two pixels: red, blue, below green, clear.
Builder image() {
  return Builder()
      .le32(kVersion)
      .le32(1)
      .le32(2)
      .le32(2)
      .le32(8)
      .le32(0x0026200A)
      .le32(0)
      .le32(kArgbRed)
      .le32(kArgbBlue)
      .le32(kArgbGreen)
      .le32(0);
}

TEST(EmfPlus, PicturesAreDrawnIntoTheirBox) {
  const Builder place = Plus::reals(Plus::reals(Builder().le32(0).le32(2), {0, 0, 2, 2}), {10, 5, 2, 2});
  const Bitmap bitmap = Plus().object(5, 0, image()).command(0x401A, 0, place).play();
  EXPECT_EQ(bitmap.at(10, 5), kRed);
  EXPECT_EQ(bitmap.at(11, 5), kBlue);
  EXPECT_EQ(bitmap.at(10, 6), kGreen);
  EXPECT_EQ(bitmap.at(11, 6), kNothing);
}

TEST(EmfPlus, PicturesAreTurnedByTheirCorners) {
  // The upper left corner comes to the lower left one, the upper right to the upper left.
  const Builder place =
      Plus::reals(Plus::reals(Builder().le32(0).le32(2), {0, 0, 2, 2}).le32(3), {10, 7, 10, 5, 12, 7});
  const Bitmap bitmap = Plus().object(5, 0, image()).command(0x401B, 0, place).play();
  EXPECT_GT(bitmap.at(10, 6).r, 250);
  EXPECT_GT(bitmap.at(10, 5).b, 250);
  EXPECT_GT(bitmap.at(11, 6).g, 250);
}

TEST(EmfPlus, PicturesOfAllKindsOfPixels) {
  const auto firstPixel = [](std::uint32_t format, std::uint32_t stride, const Builder& data) {
    Builder stored = Builder().le32(kVersion).le32(1).le32(1).le32(1).le32(stride).le32(format).le32(0);
    stored.bytes.insert(stored.bytes.end(), data.bytes.begin(), data.bytes.end());
    const Builder place = Plus::reals(Plus::reals(Builder().le32(0).le32(2), {0, 0, 1, 1}), {3, 3, 1, 1});
    return Plus().object(5, 0, stored).command(0x401A, 0, place).play().at(3, 3);
  };
  const Builder palette = Builder().le32(0).le32(2).le32(kArgbBlue).le32(kArgbRed);
  EXPECT_EQ(firstPixel(0x00030101, 4, Builder(palette).u8({0x80, 0, 0, 0})), kRed) << "1 bit";
  EXPECT_EQ(firstPixel(0x00030402, 4, Builder(palette).u8({0x10, 0, 0, 0})), kRed) << "4 bits";
  EXPECT_EQ(firstPixel(0x00030803, 4, Builder(palette).u8({1, 0, 0, 0})), kRed) << "8 bits";
  EXPECT_EQ(firstPixel(0x00021005, 4, Builder().le32(0x7C00)), kRed) << "15 bits";
  EXPECT_EQ(firstPixel(0x00021006, 4, Builder().le32(0xF800)), kRed) << "16 bits";
  EXPECT_EQ(firstPixel(0x00021808, 4, Builder().u8({0, 0, 255, 0})), kRed) << "24 bits";
  EXPECT_EQ(firstPixel(0x00022009, 4, Builder().le32(0x00FF0000)), kRed) << "32 bits without alpha";
  EXPECT_EQ(firstPixel(0x000E200B, 4, Builder().le32(0x80800000)).r, 255) << "multiplied by alpha";
  EXPECT_EQ(firstPixel(0x0034400D, 8, Builder().le32(0).le16(8192).le16(8192)), kRed) << "64 bits";
}

TEST(EmfPlus, PicturesMayBeFilesOrMetafiles) {
  const auto drawn = [](std::uint32_t type, const std::vector<std::uint8_t>& file, float size) {
    Builder stored = Builder().le32(kVersion).le32(type);
    if (type == 1) stored.fill(16).le32(1);
    if (type == 2) stored.le32(3).le32(static_cast<std::uint32_t>(file.size()));
    stored.bytes.insert(stored.bytes.end(), file.begin(), file.end());
    const Builder place =
        Plus::reals(Plus::reals(Builder().le32(0).le32(2), {0, 0, size, size}), {0, 0, size, size});
    return Plus().object(5, 0, stored).command(0x401A, 0, place).play();
  };
  const std::vector<std::uint8_t> png = encode(Bitmap::filled(8, 8, kRed), {}, format::kPng);
  EXPECT_EQ(drawn(1, png, 8).at(4, 4), kRed);
  EXPECT_EQ(drawn(2, Plus().fillRect(kArgbBlue, 0, 0, 20, 20).file(), 30).at(10, 10), kBlue);
}

/// A font whose size is in pixels.
Builder font(const std::string& face, float size) {
  Builder b = Builder().le32(kVersion).le32(bits(size)).le32(0).le32(0).le32(0);
  b.le32(static_cast<std::uint32_t>(face.size()));
  for (const char c : face) b.le16(static_cast<std::uint8_t>(c));
  return b.fill(face.size() % 2 * 2);
}

TEST(EmfPlus, TextsStandWhereTheirFormatSays) {
  const auto words = [](std::uint32_t align) {
    Builder format = Builder().le32(kVersion).le32(0x1000).le32(0).le32(align).le32(0).fill(48);
    const Builder text = Plus::reals(Builder().le32(0xFF000000).le32(1).le32(2), {0, 0, 40, 30})
                             .text(std::string("H\0H\0", 4));
    return Plus().object(6, 0, font("Arial", 10)).object(7, 1, format).command(0x401C, kColor, text).play();
  };
  const Bitmap left = words(0), right = words(2);
  EXPECT_GT(inkIn(left, 0, 0, 20, 15), 10);
  EXPECT_EQ(inkIn(left, 20, 0, 40, 30), 0);
  EXPECT_GT(inkIn(right, 20, 0, 40, 15), 10);
  EXPECT_EQ(inkIn(right, 0, 0, 20, 30), 0);
}

/// The letter, or the glyph, at 2, 12 and at 27, 27.
Bitmap twice(const Builder& font, std::uint32_t options, std::uint32_t code) {
  const Builder text = Plus::reals(
      Builder().le32(0xFF000000).le32(options).le32(0).le32(2).le16(code).le16(code), {2, 12, 27, 27});
  return Plus().object(6, 0, font).command(0x4036, kColor, text).play();
}

TEST(EmfPlus, LettersStandAtTheirOwnPlaces) {
  const Bitmap told = twice(font("Arial", 12), 1, 'H');
  EXPECT_GT(inkIn(told, 0, 0, 15, 13), 5);
  EXPECT_GT(inkIn(told, 25, 15, 40, 28), 5);
  EXPECT_EQ(inkIn(told, 25, 0, 40, 13), 0);
  // The faces of this order have the H as their glyph 43.
  EXPECT_TRUE(isPicture(twice(font("Arial", 12), 0, 'H' - 29), told));
}

TEST(EmfPlus, LettersThatTheFaceLacksComeFromAnother) {
  // A large disc, which DejaVu Serif lacks and DejaVu Sans has; the sign for a missing letter is hollow.
  EXPECT_GT(inkIn(twice(font("DejaVu Serif", 20), 1, 0x2B24), 7, 2, 15, 8), 45);
}

TEST(EmfPlus, ClearingFillsEverything) {
  EXPECT_TRUE(
      isPicture(Plus().fillRect(kArgbBlue, 1, 1, 9, 9).command(0x4009, 0, Builder().le32(kArgbRed)).play(),
                Bitmap::filled(40, 30, kRed)));
}

TEST(EmfPlus, PaintReplacesInsteadOfBlendingWhereItIsToldTo) {
  const auto over = [](std::uint32_t mode) {
    return Plus()
        .fillRect(kArgbRed, 0, 0, 40, 30)
        .command(0x4023, mode)
        .fillRect(0x800000FF, 0, 0, 40, 30)
        .play()
        .at(9, 9);
  };
  EXPECT_EQ(over(0).a, 255);
  EXPECT_EQ(over(1), (Pixel{0, 0, 255, 128}));
}

TEST(EmfPlus, ClipsCombineInAllWays) {
  // The first clip reaches from 0 to 20, the second from 10 to 30; the places lie in the first alone, in
  // both, in the second alone, and in none.
  const auto seen = [](std::uint32_t how) {
    const Bitmap bitmap = Plus()
                              .command(0x4032, 0, reals({0, 0, 20, 30}))
                              .command(0x4032, how << 8, reals({10, 0, 20, 30}))
                              .fillRect(kArgbRed, 0, 0, 40, 30)
                              .play();
    std::string result;
    for (const int x : {5, 15, 25, 35}) result += bitmap.at(x, 15) == kRed ? '1' : '0';
    return result;
  };
  EXPECT_EQ(seen(0), "0110") << "replace";
  EXPECT_EQ(seen(1), "0100") << "intersect";
  EXPECT_EQ(seen(2), "1110") << "unite";
  EXPECT_EQ(seen(3), "1010") << "exclusive";
  EXPECT_EQ(seen(4), "1000") << "exclude";
  EXPECT_EQ(seen(5), "0010") << "complement";
}

TEST(EmfPlus, ClipsOfPathsAndRegionsMoveAndGo) {
  // A region: the left half without its middle.
  Builder region = Builder().le32(kVersion).le32(2).le32(4).le32(0x10000000);
  region = Plus::reals(region, {0, 0, 20, 30}).le32(0x10000000);
  region = Plus::reals(region, {8, 0, 4, 30});
  const Bitmap regions =
      Plus().object(4, 0, region).command(0x4034, 0).fillRect(kArgbRed, 0, 0, 40, 30).play();
  EXPECT_EQ(regions.at(4, 9), kRed);
  EXPECT_EQ(regions.at(10, 9), kNothing);
  EXPECT_EQ(regions.at(16, 9), kRed);
  EXPECT_EQ(regions.at(25, 9), kNothing);
  const Bitmap paths = Plus()
                           .object(3, 0, squarePath(5, 5, 15, 15))
                           .command(0x4033, 0)
                           .command(0x4035, 0, reals({10, 0}))
                           .fillRect(kArgbRed, 0, 0, 40, 30)
                           .command(0x4031, 0)
                           .fillRect(kArgbBlue, 30, 0, 5, 5)
                           .play();
  EXPECT_EQ(paths.at(10, 10), kNothing) << "the clip has moved on";
  EXPECT_EQ(paths.at(20, 10), kRed);
  EXPECT_EQ(paths.at(32, 2), kBlue) << "and is gone";
  const Bitmap filled =
      Plus().object(4, 0, region).command(0x4013, kColor, Builder().le32(kArgbGreen)).play();
  EXPECT_EQ(filled.at(4, 9), kGreen);
  EXPECT_EQ(filled.at(10, 9), kNothing);
}

TEST(EmfPlus, WorldsAreSetMultipliedMovedScaledAndTurned) {
  const auto corner = [](const Plus& plus, int x, int y) { return plus.play().at(x, y) == kRed; };
  const auto square = [](Plus plus) { return plus.fillRect(kArgbRed, 0, 0, 5, 5); };
  EXPECT_TRUE(corner(square(Plus().command(0x402A, 0, reals({2, 0, 0, 2, 10, 0}))), 19, 9));
  EXPECT_TRUE(corner(square(Plus().command(0x402D, 0, reals({20, 10}))), 22, 12));
  EXPECT_TRUE(corner(square(Plus().command(0x402E, 0, reals({4, 4}))), 19, 19));
  // A quarter clockwise about the corner, then moved back into the picture.
  EXPECT_TRUE(
      corner(square(Plus().command(0x402F, 0, reals({90})).command(0x402D, 0x2000, reals({20, 0}))), 17, 2));
  // Before the scaling or behind it: a step of 5 is one of 10 or of 5.
  const Plus scaled = Plus().command(0x402E, 0, reals({2, 2}));
  EXPECT_TRUE(corner(square(Plus(scaled).command(0x402D, 0, reals({5, 0}))), 19, 9));
  EXPECT_FALSE(corner(square(Plus(scaled).command(0x402D, 0x2000, reals({5, 0}))), 19, 9));
  EXPECT_TRUE(corner(square(Plus(scaled).command(0x402B, 0)), 4, 4));
  EXPECT_FALSE(corner(square(Plus(scaled).command(0x402B, 0)), 6, 6));
}

TEST(EmfPlus, PagesHaveUnits) {
  // A tenth of an inch of 96 pixels; twice as much with a scale of 2.
  const Bitmap inches = Plus().command(0x4030, 4, reals({1})).fillRect(kArgbRed, 0, 0, 0.1F, 0.1F).play();
  EXPECT_EQ(inches.at(8, 8), kRed);
  EXPECT_EQ(inches.at(11, 8), kNothing);
  const Bitmap twice = Plus().command(0x4030, 4, reals({2})).fillRect(kArgbRed, 0, 0, 0.1F, 0.1F).play();
  EXPECT_EQ(twice.at(18, 18), kRed);
  const Bitmap points = Plus().command(0x4030, 3, reals({1})).fillRect(kArgbRed, 0, 0, 15, 15).play();
  EXPECT_EQ(points.at(19, 19), kRed);
  EXPECT_EQ(points.at(20, 20), kNothing);
}

TEST(EmfPlus, StatesAndContainersAreLeftAsTheyWereEntered) {
  const Bitmap saved = Plus()
                           .command(0x4025, 0, Builder().le32(7))
                           .command(0x402D, 0, reals({20, 0}))
                           .command(0x4032, 0, reals({0, 0, 1, 1}))
                           .command(0x4026, 0, Builder().le32(7))
                           .fillRect(kArgbRed, 0, 0, 10, 10)
                           .play();
  EXPECT_EQ(saved.at(5, 5), kRed);
  EXPECT_EQ(saved.at(25, 5), kNothing);
  // What is 10 x 10 within becomes 20 x 20 at 10, 5.
  const Bitmap inside =
      Plus()
          .command(0x4027, 2, Plus::reals(Plus::reals({}, {10, 5, 20, 20}), {0, 0, 10, 10}).le32(1))
          .fillRect(kArgbRed, 0, 0, 5, 5)
          .command(0x4029, 0, Builder().le32(1))
          .fillRect(kArgbBlue, 0, 0, 5, 5)
          .play();
  EXPECT_EQ(inside.at(18, 13), kRed);
  EXPECT_EQ(inside.at(22, 13), kNothing);
  EXPECT_EQ(inside.at(2, 2), kBlue);
}

TEST(EmfPlus, ObjectsMayGoOnInFurtherRecords) {
  const Builder brush = solidBrush(kArgbRed);
  const auto part = [&](std::size_t from, std::size_t to) {
    Builder b = Builder().le32(static_cast<std::uint32_t>(brush.bytes.size()));
    b.bytes.insert(b.bytes.end(), brush.bytes.begin() + static_cast<std::ptrdiff_t>(from),
                   brush.bytes.begin() + static_cast<std::ptrdiff_t>(to));
    return b;
  };
  EXPECT_EQ(Plus()
                .command(0x4008, 0x8100, part(0, 8))
                .command(0x4008, 0x8100, part(8, 12))
                .fillAll(0)
                .play()
                .at(9, 9),
            kRed);
}

TEST(EmfPlus, CommandsThatMakeNoSenseArePassedOver) {
  Builder deep = Builder().le32(kVersion).le32(1000);
  for (int i = 0; i < 1000; ++i) deep.le32(1);
  const Bitmap bitmap =
      Plus()
          .object(4, 0, deep)
          .object(3, 0, Builder().le32(kVersion).le32(0xFFFFFFFF).le32(0x1000))
          .object(5, 0, Builder().le32(kVersion).le32(1).le32(0x7FFFFFFF).le32(0x7FFFFFFF).le32(1))
          .object(99, 1, Builder().le32(7))
          .command(0x4034, 0)
          .command(0x402A, 0, reals({0, 0, 0, 0, 0, 0}))
          .fillRect(kArgbBlue, 0, 0, 40, 30)
          .command(0x402B, 0)
          .command(0x401C, kColor, Builder().le32(0).le32(0).le32(0xFFFFFFFF))
          .command(0x7FFF, 0)
          .command(0x4026, 0, Builder().le32(5))
          .fillRect(kArgbRed, 5, 5, 10, 10)
          .play();
  EXPECT_EQ(bitmap.at(10, 10), kRed);
  EXPECT_EQ(bitmap.at(30, 20), kNothing);
}

}  // namespace
}  // namespace kestrel::engine
