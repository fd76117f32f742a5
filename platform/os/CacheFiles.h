#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <vector>

#include "Files.h"

/// Files that can be made again when they are lost, and that only the user may read. Nothing waits for the
/// disk.
namespace kestrel::os {

/// Reads a whole file of at most `most` bytes. Fails with `kNotAFile` for anything but a regular file, with
/// `kLinkLoop` for a symbolic link, and with `kTooLargeForDisk` for a larger file. Thread-safe.
std::optional<FileFailure> readCacheFile(const std::filesystem::path& path, std::size_t most,
                                         std::vector<std::uint8_t>& content);

/// Makes or replaces a file: the name has the old content or the new one, whole. A power cut may leave an
/// empty or partial file. A failure leaves the old file and no temporary one. Thread-safe, also between
/// processes: the last one wins.
std::optional<FileFailure> writeCacheFile(const std::filesystem::path& path,
                                          std::span<const std::uint8_t> content);

/// Whether the user may read the file, as far as its permissions say. Thread-safe.
bool isReadable(const std::filesystem::path& path);

}  // namespace kestrel::os
