#pragma once

#include <filesystem>

namespace kestrel::os {

/// The program or shared library that contains this code, as an absolute path; empty if it cannot be found,
/// such as for a program that was started by a relative path from another folder.
std::filesystem::path codeFile();

}  // namespace kestrel::os
