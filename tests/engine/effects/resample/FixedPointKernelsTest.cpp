#include "engine/effects/resample/FixedPointKernels.h"

#include "../Pictures.h"
#include "engine/effects/resample/reference/FixedPointKernels.h"
#include "engine/pixels/Memory.h"

namespace kestrel::engine {
namespace {

using namespace test;

/// An array aligned as the kernels require, initialized with zeros.
template <class T>
class AlignedArray {
 public:
  explicit AlignedArray(std::size_t count) : memory_(count * sizeof(T)), count_(count) {
    std::fill_n(data(), count_, T{});
  }
  T* data() { return reinterpret_cast<T*>(memory_.data()); }
  T& operator[](std::size_t i) { return data()[i]; }

 private:
  Memory memory_;
  std::size_t count_;
};

std::int32_t inBlocks(std::int32_t pixels) { return (pixels + kGroupBlock - 1) / kGroupBlock * kGroupBlock; }

struct Pairs {
  Pairs(const Bitmap& picture, const FixedPointTable& table, std::int32_t x)
      : rows{nullptr, std::size_t{8} * static_cast<std::size_t>(inBlocks(picture.width() - x)), 0,
             (picture.height() + table.lead() + 1) / 2, inBlocks(picture.width() - x)},
        memory(static_cast<std::size_t>(rows.count + 1) * rows.stride) {
    rows.data = memory.data();
  }

  RowPairs rows;
  AlignedArray<std::int16_t> memory;
};

TEST(FixedPointKernels, TheVerticalPassEqualsTheReferenceExactly) {
  onEachTarget([] {
    for (const Extent size : oddExtents()) {
      for (const AlphaKind alpha : {AlphaKind::Opaque, AlphaKind::Any, AlphaKind::MostlyExtreme}) {
        const Bitmap picture = randomPicture(size.width, size.height, alpha);
        for (const std::int32_t outputs : {1, 7, 8, 9, 40}) {
          const FixedPointTable table(scalingTable(size.height, outputs, lanczos3Kernel()));
          const std::int32_t x = size.width > 2 * kGroupBlock ? kGroupBlock : 0;
          Pairs pairs(picture, table, x), plain(picture, table, x);
          premultiplyPairs(picture.pixels(), x, table.lead(), pairs.rows);
          reference::premultiplyPairs(picture.pixels(), x, table.lead(), plain.rows);

          const std::size_t values =
              std::size_t{4} * kGroupRows * static_cast<std::size_t>(pairs.rows.pixels);
          AlignedArray<float> actual(values), expected(values);
          for (std::int32_t y = 0; y < outputs; y += kGroupRows) {
            verticalPass(pairs.rows, table, y, actual.data());
            reference::verticalPass(plain.rows, table, y, expected.data());
            const std::size_t meant = std::size_t{4} * kGroupRows * static_cast<std::size_t>(size.width - x);
            for (std::size_t i = 0; i < meant; ++i) ASSERT_EQ(actual[i], expected[i]) << i;
          }
        }
      }
    }
  });
}

TEST(FixedPointKernels, TheHorizontalPassIsWithinARoundingOfTheReference) {
  constexpr float kWhite = 65025.0F * FixedPointTable::kOne;
  onEachTarget([] {
    for (const std::int32_t inputs : {1, 2, 5, 16, 33, 200}) {
      std::mt19937 random(static_cast<unsigned>(inputs));
      std::uniform_real_distribution<float> number(-kWhite / 4, kWhite * 5 / 4);
      AlignedArray<float> in(std::size_t{4} * kGroupRows * static_cast<std::size_t>(inputs + 2));
      for (std::size_t i = 0; i < std::size_t{4} * kGroupRows * static_cast<std::size_t>(inputs); ++i) {
        in[i] = number(random);
      }
      for (const std::int32_t outputs : {1, 3, 4, 5, 50, 201}) {
        const FilterTable table = scalingTable(inputs, outputs, catmullRomKernel());
        const std::size_t bytes = 4 * static_cast<std::size_t>((outputs + 3) / 4 * 4);
        std::vector<std::vector<std::uint8_t>> actual(kGroupRows, std::vector<std::uint8_t>(bytes + 1, 99));
        std::vector<std::vector<std::uint8_t>> expected = actual;
        std::vector<std::uint8_t*> to, plain;
        for (auto& row : actual) to.push_back(row.data());
        for (auto& row : expected) plain.push_back(row.data());
        // In two calls, as for a picture of two strips.
        const std::int32_t half = outputs / 2 / 4 * 4;
        horizontalPass(in.data(), 0, table, 0, half, to.data());
        horizontalPass(in.data(), 0, table, half, outputs, to.data());
        reference::horizontalPass(in.data(), 0, table, 0, outputs, plain.data());
        for (std::size_t row = 0; row < actual.size(); ++row) {
          ASSERT_EQ(actual[row].back(), 99) << "wrote beyond the end";
          for (std::size_t i = 0; i < 4 * static_cast<std::size_t>(outputs); ++i) {
            ASSERT_NEAR(actual[row][i], expected[row][i], 1) << "row " << row << ", value " << i;
          }
        }
      }
    }
  });
}

TEST(FixedPointKernels, LessThanHalfALevelOfAlphaIsTransparentBlack) {
  onEachTarget([] {
    constexpr float kLevel = 255.0F * FixedPointTable::kOne;
    const FilterTable table = scalingTable(1, 1, triangleKernel());
    AlignedArray<float> in(std::size_t{4} * kGroupRows * 3);
    const float alphas[kGroupRows] = {0, 0.499F, 0.501F, 1, -3, 254.6F, 255, 300};
    const int levels[kGroupRows] = {0, 0, 1, 1, 0, 255, 255, 255};
    for (std::size_t row = 0; row < kGroupRows; ++row) {
      for (std::size_t c = 0; c < 3; ++c) in[4 * row + c] = alphas[row] * kLevel;
      in[4 * row + 3] = alphas[row] * kLevel;
    }
    std::vector<std::vector<std::uint8_t>> rows(kGroupRows, std::vector<std::uint8_t>(16, 99));
    std::vector<std::uint8_t*> to;
    for (auto& row : rows) to.push_back(row.data());
    horizontalPass(in.data(), 0, table, 0, 1, to.data());
    for (std::size_t row = 0; row < kGroupRows; ++row) {
      EXPECT_EQ(rows[row][3], levels[row]) << alphas[row];
      for (std::size_t c = 0; c < 3; ++c) EXPECT_EQ(rows[row][c], levels[row] == 0 ? 0 : 255) << alphas[row];
    }
  });
}

}  // namespace
}  // namespace kestrel::engine
