#include <string>
#include <utility>

#include "MetafileBuilders.h"

// Single metafile records: raster operations, clips, pens and brushes, bitmaps, blends and regions.

namespace kestrel::engine {
namespace {

using namespace test;

constexpr std::uint32_t kCopy = 0xCC0020, kAnd = 0x8800C6, kOr = 0xEE0086, kXor = 0x660046,
                        kInvert = 0x550009, kBrushXor = 0x5A0049;

Builder join(Builder first, const Builder& second) {
  first.bytes.insert(first.bytes.end(), second.bytes.begin(), second.bytes.end());
  return first;
}

/// Parameters of a record that ends with a bitmap; its offsets and sizes go between `before` and `after`.
Builder withDib(const Builder& before, const Dib& dib, const Builder& after) {
  const std::size_t at = 8 + before.bytes.size() + 16 + after.bytes.size();
  Builder b = before;
  b.le32(static_cast<std::uint32_t>(at)).le32(static_cast<std::uint32_t>(dib.header.bytes.size()));
  b.le32(static_cast<std::uint32_t>(at + dib.header.bytes.size()));
  b.le32(static_cast<std::uint32_t>(dib.pixels.bytes.size()));
  return join(join(join(b, after), dib.header), dib.pixels);
}

/// Draws a bitmap unscaled with a ternary raster operation.
Emf& blit(Emf& emf, int x, int y, const Dib& dib, std::uint32_t operation) {
  const int width = dib.header.bytes[4], height = dib.header.bytes[8];
  const Builder before = words({0, 0, 0, 0, x, y, 0, 0, width, height});
  return emf.record(
      81, withDib(before, dib, Builder().le32(0).le32(operation).le32(number(width)).le32(number(height))));
}

TEST(MetafileMixing, BinaryOperationsCombineWithTheDestination) {
  const auto mixed = [](std::uint32_t operation) {
    return Emf()
        .noPen()
        .brush(0x0F00FF)  // red FF, blue 0F
        .box(0, 0, 40, 30)
        .record(20, {operation})
        .brush(0x3300F0)  // red F0, blue 33
        .box(10, 0, 20, 30)
        .play()
        .at(15, 15);
  };
  EXPECT_EQ(mixed(1), kBlack) << "black";
  EXPECT_EQ(mixed(6), (Pixel{0x00, 0xFF, 0xF0, 255})) << "not";
  EXPECT_EQ(mixed(7), (Pixel{0x0F, 0x00, 0x3C, 255})) << "xor";
  EXPECT_EQ(mixed(9), (Pixel{0xF0, 0x00, 0x03, 255})) << "mask";
  EXPECT_EQ(mixed(11), (Pixel{0xFF, 0x00, 0x0F, 255})) << "nothing";
  EXPECT_EQ(mixed(13), (Pixel{0xF0, 0x00, 0x33, 255})) << "copy";
  EXPECT_EQ(mixed(15), (Pixel{0xFF, 0x00, 0x3F, 255})) << "merge";
  EXPECT_EQ(mixed(16), kWhite) << "white";
}

TEST(MetafileMixing, XorTwiceRestoresTheDestination) {
  Emf emf;
  emf.noPen().brush(kRedColor).box(0, 0, 40, 30).record(20, {7}).brush(0x123456);
  const Bitmap once = emf.box(5, 5, 25, 25).play();
  const Bitmap twice = emf.box(5, 5, 25, 25).play();
  EXPECT_NE(once.at(10, 10), kRed);
  EXPECT_TRUE(isPicture(twice, Bitmap::filled(40, 30, kRed)));
}

TEST(MetafileMixing, UnchangedPixelsStayTransparent) {
  // Xor with black changes nothing. Transparent parts count as white, so xor with white makes them black.
  const Bitmap bitmap =
      Emf().noPen().record(20, {7}).brush(0).box(0, 0, 10, 30).brush(0xFFFFFF).box(20, 0, 30, 30).play();
  EXPECT_EQ(bitmap.at(5, 5), kNothing);
  EXPECT_EQ(bitmap.at(25, 5), kBlack);
}

TEST(MetafileMixing, AMaskAndAPictureOnBlackMakeATransparentPicture) {
  const Dib mask = dibOf({{kWhite, kBlack}, {kBlack, kWhite}});
  const Dib picture = dibOf({{kBlack, kRed}, {kBlue, kBlack}});
  for (const std::uint32_t second : {kOr, kXor}) {
    Emf emf;
    emf.noPen().brush(kGreenColor).box(0, 0, 20, 30);
    for (const int x : {5, 25}) {
      blit(emf, x, 5, mask, kAnd);
      blit(emf, x, 5, picture, second);
    }
    const Bitmap bitmap = emf.play();
    EXPECT_EQ(bitmap.at(5, 5), kGreen);
    EXPECT_EQ(bitmap.at(6, 5), kRed);
    EXPECT_EQ(bitmap.at(5, 6), kBlue);
    EXPECT_EQ(bitmap.at(6, 6), kGreen);
    EXPECT_EQ(bitmap.at(25, 5), kNothing) << "also where nothing was drawn";
    EXPECT_EQ(bitmap.at(26, 5), kRed);
  }
}

TEST(MetafileMixing, OperationsWithoutABitmapUseBrushAndDestination) {
  const auto filled = [](std::uint32_t operation) {
    return Emf()
        .noPen()
        .brush(0x0000FF)
        .box(0, 0, 40, 30)
        .brush(0x00FFFF)
        .record(76, Builder().fill(16).le32(5).le32(5).le32(10).le32(10).le32(operation).fill(60))
        .play();
  };
  EXPECT_EQ(filled(kInvert).at(10, 10), (Pixel{0, 255, 255, 255}));
  EXPECT_EQ(filled(kBrushXor).at(10, 10), (Pixel{0, 255, 0, 255}));
  EXPECT_EQ(filled(0xF00021).at(10, 10), (Pixel{255, 255, 0, 255}));
  EXPECT_EQ(filled(kInvert).at(20, 20), kRed);
}

TEST(MetafileMixing, TernaryOperationsUseSourceBrushAndDestination) {
  // A white source selects the brush, a black one the destination.
  Emf emf;
  emf.noPen().brush(kRedColor).box(0, 0, 40, 30).brush(kBlueColor);
  const Bitmap bitmap = blit(emf, 5, 5, dibOf({{kWhite, kBlack}}), 0xE20746).play();
  EXPECT_EQ(bitmap.at(5, 5), kBlue);
  EXPECT_EQ(bitmap.at(6, 5), kRed);
}

Builder blitHeader(int x, int y, int width, int height, std::uint32_t operation) {
  Builder b = words({0, 0, 0, 0, x, y, width, height}).le32(operation).le32(0).le32(0);
  b.le32(bits(1)).le32(0).le32(0).le32(bits(1)).le32(0).le32(0);
  return b.le32(0xFFFFFF).le32(0);
}

/// Draws a scaled bitmap with a ternary raster operation.
Emf& stretch(Emf& emf, int width, int height, const Dib& dib, std::uint32_t operation) {
  const Builder before = words({0, 0, 0, 0, 0, 0, 0, 0, dib.header.bytes[4], dib.header.bytes[8]});
  return emf.record(
      81, withDib(before, dib, Builder().le32(0).le32(operation).le32(number(width)).le32(number(height))));
}

TEST(MetafileMixing, AScaledMaskAndPictureAreSmooth) {
  // Two pixels scaled to forty: opaque up to the center of the left one, transparent from that of the right.
  for (const std::uint32_t operation : {kOr, kXor}) {
    Emf emf;
    stretch(emf, 40, 30, dibOf({{kBlack, kWhite}}), kAnd);
    const Bitmap bitmap =
        stretch(emf.record(24, {kRedColor}), 40, 30, dibOf({{kRed, kBlack}}), operation).play();
    EXPECT_EQ(bitmap.at(5, 15), kRed);
    EXPECT_EQ(bitmap.at(35, 15), kNothing);
    for (const auto& [x, alpha] : {std::pair{15, 184}, {20, 121}, {25, 57}}) {
      EXPECT_NEAR(bitmap.at(x, 15).a, alpha, 8) << x;
      EXPECT_GE(bitmap.at(x, 15).r, 250) << x;
    }
  }
}

TEST(MetafileMixing, AMaskByOrAndAPictureOnWhiteThatAreStretchedAreSmooth) {
  // As above, with the mask white where the picture is, which is white elsewhere.
  Emf emf;
  emf.noPen().brush(kGreenColor).box(0, 0, 40, 15);
  stretch(emf, 40, 30, dibOf({{kWhite, kBlack}}), kOr);
  const Bitmap bitmap = stretch(emf.record(24, {kRedColor}), 40, 30, dibOf({{kRed, kWhite}}), kAnd).play();
  EXPECT_EQ(bitmap.at(5, 25), kRed);
  EXPECT_EQ(bitmap.at(35, 25), kNothing);
  EXPECT_EQ(bitmap.at(35, 5), kGreen);
  for (const auto& [x, alpha] : {std::pair{15, 184}, {20, 121}, {25, 57}}) {
    EXPECT_NEAR(bitmap.at(x, 25).a, alpha, 8) << x;
    EXPECT_NEAR(bitmap.at(x, 5).r, alpha, 8) << x;
    EXPECT_NEAR(bitmap.at(x, 5).g, 255 - alpha, 8) << x;
  }
}

TEST(MetafileMixing, APictureOnAnotherColourThanItsMaskLeavesIsMixedBitByBit) {
  // The right half of the picture is blue where the mask leaves the background: AND darkens that to blue.
  Emf emf;
  emf.noPen().brush(0xFFFFFF).box(0, 0, 40, 30);
  stretch(emf, 40, 30, dibOf({{kWhite, kBlack}}), kOr);
  const Bitmap bitmap = stretch(emf, 40, 30, dibOf({{kRed, kBlue}}), kAnd).play();
  EXPECT_EQ(bitmap.at(19, 15), kRed);
  EXPECT_EQ(bitmap.at(20, 15), kBlue);
}

TEST(MetafileMixing, AMaskIsAppliedBeforeLaterRecords) {
  // The blue box is drawn on the masked half before the red source is combined with it.
  Emf emf;
  stretch(emf, 40, 30, dibOf({{kBlack, kWhite}}), kAnd).noPen().brush(kBlueColor).box(0, 0, 40, 10);
  const Bitmap bitmap = stretch(emf, 40, 30, dibOf({{kRed, kBlack}}), kOr).play();
  EXPECT_EQ(bitmap.at(5, 5), (Pixel{255, 0, 255, 255}));
  EXPECT_EQ(bitmap.at(5, 20), kRed);
  EXPECT_EQ(bitmap.at(35, 5), kBlue);
  Emf alone;
  EXPECT_EQ(stretch(alone, 40, 30, dibOf({{kBlack, kWhite}}), kAnd).play().at(5, 5), kBlack) << "at the end";
}

TEST(MetafileBitmaps, AreScaledToTheirTarget) {
  // Two by one pixels copied into 20 x 10.
  const Bitmap bitmap =
      Emf().record(76, withDib(blitHeader(5, 5, 20, 10, kCopy), dibOf({{kRed, kBlue}}), {})).play();
  EXPECT_EQ(bitmap.at(6, 6), kRed);
  EXPECT_EQ(bitmap.at(9, 14), kRed);
  EXPECT_EQ(bitmap.at(20, 6), kBlue);
  EXPECT_EQ(bitmap.at(24, 14), kBlue);
  EXPECT_EQ(bitmap.at(25, 14), kNothing);
}

TEST(MetafileBitmaps, AMaskSelectsBetweenTwoOperations) {
  const Dib picture = dibOf({{kRed, kRed}});
  const Dib mask = dibOf({{kWhite, kBlack}});
  // The mask follows the picture: where it is white the picture is drawn, elsewhere the destination is
  // inverted.
  const std::size_t at = 8 + 32 + 4 + 8 + 24 + 8 + 16 + 12 + 16;
  Builder b = blitHeader(5, 5, 2, 1, (kCopy & 0xFFFFFF) | 0x55000000);
  const auto places = [&](std::size_t from, const Dib& dib) {
    b.le32(number(static_cast<int>(from)))
        .le32(40)
        .le32(number(static_cast<int>(from + 40)))
        .le32(number(static_cast<int>(dib.pixels.bytes.size())));
  };
  places(at, picture);
  b.le32(0).le32(0).le32(0);
  places(at + 48, mask);
  for (const Dib* dib : {&picture, &mask}) b = join(join(b, dib->header), dib->pixels);
  const Bitmap bitmap = Emf().noPen().brush(kGreenColor).box(0, 0, 40, 30).record(78, b).play();
  EXPECT_EQ(bitmap.at(5, 5), kRed);
  EXPECT_EQ(bitmap.at(6, 5), (Pixel{255, 0, 255, 255}));
}

TEST(MetafileBitmaps, ParallelogramsAreGivenByThreeCorners) {
  Builder b = words({0, 0, 0, 0, 10, 7, 10, 5, 12, 7, 0, 0, 2, 2});
  b.le32(bits(1)).le32(0).le32(0).le32(bits(1)).le32(0).le32(0).le32(0xFFFFFF).le32(0);
  const Bitmap bitmap =
      Emf().record(79, withDib(b, dibOf({{kRed, kBlue}, {kGreen, kGreen}}), Builder().fill(28))).play();
  EXPECT_GT(bitmap.at(10, 6).r, 250);
  EXPECT_GT(bitmap.at(10, 5).b, 250);
  EXPECT_GT(bitmap.at(11, 6).g, 250);
}

TEST(MetafileBitmaps, BlendWithAConstantOrPerPixelAlpha) {
  const auto blended = [](std::uint32_t function, const Dib& dib) {
    const Builder before = blitHeader(5, 5, 1, 1, function);
    return Emf()
        .noPen()
        .brush(kBlueColor)
        .box(0, 0, 40, 30)
        .record(114, withDib(before, dib, Builder().le32(1).le32(1)))
        .play()
        .at(5, 5);
  };
  const Pixel half = blended(0x00800000, dibOf({{kRed}}));
  EXPECT_NEAR(half.r, 128, 1);
  EXPECT_NEAR(half.b, 127, 1);
  Dib own;
  own.header.le32(40).le32(1).le32(1).le16(1).le16(32).fill(24);
  own.pixels.u8({0, 0, 64, 64});  // red, premultiplied by a quarter
  const Pixel quarter = blended(0x01FF0000, own);
  EXPECT_NEAR(quarter.r, 64, 1);
  EXPECT_NEAR(quarter.b, 191, 1);
}

TEST(MetafileBitmaps, OneColorMayBeTransparent) {
  const Builder before = blitHeader(5, 5, 2, 1, kGreenColor);
  const Bitmap bitmap =
      Emf().record(116, withDib(before, dibOf({{kRed, kGreen}}), Builder().le32(2).le32(1))).play();
  EXPECT_EQ(bitmap.at(5, 5), kRed);
  EXPECT_EQ(bitmap.at(6, 5), kNothing);
}

TEST(MetafileBitmaps, PartialRowsAreDrawnAtTheirPosition) {
  // The record holds the top row of three, which is the third from the bottom.
  Dib dib = dibOf({{kRed}});
  dib.header.bytes[8] = 3;
  const Builder before = words({0, 0, 0, 0, 5, 5, 0, 0, 1, 3});
  const Bitmap bitmap = Emf().record(80, withDib(before, dib, Builder().le32(0).le32(2).le32(1))).play();
  EXPECT_EQ(bitmap.at(5, 5), kRed);
  EXPECT_EQ(bitmap.at(5, 6), kNothing);
}

TEST(MetafileBitmaps, MayBeTopDownOrMirrored) {
  Dib dib = dibOf({{kRed, kBlue}});
  dib.pixels = join(Builder().u8({0, 0, 255, 255, 0, 0, 0, 0}), Builder().u8({0, 255, 0, 0, 255, 0, 0, 0}));
  for (std::size_t i = 8; i < 12; ++i) dib.header.bytes[i] = i == 8 ? 0xFE : 0xFF;  // two rows from the top
  const Builder before = words({0, 0, 0, 0, 5, 5, 0, 0, 2, 2});
  const Bitmap down =
      Emf().record(81, withDib(before, dib, Builder().le32(0).le32(kCopy).le32(2).le32(2))).play();
  EXPECT_EQ(down.at(5, 5), kRed);
  EXPECT_EQ(down.at(6, 5), kBlue);
  EXPECT_EQ(down.at(5, 6), kGreen);
  const Builder mirrored = words({0, 0, 0, 0, 7, 5, 0, 0, 2, 2});
  const Bitmap left =
      Emf().record(81, withDib(mirrored, dib, Builder().le32(0).le32(kCopy).le32(number(-2)).le32(2))).play();
  EXPECT_EQ(left.at(6, 5), kRed);
  EXPECT_EQ(left.at(5, 5), kBlue);
}

TEST(MetafileBlends, BoxesAndTrianglesBlendTheColorsOfTheirCorners) {
  const auto corner = [](Builder b, int x, int y, std::uint32_t r, std::uint32_t g, std::uint32_t blue) {
    return b.le32(number(x)).le32(number(y)).le16(r << 8).le16(g << 8).le16(blue << 8).le16(0);
  };
  const auto box = [&](std::uint32_t mode) {
    Builder b = Builder().fill(16).le32(2).le32(1).le32(mode);
    b = corner(corner(b, 0, 0, 255, 0, 0), 40, 30, 0, 0, 255).le32(0).le32(1);
    return Emf().record(118, b).play();
  };
  EXPECT_NEAR(box(0).at(10, 15).r, 188, 6);
  EXPECT_NEAR(box(0).at(10, 15).b, 67, 6);
  EXPECT_GT(box(1).at(20, 1).r, 240);
  EXPECT_GT(box(1).at(20, 28).b, 235);
  Builder b = Builder().fill(16).le32(3).le32(1).le32(2);
  b = corner(corner(corner(b, 0, 0, 255, 0, 0), 40, 0, 0, 255, 0), 0, 30, 0, 0, 255).le32(0).le32(1).le32(2);
  const Bitmap triangle = Emf().record(118, b).play();
  EXPECT_GT(triangle.at(1, 1).r, 225);
  EXPECT_GT(triangle.at(37, 0).g, 220);
  EXPECT_GT(triangle.at(0, 28).b, 225);
  EXPECT_EQ(triangle.at(35, 25), kNothing);
}

Builder region(std::initializer_list<int> box) {
  return join(Builder().le32(32).le32(1).le32(1).le32(16).fill(16), words(box));
}

TEST(MetafileClips, RegionsCombineInAllWays) {
  const auto seen = [](std::uint32_t how) {
    const auto clip = [](std::uint32_t mode, std::initializer_list<int> box) {
      return join(Builder().le32(48).le32(mode), region(box));
    };
    const Bitmap bitmap = Emf()
                              .noPen()
                              .brush(kRedColor)
                              .record(75, clip(5, {0, 0, 20, 30}))
                              .record(75, clip(how, {10, 0, 30, 30}))
                              .box(0, 0, 40, 30)
                              .play();
    std::string result;
    for (const int x : {5, 15, 25, 35}) result += bitmap.at(x, 15) == kRed ? '1' : '0';
    return result;
  };
  EXPECT_EQ(seen(1), "0100") << "and";
  EXPECT_EQ(seen(2), "1110") << "or";
  EXPECT_EQ(seen(3), "1010") << "xor";
  EXPECT_EQ(seen(4), "1000") << "without";
  EXPECT_EQ(seen(5), "0110") << "copy";
}

TEST(MetafileClips, MoveAndStayWithinTheMetafilesRegion) {
  const Bitmap moved =
      Emf().noPen().brush(kRedColor).record(30, {0, 0, 10, 10}).record(26, {20, 0}).box(0, 0, 40, 30).play();
  EXPECT_EQ(moved.at(5, 5), kNothing);
  EXPECT_EQ(moved.at(25, 5), kRed);
  // A reset clip stays within the metafile's own region.
  const Bitmap kept = Emf()
                          .noPen()
                          .brush(kRedColor)
                          .record(30, {0, 0, 10, 10})
                          .record(28, {})
                          .record(75, {0, 5})
                          .box(0, 0, 40, 30)
                          .play();
  EXPECT_EQ(kept.at(5, 5), kRed);
  EXPECT_EQ(kept.at(25, 5), kNothing);
}

TEST(MetafileClips, GlyphsInAPathAreAClip) {
  Emf emf;
  emf.noPen().brush(kRedColor).record(18, {1}).record(59, {});
  emf.record(84, {0, 0, 0, 0, 1, bits(1), bits(1), 2, 2, 2, 76, 0, 0, 0, 0, 0, 0, 0x00480048});
  const Bitmap bitmap = emf.record(60, {}).record(67, {5}).box(0, 0, 40, 30).play();
  EXPECT_GT(inkIn(bitmap, 0, 0, 40, 15), 5);
  EXPECT_EQ(inkIn(bitmap, 0, 16, 40, 30), 0);
}

TEST(MetafilePens, MayHaveUserDefinedDashes) {
  // Geometric, user style, flat caps, 4 wide, dashes of 10 and gaps of 5 units.
  const Builder pen = Builder()
                          .le32(1)
                          .fill(16)
                          .le32(0x10207)
                          .le32(4)
                          .le32(0)
                          .le32(kBlueColor)
                          .le32(0)
                          .le32(2)
                          .le32(10)
                          .le32(5);
  const Bitmap bitmap = Emf().record(95, pen).record(37, {1}).record(27, {0, 10}).record(54, {40, 10}).play();
  for (const auto& [x, on] : {std::pair{4, true}, {12, false}, {20, true}, {27, false}, {33, true}})
    EXPECT_EQ(bitmap.at(x, 10), on ? kBlue : kNothing) << x;
}

TEST(MetafilePens, CosmeticPensAreAPixelWideUnderAnyMapping) {
  const Builder pen = Builder().le32(1).fill(16).le32(0).le32(1).le32(0).le32(kBlueColor).le32(0).le32(0);
  const Bitmap bitmap = Emf()
                            .record(35, {bits(10), 0, 0, bits(10), 0, 0})
                            .record(95, pen)
                            .record(37, {1})
                            .record(27, {0, 1})
                            .record(54, {4, 1})
                            .play();
  EXPECT_GT(bitmap.at(20, 10).a + bitmap.at(20, 9).a, 200);
  EXPECT_EQ(bitmap.at(20, 12), kNothing);
  EXPECT_EQ(bitmap.at(20, 7), kNothing);
}

TEST(MetafilePens, GeometricPensMayBeHalfAPixelWide) {
  // Four units per pixel; a line along the middle of row 10.
  const auto alpha = [](std::uint32_t style, std::uint32_t width) {
    const Builder pen =
        Builder().le32(1).fill(16).le32(style).le32(width).le32(0).le32(kBlueColor).le32(0).le32(0);
    return static_cast<int>(Emf()
                                .record(17, {8})
                                .record(9, {160, 120})
                                .record(11, {40, 30})
                                .record(95, pen)
                                .record(37, {1})
                                .record(27, {0, 42})
                                .record(54, {160, 42})
                                .play()
                                .at(20, 10)
                                .a);
  };
  constexpr std::uint32_t kGeometric = 0x10000;
  EXPECT_NEAR(alpha(kGeometric, 3), 191, 12) << "three quarters of a pixel";
  EXPECT_NEAR(alpha(kGeometric, 1), 128, 12) << "no less than a half";
  EXPECT_EQ(alpha(0, 1), 255) << "a cosmetic one is a pixel wide";
}

TEST(MetafileBrushes, HatchesWithoutLinesAreSolid) {
  const auto filled = [](std::uint32_t hatch) {
    return Emf()
        .noPen()
        .record(24, {kRedColor})
        .record(25, {kBlueColor})
        .record(39, {1, 2, kGreenColor, hatch})
        .record(37, {1})
        .box(0, 0, 40, 30)
        .play();
  };
  const Pixel wanted[] = {kGreen, kGreen, kRed, kRed, kBlue, kBlue};
  for (std::uint32_t i = 0; i < 6; ++i)
    EXPECT_TRUE(isPicture(filled(6 + i), Bitmap::filled(40, 30, wanted[i]))) << 6 + i;
}

TEST(MetafileBrushes, MonochromePatternsUseTextAndBackgroundColor) {
  Dib dib;
  dib.header.le32(40).le32(8).le32(1).le16(1).le16(1).fill(24).le32(0).le32(0xFFFFFF);
  dib.pixels.u8({0xAA, 0, 0, 0});  // white first
  const Builder brush = withDib(Builder().le32(1).le32(0), dib, {});
  const Bitmap bitmap = Emf()
                            .noPen()
                            .record(24, {kRedColor})
                            .record(25, {kBlueColor})
                            .record(93, brush)
                            .record(37, {1})
                            .box(0, 0, 40, 30)
                            .play();
  EXPECT_EQ(bitmap.at(8, 5), kBlue);
  EXPECT_EQ(bitmap.at(9, 5), kRed);
}

TEST(MetafileRegions, AreFilledFramedInvertedAndPainted) {
  const auto painted = [](std::uint32_t type, const Builder& before) {
    return Emf()
        .noPen()
        .record(39, {2, 0, kBlueColor, 0})
        .brush(kRedColor)
        .box(0, 0, 40, 30)
        .brush(kGreenColor)
        .record(type, join(before, region({5, 5, 25, 25})))
        .play();
  };
  const Bitmap filled = painted(71, Builder().fill(16).le32(48).le32(2));
  EXPECT_EQ(filled.at(15, 15), kBlue);
  EXPECT_EQ(filled.at(30, 15), kRed);
  const Bitmap framed = painted(72, Builder().fill(16).le32(48).le32(2).le32(3).le32(3));
  EXPECT_EQ(framed.at(6, 15), kBlue);
  EXPECT_EQ(framed.at(15, 15), kRed);
  EXPECT_EQ(painted(73, Builder().fill(16).le32(48)).at(15, 15), (Pixel{0, 255, 255, 255}));
  EXPECT_EQ(painted(74, Builder().fill(16).le32(48)).at(15, 15), kGreen);
}

TEST(MetafileShapes, PolyDrawPointsHaveTypes) {
  const Builder points =
      Builder().fill(16).le32(4).le16(5).le16(5).le16(25).le16(5).le16(25).le16(25).le16(5).le16(25).u8(
          {6, 2, 2, 3});
  const Bitmap bitmap = Emf()
                            .noPen()
                            .brush(kRedColor)
                            .record(59, {})
                            .record(92, points)
                            .record(60, {})
                            .record(62, {0, 0, 0, 0})
                            .play();
  EXPECT_EQ(bitmap.at(15, 15), kRed);
  EXPECT_EQ(bitmap.at(30, 15), kNothing);
}

/// A plain Windows metafile of 40 x 30 pixels.
Wmf page() { return Wmf().record(0x020B, {0, 0}).record(0x020C, {30, 40}); }

Bitmap played(const Wmf& wmf) { return decode(wmf.file(false)).bitmap; }

TEST(WmfRecords, RegionsAreClippedToAndPainted) {
  const Builder region =
      Builder().fill(10).le16(1).fill(10).le16(4).le16(5).le16(25).le16(5).le16(12).le16(18).le16(25).le16(4);
  const Bitmap painted = played(
      page().record(0x06FF, region).record(0x02FC, {0, 255, 0, 0}).record(0x012D, {1}).record(0x012B, {0}));
  EXPECT_EQ(painted.at(8, 15), kRed);
  EXPECT_EQ(painted.at(15, 15), kNothing);
  EXPECT_EQ(painted.at(20, 15), kRed);
  const Bitmap clipped = played(page()
                                    .record(0x06FF, region)
                                    .record(0x02FC, {0, 255, 0, 0})
                                    .record(0x012D, {1})
                                    .record(0x02FA, {5, 0, 0, 0, 0})
                                    .record(0x012D, {2})
                                    .record(0x012C, {0})
                                    .record(0x041B, {30, 40, 0, 0}));
  EXPECT_TRUE(isPicture(clipped, painted));
}

TEST(WmfRecords, DeviceDependentBitmapsAreDrawn) {
  // One bit per pixel, top-down rows of two bytes: white black, black white.
  const Builder blit = Builder()
                           .le32(kCopy)
                           .le16(0)
                           .le16(0)
                           .le16(2)
                           .le16(2)
                           .le16(5)
                           .le16(5)
                           .le16(0)
                           .le16(2)
                           .le16(2)
                           .le16(2)
                           .u8({1, 1, 0x80, 0, 0x40, 0});
  const Bitmap bitmap = played(page().record(0x0922, blit));
  EXPECT_EQ(bitmap.at(5, 5), kWhite);
  EXPECT_EQ(bitmap.at(6, 5), kBlack);
  EXPECT_EQ(bitmap.at(5, 6), kBlack);
  EXPECT_EQ(bitmap.at(6, 6), kWhite);
}

TEST(WmfRecords, DeviceDependentBitmapsUseDeviceColors) {
  // One or two pixels of `bits` bits, drawn unscaled.
  const auto drawn = [](int bits, std::initializer_list<int> row) {
    Builder blit = Builder().le32(kCopy).le16(0).le16(0).le16(1).le16(2).le16(5).le16(5);
    blit.le16(0).le16(2).le16(1).le16(static_cast<std::uint32_t>(row.size())).u8({1, bits}).u8(row);
    const Bitmap bitmap = played(page().record(0x0922, blit));
    return std::pair{bitmap.at(5, 5), bitmap.at(6, 5)};
  };
  EXPECT_EQ(drawn(4, {0x9C, 0}), std::pair(kRed, kBlue));
  EXPECT_EQ(drawn(4, {0x17, 0}), std::pair(Pixel{128, 0, 0, 255}, Pixel{192, 192, 192, 255}));
  EXPECT_EQ(drawn(8, {249, 8}), std::pair(kRed, Pixel{192, 220, 192, 255}));
  EXPECT_EQ(drawn(8, {0x1C, 0xE0}), std::pair(kGreen, kRed)) << "3, 3 and 2 bits in between";
  EXPECT_EQ(drawn(16, {0x00, 0x7C, 0x1F, 0x00}), std::pair(kRed, kBlue));
  EXPECT_EQ(drawn(16, {0x10, 0x42, 0xFF, 0x7F}), std::pair(Pixel{132, 132, 132, 255}, kWhite));
}

TEST(WmfRecords, WindowsMove) {
  const Bitmap bitmap = played(page()
                                   .record(0x02FA, {5, 0, 0, 0, 0})
                                   .record(0x012D, {0})
                                   .record(0x02FC, {0, 255, 0, 0})
                                   .record(0x012D, {1})
                                   .record(0x020F, {-5, -10})
                                   .record(0x041B, {10, 10, 0, 0}));
  EXPECT_EQ(bitmap.at(5, 2), kNothing);
  EXPECT_EQ(bitmap.at(15, 10), kRed);
}

TEST(MetafileWork, TooMuchWorkStopsWithANotice) {
  // Each record combines all of four million pixels.
  Emf emf;
  emf.noPen().record(20, {6});
  for (int i = 0; i < 200; ++i) emf.box(0, 0, 40000, 30000);
  std::vector<std::uint8_t> file = emf.file();
  const Builder frame = words({0, 0, 52917, 52917});
  std::copy(frame.bytes.begin(), frame.bytes.end(), file.begin() + 24);
  const Decoded decoded = decode(file);
  EXPECT_EQ(decoded.bitmap.width(), 2000);
  EXPECT_NE(decoded.notice.find("too long"), std::string::npos) << decoded.notice;
}

}  // namespace
}  // namespace kestrel::engine
