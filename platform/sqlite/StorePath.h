#pragma once

#include <filesystem>

namespace kestrel::sqlite {

/// The file of the user's key store: the environment variable KESTREL_STORE, or else
/// "brindlewick/imaging.store" in the user's configuration directory (XDG_CONFIG_HOME, by default ~/.config).
/// Empty if the user has no such directory.
std::filesystem::path storePath();

}  // namespace kestrel::sqlite
