#include "FileStore.h"

#include <string>
#include <system_error>

#include "base/RuntimeError.h"
#include "platform/os/Files.h"
#include "platform/os/Paths.h"

namespace kestrel::engine {
namespace {

namespace fs = std::filesystem;
using os::FileFailure;
using os::FileProblem;

std::int32_t errorNumber(FileProblem problem) {
  switch (problem) {
    case FileProblem::kMissing:
      return err::kFileNotFound;
    case FileProblem::kFolderMissing:
      return err::kPathNotFound;
    case FileProblem::kDenied:
    case FileProblem::kReadOnlyDisk:
      return err::kPermissionDenied;
    case FileProblem::kDiskFull:
    case FileProblem::kQuota:
    case FileProblem::kTooLargeForDisk:
      return err::kDiskFull;
    case FileProblem::kDevice:
      return err::kDeviceIO;
    case FileProblem::kMemory:
      return err::kOutOfMemory;
    default:
      return err::kPathFileAccess;
  }
}

std::string quoted(const fs::path& path) { return "\"" + os::textOf(path) + "\""; }

}  // namespace

std::string reasonOf(const FileFailure& failure, const fs::path& path) {
  switch (failure.problem) {
    case FileProblem::kMissing:
      return "it does not exist";
    case FileProblem::kFolderMissing:
      return "the folder " + quoted(path.has_parent_path() ? path.parent_path() : fs::path(".")) +
             " does not exist";
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
    default:
      return std::system_category().message(failure.code);
  }
}

RuntimeError fileError(const FileFailure& failure, const fs::path& path, const char* verb) {
  return RuntimeError(errorNumber(failure.problem),
                      "The file " + quoted(path) + " " + verb + ": " + reasonOf(failure, path) + ".");
}

FileContent readFile(const fs::path& path) {
  constexpr char kVerb[] = "cannot be read";
  os::InputFile file;
  if (const auto failure = file.open(path)) throw fileError(*failure, path, kVerb);
  if (file.size() > machineMemory() / 4) {
    throw RuntimeError(err::kOutOfMemory, "The file " + quoted(path) + " " + kVerb +
                                              ": it is larger than a quarter of this machine's memory.");
  }
  Memory memory(file.size());
  std::size_t filled = 0;
  if (const auto failure = file.read({memory.data(), file.size()}, filled))
    throw fileError(*failure, path, kVerb);
  return FileContent(std::move(memory), filled);
}

void replaceFile(const fs::path& path, Bytes data) {
  if (const auto failure = os::replaceFile(path, data)) throw fileError(*failure, path, "cannot be written");
}

}  // namespace kestrel::engine
