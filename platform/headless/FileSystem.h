#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kestrel::headless {

/// The syntax of paths.
enum class PathStyle {
  kSlash,      ///< as on this machine: "/home/a.png"
  kBackslash,  ///< with drives: "C:\pictures\a.png"
};

/// A drive of the backslash style. Relative paths start at the first one.
struct Drive {
  char letter = 'C';
  std::int32_t type = 3;
  std::string label;
  std::string networkPath;
  bool ready = true;  ///< false: queries return nothing, as for an empty card reader
};

/// The file system that the logic sees. In the slash style it is the machine's. In the backslash style each
/// drive is a folder, named by its letter, in a scratch folder, and names ignore case.
class FileSystem {
 public:
  FileSystem(PathStyle pathStyle, std::string scratch, std::vector<Drive> drives);

  PathStyle pathStyle() const { return pathStyle_; }
  char separator() const { return pathStyle_ == PathStyle::kSlash ? '/' : '\\'; }
  const std::vector<Drive>& drives() const { return drives_; }
  /// The user plugs drives in and out.
  void drives(std::vector<Drive> value);
  /// The drive of a path or root, null in the slash style and for an unknown letter.
  const Drive* driveOf(const std::string& path) const;

  /// A writable folder, in the path style, without a trailing separator.
  std::string scratch() const;

  /// The name of the file on the machine.
  std::string host(const std::string& path) const;
  bool exists(const std::string& path) const;
  /// The path up to its last separator, which is included for a root.
  std::string folderOf(const std::string& path) const;
  bool hasExtension(const std::string& path) const;
  /// The absolute path, each step spelled as on the disk; returned as given if there is no such file.
  std::string resolved(const std::string& path) const;

 private:
  std::string absolute(const std::string& path) const;

  PathStyle pathStyle_;
  std::string scratch_;
  std::vector<Drive> drives_;
};

}  // namespace kestrel::headless
