#include "base/NaturalOrder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace kestrel {
namespace {

using testing::ElementsAre;

std::vector<std::string> sorted(std::vector<std::string> names) {
  std::sort(names.begin(), names.end(), NaturalLess);
  return names;
}

TEST(NaturalOrder, ComparesNumbersByTheirValues) {
  EXPECT_THAT(sorted({"img10.png", "img2.png", "img1.png"}),
              ElementsAre("img1.png", "img2.png", "img10.png"));
  EXPECT_THAT(sorted({"a100b2", "a20b10", "a20b9"}), ElementsAre("a20b9", "a20b10", "a100b2"));
  EXPECT_THAT(sorted({"99999999999999999999999", "100000000000000000000000"}),
              ElementsAre("99999999999999999999999", "100000000000000000000000"));
}

TEST(NaturalOrder, IgnoresCaseFirst) {
  EXPECT_THAT(sorted({"b.png", "A.png", "a.png", "B.png"}), ElementsAre("A.png", "a.png", "B.png", "b.png"));
  EXPECT_THAT(sorted({"Änderung 10.png", "änderung 9.png"}),
              ElementsAre("änderung 9.png", "Änderung 10.png"));
}

TEST(NaturalOrder, PutsANameBeforeThoseThatExtendIt) {
  EXPECT_THAT(sorted({"a (1).png", "a-2.png", "a.png"}), ElementsAre("a.png", "a (1).png", "a-2.png"));
}

TEST(NaturalOrder, IsDefinedForNamesThatDifferInLeadingZerosOnly) {
  EXPECT_EQ(NaturalKey("img01.png"), NaturalKey("img1.png"));
  EXPECT_THAT(sorted({"img1.png", "img01.png"}), ElementsAre("img01.png", "img1.png"));
  EXPECT_FALSE(NaturalLess("a.png", "a.png"));
}

TEST(NaturalOrder, CountsDigitsBeyondAByte) {
  const std::string longer = "1" + std::string(255, '0');
  const std::string shorter = std::string(255, '9');
  EXPECT_TRUE(NaturalLess(shorter, longer));
  EXPECT_FALSE(NaturalLess(longer, shorter));
}

}  // namespace
}  // namespace kestrel
