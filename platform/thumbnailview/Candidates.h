#pragma once

#include <filesystem>

namespace kestrel::thumbnails {

/// Whether a file of this name may be a picture: it has an extension of a known format, in any case, and is
/// not hidden. Which format it has is seen from its content when it is decoded, so a picture with the
/// extension of another format is shown.
///
/// A picture without an extension, or with one of no picture format, is not a candidate: its content would
/// have to be read to know, that of each other file in the folder too, which takes long on slow and remote
/// disks.
bool isCandidate(const std::filesystem::path& name);

}  // namespace kestrel::thumbnails
