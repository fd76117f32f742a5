#pragma once

#include <cstddef>
#include <filesystem>
#include <utility>

#include "Codecs.h"
#include "engine/pixels/Memory.h"

namespace kestrel::engine {

/// The content of a file. Photographs are read one after the other, so it stands in memory that is kept for
/// the next, as pixels do.
class FileContent {
 public:
  explicit FileContent(Memory memory, std::size_t size) : memory_(std::move(memory)), size_(size) {}

  Bytes bytes() const { return {memory_.data(), size_}; }

 private:
  Memory memory_;
  std::size_t size_;
};

/// The whole content of a regular file. Raises RuntimeError 53, 57, 70, 75 or 7, in words.
FileContent readFile(const std::filesystem::path& path);

/// Puts `data` in place of a file's content, or makes the file: written to a temporary file beside it,
/// flushed to the disk and renamed, so that at every moment there is the old content or the new one, whole.
/// A failure leaves the old file as it was and no temporary file. An existing file keeps its permissions; a
/// symbolic link stays and its target is replaced. Raises RuntimeError 57, 61, 70, 75 or 76, in words.
void replaceFile(const std::filesystem::path& path, Bytes data);

}  // namespace kestrel::engine
