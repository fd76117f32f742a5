#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "Codecs.h"

namespace kestrel::engine {

/// The whole content of a regular file. Raises RuntimeError 53, 57, 70, 75 or 7, in words.
std::vector<std::uint8_t> readFile(const std::filesystem::path& path);

/// Puts `data` in place of a file's content, or makes the file: written to a temporary file beside it,
/// flushed to the disk and renamed, so that at every moment there is the old content or the new one, whole.
/// A failure leaves the old file as it was and no temporary file. An existing file keeps its permissions; a
/// symbolic link stays and its target is replaced. Raises RuntimeError 57, 61, 70, 75 or 76, in words.
void replaceFile(const std::filesystem::path& path, Bytes data);

}  // namespace kestrel::engine
