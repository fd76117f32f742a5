#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <utility>

#include "Codecs.h"
#include "base/RuntimeError.h"
#include "engine/pixels/Memory.h"

namespace kestrel::os {
struct FileFailure;
}

namespace kestrel::engine {

/// The error for a user: "The file "..." `verb`: reason."
RuntimeError fileError(const os::FileFailure& failure, const std::filesystem::path& path, const char* verb);

/// Content of a file, in a `Memory` block: photographs are often read one after the other, and freed blocks
/// are reused.
class FileContent {
 public:
  explicit FileContent(Memory memory, std::size_t size) : memory_(std::move(memory)), size_(size) {}

  Bytes bytes() const { return {memory_.data(), size_}; }

 private:
  Memory memory_;
  std::size_t size_;
};

/// Reads a regular file. Raises RuntimeError 53, 57, 70, 75 or 7 with a text for the user.
FileContent readFile(const std::filesystem::path& path);

/// Replaces or creates a file atomically: writes a temporary file in the same folder, flushes it to disk and
/// renames it. At any moment either the old or the new content is there, complete. After a failure the old
/// file is unchanged and the temporary file removed. An existing file keeps its permissions; for a symbolic
/// link its target is replaced. Raises RuntimeError 57, 61, 70, 75 or 76 with a text for the user.
void replaceFile(const std::filesystem::path& path, Bytes data);

}  // namespace kestrel::engine
