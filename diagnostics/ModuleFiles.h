#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kestrel::qdk {

/// The name of a file without its folders.
std::string_view FileName(std::string_view path);

/// The module that a source file belongs to: its name up to the first point.
std::string ModuleName(std::string_view path);

/// The number that a report gives a source line: five times the line, plus 50,000 for each further file of a
/// module.
std::int32_t LineNumber(std::string_view path, std::int32_t line);

}  // namespace kestrel::qdk
