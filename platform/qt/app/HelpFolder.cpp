#include "HelpFolder.h"

#include <utility>

#include "platform/os/CodeFile.h"
#include "platform/os/Paths.h"

namespace kestrel::qt {

namespace fs = std::filesystem;

namespace {

/// From /usr/lib/x86_64-linux-gnu to /usr, with one to spare.
constexpr int kLevels = 4;

/// The help in the shared data of `owner`, next to one of the folders that contain the file. Empty if there
/// is none.
fs::path sharedFolderAbove(const fs::path& file, const fs::path& owner) {
  std::error_code error;
  fs::path folder = file.parent_path();
  for (int level = 0; level < kLevels && folder.has_relative_path(); ++level) {
    fs::path found = folder / "share" / owner / "help";
    if (fs::is_directory(found, error)) return found;
    folder = folder.parent_path();
  }
  return {};
}

}  // namespace

std::string helpFolder(const fs::path& program, const fs::path& code, const fs::path& built) {
  std::error_code error;
  const fs::path own = program.parent_path() / "help";
  if (fs::is_directory(own, error)) return os::textOf(own);
  const fs::path shared = "kestrellib2";
  const std::pair<fs::path, fs::path> places[] = {
      {program, program.filename()}, {code, shared}, {program, shared}};
  for (const auto& [file, owner] : places) {
    const fs::path found = sharedFolderAbove(file, owner);
    if (!found.empty()) return os::textOf(found);
  }
  if (fs::is_directory(built, error)) return os::textOf(built);
  return os::textOf(own);
}

std::string helpFolder(const std::string& program) {
#ifdef KESTREL_BUILT_HELP
  const fs::path built = os::pathOf(KESTREL_BUILT_HELP);
#else
  const fs::path built;
#endif
  return helpFolder(os::pathOf(program), os::codeFile(), built);
}

}  // namespace kestrel::qt
