#pragma once

#include <cstdint>
#include <vector>

#include "Codecs.h"

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

/// Whether its rows run from the top down.
bool isTopDown(Bytes header);

/// A bitmap of the device that drew the file: width, height, bytes in a row, planes, bits, rows from the top.
/// Only those of one plane and 1, 24 or 32 bits tell what they look like; others are empty.
Bitmap decodeDeviceBitmap(Bytes bitmap);

/// A bitmap of 24 bits per pixel, flattened on white, as `decodeDib` reads it.
std::vector<std::uint8_t> encodeDib(const Bitmap& bitmap);

}  // namespace kestrel::engine::metafile
