#pragma once

#include <optional>

#include "engine/pixels/Bitmap.h"

struct jpeg_decompress_struct;

namespace kestrel::engine::jpeg {

/// The picture at an eighth of its size, rounded up, from the average of each block of 8 x 8 alone.
///
/// `info` has read the header and stands at the first scan; it is left as it is. Wants a sequential Huffman
/// file with one scan of gray or YCbCr, and gives nothing for any other, nor for one with the least fault:
/// then the library's own way is to be taken. It differs from that only where color is stored coarser than
/// light: there it repeats the averages.
///
/// The library decodes each coefficient of each block before it leaves all but the first away. Skipping them,
/// several with one look into a table, takes a third of the time.
std::optional<Bitmap> readDcThumbnail(const jpeg_decompress_struct& info);

}  // namespace kestrel::engine::jpeg
