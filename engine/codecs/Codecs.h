#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine {

/// Decodes a picture file. The format is detected from the content, not from the name.
///
/// The result is upright (a stored orientation is applied), in sRGB (converted from a stored color profile)
/// and has straight alpha. Raises RuntimeError: 53 file not found, 70 permission denied, 75 not a regular
/// file, 57 device error, 481 not a readable picture, 7 too large.
Decoded decodeFile(const std::filesystem::path& path);

/// As `decodeFile`, from memory.
Decoded decode(Bytes data);

/// As `decodeFile`, for thumbnails: where the format can be decoded faster at a reduced size, the bitmap is
/// reduced by 2, 4 or 8, with its longest side still at least `longestSide` pixels if the picture's is. Size
/// limits apply to the full size.
Decoded decodeFileReduced(const std::filesystem::path& path, std::int32_t longestSide);

/// Writes a picture file atomically: the target keeps its old content until the new one is complete and
/// flushed to disk. The permissions of an existing target are kept; for a symbolic link the file it points to
/// is replaced. `formatCode` 0 selects the format by the name's extension.
///
/// Raises RuntimeError: 5 unknown or read-only format, or a quality outside 1 to 100; 61 disk full, 70
/// permission denied, 75 target is not a regular file, 76 folder not found, 57 device error.
void encodeFile(const Bitmap& bitmap, const Metadata& metadata, std::int32_t formatCode,
                const EncodeOptions& options, const std::filesystem::path& path);

/// As `encodeFile`, to memory; `formatCode` must not be 0.
std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata, std::int32_t formatCode,
                                 const EncodeOptions& options = {});

}  // namespace kestrel::engine
