#include "engine/effects/resample/FixedPointTable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace kestrel::engine {
namespace {

/// The fixed-point weights of one output by input, without the padding.
std::map<std::int32_t, std::int32_t> weightsOf(const FixedPointTable& table, std::int32_t output) {
  std::map<std::int32_t, std::int32_t> result;
  const FixedPointTable::Run& run = table.run(output);
  for (std::int32_t i = 0; i < 2 * ((run.count + 1) / 2 * 2); ++i) {
    const std::int16_t weight = table.weights(run)[i];
    if (i >= 2 * run.count) {
      EXPECT_EQ(weight, 0) << "padding of output " << output;
    } else if (weight != 0) {
      result[2 * run.first - table.lead() + i] = weight;
    }
  }
  return result;
}

TEST(FixedPointTable, WeightsAreRoundedToFixedPointAndSumToOneExactly) {
  for (const auto& kernel : {triangleKernel(), catmullRomKernel(), lanczos3Kernel()}) {
    for (const std::int32_t inputs : {1, 2, 7, 40, 100}) {
      for (const std::int32_t outputs : {1, 20, 41, 50, 300}) {
        const FilterTable exact = scalingTable(inputs, outputs, kernel);
        if (!FixedPointTable::suits(exact)) continue;
        const FixedPointTable table(exact);
        ASSERT_EQ(table.outputs(), outputs);
        for (std::int32_t output = 0; output < outputs; ++output) {
          auto whole = weightsOf(table, output);
          std::int32_t sum = 0;
          for (const auto& [input, weight] : whole) sum += weight;
          ASSERT_EQ(sum, FixedPointTable::kOne);
          const FilterTable::Run& run = exact.run(output);
          for (std::int32_t i = 0; i < run.count; ++i) {
            // One weight absorbs the rounding errors of the others.
            ASSERT_NEAR(whole[run.first + i], exact.weights(run)[i] * FixedPointTable::kOne,
                        0.5 + 0.5 * run.count);
            whole.erase(run.first + i);
          }
          for (const auto& [input, weight] : whole) ASSERT_EQ(weight, 0) << "for an unused input " << input;
        }
      }
    }
  }
}

TEST(FixedPointTable, PairsBeginWhereTheyGiveTheShorterRuns) {
  // At half size output i of a triangle uses inputs 2i - 1 to 2i + 2: two pairs if pairs begin at odd inputs.
  const FixedPointTable halved(scalingTable(100, 50, triangleKernel()));
  EXPECT_EQ(halved.lead(), 1);
  EXPECT_EQ(halved.run(20).count, 2);
  // At a quarter it uses 4i - 2 to 4i + 5: four pairs if pairs begin at even inputs.
  const FixedPointTable quartered(scalingTable(400, 100, triangleKernel()));
  EXPECT_EQ(quartered.lead(), 0);
  EXPECT_EQ(quartered.run(20).count, 4);
}

TEST(FixedPointTable, SuitsRunsOfUpTo64Inputs) {
  EXPECT_TRUE(FixedPointTable::suits(scalingTable(3200, 100, triangleKernel())));
  EXPECT_FALSE(FixedPointTable::suits(scalingTable(3300, 100, triangleKernel())));
  EXPECT_TRUE(FixedPointTable::suits(scalingTable(100, 3300, lanczos3Kernel())));
  EXPECT_TRUE(FixedPointTable::suits(scalingTable(1, 1, lanczos3Kernel())));
}

}  // namespace
}  // namespace kestrel::engine
