#pragma once

#include <filesystem>

namespace kestrel::os {

/// Gives an entry another name in the same file system, which must be free. False with errno set: EEXIST if
/// it is not, EXDEV for another file system.
bool renameToNew(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace kestrel::os
