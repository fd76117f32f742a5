// Results larger than the caches are written with non-temporal stores. Their pixels must be the same.

#include <cstring>

#include "Pictures.h"
#include "engine/effects/Composite.h"
#include "engine/effects/Crop.h"
#include "engine/effects/Flatten.h"
#include "engine/effects/Flip.h"
#include "engine/effects/GrayScale.h"
#include "engine/effects/QuarterTurn.h"
#include "engine/effects/ReplaceColor.h"
#include "engine/effects/reference/TurnRows.h"
#include "engine/effects/rows/reference/PixelRows.h"
#include "engine/pixels/NonTemporal.h"

namespace kestrel::engine {
namespace {

using namespace test;

/// Sides that are no multiple of a vector or a tile.
constexpr std::int32_t kWidth = 2111;
constexpr std::int32_t kHeight = 2053;

const Bitmap& picture() {
  static const Bitmap result = randomPicture(kWidth, kHeight, AlphaKind::MostlyExtreme, 1);
  return result;
}

const Bitmap& otherPicture() {
  static const Bitmap result = randomPicture(kWidth, kHeight, AlphaKind::Any, 2);
  return result;
}

/// A picture whose rows `write(y, row)` fills.
template <class Write>
Bitmap madeOfRows(std::int32_t width, std::int32_t height, const Write& write) {
  Bitmap result = Bitmap::uninitialized(width, height);
  const Pixels pixels = result.writable();
  for (std::int32_t y = 0; y < height; ++y) write(y, pixels.row(y));
  return result;
}

::testing::AssertionResult sameBytes(const Bitmap& actual, const Bitmap& expected) {
  if (actual.width() != expected.width() || actual.height() != expected.height())
    return ::testing::AssertionFailure() << actual.width() << " x " << actual.height();
  if (!exceedsCaches(actual.byteSize())) return ::testing::AssertionFailure() << "not a large picture";
  for (std::int32_t y = 0; y < actual.height(); ++y)
    if (std::memcmp(actual.pixels().row(y), expected.pixels().row(y),
                    static_cast<std::size_t>(actual.width()) * sizeof(Pixel)) != 0)
      return ::testing::AssertionFailure() << "in row " << y;
  return ::testing::AssertionSuccess();
}

TEST(LargePictures, AreMirroredLikeSmallOnes) {
  const ConstPixels in = picture().pixels();
  const Bitmap leftRight = madeOfRows(kWidth, kHeight, [&](std::int32_t y, std::uint8_t* row) {
    reference::mirrorRow(in.row(y), kWidth, row);
  });
  const Bitmap topBottom = madeOfRows(kWidth, kHeight, [&](std::int32_t y, std::uint8_t* row) {
    std::memcpy(row, in.row(kHeight - 1 - y), std::size_t{4} * kWidth);
  });
  onEachTarget([&] {
    EXPECT_TRUE(sameBytes(flip(picture(), FlipDirection::LeftToRight), leftRight));
    EXPECT_TRUE(sameBytes(flip(picture(), FlipDirection::TopToBottom), topBottom));
  });
}

TEST(LargePictures, AreTurnedLikeSmallOnes) {
  const ConstPixels in = picture().pixels();
  Bitmap transposed = Bitmap::uninitialized(kHeight, kWidth);
  const Pixels out = transposed.writable();
  reference::transpose(in.data, static_cast<std::ptrdiff_t>(in.stride), kWidth, kHeight, out.data,
                       static_cast<std::ptrdiff_t>(out.stride));
  const Bitmap right = flip(transposed, FlipDirection::LeftToRight);
  const Bitmap left = flip(transposed, FlipDirection::TopToBottom);
  onEachTarget([&] {
    EXPECT_TRUE(sameBytes(quarterTurn(picture(), 1), right));
    EXPECT_TRUE(sameBytes(quarterTurn(picture(), 3), left));
  });
}

TEST(LargePictures, AreCroppedAndCopiedLikeSmallOnes) {
  const ConstPixels in = picture().pixels();
  const Bitmap part = madeOfRows(kWidth - 5, kHeight - 3, [&](std::int32_t y, std::uint8_t* row) {
    std::memcpy(row, in.row(y + 3) + 4 * 5, std::size_t{4} * (kWidth - 5));
  });
  onEachTarget([&] {
    EXPECT_TRUE(sameBytes(crop(picture(), 5, 3, kWidth, kHeight), part));
    Bitmap copy = picture();
    copy.writable();
    EXPECT_FALSE(copy.sharesPixelsWith(picture()));
    EXPECT_TRUE(sameBytes(copy, picture()));
  });
}

TEST(LargePictures, AreRecoloredLikeSmallOnes) {
  const ConstPixels in = picture().pixels();
  const Pixel ground{200, 100, 50, 255}, from{90, 120, 160, 255}, to{1, 2, 3, 4};
  const auto made = [](const auto& write) { return madeOfRows(kWidth, kHeight, write); };
  const Bitmap gray =
      made([&](std::int32_t y, std::uint8_t* row) { reference::grayRow(in.row(y), kWidth, row); });
  const Bitmap flat =
      made([&](std::int32_t y, std::uint8_t* row) { reference::flattenRow(in.row(y), kWidth, ground, row); });
  const Bitmap replaced = made([&](std::int32_t y, std::uint8_t* row) {
    reference::replaceRow(in.row(y), kWidth, from, to, 80, row);
  });
  onEachTarget([&] {
    EXPECT_TRUE(sameBytes(grayScale(picture()), gray));
    EXPECT_TRUE(sameBytes(flatten(picture(), ground), flat));
    EXPECT_TRUE(sameBytes(replaceColor(picture(), from, to, 80), replaced));
  });
}

TEST(LargePictures, AreCompositedLikeSmallOnes) {
  const ConstPixels in = picture().pixels(), top = otherPicture().pixels();
  // At an offset; and at 0, 0, where whole rows are written.
  const Bitmap offset = madeOfRows(kWidth, kHeight, [&](std::int32_t y, std::uint8_t* row) {
    std::memcpy(row, in.row(y), std::size_t{4} * kWidth);
    if (y >= 9) reference::compositeRow(top.row(y - 9), in.row(y) + 4 * 7, kWidth - 7, 255, {}, row + 4 * 7);
  });
  const Bitmap whole = madeOfRows(kWidth, kHeight, [&](std::int32_t y, std::uint8_t* row) {
    reference::compositeRow(top.row(y), in.row(y), kWidth, 100, Pixel{1, 2, 3, 0}, row);
  });
  onEachTarget([&] {
    EXPECT_TRUE(sameBytes(composite(picture(), otherPicture(), 7, 9), offset));
    EXPECT_TRUE(
        sameBytes(composite(picture(), otherPicture(), 0, 0, {100 / 255.0, Pixel{1, 2, 3, 0}}), whole));
  });
}

}  // namespace
}  // namespace kestrel::engine
