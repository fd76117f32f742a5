#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "platform/thumbnailview/Candidates.h"
#include "platform/thumbnailview/Labels.h"
#include "platform/thumbnailview/NaturalOrder.h"
#include "platform/thumbnailview/TypeAhead.h"

namespace kestrel::thumbnails {
namespace {

using testing::ElementsAre;

std::vector<std::string> sorted(std::vector<std::string> names) {
  std::sort(names.begin(), names.end(), naturalLess);
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
  EXPECT_EQ(naturalKey("img01.png"), naturalKey("img1.png"));
  EXPECT_THAT(sorted({"img1.png", "img01.png"}), ElementsAre("img01.png", "img1.png"));
  EXPECT_FALSE(naturalLess("a.png", "a.png"));
}

TEST(NaturalOrder, CountsDigitsBeyondAByte) {
  const std::string longer = "1" + std::string(255, '0');
  const std::string shorter = std::string(255, '9');
  EXPECT_TRUE(naturalLess(shorter, longer));
  EXPECT_FALSE(naturalLess(longer, shorter));
}

TEST(Candidates, HaveAnExtensionOfAKnownFormatInAnyCase) {
  for (const char* name : {"a.jpg", "a.JPEG", "b.c.Png", "a.tla", "x.PCD", "a.wbp"}) {
    EXPECT_TRUE(isCandidate(name)) << name;
  }
  for (const char* name : {"a", "a.txt", "jpg", "a.jpg.bak", "a."}) EXPECT_FALSE(isCandidate(name)) << name;
}

TEST(Candidates, AreNotHidden) {
  EXPECT_FALSE(isCandidate(".jpg"));
  EXPECT_FALSE(isCandidate("._IMG_1.jpg"));
}

TEST(Labels, KeepText) { EXPECT_EQ(labelOf("Größe 日本 😀.png"), "Größe 日本 😀.png"); }

TEST(Labels, ReplaceControlCharacters) {
  EXPECT_EQ(labelOf("a\nb\x7F.png"), "a\u2426b\u2426.png");
  EXPECT_EQ(labelOf("a\u0085.png"), "a\u2426.png");
}

TEST(Labels, ReplaceBytesThatAreNoUtf8) {
  EXPECT_EQ(labelOf("a\xFF.png"), "a\uFFFD.png");
  EXPECT_EQ(labelOf("\xC3"), "\uFFFD");
  EXPECT_EQ(labelOf("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD") << "a surrogate";
  EXPECT_EQ(labelOf("\xE0\x80\xAF"), "\uFFFD\uFFFD\uFFFD") << "an overlong form";
}

TEST(TypeAhead, ExtendsTheNameWithinASecond) {
  TypeAhead names;
  const TypeAhead::Time start{};
  EXPECT_EQ(names.type("I", start).prefix, "i");
  EXPECT_EQ(names.type("m", start + std::chrono::milliseconds(1000)).prefix, "im");
  EXPECT_EQ(names.type("g", start + std::chrono::milliseconds(2001)).prefix, "g");
}

TEST(TypeAhead, StaysWithTheFocusItemWhileItFits) {
  TypeAhead names;
  const TypeAhead::Time start{};
  EXPECT_TRUE(names.type("i", start).fromNext);
  EXPECT_FALSE(names.type("m", start).fromNext);
}

TEST(TypeAhead, GoesThroughTheNamesWithARepeatedLetter) {
  TypeAhead names;
  const TypeAhead::Time start{};
  names.type("b", start);
  const TypeAhead::Search again = names.type("b", start);
  EXPECT_EQ(again.prefix, "b");
  EXPECT_TRUE(again.fromNext);
}

}  // namespace
}  // namespace kestrel::thumbnails
