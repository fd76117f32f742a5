#include "engine/pixels/Bitmap.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "base/RuntimeError.h"
#include "engine/pixels/Memory.h"

namespace kestrel::engine {
namespace {

std::int32_t numberOf(std::int32_t width, std::int32_t height) {
  try {
    Bitmap::uninitialized(width, height);
  } catch (const RuntimeError& error) {
    EXPECT_FALSE(error.Description().empty());
    EXPECT_EQ(error.Description().back(), '.');
    return error.Number();
  }
  return 0;
}

TEST(Bitmap, WithoutPixelsIsZeroByZero) {
  const Bitmap bitmap;
  EXPECT_TRUE(bitmap.empty());
  EXPECT_EQ(bitmap.width(), 0);
  EXPECT_EQ(bitmap.height(), 0);
  EXPECT_EQ(bitmap.byteSize(), 0U);
  EXPECT_EQ(bitmap.pixels().data, nullptr);
}

TEST(Bitmap, RowsAreAlignedTo64Bytes) {
  for (const std::int32_t width : {1, 15, 16, 17, 1000, 4000}) {
    const Bitmap bitmap = Bitmap::uninitialized(width, 200);
    EXPECT_EQ(bitmap.pixels().stride % 64, 0U) << width;
    EXPECT_GE(bitmap.pixels().stride, static_cast<std::size_t>(width) * 4) << width;
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bitmap.pixels().row(199)) % 64, 0U) << width;
  }
}

TEST(Bitmap, FilledHoldsTheValueInEachPixel) {
  const Bitmap bitmap = Bitmap::filled(5, 3, {1, 2, 3, 4});
  for (std::int32_t y = 0; y < 3; ++y) {
    for (std::int32_t x = 0; x < 5; ++x) EXPECT_EQ(bitmap.at(x, y), (Pixel{1, 2, 3, 4}));
  }
}

TEST(Bitmap, ACopySharesThePixelsUntilEitherIsWritten) {
  Bitmap first = Bitmap::filled(4, 4, {10, 20, 30, 255});
  Bitmap second = first;
  EXPECT_TRUE(first.sharesPixelsWith(second));

  second.writable().row(2)[4] = 99;
  EXPECT_FALSE(first.sharesPixelsWith(second));
  EXPECT_EQ(first.at(1, 2), (Pixel{10, 20, 30, 255}));
  EXPECT_EQ(second.at(1, 2), (Pixel{99, 20, 30, 255}));
  EXPECT_EQ(second.at(3, 3), (Pixel{10, 20, 30, 255}));
}

TEST(Bitmap, WritingAnUnsharedOneCopiesNothing) {
  Bitmap bitmap = Bitmap::filled(4, 4);
  const std::uint8_t* const before = bitmap.pixels().data;
  EXPECT_EQ(bitmap.writable().data, before);
  { const Bitmap copy = bitmap; }
  EXPECT_EQ(bitmap.writable().data, before);
}

TEST(Bitmap, SidesBelowOneAreAnInvalidCall) {
  EXPECT_EQ(numberOf(0, 10), 5);
  EXPECT_EQ(numberOf(10, 0), 5);
  EXPECT_EQ(numberOf(-1, 10), 5);
  EXPECT_EQ(numberOf(INT32_MIN, INT32_MIN), 5);
}

TEST(Bitmap, SizesBeyondTheLimitsAreRefusedWithoutAllocation) {
  EXPECT_EQ(numberOf(1'000'001, 1), 7);
  EXPECT_EQ(numberOf(1, 1'000'001), 7);
  EXPECT_EQ(numberOf(65'536, 65'536), 7);
  EXPECT_EQ(numberOf(INT32_MAX, INT32_MAX), 7);
}

TEST(Bitmap, MoreThanAQuarterOfTheMemoryIsRefusedWithAReason) {
  constexpr std::int32_t kWidth = 16 * 1024;
  const std::size_t rows = machineMemory() / 4 / (std::size_t{4} * kWidth) + 1;
  // On a machine of more than 32 gigabytes the limit of 2 gigapixels comes first.
  const bool memoryFirst = rows * kWidth <= static_cast<std::size_t>(Bitmap::kMaxPixels);
  const auto height = static_cast<std::int32_t>(memoryFirst ? rows : Bitmap::kMaxPixels / kWidth + 1);
  try {
    Bitmap::uninitialized(kWidth, height);
    FAIL() << "accepted";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), 7);
    const char* sentence = memoryFirst ? "more than a quarter of this machine's memory" : "gigapixels";
    EXPECT_NE(error.Description().find(sentence), std::string::npos) << error.Description();
  }
}

}  // namespace
}  // namespace kestrel::engine
