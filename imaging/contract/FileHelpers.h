#pragma once

#include <cstdint>
#include <string>

#include "Types.h"

namespace kestrel {

/// Flag of the file operations: deleted files can be restored.
inline constexpr std::int32_t kAllowUndo = 64;

/// File name parsing, and operations on several files at once. One per process.
///
/// The functions on names use the text alone. Both "/" and "\" separate folders.
class FileHelpers {
 public:
  virtual ~FileHelpers() = default;

  /// The path before the last point of the file's name: "c:\a\b.c.png" gives "c:\a\b.c", so that "_thumb."
  /// and the extension can be appended. A name without a point is returned whole.
  virtual std::string PathWithoutExtension(const std::string& Path) = 0;
  /// The text after the last point of the file's name, empty if there is none. `Options` is always 0.
  virtual std::string GetExtension(const std::string& Path, std::int32_t Options = 0) = 0;
  /// The text after the last separator.
  virtual std::string GetFileName(const std::string& Path) = 0;
  /// The canonical path: absolute, each step spelled as on the disk. A path that does not exist is returned
  /// as given.
  virtual std::string ResolvePath(const std::string& Path) = 0;
  /// The path shortened to at most `Length` characters by leaving out folders in its middle ("...").
  virtual std::string CompactPath(const std::string& Path, std::int32_t Length,
                                  const std::string& Separator) = 0;

  /// The separator of this system's paths.
  virtual std::string PathSeparator() const = 0;

  /// Operations on the files of a buffer of names, each terminated by a NUL. They show their progress, ask
  /// before data is lost, and report each failure to the user, file by file. `Owner` is the window that their
  /// boxes belong to, 0 for the active one. True if all files were processed.
  virtual bool CopyFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                         WindowHandle Owner) = 0;
  virtual bool MoveFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                         WindowHandle Owner) = 0;
  /// `Folder` is ignored.
  virtual bool DeleteFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                           WindowHandle Owner) = 0;
};

}  // namespace kestrel
