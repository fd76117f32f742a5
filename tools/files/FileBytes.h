#pragma once

#include <string>

namespace kestrel::tools {

/// The whole of a file; raises RuntimeError 53 if it cannot be read.
std::string readFile(const std::string& path);

/// Writes the whole of a file; raises RuntimeError 57 if that fails.
void writeFile(const std::string& path, const std::string& bytes);

}  // namespace kestrel::tools
