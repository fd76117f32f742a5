#pragma once

#include <filesystem>
#include <string>

namespace kestrel::transfer {

/// The path with " (number)" before the extension, as "name (2).jpg". The name is cut where it would be
/// longer than file systems allow, with `reserved` more bytes to be appended.
std::filesystem::path numberedName(const std::filesystem::path& path, int number, std::size_t reserved = 0);

/// The name without its end, so that it fits with `reserved` more bytes.
std::filesystem::path fittingName(const std::filesystem::path& path, std::size_t reserved);

}  // namespace kestrel::transfer
