#include "WideText.h"

#include <cstdint>

#include "ByteOrder.h"
#include "TagStream.h"
#include "base/RuntimeError.h"

namespace kestrel::docking {

namespace {

constexpr char32_t kHighSurrogate = 0xD800;
constexpr char32_t kLowSurrogate = 0xDC00;
constexpr char32_t kAfterSurrogates = 0xE000;
constexpr char32_t kFirstBeyondPlane0 = 0x10000;

void appendUtf8(std::string& text, char32_t point) {
  const auto trail = [&](int shift) { text += static_cast<char>(0x80 | (point >> shift & 0x3F)); };
  if (point < 0x80) {
    text += static_cast<char>(point);
  } else if (point < 0x800) {
    text += static_cast<char>(0xC0 | point >> 6);
    trail(0);
  } else if (point < kFirstBeyondPlane0) {
    text += static_cast<char>(0xE0 | point >> 12);
    trail(6);
    trail(0);
  } else {
    text += static_cast<char>(0xF0 | point >> 18);
    trail(12);
    trail(6);
    trail(0);
  }
}

char32_t takeUtf8(std::string_view text, std::size_t& position) {
  const auto lead = static_cast<unsigned char>(text[position++]);
  if (lead < 0x80) return lead;
  const std::size_t trailing = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  constexpr char32_t kSmallest[] = {0, 0x80, 0x800, kFirstBeyondPlane0};
  char32_t point = lead & (0x3F >> trailing);
  bool valid = lead >= 0xC0 && lead < 0xF8 && trailing <= text.size() - position;
  for (std::size_t i = 0; valid && i < trailing; ++i) {
    const auto next = static_cast<unsigned char>(text[position++]);
    valid = (next & 0xC0) == 0x80;
    point = point << 6 | (next & 0x3F);
  }
  valid = valid && point >= kSmallest[trailing] && point <= 0x10FFFF &&
          !(point >= kHighSurrogate && point < kAfterSurrogates);
  if (!valid) throw RuntimeError(err::kInvalidCall, "A text of the layout is not UTF-8.");
  return point;
}

}  // namespace

std::vector<std::byte> wideFromUtf8(std::string_view text) {
  std::vector<std::byte> wide;
  const auto append = [&](char32_t unit) { appendLittle(wide, static_cast<std::uint16_t>(unit)); };
  for (std::size_t position = 0; position < text.size();) {
    const char32_t point = takeUtf8(text, position);
    if (point < kFirstBeyondPlane0) {
      append(point);
    } else {
      append(kHighSurrogate + ((point - kFirstBeyondPlane0) >> 10));
      append(kLowSurrogate + ((point - kFirstBeyondPlane0) & 0x3FF));
    }
  }
  append(0);
  return wide;
}

std::string utf8FromWide(std::span<const std::byte> wide) {
  if (wide.size() < 2 || wide.size() % 2 != 0) refuseLayout("a text has an invalid length");
  const auto unit = [&](std::size_t i) -> char32_t { return loadLittle<std::uint16_t>(wide.subspan(2 * i)); };
  const std::size_t length = wide.size() / 2 - 1;
  if (unit(length) != 0) refuseLayout("a text is not terminated");
  std::string text;
  for (std::size_t i = 0; i < length; ++i) {
    char32_t point = unit(i);
    if (point == 0) refuseLayout("a text contains a NUL");
    if (point >= kHighSurrogate && point < kAfterSurrogates) {
      const char32_t low = i + 1 < length ? unit(++i) : 0;
      if (point >= kLowSurrogate || low < kLowSurrogate || low >= kAfterSurrogates) {
        refuseLayout("a text is not UTF-16");
      }
      point = kFirstBeyondPlane0 + ((point - kHighSurrogate) << 10) + (low - kLowSurrogate);
    }
    appendUtf8(text, point);
  }
  return text;
}

}  // namespace kestrel::docking
