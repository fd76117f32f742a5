#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "engine/pixels/Bitmap.h"

namespace kestrel::bench {

/// Chroma subsampling: 4:4:4, or 4:2:0 as of cameras.
enum class Colors { full, halved };

/// Encodes pixels with libjpeg-turbo: baseline, accurate DCT, standard Huffman tables.
std::vector<std::uint8_t> jpegOf(const engine::ConstPixels& pixels, int quality, Colors colors);

/// A function that encodes like `jpegOf` into a kept buffer and returns the file size.
std::function<std::size_t()> keptJpegWriter(const engine::Bitmap& picture, int quality, Colors colors);

/// Decodes the file directly to RGBA rows of `pixels`.
void readJpeg(const std::vector<std::uint8_t>& file, const engine::Pixels& pixels);

}  // namespace kestrel::bench
