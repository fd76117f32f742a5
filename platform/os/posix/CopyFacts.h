#pragma once

#include <sys/stat.h>

namespace kestrel::os {

/// Gives an open file or folder the owner and extended attributes of another one, as far as the system
/// allows, and then its permissions and times, of which `status` is the state to copy. False with errno set
/// if permissions or times cannot be set, unless the file system has none.
bool copyFacts(int from, const struct stat& status, int to);

}  // namespace kestrel::os
