#include "MetafileGlyphs.h"

#include <iconv.h>

#include <algorithm>
#include <array>

namespace kestrel::engine::metafile {
namespace {

std::string utf8(std::uint32_t code) {
  const auto byte = [](std::uint32_t value) { return static_cast<char>(value); };
  const auto tail = [&](int shift) { return byte(0x80 | (code >> shift & 0x3F)); };
  if (code < 0x20) return " ";
  if (code < 0x80) return {byte(code)};
  if (code < 0x800) return {byte(0xC0 | code >> 6), tail(0)};
  if (code < 0x10000) return {byte(0xE0 | code >> 12), tail(6), tail(0)};
  return {byte(0xF0 | code >> 18), tail(12), tail(6), tail(0)};
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

std::string signLetter(SignFace face, std::uint32_t code) {
  const std::uint16_t sign = signOf(face, static_cast<std::uint8_t>(code & 0xFF));
  return sign != 0 ? utf8(sign) : kUnknownLetter;
}

std::vector<std::string> lettersOf(Bytes text, const Font& font) {
  std::vector<std::string> letters;
  const SignFace signs = signFaceOf(font.face, font.charset);
  if (signs != SignFace::none) {
    for (const std::uint8_t byte : text) letters.push_back(signLetter(signs, byte));
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
  const SignFace signs = signFaceOf(font.face, font.charset);
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
    letters.push_back(signs != SignFace::none && isSign(text[i]) ? signLetter(signs, code) : utf8(code));
    if (pair) letters.emplace_back();
  }
  return letters;
}

std::vector<std::string> lettersOfGlyphs(const std::vector<std::uint16_t>& glyphs, const Font& font) {
  const bool usual = isUsualTextFace(font.face);
  constexpr std::uint16_t kSpace = 3, kLastOfAscii = 97;
  std::vector<std::string> letters;
  for (const std::uint16_t glyph : glyphs) {
    const bool known = glyph == kSpace || (usual && glyph > kSpace && glyph <= kLastOfAscii);
    letters.push_back(known ? utf8(glyph - kSpace + 0x20U) : kUnknownLetter);
  }
  return letters;
}

}  // namespace kestrel::engine::metafile
