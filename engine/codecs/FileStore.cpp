#include "FileStore.h"

#include <string>

#include "base/RuntimeError.h"
#include "platform/os/FailureText.h"
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

RuntimeError fileError(const FileFailure& failure, const fs::path& path, const char* verb) {
  return RuntimeError(errorNumber(failure.problem),
                      "The file " + quoted(path) + " " + verb + ": " + os::reasonOf(failure, path) + ".");
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
