#include "platform/store/FileNames.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

class Names : public store::FileNames {
 public:
  Names() : FileNames("/") {}
  std::string ResolvePath(const std::string& Path) override { return Path; }
  bool CopyFiles(const std::string&, const std::string&, std::int32_t, WindowHandle) override {
    return false;
  }
  bool MoveFiles(const std::string&, const std::string&, std::int32_t, WindowHandle) override {
    return false;
  }
  bool DeleteFiles(const std::string&, const std::string&, std::int32_t, WindowHandle) override {
    return false;
  }
};

std::string thumbnailOf(const std::string& path) {
  Names names;
  return names.PathWithoutExtension(path) + "_thumb." + names.GetExtension(path, 0);
}

TEST(FileNames, MakeTheNameOfAThumbnail) {
  EXPECT_EQ(thumbnailOf("c:\\a\\b.png"), "c:\\a\\b_thumb.png");
  EXPECT_EQ(thumbnailOf("/a/b.c.png"), "/a/b.c_thumb.png");
  EXPECT_EQ(thumbnailOf(""), "_thumb.");
  EXPECT_EQ(thumbnailOf("/a.b/c"), "/a.b/c_thumb.");
}

TEST(FileNames, TakeTheExtensionFromTheFileNameOnly) {
  Names names;
  EXPECT_EQ(names.GetExtension("c:\\a.b\\c"), "");
  EXPECT_EQ(names.GetExtension("/a.b/c"), "");
  EXPECT_EQ(names.GetExtension("/a/c."), "");
  EXPECT_EQ(names.GetExtension("/a/.hidden"), "hidden");
  EXPECT_EQ(names.PathWithoutExtension("/a/c."), "/a/c");
}

TEST(FileNames, ReturnThePartAfterTheLastSeparator) {
  Names names;
  EXPECT_EQ(names.GetFileName("c:\\a\\b.png"), "b.png");
  EXPECT_EQ(names.GetFileName("/a/b.png"), "b.png");
  EXPECT_EQ(names.GetFileName("b.png"), "b.png");
  EXPECT_EQ(names.GetFileName("/a/"), "");
}

TEST(FileNames, KeepAPathThatFits) {
  Names names;
  const std::string fifty = "c:\\" + std::string(43, 'f') + ".png";
  ASSERT_EQ(fifty.size(), 50u);
  EXPECT_EQ(names.CompactPath(fifty, 50, "\\"), fifty);
}

TEST(FileNames, OmitFoldersInTheMiddle) {
  Names names;
  EXPECT_EQ(names.CompactPath("c:\\one\\two\\three\\four.png", 23, "\\"), "c:\\...\\three\\four.png");
  EXPECT_EQ(names.CompactPath("c:\\one\\two\\three\\four.png", 15, "\\"), "c:\\...\\four.png");
  EXPECT_EQ(names.CompactPath("/one/two/three/four.png", 20, "/"), "/.../three/four.png");
}

TEST(FileNames, TruncateATooLongFileName) {
  Names names;
  EXPECT_EQ(names.CompactPath("c:\\one\\a-very-long-name.png", 12, "\\"), "a-very-lo...");
  EXPECT_EQ(names.CompactPath("c:\\one\\four.png", 10, "\\"), "four.png");
  EXPECT_EQ(names.CompactPath("abcdef", 2, "\\"), "..");
  EXPECT_EQ(names.CompactPath("abcdef", 0, "\\"), "");
}

TEST(FileNames, CountCharactersNotBytes) {
  Names names;
  EXPECT_EQ(names.CompactPath("\xC3\xA4\xC3\xB6\xC3\xBC", 3, "/"), "\xC3\xA4\xC3\xB6\xC3\xBC");
  EXPECT_EQ(names.CompactPath("\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F\xC3\xA4", 4, "/"), "\xC3\xA4...");
}

}  // namespace
}  // namespace kestrel
