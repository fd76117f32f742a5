#pragma once

#include <string>

namespace kestrel::tools {

/// The content of a file; raises RuntimeError 53 if it cannot be read.
std::string readFile(const std::string& path);

/// Writes a file; raises RuntimeError 57 on failure.
void writeFile(const std::string& path, const std::string& bytes);

}  // namespace kestrel::tools
