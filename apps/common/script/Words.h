#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "imaging/contract/Types.h"

namespace kestrel::app {

using Words = std::vector<std::string>;

/// The words of a line, which blanks separate. Blanks between double quotes belong to the word; the quotes do
/// not. Raises RuntimeError 5 for a quote without its counterpart.
Words wordsOf(std::string_view line);

/// The integer that the word is as a whole. Raises RuntimeError 5 for any other word.
std::int32_t numberOf(const std::string& word);

/// The color of "RRGGBB", six hexadecimal digits, or -1 for "none". Raises RuntimeError 5 for any other word.
OLE_COLOR colorOf(const std::string& word);

/// Raises RuntimeError 5 with that sentence.
[[noreturn]] void refuse(const std::string& sentence);

}  // namespace kestrel::app
