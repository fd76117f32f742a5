#include "platform/os/OpenFolder.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "Descriptor.h"

namespace kestrel::os {

OpenFolder::~OpenFolder() {
  if (handle_ >= 0) ::close(static_cast<int>(handle_));
}

std::optional<FileFailure> OpenFolder::open(const EntryPath& folder) {
  handle_ =
      ::openat(descriptorOf(folder), folder.path.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  return handle_ >= 0 ? std::optional<FileFailure>() : failureOf(errno);
}

}  // namespace kestrel::os
