#include "engine/effects/gaussian/GaussianRows.h"

#include "../Pictures.h"
#include "engine/effects/gaussian/GaussianAxis.h"
#include "engine/effects/gaussian/reference/GaussianRows.h"
#include "engine/effects/rows/FloatRows.h"

namespace kestrel::engine {
namespace {

using namespace test;

std::vector<float> randomFloats(std::int32_t count) {
  std::mt19937 random(5);
  std::uniform_real_distribution<float> number(0, 65025);
  std::vector<float> result(static_cast<std::size_t>(count) + kRowSlack);
  for (float& value : result) value = number(random);
  return result;
}

using Kernel = std::function<void(const float* in, std::int32_t count, std::int32_t channels, float* out)>;

void expectEqual(const Kernel& actualKernel, const Kernel& plainKernel, std::int32_t count,
                 std::int32_t inputs) {
  for (const std::int32_t channels : {1, 4}) {
    const std::vector<float> in = randomFloats(inputs * channels);
    const auto values = static_cast<std::size_t>(count * channels);
    std::vector<float> actual(values + kRowSlack), expected(values + kRowSlack);
    plainKernel(in.data(), count, channels, expected.data());
    actualKernel(in.data(), count, channels, actual.data());
    for (std::size_t i = 0; i < values; ++i) {
      ASSERT_NEAR(actual[i], expected[i], 65025 * 2e-6) << i << " of " << values;
    }
  }
}

TEST(GaussianRows, EveryTargetEqualsTheReference) {
  onEachTarget([] {
    for (const std::int32_t count :
         {1, 2, 3, 4, 5, 7, 8, 9, 16, 31, 33, 63, 64, 65, 66, 127, 128, 257, 1000}) {
      expectEqual(halveRow, reference::halveRow, count, 2 * count + 4);
      if (count % 2 == 0) expectEqual(doubleRow, reference::doubleRow, count, count / 2 + 2);
      for (const std::int32_t taps : {1, 3, 17}) {
        const std::vector<float> weights(static_cast<std::size_t>(taps), 1.0F / static_cast<float>(taps));
        const auto with = [&](const auto& kernel) -> Kernel {
          return [&](const float* in, std::int32_t n, std::int32_t channels, float* out) {
            kernel(in, weights.data(), taps, n, channels, out);
          };
        };
        expectEqual(with(smoothRow), with(reference::smoothRow), count, count + taps - 1);
      }
    }
  });
}

TEST(GaussianRows, TwoSumsOfTheSameRowsEqualTheReference) {
  onEachTarget([] {
    for (const std::int32_t rows : {0, 1, 3, 18}) {
      for (const std::int32_t count : {1, 3, 15, 16, 17, 64, 65, 300}) {
        const auto values = static_cast<std::size_t>(count);
        std::vector<std::vector<float>> in;
        std::vector<const float*> pointers;
        for (std::int32_t row = 0; row < rows; ++row) in.push_back(randomFloats(count + row));
        for (const auto& row : in) pointers.push_back(row.data());
        const std::vector<float> weights = randomFloats(2 * rows);
        const float* const second = weights.data() + rows;
        std::vector<float> actual[2], expected[2];
        for (auto* sums : {&actual, &expected}) {
          for (auto& sum : *sums) sum.resize(values + kRowSlack);
        }
        sumRowsTwice(pointers.data(), weights.data(), second, rows, values, actual[0].data(),
                     actual[1].data());
        reference::sumRowsTwice(pointers.data(), weights.data(), second, rows, values, expected[0].data(),
                                expected[1].data());
        for (std::size_t i = 0; i < values; ++i) {
          ASSERT_NEAR(actual[0][i], expected[0][i], expected[0][i] * 4e-6) << i << " of " << values;
          ASSERT_NEAR(actual[1][i], expected[1][i], expected[1][i] * 4e-6) << i << " of " << values;
        }
      }
    }
  });
}

TEST(GaussianAxis, TheProfileIsThePartOfTheKernelInsideThePicture) {
  struct Case {
    std::int32_t inputs, outputs, start;
  };
  for (const double sigma : {0.0, 0.4, 1.0, 2.9, 3.0, 5.9, 6.0, 11.0, 40.0}) {
    for (const Case& c : {Case{200, 200, 0}, Case{1, 1, 0}, Case{50, 90, -20}, Case{3, 61, -31},
                          Case{40, 7, 36}, Case{9, 30, 500}, Case{9, 31, -501}}) {
      const std::vector<float> profile = GaussianAxis(c.inputs, c.outputs, c.start, sigma).profile();
      ASSERT_EQ(profile.size(), static_cast<std::size_t>(c.outputs));
      const auto gaussian = [&](int x) {
        return sigma == 0 ? (x == 0) : std::exp(-x * x / (2 * sigma * sigma));
      };
      double whole = 0;
      for (int x = -400; x <= 400; ++x) whole += gaussian(x);
      for (std::int32_t i = 0; i < c.outputs; ++i) {
        double inside = 0;
        for (std::int32_t x = 0; x < c.inputs; ++x) inside += gaussian(c.start + i - x);
        EXPECT_NEAR(profile[static_cast<std::size_t>(i)], inside / whole, 0.5 / 255)
            << "sigma " << sigma << ", " << c.inputs << " inputs, output " << i;
      }
    }
  }
}

TEST(GaussianAxis, AnOffsetWithoutBlurIsExact) {
  const GaussianAxis axis(5, 9, -2, 0);
  EXPECT_EQ(axis.profile(), (std::vector<float>{0, 0, 1, 1, 1, 1, 1, 0, 0}));
}

}  // namespace
}  // namespace kestrel::engine
