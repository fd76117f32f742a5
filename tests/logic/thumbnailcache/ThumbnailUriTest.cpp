#include "platform/thumbnailcache/ThumbnailUri.h"

#include <gtest/gtest.h>

#include <string>

namespace kestrel::thumbnails {
namespace {

TEST(ThumbnailUri, NamesTheEntryOfTheStandardsExample) {
  EXPECT_EQ(uriOf("/home/jens/photos/me.png"), "file:///home/jens/photos/me.png");
  EXPECT_EQ(entryName("file:///home/jens/photos/me.png"), "c6ee772d9e49320e97ec29a7eb5b1697.png");
}

TEST(ThumbnailUri, EscapesAllBytesButThoseOfPaths) {
  const std::string kept = "!$&'()*+,-./0123456789:=@ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz~";
  for (int byte = 1; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    char hex[4];
    std::snprintf(hex, sizeof hex, "%%%02X", static_cast<unsigned>(byte));
    const std::string expected = kept.find(c) != std::string::npos ? std::string(1, c) : hex;
    EXPECT_EQ(uriOf(std::string("/a") + c + "b"), "file:///a" + expected + "b") << byte;
  }
}

TEST(ThumbnailUri, EscapesNamesThatAreNoUtf8ByTheirBytes) {
  EXPECT_EQ(uriOf("/caf\xE9 \n.jpg"), "file:///caf%E9%20%0A.jpg");
  EXPECT_EQ(uriOf("/caf\xC3\xA9.jpg"), "file:///caf%C3%A9.jpg");
}

TEST(ThumbnailUri, IsCanonical) {
  EXPECT_EQ(uriOf("/a/./b/../c.jpg"), "file:///a/c.jpg");
  EXPECT_EQ(uriOf("/a//b.jpg"), "file:///a/b.jpg");
  EXPECT_EQ(uriOf("/../a.jpg"), "file:///a.jpg");
}

TEST(ThumbnailUri, OfANameHasNoFolder) {
  EXPECT_EQ(uriOfName("/home/jens/photos/my face.png"), "my%20face.png");
}

}  // namespace
}  // namespace kestrel::thumbnails
