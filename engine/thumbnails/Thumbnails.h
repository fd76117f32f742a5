#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

#include "engine/parallel/Cancellation.h"
#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// A reduced copy of a picture file.
struct Thumbnail {
  /// Upright, in sRGB, straight alpha.
  Bitmap bitmap;
  /// Notice for the user: the decode error if the bitmap is partial or empty, else an empty text.
  std::string notice;
  /// Size of the whole picture in pixels; 0 if it could not be read.
  std::int32_t pictureWidth = 0;
  std::int32_t pictureHeight = 0;
};

/// Reads a picture file and shrinks it in proportion until its longest side has `longestSide` pixels; a
/// smaller picture keeps its size. A JPEG is decoded at a reduced scale where that suffices. Thread-safe.
/// Raises RuntimeError 5 for a side below 1, else as `decodeFile`; raises `Canceled` soon after `canceled` is
/// requested to stop.
Thumbnail readThumbnail(const std::filesystem::path& path, std::int32_t longestSide,
                        std::stop_token canceled = {});

/// The thumbnails of several files, in their order, read on all cores. A file that cannot be read gives an
/// empty bitmap and a notice with the reason. Raises RuntimeError 5 for a side below 1.
std::vector<Thumbnail> readThumbnails(std::span<const std::filesystem::path> paths, std::int32_t longestSide);

}  // namespace kestrel::engine
