#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "platform/thumbnailview/Candidates.h"
#include "platform/thumbnailview/TypeAhead.h"

namespace kestrel::thumbnails {
namespace {

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
