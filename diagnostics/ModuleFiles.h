#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kestrel::qdk {

/// The name of a file without its folders.
std::string_view FileName(std::string_view path);

/// The module that a source file belongs to: its name up to the first point.
std::string ModuleName(std::string_view path);

/// The number that stands for a source line in its module: five times the line, and, where a module has
/// several files, 50,000 more for each further one.
std::int32_t LineNumber(std::string_view path, std::int32_t line);

}  // namespace kestrel::qdk
