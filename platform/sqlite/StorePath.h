#pragma once

#include <filesystem>

namespace kestrel::sqlite {

/// The file of the user's key store: the environment variable KESTREL_STORE, or else
/// "brindlewick/imaging.store" in the user's configuration directory (XDG_CONFIG_HOME, by default ~/.config).
/// Empty if the user has no such directory.
std::filesystem::path storePath();

/// The folder for pictures with unsaved changes: the key store's file name and ".recovery". Empty as above.
std::filesystem::path recoveryPath();

}  // namespace kestrel::sqlite
