#pragma once

#include "platform/os/OpenFolder.h"

namespace kestrel::os {

/// Gives an entry another name in the same file system, in place of an existing entry. False with errno set.
bool rename(const EntryPath& from, const EntryPath& to);

/// The same with a name that must be free. False with errno set: EEXIST if it is not, EXDEV for another file
/// system.
bool renameToNew(const EntryPath& from, const EntryPath& to);

}  // namespace kestrel::os
