#include "apps/common/script/Words.h"

#include <gmock/gmock.h>

#include <functional>

#include "base/RuntimeError.h"

namespace kestrel::app {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string refusalOf(const std::function<void()>& call) {
  try {
    call();
    return "none";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), 5);
    return error.Description();
  }
}

TEST(Words, AreSeparatedByBlanks) {
  EXPECT_THAT(wordsOf("  drag 1\t2  3 \r"), ElementsAre("drag", "1", "2", "3"));
  EXPECT_THAT(wordsOf(" "), IsEmpty());
}

TEST(Words, KeepBlanksBetweenDoubleQuotes) {
  EXPECT_THAT(wordsOf("picture \"my file.png\""), ElementsAre("picture", "my file.png"));
  EXPECT_THAT(wordsOf("txtField=\"a  b\" x"), ElementsAre("txtField=a  b", "x"));
  EXPECT_THAT(wordsOf("\"txtField=a b\""), ElementsAre("txtField=a b"));
  EXPECT_THAT(wordsOf("txtField=\"\" \"\""), ElementsAre("txtField=", ""));
}

TEST(Words, RefuseASingleDoubleQuote) {
  EXPECT_EQ(refusalOf([] { wordsOf("a \"b c"); }), "A double quote has no counterpart.");
}

TEST(Words, AreNumbersAsAWhole) {
  EXPECT_EQ(numberOf("-12"), -12);
  for (const char* const word : {"", "1x", " 1", "99999999999", "1e3"}) {
    EXPECT_EQ(refusalOf([word] { numberOf(word); }), "\"" + std::string(word) + "\" is not a number.");
  }
}

TEST(Words, AreColorsOfSixDigitsOrNone) {
  EXPECT_EQ(colorOf("3388E0"), 0xE08833);
  EXPECT_EQ(colorOf("ff0001"), 0x0100FF);
  EXPECT_EQ(colorOf("none"), -1);
  for (const char* const word : {"", "fff", "0000000", "-12345"}) {
    EXPECT_EQ(refusalOf([word] { colorOf(word); }),
              "\"" + std::string(word) + "\" is not a color, such as 3388E0.");
  }
}

}  // namespace
}  // namespace kestrel::app
