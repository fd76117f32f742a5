#include "base/VisibleText.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

TEST(VisibleText, KeepsText) { EXPECT_EQ(VisibleText("Größe 日本 😀.png"), "Größe 日本 😀.png"); }

TEST(VisibleText, ReplacesControlCharacters) {
  EXPECT_EQ(VisibleText("a\nb\x7F.png"), "a\u2426b\u2426.png");
  EXPECT_EQ(VisibleText("a\u0085.png"), "a\u2426.png");
}

TEST(VisibleText, IsOneLine) {
  EXPECT_EQ(VisibleText("a\r\nb"), "a\u2426\u2426b");
  EXPECT_EQ(VisibleText("a\u2028b\u2029c"), "a\u2426b\u2426c");
}

TEST(VisibleText, ReplacesBytesThatAreNoUtf8) {
  EXPECT_EQ(VisibleText("a\xFF.png"), "a\uFFFD.png");
  EXPECT_EQ(VisibleText("\xC3"), "\uFFFD");
  EXPECT_EQ(VisibleText("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD") << "a surrogate";
  EXPECT_EQ(VisibleText("\xE0\x80\xAF"), "\uFFFD\uFFFD\uFFFD") << "an overlong form";
}

}  // namespace
}  // namespace kestrel
