#include "HotKeyText.h"

#include <charconv>
#include <utility>

#include "base/Numbers.h"
#include "base/RuntimeError.h"
#include "imaging/contract/Types.h"

namespace kestrel::docking {

namespace {

constexpr std::pair<std::int32_t, std::string_view> kModifiers[] = {
    {kCtrlMask, "Ctrl+"}, {kAltMask, "Alt+"}, {kShiftMask, "Shift+"}};
constexpr std::pair<std::int32_t, std::string_view> kNumericKeys[] = {{107, "Num+"}, {109, "Num-"}};
constexpr std::int32_t kF1 = 112;
constexpr std::int32_t kF24 = 135;

bool isLetterOrDigit(std::int32_t code) {
  return (code >= 'A' && code <= 'Z') || (code >= '0' && code <= '9');
}

/// `text` as a number from `least` to `most`; 0 for any other text.
std::int32_t numberIn(std::string_view text, std::int32_t least, std::int32_t most) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole && number >= least && number <= most ? number : 0;
}

std::int32_t keyCodeOf(const std::string& lower) {
  for (const auto& [code, name] : kNumericKeys) {
    if (lower == LowerCase(name)) return code;
  }
  if (lower.size() == 1 && lower[0] >= 'a' && lower[0] <= 'z') return lower[0] - 'a' + 'A';
  if (lower.size() == 1 && isLetterOrDigit(lower[0])) return lower[0];
  const std::string_view rest = std::string_view(lower).substr(lower.empty() ? 0 : 1);
  if (lower.starts_with('#')) return numberIn(rest, 1, 255);
  const std::int32_t function = lower.starts_with('f') ? numberIn(rest, 1, kF24 - kF1 + 1) : 0;
  return function == 0 ? 0 : kF1 + function - 1;
}

}  // namespace

std::string hotKeyText(const StoredHotKey& key) {
  std::string text;
  for (const auto& [mask, name] : kModifiers) {
    if (key.shift & mask) text += name;
  }
  for (const auto& [code, name] : kNumericKeys) {
    if (key.keyCode == code) return text.append(name);
  }
  if (isLetterOrDigit(key.keyCode)) return text + static_cast<char>(key.keyCode);
  if (key.keyCode >= kF1 && key.keyCode <= kF24) return text + 'F' + std::to_string(key.keyCode - kF1 + 1);
  return text + '#' + std::to_string(key.keyCode);
}

StoredHotKey hotKeyFromText(std::string_view text) {
  StoredHotKey key;
  std::string rest = LowerCase(text);
  for (bool taken = true; taken;) {
    taken = false;
    for (const auto& [mask, name] : kModifiers) {
      if ((key.shift & mask) || !rest.starts_with(LowerCase(name))) continue;
      key.shift |= mask;
      rest.erase(0, name.size());
      taken = true;
    }
  }
  key.keyCode = keyCodeOf(rest);
  if (key.keyCode == 0)
    throw RuntimeError(err::kInvalidCall, "\"" + std::string(text) + "\" is not a hot key.");
  return key;
}

}  // namespace kestrel::docking
