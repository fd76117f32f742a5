#pragma once

#include <string>
#include <string_view>

#include "StoredLayout.h"

namespace kestrel::docking {

/// A hot key as text: the modifiers "Shift", "Ctrl" and "Alt", then a letter, a digit, "F1" to "F24", or
/// "Num+" and "Num-" for the numeric pad, joined by "+": "Ctrl+O", "Shift+S", "Alt+F4", "Num+". A key code
/// without such a name is written as its number: "Ctrl+#27".
std::string hotKeyText(const StoredHotKey& key);

/// Parses such a text, ignoring case. Raises RuntimeError 5 for any other text.
StoredHotKey hotKeyFromText(std::string_view text);

}  // namespace kestrel::docking
