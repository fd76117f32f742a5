#include "engine/codecs/metadata/Md5.h"

#include <gtest/gtest.h>

#include <string>

namespace kestrel::engine {
namespace {

std::string digest(const std::string& text) {
  return md5Of({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

TEST(Md5, GivesTheDigestsOfItsStandard) {
  // RFC 1321, A.5.
  EXPECT_EQ(digest(""), "D41D8CD98F00B204E9800998ECF8427E");
  EXPECT_EQ(digest("a"), "0CC175B9C0F1B6A831C399E269772661");
  EXPECT_EQ(digest("abc"), "900150983CD24FB0D6963F7D28E17F72");
  EXPECT_EQ(digest("message digest"), "F96B697D7CB7938D525A2F31AAF161D0");
  EXPECT_EQ(digest("abcdefghijklmnopqrstuvwxyz"), "C3FCD3D76192E4007DFB496CCA67E13B");
  EXPECT_EQ(digest("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"),
            "D174AB98D277D9F5A5611C2C9F419D9F");
  EXPECT_EQ(digest("12345678901234567890123456789012345678901234567890123456789012345678901234567890"),
            "57EDF4A22BE3C955AC49DA2E2107B67A");
}

TEST(Md5, PadsDataOfEveryLengthOfABlock) {
  // 55 bytes leave room for the length in the same block, 56 do not; 64 fill a block.
  EXPECT_EQ(digest(std::string(55, 'a')), "EF1772B6DFF9A122358552954AD0DF65");
  EXPECT_EQ(digest(std::string(56, 'a')), "3B0C8AC703F828B04C6C197006D17218");
  EXPECT_EQ(digest(std::string(64, 'a')), "014842D480B571495A4A0363793F7367");
}

}  // namespace
}  // namespace kestrel::engine
