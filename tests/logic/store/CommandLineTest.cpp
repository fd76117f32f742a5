#include "platform/store/CommandLine.h"

#include <gtest/gtest.h>

namespace kestrel::store {
namespace {

TEST(CommandLine, JoinsPlainArgumentsWithSpaces) {
  EXPECT_EQ(commandLineOf({"/opt/app", "-x", "c:\\a\\b.png"}), "/opt/app -x c:\\a\\b.png");
  EXPECT_EQ(commandLineOf({}), "");
}

TEST(CommandLine, QuotesArgumentsWithSpacesAndEmptyOnes) {
  EXPECT_EQ(commandLineOf({"/opt/my app", "a b.png", "", "c\td"}),
            "\"/opt/my app\" \"a b.png\" \"\" \"c\td\"");
}

TEST(CommandLine, EscapesAQuoteAndTheBackslashesBeforeIt) {
  EXPECT_EQ(commandLineOf({"app", R"(say "hi")"}), R"(app "say \"hi\"")");
  EXPECT_EQ(commandLineOf({"app", R"(a\\"b)"}), R"(app "a\\\\\"b")");
  EXPECT_EQ(commandLineOf({"app", R"(c:\my folder\)"}), R"(app "c:\my folder\\")");
}

}  // namespace
}  // namespace kestrel::store
