#include "FileHelpers.h"

#include <filesystem>
#include <sstream>

#include "imaging/contract/UserInterface.h"

namespace kestrel::headless {

namespace fs = std::filesystem;

template <typename Operation>
bool FileHelpers::forEach(const std::string& buffer, const std::string& what, Operation operation) {
  bool allDone = true;
  std::istringstream names(buffer);
  for (std::string name; std::getline(names, name, '\0') && !name.empty();) {
    std::error_code error;
    operation(name, fs::path(files_.host(name)), error);
    if (!error) continue;
    allDone = false;
    user_.answerBox({"\"" + name + "\" could not be " + what + ".", kBoxExclamation, "Files"});
  }
  return allDone;
}

bool FileHelpers::CopyFiles(const std::string& Buffer, const std::string& Folder, std::int32_t /*Flags*/,
                            kestrel::WindowHandle /*Owner*/) {
  const fs::path folder = files_.host(Folder);
  return forEach(Buffer, "copied",
                 [&](const std::string& name, const fs::path& path, std::error_code& error) {
                   fs::copy(path, folder / GetFileName(name), fs::copy_options::recursive, error);
                 });
}

bool FileHelpers::MoveFiles(const std::string& Buffer, const std::string& Folder, std::int32_t /*Flags*/,
                            kestrel::WindowHandle /*Owner*/) {
  const fs::path folder = files_.host(Folder);
  return forEach(Buffer, "moved", [&](const std::string& name, const fs::path& path, std::error_code& error) {
    const fs::path target = folder / GetFileName(name);
    if (fs::exists(target, error)) error = std::make_error_code(std::errc::file_exists);
    if (!error) fs::rename(path, target, error);
  });
}

bool FileHelpers::DeleteFiles(const std::string& Buffer, const std::string& /*Folder*/,
                              std::int32_t /*Flags*/, kestrel::WindowHandle /*Owner*/) {
  return forEach(Buffer, "deleted", [&](const std::string&, const fs::path& path, std::error_code& error) {
    const auto removed = fs::remove_all(path, error);
    if (!error && removed == 0) error = std::make_error_code(std::errc::no_such_file_or_directory);
  });
}

}  // namespace kestrel::headless
