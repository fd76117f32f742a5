#pragma once

#include <cstdint>
#include <string>

#include "../FileSystem.h"
#include "../User.h"
#include "platform/store/FileNames.h"

namespace kestrel::transfer {
enum class Operation;
}

namespace kestrel::headless {

/// File operations on the simulated file system, executed at once. The user confirms a deletion with
/// `kAnswerYes`, answers a question by one of the numbers in FileAnswers.h, and closes the box that says what
/// was not done with `kAnswerOK`. The trash is the folder ".trash" in the scratch folder.
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
  bool run(transfer::Operation operation, const std::string& buffer, const std::string& folder);

  const FileSystem& files_;
  User& user_;
};

}  // namespace kestrel::headless
