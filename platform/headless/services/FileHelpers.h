#pragma once

#include <cstdint>
#include <string>

#include "../FileSystem.h"
#include "../User.h"
#include "platform/store/FileNames.h"

namespace kestrel::headless {

/// File operations on the simulated file system, executed at once. A failed file is reported in a message
/// box; the remaining files are processed.
class FileHelpers final : public store::FileNames {
 public:
  FileHelpers(const FileSystem& files, User& user)
      : FileNames(std::string(1, files.separator())), files_(files), user_(user) {}

  std::string ResolvePath(const std::string& Path) override { return files_.resolved(Path); }

  bool CopyFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                 kestrel::WindowHandle Owner) override;
  bool MoveFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                 kestrel::WindowHandle Owner) override;
  bool DeleteFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                   kestrel::WindowHandle Owner) override;

 private:
  template <typename Operation>
  bool forEach(const std::string& buffer, const std::string& what, Operation operation);

  const FileSystem& files_;
  User& user_;
};

}  // namespace kestrel::headless
