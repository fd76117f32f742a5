#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Numbers and their texts, the same on every machine: no locale has a say, the decimal mark is a point.
namespace kestrel {

/// The number that `text` begins with: blanks, a sign, digits with or without a point, and an exponent.
/// 0 where it begins with none ("", "abc", "-"). What follows the number is ignored ("12px" is 12).
/// Raises 6 for a number beyond the range of double.
double Val(std::string_view text);

/// `value` as a number, where the whole text is one (blanks around it are allowed). Raises 13 for any
/// other text, 6 for a number beyond the range of double.
double ParseNumber(std::string_view text);

/// The nearest integer, ties to the even one: 0.5 is 0, 1.5 and 2.5 are 2. Raises 6 outside the range of
/// the type, and for what is not a number.
std::uint8_t ToByte(double value);
std::int16_t ToInt16(double value);
std::int32_t ToInt32(double value);

/// The nearest single-precision number. Raises 6 beyond its range.
float ToSingle(double value);

/// The integer part, towards zero: -2.7 is -2. Raises 6 outside the range.
std::int32_t IntPart(double value);

/// The greatest integer that is not above `value`: -2.1 is -3. Raises 6 outside the range.
std::int32_t Floor(double value);

/// The shortest plain decimal text that keeps 15 significant digits of a double, 7 of a float: "2", "0.9",
/// "-12.5". A number that needs more digits than that before or behind the point is written with an
/// exponent: "1E+15", "1.5E-20".
std::string ToText(std::int32_t value);
std::string ToText(double value);
std::string ToText(float value);

/// One decimal at most and no leading zero: 0.5 is ".5", 2 is "2.", 12.34 is "12.3", 0 is ".".
/// The decimal is rounded half away from zero.
std::string FormatOneDecimal(double value);

/// The text with its letters a to z, or A to Z, changed; every other character of the UTF-8 text stays.
std::string LowerCase(std::string_view text);
std::string UpperCase(std::string_view text);

/// Whether two texts are the same but for the case of the letters A to Z.
bool EqualIgnoringCase(std::string_view left, std::string_view right);

}  // namespace kestrel
