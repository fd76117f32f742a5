#pragma once

#include <filesystem>
#include <string>

namespace kestrel::qt {

/// The folder of the help books for `DesktopParts`, the first that exists of
/// - `help` next to the program,
/// - the program's own, `share/PROGRAM/help`, PROGRAM being its file name, next to one of the folders that
///   contain it,
/// - the shared one, `share/kestrellib2/help`, next to one of the folders that contain `code`, the program or
///   library with our code, or next to one of those that contain the program,
/// - `built`, where the build has put it; empty if it can be elsewhere.
///
/// Without any of them the one next to the program.
std::string helpFolder(const std::filesystem::path& program, const std::filesystem::path& code,
                       const std::filesystem::path& built = {});

/// The same for this code.
std::string helpFolder(const std::string& program);

}  // namespace kestrel::qt
