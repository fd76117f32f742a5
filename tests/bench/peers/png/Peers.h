#pragma once

#include <cstdint>
#include <vector>

#include "engine/pixels/Bitmap.h"

namespace kestrel::bench {

using Bytes = std::vector<std::uint8_t>;

/// Settings of libpng's encoder; -1 for the default.
struct LibpngSettings {
  int level = -1;
  int filters = -1;
  int strategy = -1;
};

/// Decoders and encoders of other libraries through their own interfaces. All raise std::runtime_error on
/// errors. Pictures are RGBA rows without padding; files are RGB unless `alpha`.
Bytes writeWithLibpng(const Bytes& rgba, int width, int height, bool alpha, const LibpngSettings& settings);
void readWithLibpng(const Bytes& file, Bytes& rgba);

/// `pixels` has 3 bytes per pixel, or 4 with alpha.
Bytes writeWithSpng(const Bytes& pixels, int width, int height, bool alpha, int level);
/// Without `checked` the checksums of chunks and stream are ignored.
void readWithSpng(const Bytes& file, bool checked, Bytes& rgba);

/// The rows of a bitmap without padding, with four samples per pixel or the first three.
Bytes pixelsOf(const engine::Bitmap& bitmap, int samples);

}  // namespace kestrel::bench
