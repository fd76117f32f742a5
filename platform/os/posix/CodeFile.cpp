#include "platform/os/CodeFile.h"

#include <dlfcn.h>

#include <system_error>

namespace kestrel::os {

std::filesystem::path codeFile() {
  Dl_info found{};
  if (dladdr(reinterpret_cast<const void*>(&codeFile), &found) == 0 || found.dli_fname == nullptr) return {};
  std::error_code error;
  return std::filesystem::canonical(found.dli_fname, error);
}

}  // namespace kestrel::os
