#include "FailureText.h"

#include <system_error>

#include "Paths.h"

namespace kestrel::os {

namespace fs = std::filesystem;

std::string reasonOf(const FileFailure& failure, const fs::path& path) {
  switch (failure.problem) {
    case FileProblem::kMissing:
      return "it does not exist";
    case FileProblem::kFolderMissing:
      return "the folder \"" + textOf(path.has_parent_path() ? path.parent_path() : fs::path(".")) +
             "\" does not exist";
    case FileProblem::kDenied:
      return "permission is denied";
    case FileProblem::kReadOnlyDisk:
      return "the disk is read-only";
    case FileProblem::kDiskFull:
      return "the disk is full";
    case FileProblem::kQuota:
      return "the disk quota of this user is exceeded";
    case FileProblem::kTooLargeForDisk:
      return "it is too large for the disk";
    case FileProblem::kDevice:
      return "the device failed";
    case FileProblem::kNameTooLong:
      return "its name is too long";
    case FileProblem::kBadName:
      return "the disk does not allow its name";
    case FileProblem::kLinkLoop:
      return "its symbolic links form a loop";
    case FileProblem::kNotAFolder:
      return "part of its path is not a folder";
    case FileProblem::kIsAFolder:
      return "it is a folder";
    case FileProblem::kNotAFile:
      return "it is a device or a pipe";
    case FileProblem::kInUse:
      return "another program or window is using it";
    case FileProblem::kExists:
      return "there is another file with that name";
    case FileProblem::kOtherDisk:
      return "it is on another disk";
    case FileProblem::kNotEmpty:
      return "the folder is not empty";
    case FileProblem::kChanged:
      return "another program changed it meanwhile";
    default:
      return std::system_category().message(failure.code);
  }
}

}  // namespace kestrel::os
