#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "platform/thumbnailview/Candidates.h"
#include "platform/thumbnailview/Labels.h"
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
