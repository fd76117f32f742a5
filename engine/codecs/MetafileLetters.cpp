#include "MetafileLetters.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace kestrel::engine::metafile {
namespace {

/// The signs of the symbol font from 0x20 to 0x7E (without what is as in ASCII, which is 0) and from 0xA0.
constexpr std::array<std::uint16_t, 95> kSymbols20{
    0,      0,      0x2200, 0,      0x2203, 0,      0,      0x220B, 0,      0,      0x2217, 0,
    0,      0x2212, 0,      0,      0,      0,      0,      0,      0,      0,      0,      0,
    0,      0,      0,      0,      0,      0,      0,      0,      0x2245, 0x0391, 0x0392, 0x03A7,
    0x0394, 0x0395, 0x03A6, 0x0393, 0x0397, 0x0399, 0x03D1, 0x039A, 0x039B, 0x039C, 0x039D, 0x039F,
    0x03A0, 0x0398, 0x03A1, 0x03A3, 0x03A4, 0x03A5, 0x03C2, 0x03A9, 0x039E, 0x03A8, 0x0396, 0,
    0x2234, 0,      0x22A5, 0,      0x203E, 0x03B1, 0x03B2, 0x03C7, 0x03B4, 0x03B5, 0x03C6, 0x03B3,
    0x03B7, 0x03B9, 0x03D5, 0x03BA, 0x03BB, 0x03BC, 0x03BD, 0x03BF, 0x03C0, 0x03B8, 0x03C1, 0x03C3,
    0x03C4, 0x03C5, 0x03D6, 0x03C9, 0x03BE, 0x03C8, 0x03B6, 0,      0,      0,      0x223C};
constexpr std::array<std::uint16_t, 96> kSymbolsA0{
    0x20AC, 0x03D2, 0x2032, 0x2264, 0x2044, 0x221E, 0x0192, 0x2663, 0x2666, 0x2665, 0x2660, 0x2194,
    0x2190, 0x2191, 0x2192, 0x2193, 0x00B0, 0x00B1, 0x2033, 0x2265, 0x00D7, 0x221D, 0x2202, 0x2022,
    0x00F7, 0x2260, 0x2261, 0x2248, 0x2026, 0x23D0, 0x23AF, 0x21B5, 0x2135, 0x2111, 0x211C, 0x2118,
    0x2297, 0x2295, 0x2205, 0x2229, 0x222A, 0x2283, 0x2287, 0x2284, 0x2282, 0x2286, 0x2208, 0x2209,
    0x2220, 0x2207, 0x00AE, 0x00A9, 0x2122, 0x220F, 0x221A, 0x22C5, 0x00AC, 0x2227, 0x2228, 0x21D4,
    0x21D0, 0x21D1, 0x21D2, 0x21D3, 0x25CA, 0x2329, 0x00AE, 0x00A9, 0x2122, 0x2211, 0x239B, 0x239C,
    0x239D, 0x23A1, 0x23A2, 0x23A3, 0x23A7, 0x23A8, 0x23A9, 0x23AA, 0xF8FF, 0x232A, 0x222B, 0x2320,
    0x23AE, 0x2321, 0x239E, 0x239F, 0x23A0, 0x23A4, 0x23A5, 0x23A6, 0x23AB, 0x23AC, 0x23AD, 0x00A0};

/// The signs of the dingbat font that lists and diagrams use; the others are unknown.
struct Sign {
  std::uint8_t code;
  std::uint16_t letter;
};
constexpr Sign kDingbats[] = {
    {0x20, 0x20},   {0x21, 0x270F}, {0x22, 0x2702}, {0x28, 0x260E}, {0x2A, 0x2709}, {0x36, 0x231B},
    {0x3F, 0x270D}, {0x41, 0x270C}, {0x45, 0x261C}, {0x46, 0x261E}, {0x47, 0x261D}, {0x48, 0x261F},
    {0x4A, 0x263A}, {0x4C, 0x2639}, {0x51, 0x2708}, {0x52, 0x263C}, {0x54, 0x2744}, {0x6C, 0x25CF},
    {0x6D, 0x274D}, {0x6E, 0x25A0}, {0x6F, 0x25A1}, {0x71, 0x2751}, {0x72, 0x2752}, {0x74, 0x29EB},
    {0x75, 0x25C6}, {0x76, 0x2756}, {0x77, 0x25C6}, {0x78, 0x2327}, {0x80, 0x24EA}, {0x81, 0x2460},
    {0x82, 0x2461}, {0x83, 0x2462}, {0x84, 0x2463}, {0x85, 0x2464}, {0x86, 0x2465}, {0x87, 0x2466},
    {0x88, 0x2467}, {0x89, 0x2468}, {0x8A, 0x2469}, {0x9E, 0x00B7}, {0x9F, 0x2022}, {0xA0, 0x00A0},
    {0xA1, 0x25CB}, {0xA7, 0x25AA}, {0xA8, 0x25FB}, {0xAB, 0x2605}, {0xD8, 0x27A2}, {0xDF, 0x2190},
    {0xE0, 0x2192}, {0xE1, 0x2191}, {0xE2, 0x2193}, {0xE8, 0x2794}, {0xEF, 0x21E6}, {0xF0, 0x21E8},
    {0xF1, 0x21E7}, {0xF2, 0x21E9}, {0xFB, 0x2717}, {0xFC, 0x2713}, {0xFD, 0x2612}, {0xFE, 0x2611}};

bool isSymbolFace(const Font& font) { return font.face == "Symbol"; }
bool isDingbatFace(const Font& font) { return font.face == "Wingdings"; }

std::string utf8(std::uint32_t code) {
  const auto byte = [](std::uint32_t value) { return static_cast<char>(value); };
  const auto tail = [&](int shift) { return byte(0x80 | (code >> shift & 0x3F)); };
  if (code < 0x20) return " ";
  if (code < 0x80) return {byte(code)};
  if (code < 0x800) return {byte(0xC0 | code >> 6), tail(0)};
  if (code < 0x10000) return {byte(0xE0 | code >> 12), tail(6), tail(0)};
  return {byte(0xF0 | code >> 18), tail(12), tail(6), tail(0)};
}

std::string symbolOf(std::uint32_t code) {
  code &= 0xFF;
  std::uint32_t sign = 0;
  if (code >= 0x20 && code < 0x7F) sign = kSymbols20[code - 0x20];
  if (code >= 0xA0) sign = kSymbolsA0[code - 0xA0];
  return utf8(sign != 0 ? sign : code);
}

std::string dingbatOf(std::uint32_t code) {
  const auto* const found =
      std::ranges::find_if(kDingbats, [&](const Sign& sign) { return sign.code == (code & 0xFF); });
  return found != std::end(kDingbats) ? utf8(found->letter) : kUnknownLetter;
}

/// The name of the code page of a character set's texts.
const char* codePageOf(std::uint8_t charset) {
  switch (charset) {
    case 77:
      return "MACINTOSH";
    case 128:
      return "CP932";
    case 129:
      return "CP949";
    case 134:
      return "CP936";
    case 136:
      return "CP950";
    case 161:
      return "CP1253";
    case 162:
      return "CP1254";
    case 163:
      return "CP1258";
    case 177:
      return "CP1255";
    case 178:
      return "CP1256";
    case 186:
      return "CP1257";
    case 204:
      return "CP1251";
    case 222:
      return "CP874";
    case 238:
      return "CP1250";
    default:
      return "CP1252";
  }
}

/// Turns the texts of a code page to UTF-8, letter by letter.
class CodePage {
 public:
  explicit CodePage(const char* name) : converter_(iconv_open("UTF-8", name)) {}
  CodePage(const CodePage&) = delete;
  CodePage& operator=(const CodePage&) = delete;
  ~CodePage() {
    if (exists()) iconv_close(converter_);
  }

