#pragma once

#include <filesystem>
#include <string>

#include "Files.h"

namespace kestrel::os {

/// Why the work on that file failed, for users: a clause without capital and period, as "the disk is full".
std::string reasonOf(const FileFailure& failure, const std::filesystem::path& path);

}  // namespace kestrel::os
