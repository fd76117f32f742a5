#include "Numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>

#include "RuntimeError.h"

namespace kestrel {
namespace {

constexpr int kDoubleDigits = 15;
constexpr int kFloatDigits = 7;

constexpr bool IsBlank(char character) {
  return character == ' ' || (character >= '\t' && character <= '\r');
}
constexpr bool IsDigit(char character) { return character >= '0' && character <= '9'; }

std::size_t BlanksAt(std::string_view text) {
  return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), IsBlank) - text.begin());
}

struct Leading {
  double value = 0;
  std::size_t length = 0;  // characters consumed; 0: the text does not begin with a number
};

Leading LeadingNumber(std::string_view text) {
  std::size_t start = BlanksAt(text);
  // std::from_chars accepts no plus sign, but accepts "inf" and "nan", which are not numbers here.
  if (start < text.size() && text[start] == '+') ++start;
  std::size_t first = start;
  if (first < text.size() && text[first] == '-' && (first == 0 || text[first - 1] != '+')) ++first;
  if (first < text.size() && text[first] == '.') ++first;
  if (first >= text.size() || !IsDigit(text[first])) return {};

  Leading result;
  const char* begin = text.data() + start;
  const auto [end, error] = std::from_chars(begin, text.data() + text.size(), result.value);
  if (error == std::errc::result_out_of_range) {
    // Underflow is zero; the exponent is negative.
    const std::string_view digits(begin, static_cast<std::size_t>(end - begin));
    const std::size_t exponent = digits.find_first_of("eE");
    const bool tiny = exponent == digits.npos ? digits.find_first_of("123456789") > digits.find('.')
                                              : digits[exponent + 1] == '-';
    if (!tiny) throw RuntimeError(err::kOverflow, "The number is too large.");
    result.value = 0;
  }
  result.length = static_cast<std::size_t>(end - text.data());
  return result;
}

template <typename Integer>
Integer Narrow(double whole) {
  using Limits = std::numeric_limits<Integer>;
  if (!(whole >= Limits::min() && whole <= Limits::max())) {
    throw RuntimeError(err::kOverflow, "The number is too large.");
  }
  return static_cast<Integer>(whole);
}

double RoundToEven(double value) {
  // std::nearbyint would follow the thread's rounding mode.
  const double below = std::floor(value);
  const double distance = value - below;
  if (distance < 0.5) return below;
  if (distance > 0.5) return below + 1;
  return std::fmod(below, 2) == 0 ? below : below + 1;
}

/// A number as decimal digits d1 d2 d3 ..., meaning 0.d1d2d3... times 10 to the power `point`.
struct Decimal {
  bool negative = false;
  std::string digits;  // no zeros at either end; empty for zero
  int point = 0;       // digits before the point
};

Decimal Decompose(double value, int significant) {
  std::array<char, 40> text;
  const auto end = std::to_chars(text.data(), text.data() + text.size(), std::abs(value),
                                 std::chars_format::scientific, significant - 1)
                       .ptr;
  const std::string_view scientific(text.data(), static_cast<std::size_t>(end - text.data()));
  const std::size_t mark = scientific.find('e');
  const std::size_t signless = scientific[mark + 1] == '+' ? mark + 2 : mark + 1;
  int exponent = 0;
  std::from_chars(scientific.data() + signless, end, exponent);

  Decimal decimal{value < 0, {}, exponent + 1};
  for (const char character : scientific.substr(0, mark)) {
    if (character != '.') decimal.digits += character;
  }
  decimal.digits.erase(decimal.digits.find_last_not_of('0') + 1);
  if (decimal.digits.empty()) return {};
  return decimal;
}

