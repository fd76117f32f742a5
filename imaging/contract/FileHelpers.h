#pragma once

#include <cstdint>
#include <string>

#include "Form.h"

namespace kestrel {

/// Flag of the file operations: what is deleted can be brought back.
inline constexpr std::int32_t kAllowUndo = 64;

/// File names taken apart, and the operations on many files at once. One per process.
///
/// The functions on names look at the text alone. Both "/" and "\" end a folder's name.
class FileHelpers {
 public:
  virtual ~FileHelpers() = default;

  /// All before the last point of the file's name, without that point: "c:\a\b.c.png" gives "c:\a\b.c", so
  /// that "_thumb." and the extension can be put behind it. A name without a point is returned whole.
  virtual std::string PathWithoutExtension(const std::string& Path) = 0;
  /// What follows the last point of the file's name, empty if there is none. `Options` is always 0.
  virtual std::string GetExtension(const std::string& Path, std::int32_t Options = 0) = 0;
  /// What follows the last separator.
  virtual std::string GetFileName(const std::string& Path) = 0;
  /// The path in its proper form: absolute, each step spelled as on the disk; a path that does not exist is
  /// returned as given.
  virtual std::string ResolvePath(const std::string& Path) = 0;
  /// The path shortened to at most `Length` characters by leaving out folders in its middle ("...").
  virtual std::string CompactPath(const std::string& Path, std::int32_t Length,
                                  const std::string& Separator) = 0;

  /// What separates the steps of a path on this system.
  virtual std::string PathSeparator() const = 0;

  /// Operations on the files of a buffer of names, each followed by a NUL. They show what they do and ask
  /// where something would be lost; what fails is told to the user, file by file. The result is whether all
  /// was done.
  virtual bool CopyFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                         Form* Owner) = 0;
  virtual bool MoveFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                         Form* Owner) = 0;
  /// `Folder` has no part in deleting.
  virtual bool DeleteFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                           Form* Owner) = 0;
};

}  // namespace kestrel
