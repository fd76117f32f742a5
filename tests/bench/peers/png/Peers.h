#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "engine/pixels/Bitmap.h"

namespace kestrel::bench {

using Bytes = std::vector<std::uint8_t>;

/// How libpng is to write; -1 leaves its own choice.
struct LibpngSettings {
  int level = -1;
  int filters = -1;
  int strategy = -1;
};

/// What the other libraries do, each by its own interface. All raise std::runtime_error when it goes wrong.
/// Pictures are RGBA rows without gaps; what is written is RGB unless `alpha`.
Bytes writeWithLibpng(const Bytes& rgba, int width, int height, bool alpha, const LibpngSettings& settings);
void readWithLibpng(const Bytes& file, Bytes& rgba);

/// `rgb` is 3 bytes a pixel, or 4 with alpha.
Bytes writeWithSpng(const Bytes& pixels, int width, int height, bool alpha, int level);
/// Without `checked` neither the chunks' nor the stream's checksum is looked at.
void readWithSpng(const Bytes& file, bool checked, Bytes& rgba);

/// The rows of a bitmap without gaps, all four samples of a pixel or the first three.
Bytes pixelsOf(const engine::Bitmap& bitmap, int samples);

/// As the table shows them: "12.34 MB", "56 ms".
std::string megabytes(std::size_t bytes);
std::string milliseconds(std::chrono::steady_clock::duration time);

}  // namespace kestrel::bench