  /// The letter of these bytes; empty if they are none.
  std::string letter(Bytes bytes) const {
    if (!exists()) return {};
    std::array<char, 8> in{}, out{};
    std::copy(bytes.begin(), bytes.end(), in.begin());
    char *from = in.data(), *to = out.data();
    std::size_t left = bytes.size(), space = out.size();
    iconv(converter_, nullptr, nullptr, nullptr, nullptr);
    if (iconv(converter_, &from, &left, &to, &space) == static_cast<std::size_t>(-1)) return {};
    iconv(converter_, nullptr, nullptr, &to, &space);
    return {out.data(), to};
  }

 private:
  // What iconv_open gives when it knows no such code page.
  bool exists() const { return reinterpret_cast<std::intptr_t>(converter_) != -1; }

  iconv_t converter_;
};

}  // namespace

std::vector<std::string> lettersOf(Bytes text, const Font& font) {
  std::vector<std::string> letters;
  if (isSymbolFace(font) || isDingbatFace(font)) {
    for (const std::uint8_t byte : text)
      letters.push_back(isSymbolFace(font) ? symbolOf(byte) : dingbatOf(byte));
    return letters;
  }
  const CodePage page(codePageOf(font.charset));
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] < 0x80) {
      letters.push_back(utf8(text[i]));
      continue;
    }
    std::string one = page.letter(text.subspan(i, 1));
    if (!one.empty()) {
      letters.push_back(std::move(one));
    } else if (i + 1 < text.size() && !(one = page.letter(text.subspan(i, 2))).empty()) {
      letters.push_back(std::move(one));
      letters.emplace_back();
      ++i;
    } else {
      letters.push_back(utf8(text[i]));
    }
  }
  return letters;
}

