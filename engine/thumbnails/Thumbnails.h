#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// A small view of a picture file.
struct Thumbnail {
  /// Upright, in sRGB, straight alpha.
  Bitmap bitmap;
  /// A sentence for the user: what is wrong with the file if the bitmap is only what could be read of it, or
  /// if it is empty because nothing could be read. Else empty.
  std::string notice;
};

/// Reads a picture file and shrinks it in proportion until its longest side has `longestSide` pixels; a
/// picture that is smaller stays as it is. A JPEG is decoded no larger than it has to be. Several threads may
/// call at a time. Raises RuntimeError 5 for a side below 1, else as `decodeFile`.
Thumbnail readThumbnail(const std::filesystem::path& path, std::int32_t longestSide);

/// The thumbnails of several files, in their order, read on all cores. A file that cannot be read leaves an
/// empty bitmap and a notice that says why. Raises RuntimeError 5 for a side below 1.
std::vector<Thumbnail> readThumbnails(std::span<const std::filesystem::path> paths, std::int32_t longestSide);

}  // namespace kestrel::engine
