#include "base/VisibleText.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

TEST(VisibleText, KeepsText) { EXPECT_EQ(VisibleText("Größe 日本 😀.png"), "Größe 日本 😀.png"); }

TEST(VisibleText, ReplacesControlCharacters) {
  EXPECT_EQ(VisibleText("a\nb\x7F.png"), "a\uFFFDb\uFFFD.png");
  EXPECT_EQ(VisibleText("a\u0085.png"), "a\uFFFD.png");
}

TEST(VisibleText, IsOneLine) {
  EXPECT_EQ(VisibleText("a\r\nb"), "a\uFFFD\uFFFDb");
  EXPECT_EQ(VisibleText("a\u2028b\u2029c"), "a\uFFFDb\uFFFDc");
}

TEST(VisibleText, ReplacesBytesThatAreNoUtf8) {
  EXPECT_EQ(VisibleText("a\xFF.png"), "a\uFFFD.png");
  EXPECT_EQ(VisibleText("\xC3"), "\uFFFD");
  EXPECT_EQ(VisibleText("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD") << "a surrogate";
  EXPECT_EQ(VisibleText("\xE0\x80\xAF"), "\uFFFD\uFFFD\uFFFD") << "an overlong form";
}

}  // namespace
}  // namespace kestrel
