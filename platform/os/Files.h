#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>

/// Files as the operating system has them. Failures are returned, without sentences for users.
namespace kestrel::os {

enum class FileProblem {
  kMissing,
  kFolderMissing,
  kDenied,
  kReadOnlyDisk,
  kDiskFull,
  kQuota,
  kTooLargeForDisk,
  kDevice,
  kMemory,
  kNameTooLong,
  kBadName,  ///< the file system does not have such names
  kLinkLoop,
  kNotAFolder,
  kIsAFolder,
  kNotAFile,  ///< a device, a pipe or a socket
  kInUse,     ///< another process or object owns it
  kCanceled,
  kExists,     ///< there is another entry with that name
  kOtherDisk,  ///< not possible across file systems
  kNotEmpty,   ///< a folder with entries
  kChanged,    ///< somebody changed it during the work
  kOther,
};

struct FileFailure {
  FileProblem problem;
  int code = 0;  ///< the system's own, for `std::system_category`
};

/// A regular file that is open for reading.
class InputFile {
 public:
  InputFile() = default;
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile();

  /// Opens the file; never waits for the other end of a pipe.
  std::optional<FileFailure> open(const std::filesystem::path& path);

  /// Bytes of the open file.
  std::size_t size() const { return size_; }

  /// Reads up to as many bytes as `target` has, fewer where the file ends. `filled` is their number.
  std::optional<FileFailure> read(std::span<std::uint8_t> target, std::size_t& filled);

 private:
  std::intptr_t handle_ = -1;
  std::size_t size_ = 0;
};

/// Puts `data` in place of a file's content, or makes the file. The data is written to a temporary file in
/// the same folder, flushed to the disk and renamed: at every moment the name has the old content or the new
/// one, whole. The temporary file has no name before it is complete, where the file system can do that.
/// Temporary files that killed processes left in the folder are removed.
///
/// An existing file keeps its permissions and, as far as the system allows, its owner; of a symbolic link the
/// target is replaced. A failure leaves the old file as it was and no temporary file.
std::optional<FileFailure> replaceFile(const std::filesystem::path& path, std::span<const std::uint8_t> data);

}  // namespace kestrel::os
