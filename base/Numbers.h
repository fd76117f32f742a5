#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Conversions between numbers and texts. Independent of the locale: the decimal mark is a point.
namespace kestrel {

/// The number that `text` begins with: blanks, a sign, digits with or without a point, and an exponent. 0 if
/// the text does not begin with a number ("", "abc", "-"). Text after the number is ignored ("12px" is 12).
/// Raises 6 for a number beyond the range of double.
double Val(std::string_view text);

/// The number in `text`, which must be a number as a whole (blanks around it are allowed). Raises 13 for any
/// other text, 6 for a number beyond the range of double.
double ParseNumber(std::string_view text);

/// The nearest integer, ties to even: 0.5 is 0, 1.5 and 2.5 are 2. Raises 6 outside the range of the type and
/// for NaN.
std::uint8_t ToByte(double value);
std::int16_t ToInt16(double value);
std::int32_t ToInt32(double value);

/// The nearest single-precision number. Raises 6 beyond its range.
float ToSingle(double value);

/// The integer part, toward zero: -2.7 is -2. Raises 6 outside the range.
std::int32_t IntPart(double value);

/// The greatest integer not above `value`: -2.1 is -3. Raises 6 outside the range.
std::int32_t Floor(double value);

/// The shortest decimal text that keeps 15 significant digits of a double, 7 of a float: "2", "0.9", "-12.5".
/// A number with more digits than that before or behind the point is written with an exponent: "1E+15",
/// "1.5E-20".
std::string ToText(std::int32_t value);
std::string ToText(double value);
std::string ToText(float value);

/// One decimal at most and no leading zero: 0.5 is ".5", 2 is "2.", 12.34 is "12.3", 0 is ".".
/// The decimal is rounded half away from zero.
std::string FormatOneDecimal(double value);

/// The text in lower or upper case. Changes ASCII letters only; other UTF-8 characters stay.
std::string LowerCase(std::string_view text);
std::string UpperCase(std::string_view text);

/// Whether two texts are equal except for the case of ASCII letters.
bool EqualIgnoringCase(std::string_view left, std::string_view right);

}  // namespace kestrel