std::vector<std::string> lettersOf(const std::vector<std::uint16_t>& text, const Font& font) {
  // Fonts of signs have them at their codes, or from F000 on.
  const auto isSign = [](std::uint16_t code) { return code < 0x100 || (code >= 0xF000 && code < 0xF100); };
  std::vector<std::string> letters;
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::uint32_t code = text[i];
    const bool pair = code >= 0xD800 && code < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
                      text[i + 1] < 0xE000;
    if (pair) {
      code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00U);
    } else if (code >= 0xD800 && code < 0xE000) {
      code = 0xFFFD;
    }
    if (isSymbolFace(font) && isSign(text[i])) {
      letters.push_back(symbolOf(code));
    } else if (isDingbatFace(font) && isSign(text[i])) {
      letters.push_back(dingbatOf(code));
    } else {
      letters.push_back(utf8(code));
    }
    if (pair) letters.emplace_back();
  }
  return letters;
}

std::vector<std::string> lettersOfGlyphs(const std::vector<std::uint16_t>& glyphs, const Font& font) {
  constexpr std::string_view kUsualOrder[] = {
      "Arial",   "Arial Black",     "Arial Narrow", "Comic Sans MS",   "Courier New",     "DejaVu Sans",
      "Georgia", "Impact",          "Helvetica",    "Liberation Mono", "Liberation Sans", "Liberation Serif",
      "Tahoma",  "Times New Roman", "Trebuchet MS", "Verdana"};
  const bool usual = std::ranges::find(kUsualOrder, font.face) != std::end(kUsualOrder);
  constexpr std::uint16_t kSpace = 3, kLastOfAscii = 97;
  std::vector<std::string> letters;
  for (const std::uint16_t glyph : glyphs) {
    const bool known = glyph == kSpace || (usual && glyph > kSpace && glyph <= kLastOfAscii);
    letters.push_back(known ? utf8(glyph - kSpace + 0x20U) : kUnknownLetter);
  }
  return letters;
}

}  // namespace kestrel::engine::metafile
