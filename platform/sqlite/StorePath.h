#pragma once

#include <filesystem>
#include <string>

namespace kestrel::sqlite {

/// The file of the user's key store: the environment variable KESTREL_STORE, or else
/// "brindlewick/imaging.store" in the user's configuration directory (XDG_CONFIG_HOME, by default ~/.config).
/// A program with settings of its own gives its name, which is added to the file's: "imaging-NAME.store".
/// Empty if the user has no such directory.
std::filesystem::path storePath(const std::string& program = {});

/// The folder for pictures with unsaved changes: the key store's file name and ".recovery". Empty as above.
std::filesystem::path recoveryPath(const std::string& program = {});

}  // namespace kestrel::sqlite
