#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kestrel::headless {

/// How paths are written.
enum class PathFlavour {
  kSlash,      ///< as on this machine: "/home/a.png"
  kBackslash,  ///< with drives: "C:\pictures\a.png"
};

/// A drive of the backslash flavour. The first one is where relative paths begin.
struct Drive {
  char letter = 'C';
  std::int32_t type = 3;
  std::string label;
  std::string networkPath;
  bool ready = true;  ///< false answers every question with nothing, as an empty card reader does
};

/// The files that the logic sees. In the slash flavour they are those of the machine. In the backslash
/// flavour each drive is a folder, named by its letter, in a scratch folder, and names ignore case.
class FileSystem {
 public:
  FileSystem(PathFlavour flavour, std::string scratch, std::vector<Drive> drives);

  PathFlavour flavour() const { return flavour_; }
  char separator() const { return flavour_ == PathFlavour::kSlash ? '/' : '\\'; }
  const std::vector<Drive>& drives() const { return drives_; }
  /// The drive of a path or root, null in the slash flavour and for an unknown letter.
  const Drive* driveOf(const std::string& path) const;

  /// A folder that programs may write to, in the flavour's own spelling, without a separator at its end.
  std::string scratch() const;

  /// The name under which the machine knows the file.
  std::string host(const std::string& path) const;
  bool exists(const std::string& path) const;
  /// The path up to its last separator, that of a root included.
  std::string folderOf(const std::string& path) const;
  bool hasExtension(const std::string& path) const;
  /// The path made absolute, with each step spelled as on the disk; as given where there is no such file.
  std::string resolved(const std::string& path) const;

 private:
  std::string absolute(const std::string& path) const;

  PathFlavour flavour_;
  std::string scratch_;
  std::vector<Drive> drives_;
};

}  // namespace kestrel::headless
