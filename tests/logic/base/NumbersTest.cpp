#include "base/Numbers.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <functional>
#include <limits>

#include "base/RuntimeError.h"

namespace kestrel {
namespace {

int numberRaisedBy(const std::function<void()>& call) {
  try {
    call();
  } catch (const RuntimeError& error) {
    return error.Number();
  }
  return 0;
}

TEST(Val, IsTheNumberAtTheStartOfAText) {
  EXPECT_EQ(Val("12"), 12);
  EXPECT_EQ(Val("12px"), 12);
  EXPECT_EQ(Val("  7 "), 7);
  EXPECT_EQ(Val("-3.5"), -3.5);
  EXPECT_EQ(Val("+4"), 4);
  EXPECT_EQ(Val(".5"), 0.5);
  EXPECT_EQ(Val("-.25x"), -0.25);
  EXPECT_EQ(Val("2."), 2);
  EXPECT_EQ(Val("1e3"), 1000);
  EXPECT_EQ(Val("1e"), 1);
  EXPECT_EQ(Val("1,5"), 1);
  EXPECT_EQ(Val("12.5.7"), 12.5);
}

TEST(Val, IsZeroWithoutANumberAtTheStart) {
  for (const char* text :
       {"", " ", "abc", "-", "+", ".", "-.", "+-5", "--5", "x12", "inf", "nan", "infinity"}) {
    EXPECT_EQ(Val(text), 0) << text;
  }
}

TEST(Val, IsZeroForTinyNumbersAndRaisesOverflowForHugeOnes) {
  EXPECT_EQ(Val("1e-999"), 0);
  EXPECT_EQ(Val("0." + std::string(400, '0') + "1"), 0);
  EXPECT_EQ(numberRaisedBy([] { Val("1e999"); }), err::kOverflow);
  EXPECT_EQ(numberRaisedBy([] { Val(std::string(400, '9')); }), err::kOverflow);
}

TEST(ParseNumber, AcceptsOnlyTextsThatAreWhollyNumbers) {
  EXPECT_EQ(ParseNumber(" -1 "), -1);
  EXPECT_EQ(ParseNumber("2.5"), 2.5);
  for (const char* text : {"", " ", "12px", "1 2", "abc"}) {
    EXPECT_EQ(numberRaisedBy([&] { ParseNumber(text); }), err::kTypeMismatch) << text;
  }
}

TEST(Rounding, RoundsToTheNearestWithTiesToEven) {
  EXPECT_EQ(ToInt32(0.5), 0);
  EXPECT_EQ(ToInt32(1.5), 2);
  EXPECT_EQ(ToInt32(2.5), 2);
  EXPECT_EQ(ToInt32(-0.5), 0);
  EXPECT_EQ(ToInt32(-1.5), -2);
  EXPECT_EQ(ToInt32(-2.5), -2);
  EXPECT_EQ(ToInt32(2.4999), 2);
  EXPECT_EQ(ToInt32(2.5001), 3);
  EXPECT_EQ(ToInt32(0.49999999999999994), 0);
}

TEST(Numbers, SinglesRaiseOverflowBeyondTheirRange) {
  EXPECT_EQ(ToSingle(0.1), 0.1F);
  EXPECT_EQ(ToSingle(3.4e38), 3.4e38F);
  EXPECT_EQ(ToSingle(1e-60), 0.0F);
  for (const double value : {1e39, -1e39, 3.5e38}) {
    EXPECT_EQ(numberRaisedBy([&] { ToSingle(value); }), err::kOverflow) << value;
  }
}

TEST(Rounding, RaisesOverflowOutsideTheType) {
  EXPECT_EQ(ToInt32(2147483647.4), 2147483647);
  EXPECT_EQ(ToInt32(-2147483648.5), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(numberRaisedBy([] { ToInt32(2147483647.5); }), err::kOverflow);
  EXPECT_EQ(numberRaisedBy([] { ToInt32(-2147483649.0); }), err::kOverflow);
  EXPECT_EQ(numberRaisedBy([] { ToInt32(std::nan("")); }), err::kOverflow);
  EXPECT_EQ(ToInt16(32767.4), 32767);
  EXPECT_EQ(numberRaisedBy([] { ToInt16(32767.5); }), err::kOverflow);
  EXPECT_EQ(ToByte(254.5), 254);
  EXPECT_EQ(ToByte(255.4), 255);
  EXPECT_EQ(ToByte(-0.5), 0);
  EXPECT_EQ(numberRaisedBy([] { ToByte(255.5); }), err::kOverflow);
  EXPECT_EQ(numberRaisedBy([] { ToByte(-0.6); }), err::kOverflow);
}

TEST(WholeParts, RoundTowardsZeroOrDown) {
  EXPECT_EQ(IntPart(2.7), 2);
  EXPECT_EQ(IntPart(-2.7), -2);
  EXPECT_EQ(Floor(2.7), 2);
  EXPECT_EQ(Floor(-2.1), -3);
  EXPECT_EQ(numberRaisedBy([] { Floor(1e10); }), err::kOverflow);
  EXPECT_EQ(numberRaisedBy([] { IntPart(-1e10); }), err::kOverflow);
}

TEST(ToText, KeepsFifteenDigitsOfADouble) {
  EXPECT_EQ(ToText(0.0), "0");
  EXPECT_EQ(ToText(-0.0), "0");
  EXPECT_EQ(ToText(2.0), "2");
  EXPECT_EQ(ToText(0.9), "0.9");
  EXPECT_EQ(ToText(0.1 + 0.2), "0.3");
  EXPECT_EQ(ToText(1.0 / 3), "0.333333333333333");
  EXPECT_EQ(ToText(-12.5), "-12.5");
  EXPECT_EQ(ToText(100.0), "100");
  EXPECT_EQ(ToText(123456789012345.0), "123456789012345");
  EXPECT_EQ(ToText(1e15), "1E+15");
  EXPECT_EQ(ToText(0.00001), "0.00001");
  EXPECT_EQ(ToText(1.5e-20), "1.5E-20");
  EXPECT_EQ(ToText(-1e300), "-1E+300");
}

TEST(ToText, KeepsSevenDigitsOfAFloat) {
  EXPECT_EQ(ToText(0.9F), "0.9");
  EXPECT_EQ(ToText(2.0F), "2");
  EXPECT_EQ(ToText(0.1F), "0.1");
  EXPECT_EQ(ToText(1.0F / 3), "0.3333333");
  EXPECT_EQ(ToText(1234567.0F), "1234567");
  EXPECT_EQ(ToText(1e7F), "1E+07");
}

TEST(ToText, WritesIntegersPlainly) {
  EXPECT_EQ(ToText(std::int32_t{0}), "0");
  EXPECT_EQ(ToText(std::numeric_limits<std::int32_t>::min()), "-2147483648");
}

TEST(FormatOneDecimal, HasOneDecimalAndNoLeadingZero) {
  EXPECT_EQ(FormatOneDecimal(0.5), ".5");
  EXPECT_EQ(FormatOneDecimal(0.9F), ".9");
  EXPECT_EQ(FormatOneDecimal(2), "2.");
  EXPECT_EQ(FormatOneDecimal(12.34), "12.3");
  EXPECT_EQ(FormatOneDecimal(100), "100.");
  EXPECT_EQ(FormatOneDecimal(0), ".");
  EXPECT_EQ(FormatOneDecimal(0.04), ".");
  EXPECT_EQ(FormatOneDecimal(-0.04), ".");
  EXPECT_EQ(FormatOneDecimal(-1.5), "-1.5");
}

TEST(FormatOneDecimal, RoundsTheDecimalHalfAwayFromZero) {
  EXPECT_EQ(FormatOneDecimal(0.25), ".3");
  EXPECT_EQ(FormatOneDecimal(0.15), ".2");
  EXPECT_EQ(FormatOneDecimal(0.05), ".1");
  EXPECT_EQ(FormatOneDecimal(-1.25), "-1.3");
  EXPECT_EQ(FormatOneDecimal(0.95), "1.");
  EXPECT_EQ(FormatOneDecimal(9.96), "10.");
  EXPECT_EQ(FormatOneDecimal(99.95), "100.");
}

TEST(FormatOneDecimal, GivesATextThatValCanRead) {
  EXPECT_EQ(Val(FormatOneDecimal(0.5)) * 100, 50);
  EXPECT_EQ(Val(FormatOneDecimal(2)) * 100, 200);
}

TEST(Numbers, IgnoreTheLocale) {
  // A locale with a decimal comma, if the machine has one, must make no difference.
  const std::string before = std::setlocale(LC_ALL, nullptr);
  for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "C.UTF-8"}) std::setlocale(LC_ALL, name);
  EXPECT_EQ(ToText(0.5), "0.5");
  EXPECT_EQ(Val("0.5"), 0.5);
  EXPECT_EQ(FormatOneDecimal(1.5), "1.5");
  std::setlocale(LC_ALL, before.c_str());
}

TEST(Case, ChangesOnlyTheLettersAToZ) {
  EXPECT_EQ(LowerCase("FileOPEN 12 \xC3\x84"), "fileopen 12 \xC3\x84");
  EXPECT_EQ(UpperCase("fileOpen 12 \xC3\xA4"), "FILEOPEN 12 \xC3\xA4");
  EXPECT_TRUE(EqualIgnoringCase("A.png", "a.PNG"));
  EXPECT_FALSE(EqualIgnoringCase("A.png", "a.pn"));
  EXPECT_FALSE(EqualIgnoringCase("@", "`"));
}

}  // namespace
}  // namespace kestrel
