#include "engine/effects/rows/FloatRows.h"

#include <numeric>

#include "../Pictures.h"
#include "engine/effects/rows/reference/FloatRows.h"

namespace kestrel::engine {
namespace {

using namespace test;

// Sums in another order and fused multiply-adds differ in the last bits.
constexpr float kRelative = 2e-6F;

void expectNear(const std::vector<float>& actual, const std::vector<float>& expected, std::size_t count,
                float range) {
  for (std::size_t i = 0; i < count; ++i) ASSERT_NEAR(actual[i], expected[i], range * kRelative) << i;
}

std::vector<float> randomFloats(std::size_t count, float range) {
  std::mt19937 random(5);
  std::uniform_real_distribution<float> number(-range / 8, range);
  std::vector<float> result(count);
  for (float& value : result) value = number(random);
  return result;
}

TEST(FloatRows, PremultiplyIsExactOnEveryTarget) {
  onEachTarget([] {
    for (const Extent size : oddExtents()) {
      const Bitmap picture = randomPicture(size.width, 1, AlphaKind::Any);
      const std::size_t values = 4 * static_cast<std::size_t>(size.width);
      std::vector<float> actual(values + kRowSlack), expected(values);
      premultiplyRow(picture.pixels().row(0), size.width, actual.data());
      reference::premultiplyRow(picture.pixels().row(0), size.width, expected.data());
      actual.resize(values);
      EXPECT_EQ(actual, expected);
    }
  });
}

TEST(FloatRows, TheVerticalPassEqualsTheReference) {
  onEachTarget([] {
    for (const Extent size : oddExtents()) {
      const Bitmap picture = randomPicture(size.width, size.height, AlphaKind::Any);
      const ConstPixels in = picture.pixels();
      const std::vector<float> weights = randomFloats(static_cast<std::size_t>(size.height), 1);
      const std::size_t values = 4 * static_cast<std::size_t>(size.width);
      std::vector<float> actual(values + kRowSlack), expected(values);
      const float range = 65025.0F * static_cast<float>(size.height);
      sumPictureRows(in.data, in.stride, weights.data(), size.height, size.width, false, actual.data());
      reference::sumPictureRows(in.data, in.stride, weights.data(), size.height, size.width, expected.data());
      expectNear(actual, expected, values, range);

      const Bitmap opaque = randomPicture(size.width, size.height, AlphaKind::Opaque);
      const ConstPixels solid = opaque.pixels();
      sumPictureRows(solid.data, solid.stride, weights.data(), size.height, size.width, true, actual.data());
      reference::sumPictureRows(solid.data, solid.stride, weights.data(), size.height, size.width,
                                expected.data());
      expectNear(actual, expected, values, range);

      sumAlphaRows(in.data, in.stride, weights.data(), size.height, size.width, actual.data());
      reference::sumAlphaRows(in.data, in.stride, weights.data(), size.height, size.width, expected.data());
      expectNear(actual, expected, values / 4, range / 255);

      std::vector<std::vector<float>> rows;
      std::vector<const float*> pointers;
      for (int y = 0; y < size.height; ++y) rows.push_back(randomFloats(values + kRowSlack, 65025));
      for (const auto& row : rows) pointers.push_back(row.data());
      sumFloatRows(pointers.data(), weights.data(), size.height, values, actual.data());
      reference::sumFloatRows(pointers.data(), weights.data(), size.height, values, expected.data());
      expectNear(actual, expected, values, range);
    }
  });
}

TEST(FloatRows, TheHorizontalPassEqualsTheReference) {
  onEachTarget([] {
    for (const std::int32_t inputs : {1, 2, 5, 16, 33, 200}) {
      for (const std::int32_t outputs : {1, 3, 8, 50, 200, 333}) {
        const FilterTable table = scalingTable(inputs, outputs, lanczos3Kernel());
        const std::vector<float> in = randomFloats(4 * static_cast<std::size_t>(inputs) + kRowSlack, 65025);
        const std::size_t values = 4 * static_cast<std::size_t>(outputs);
        std::vector<float> actual(values + kRowSlack), expected(values);
        filterColumns(in.data(), table, actual.data());
        reference::filterColumns(in.data(), table, expected.data());
        expectNear(actual, expected, values, 3 * 65025);
      }
    }
  });
}

TEST(FloatRows, StoringPixelsEqualsTheReference) {
  onEachTarget([] {
    for (const Extent size : oddExtents()) {
      const std::size_t values = 4 * static_cast<std::size_t>(size.width);
      std::vector<float> floats = randomFloats(values + kRowSlack, 65025);
      for (std::size_t i = 3; i < values; i += 4) floats[i] /= 200;
      std::vector<std::uint8_t> actual(values + 1, 99), expected(values);
      storeStraightRow(floats.data(), size.width, actual.data());
      reference::storeStraightRow(floats.data(), size.width, expected.data());
      EXPECT_EQ(actual.back(), 99) << "wrote beyond the end";
      actual.pop_back();
      EXPECT_EQ(actual, expected);

      actual.push_back(99);
      for (float& value : floats) value /= 250;
      tintRow(floats.data(), size.width, 0x12345678, 0.7F, actual.data());
      reference::tintRow(floats.data(), size.width, 0x12345678, 0.7F, expected.data());
      EXPECT_EQ(actual.back(), 99) << "wrote beyond the end";
      actual.pop_back();
      EXPECT_EQ(actual, expected);
    }
  });
}

TEST(FilterTable, EveryRunIsInsideTheInputsAndSumsToOne) {
  for (const auto& kernel : {triangleKernel(), catmullRomKernel(), lanczos3Kernel()}) {
    for (const std::int32_t inputs : {1, 2, 7, 100}) {
      for (const std::int32_t outputs : {1, 2, 9, 300}) {
        const FilterTable table = scalingTable(inputs, outputs, kernel);
        for (std::int32_t i = 0; i < outputs; ++i) {
          const FilterTable::Run& run = table.run(i);
          ASSERT_GE(run.first, 0);
          ASSERT_GE(run.count, 1);
          ASSERT_LE(run.first + run.count, inputs);
          const float* const weights = table.weights(run);
          EXPECT_NEAR(std::accumulate(weights, weights + run.count, 0.0), 1, 1e-6);
        }
      }
    }
  }
}

}  // namespace
}  // namespace kestrel::engine
