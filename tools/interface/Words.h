#pragma once

#include <string>
#include <string_view>

namespace kestrel::tools {

/// Appends `part`, after `separator` unless it is the first.
void append(std::string& text, std::string_view separator, std::string_view part);

/// In double quotes, with backslashes before quotes and backslashes, as in C and its relatives.
std::string quoted(std::string_view text);

/// The shortest decimal number that gives the value again.
std::string numberText(double value);

/// The words of a text in lines that begin with `prefix` and have at most `width` characters, each with a
/// line feed at its end. A longer word has a line of its own.
std::string wrapped(std::string_view text, std::string_view prefix, std::size_t width);

}  // namespace kestrel::tools
