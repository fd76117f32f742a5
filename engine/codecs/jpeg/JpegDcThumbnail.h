#pragma once

#include <optional>

#include "engine/pixels/Bitmap.h"

struct jpeg_decompress_struct;

namespace kestrel::engine::jpeg {

/// Decodes the picture at 1/8 scale, sides rounded up, from the DC coefficients of the 8 x 8 blocks alone.
///
/// `info` must have read the header, up to the first scan; it is not changed. Supports sequential
/// Huffman-coded files with one interleaved scan in gray or YCbCr. Returns nothing for other files and after
/// any decode error: the caller then uses the library. The result differs from the library's only with
/// subsampled chroma, which is upsampled by repetition.
///
/// The library decodes all coefficients of a block before it discards the AC coefficients. Skipping several
/// of them per table lookup takes a third of the time.
std::optional<Bitmap> readDcThumbnail(const jpeg_decompress_struct& info);

}  // namespace kestrel::engine::jpeg
