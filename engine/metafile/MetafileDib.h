#pragma once

#include <cstdint>
#include <vector>

#include "MetafileCanvas.h"
#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::metafile {

/// How the colours of a device-independent bitmap's palette are told.
enum class DibColors : std::uint32_t {
  rgb = 0,
  palette = 1,  ///< as numbers of the present palette; black and white stand in for those of two colours
  none = 2      ///< not at all: as `palette`
};

/// The picture of a device-independent bitmap: an information header and what follows it. Empty if it makes
/// no sense.
Bitmap decodeDib(Bytes dib, DibColors colors = DibColors::rgb);

/// As `decodeDib`, from header and pixels that stand apart.
Bitmap decodeDib(Bytes header, Bytes pixels, DibColors colors = DibColors::rgb);

/// As `decodeDib`, with the alpha of 32-bit pixels, by which their colours are already multiplied.
Bitmap decodeDibWithAlpha(Bytes header, Bytes pixels);

/// The part of a bitmap that a copy pixel for pixel takes. Along a side that is longer than the bitmap's it
/// is the whole bitmap, which is then stretched.
Rect withinBitmap(const Rect& part, const Bitmap& bitmap);

/// Whether its rows run from the top down.
bool isTopDown(Bytes header);

/// A bitmap of the device that drew the file: width, height, bytes in a row, planes, bits, rows from the top.
/// Those of 1 bit are black and white, of 4 and 8 bits in the standard palette, of 16 bits in 5 bits a
/// colour. Of 8 bits only the first and last ten entries are the same on all devices; 3, 3 and 2 bits of red,
/// green and blue stand in for the others. Empty for other numbers of bits or several planes.
Bitmap decodeDeviceBitmap(Bytes bitmap);

/// A bitmap of 24 bits per pixel, flattened on white, as `decodeDib` reads it.
std::vector<std::uint8_t> encodeDib(const Bitmap& bitmap);

}  // namespace kestrel::engine::metafile
