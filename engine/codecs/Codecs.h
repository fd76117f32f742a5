#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine {

/// Reads a picture file. What it is, its content says, not its name.
///
/// The result is upright (a stored orientation is applied), in sRGB (a stored color profile is honored)
/// and has straight alpha. Raises RuntimeError: 53 no such file, 70 no permission to read it, 75 a folder or
/// something else that is no file, 57 a failing device, 481 no picture that can be read, 7 too large.
Decoded decodeFile(const std::filesystem::path& path);

/// As `decodeFile`, from memory.
Decoded decode(Bytes data);

/// As `decodeFile`, for a small view of the picture: where the format can give a smaller one for less work,
/// the bitmap is a half, a quarter or an eighth as large, with its longest side still at least `longestSide`
/// pixels if the picture's is. All else, the size limits included, is as for the whole picture.
Decoded decodeFileReduced(const std::filesystem::path& path, std::int32_t longestSide);

/// Writes a picture file whole or not at all: the target keeps its old content until the new one is complete
/// and on the disk. The permissions of an existing target stay; a symbolic link stays, and the file it points
/// to is replaced. `formatCode` 0 means the format that the name's extension names.
///
/// Raises RuntimeError: 5 a format that cannot be written, no format at all or a quality outside 1 to 100;
/// 61 disk full, 70 no permission, 75 a target that cannot be a file, 76 no such folder, 57 a failing device.
void encodeFile(const Bitmap& bitmap, const Metadata& metadata, std::int32_t formatCode,
                const EncodeOptions& options, const std::filesystem::path& path);

/// As `encodeFile`, to memory; `formatCode` must name a format.
std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata, std::int32_t formatCode,
                                 const EncodeOptions& options = {});

}  // namespace kestrel::engine
