#include "StorePath.h"

#include <cstdlib>

namespace kestrel::sqlite {
namespace {

std::filesystem::path fromEnvironment(const char* variable) {
  const char* const value = std::getenv(variable);
  return value == nullptr ? "" : value;
}

std::filesystem::path configurationFolder() {
  const std::filesystem::path configured = fromEnvironment("XDG_CONFIG_HOME");
  if (configured.is_absolute()) return configured;  // XDG: ignore relative paths
  const std::filesystem::path home = fromEnvironment("HOME");
  return home.empty() ? home : home / ".config";
}

std::filesystem::path sharedPath() {
  const std::filesystem::path named = fromEnvironment("KESTREL_STORE");
  if (!named.empty()) return named;
  const std::filesystem::path folder = configurationFolder();
  return folder.empty() ? folder : folder / "brindlewick" / "imaging.store";
}

}  // namespace

std::filesystem::path storePath(const std::string& program) {
  std::filesystem::path path = sharedPath();
  if (path.empty() || program.empty()) return path;
  std::filesystem::path name = path.stem();
  name += "-" + program;
  name += path.extension();
  return path.replace_filename(name);
}

std::filesystem::path recoveryPath(const std::string& program) {
  std::filesystem::path path = storePath(program);
  if (!path.empty()) path += ".recovery";
  return path;
}

}  // namespace kestrel::sqlite
