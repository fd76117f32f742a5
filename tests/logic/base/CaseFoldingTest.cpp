#include "base/CaseFolding.h"

#include <gtest/gtest.h>

#include "base/Collection.h"

namespace kestrel {
namespace {

TEST(CaseFolding, FoldsTheCaseOfAllScripts) {
  EXPECT_EQ(FoldCase("FileOPEN 12.PNG"), "fileopen 12.png");
  EXPECT_EQ(FoldCase("ÄÖÜ ÇÑÉ Þ ÿ Ÿ"), "äöü çñé þ ÿ ÿ");
  EXPECT_EQ(FoldCase("ĀāĂă ŹźŻż"), "āāăă źźżż") << "alternating capitals";
  EXPECT_EQ(FoldCase("ΑΒΓ ΌΣΟΣ ς"), "αβγ όσοσ σ") << "the final sigma too";
  EXPECT_EQ(FoldCase("ПРИВЕТ Ѐ Ё"), "привет ѐ ё");
  EXPECT_EQ(FoldCase("Ა"), "ა") << "Georgian capitals";
  EXPECT_EQ(FoldCase("Ꭰꭰ"), "ᎠᎠ") << "Cherokee folds to its capitals";
  EXPECT_EQ(FoldCase("ＡＢ"), "ａｂ");
  EXPECT_EQ(FoldCase("𐐀"), "𐐨") << "beyond 16 bits";
  EXPECT_EQ(FoldCase("K Å"), "k å") << "the signs for kelvin and angstrom";
  EXPECT_EQ(FoldCase("ẞ"), "ß");
}

TEST(CaseFolding, LeavesTextWithoutCaseOrThatWouldGrow) {
  EXPECT_EQ(FoldCase("日本語 12 ×÷ ½ ß ı İ"), "日本語 12 ×÷ ½ ß ı İ");
  EXPECT_EQ(FoldCase(""), "");
  EXPECT_EQ(FoldCase(std::string("A\0B", 3)), std::string("a\0b", 3));
}

TEST(CaseFolding, LeavesInvalidUtf8) {
  EXPECT_EQ(FoldCase("A\xFFZ"), "a\xFFz");
  EXPECT_EQ(FoldCase("\xC3"), "\xC3") << "truncated";
  EXPECT_EQ(FoldCase("\xC3Q"), "\xC3q");
  EXPECT_EQ(FoldCase("\xC1\x81"), "\xC1\x81") << "an overlong A";
  EXPECT_EQ(FoldCase("\x80\xF0\x9F\x98"), "\x80\xF0\x9F\x98");
}

TEST(CaseFolding, IsUsedForTheKeysOfCollections) {
  Collection<int> items;
  items.Add(1, "/bilder/ÄRGER.PNG");
  EXPECT_EQ(items.Item("/Bilder/ärger.png"), 1);
  EXPECT_THROW(items.Add(2, "/BILDER/Ärger.png"), RuntimeError);
  items.Remove("/bilder/Ärger.Png");
  EXPECT_EQ(items.Count(), 0);
}

}  // namespace
}  // namespace kestrel