std::string PlainText(double value, int significant) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-Infinity" : "Infinity";
  const Decimal decimal = Decompose(value, significant);
  if (decimal.digits.empty()) return "0";

  const int count = static_cast<int>(decimal.digits.size());
  std::string text = decimal.negative ? "-" : "";
  if (decimal.point > significant || count - decimal.point > significant) {
    const int exponent = decimal.point - 1;
    text += decimal.digits.substr(0, 1);
    if (count > 1) text += '.' + decimal.digits.substr(1);
    text += exponent < 0 ? "E-" : "E+";
    if (std::abs(exponent) < 10) text += '0';
    return text + std::to_string(std::abs(exponent));
  }
  if (decimal.point <= 0)
    return text + "0." + std::string(static_cast<std::size_t>(-decimal.point), '0') + decimal.digits;
  const auto point = static_cast<std::size_t>(decimal.point);
  if (count <= decimal.point) return text + decimal.digits + std::string(point - decimal.digits.size(), '0');
  return text + decimal.digits.substr(0, point) + '.' + decimal.digits.substr(point);
}

}  // namespace

double Val(std::string_view text) { return LeadingNumber(text).value; }

double ParseNumber(std::string_view text) {
  const Leading leading = LeadingNumber(text);
  const bool whole =
      leading.length > 0 && leading.length + BlanksAt(text.substr(leading.length)) == text.size();
  if (!whole) throw RuntimeError(err::kTypeMismatch, "The text is not a number.");
  return leading.value;
}

std::uint8_t ToByte(double value) { return Narrow<std::uint8_t>(RoundToEven(value)); }
std::int16_t ToInt16(double value) { return Narrow<std::int16_t>(RoundToEven(value)); }
std::int32_t ToInt32(double value) { return Narrow<std::int32_t>(RoundToEven(value)); }

float ToSingle(double value) {
  if (!(std::abs(value) <= double{std::numeric_limits<float>::max()})) {
    throw RuntimeError(err::kOverflow, "The number is too large.");
  }
  return static_cast<float>(value);
}

std::int32_t IntPart(double value) { return Narrow<std::int32_t>(std::trunc(value)); }
std::int32_t Floor(double value) { return Narrow<std::int32_t>(std::floor(value)); }

std::string ToText(std::int32_t value) { return std::to_string(value); }
std::string ToText(double value) { return PlainText(value, kDoubleDigits); }
std::string ToText(float value) { return PlainText(static_cast<double>(value), kFloatDigits); }

std::string FormatOneDecimal(double value) {
  if (!std::isfinite(value)) return PlainText(value, kDoubleDigits);
  // Rounds the decimal text, not the binary value: 0.15 is .2 although its double is a little less.
  const Decimal decimal = Decompose(value, kDoubleDigits);
  std::string digits = decimal.digits;
  int point = decimal.point;
  if (point < -1) digits.clear();
  if (point < 0 && !digits.empty()) {
    digits.insert(0, static_cast<std::size_t>(-point), '0');
    point = 0;
  }
  const std::size_t kept = static_cast<std::size_t>(std::max(point, 0)) + 1;
  const bool up = digits.size() > kept && digits[kept] >= '5';
  digits.resize(kept, '0');
  if (up) {
    std::size_t i = kept;
    while (i > 0 && digits[i - 1] == '9') digits[--i] = '0';
    if (i > 0) {
      ++digits[i - 1];
    } else {
      digits.insert(0, 1, '1');
    }
  }

  std::string whole = digits.substr(0, digits.size() - 1);
  const std::string tenth = digits.back() == '0' ? "" : digits.substr(digits.size() - 1);
  const bool zero = whole.empty() && tenth.empty();
  return (decimal.negative && !zero ? "-" : "") + whole + '.' + tenth;
}

std::string LowerCase(std::string_view text) {
  std::string result(text);
  for (char& character : result) {
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
  }
  return result;
}

std::string UpperCase(std::string_view text) {
  std::string result(text);
  for (char& character : result) {
    if (character >= 'a' && character <= 'z') character = static_cast<char>(character - 'a' + 'A');
  }
  return result;
}

bool EqualIgnoringCase(std::string_view left, std::string_view right) {
  return left.size() == right.size() && LowerCase(left) == LowerCase(right);
}

}  // namespace kestrel
