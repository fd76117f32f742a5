#pragma once

#include <tiffio.h>

#include <cstdint>
#include <vector>

#include "TiffLayout.h"
#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::tiff {

/// Strips and tiles behind one interface: decodes a block at a time.
class Blocks {
 public:
  /// `file` is what the TiffStream of `tiff` reads. Raises RuntimeError 481 for blocks whose size makes no
  /// sense.
  Blocks(TIFF* tiff, Bytes file, const Layout& layout);

  /// Pixels of a block.
  std::int64_t width() const { return width_; }
  std::int64_t height() const { return height_; }
  /// A row of the block read last, packed as in the file.
  const std::uint8_t* row(std::int64_t y) const { return buffer_.data() + y * rowBytes_; }

  /// Decodes the block that holds the pixel (x, y) of a plane; returns how many of its first `rows` rows were
  /// decoded without error.
  std::int64_t read(std::int64_t x, std::int64_t y, std::uint16_t plane, std::int64_t rows);

 private:
  std::int64_t salvage(std::uint32_t number);

  TIFF* tiff_;
  Bytes file_;
  bool tiled_ = false;
  std::uint32_t width_ = 0, height_ = 0;
  tmsize_t rowBytes_ = 0;
  std::vector<std::uint8_t> buffer_;
};

}  // namespace kestrel::engine::tiff
