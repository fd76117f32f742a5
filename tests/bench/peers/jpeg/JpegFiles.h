#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "engine/pixels/Bitmap.h"

namespace kestrel::bench {

/// How much of the colour a file keeps: one sample for each pixel, or for 2 x 2 of them as cameras do.
enum class Colors { full, halved };

/// A part of the picture as libjpeg-turbo writes it: baseline, accurate transform, standard Huffman tables.
std::vector<std::uint8_t> jpegOf(const engine::ConstPixels& pixels, int quality, Colors colors);

/// Writes as `jpegOf` into a buffer that is kept; gives the file's size.
std::function<std::size_t()> keptJpegWriter(const engine::Bitmap& picture, int quality, Colors colors);

/// Decodes the file straight into RGBA rows of `pixels`, which has the picture's size divided by `divisor`
/// (1, 2, 4 or 8) and rounded up.
void readJpeg(const std::vector<std::uint8_t>& file, const engine::Pixels& pixels, unsigned divisor = 1);

}  // namespace kestrel::bench
