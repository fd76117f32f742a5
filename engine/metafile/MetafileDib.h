#pragma once

#include <cstdint>
#include <vector>

#include "MetafileCanvas.h"
#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::metafile {

/// Palette type of a device-independent bitmap.
enum class DibColors : std::uint32_t {
  rgb = 0,
  palette = 1,  ///< indices into the current palette, which is unknown: drawn as grays
  none = 2      ///< no palette; as `palette`
};

/// Decodes a device-independent bitmap: an information header with palette and pixels. Empty if invalid.
Bitmap decodeDib(Bytes dib, DibColors colors = DibColors::rgb);

/// As `decodeDib`, from separate header and pixels.
Bitmap decodeDib(Bytes header, Bytes pixels, DibColors colors = DibColors::rgb);

/// As `decodeDib`, for 32-bit pixels with premultiplied alpha.
Bitmap decodeDibWithAlpha(Bytes header, Bytes pixels);

/// Source rectangle of an unscaled copy. Along an axis where it is larger than the bitmap, it is the whole
/// bitmap, which is then stretched.
Rect withinBitmap(const Rect& part, const Bitmap& bitmap);

/// Whether the bitmap's rows are stored from top to bottom.
bool isTopDown(Bytes header);

/// Decodes a device-dependent bitmap: width, height, stride, planes, bits per pixel, rows from top to bottom.
/// 1-bit bitmaps are black and white, 4 and 8-bit ones use the system palette, 16-bit ones have 5 bits per
/// channel. Only the first and last ten entries of an 8-bit system palette are standard; the others are taken
/// as RGB with 3, 3 and 2 bits. Empty for other depths or several planes.
Bitmap decodeDeviceBitmap(Bytes bitmap);

/// Encodes a 24-bit device-independent bitmap, composited over white.
std::vector<std::uint8_t> encodeDib(const Bitmap& bitmap);

}  // namespace kestrel::engine::metafile
