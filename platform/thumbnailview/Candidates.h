#pragma once

#include <filesystem>

namespace kestrel::thumbnails {

/// Whether a file of this name may be a picture: it has an extension of a known format, in any case, and is
/// not hidden. Which format it has is seen from its content when it is decoded.
bool isCandidate(const std::filesystem::path& name);

}  // namespace kestrel::thumbnails
