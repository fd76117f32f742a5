#pragma once

#include <png.h>

#include <cstddef>
#include <cstdint>

#include "PngErrors.h"
#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::png {

/// libpng's decoder over a file in memory.
class LibPngReader {
 public:
  /// `data` must outlive the reader. Raises RuntimeError 7 when memory runs out.
  explicit LibPngReader(Bytes data);
  LibPngReader(const LibPngReader&) = delete;
  LibPngReader& operator=(const LibPngReader&) = delete;
  ~LibPngReader() { png_destroy_read_struct(&png_, info_ != nullptr ? &info_ : nullptr, nullptr); }

  /// Reads the chunks before the pixels; false on a decode error.
  bool readHeader();

  /// Raises RuntimeError 481 with libpng's last error.
  [[noreturn]] void fail() const;

  png_structp png() const { return png_; }
  png_infop info() const { return info_; }
  std::int64_t width() const { return png_get_image_width(png_, info_); }
  std::int64_t height() const { return png_get_image_height(png_, info_); }
  int bitDepth() const { return png_get_bit_depth(png_, info_); }
  int colorType() const { return png_get_color_type(png_, info_); }
  bool interlaced() const { return png_get_interlace_type(png_, info_) != PNG_INTERLACE_NONE; }
  bool hasTransparency() const { return png_get_valid(png_, info_, PNG_INFO_tRNS) != 0; }

  /// Decodes into RGBA rows; returns the number of rows decoded at least in part, counted from the top.
  /// Raises RuntimeError 481 if there are none.
  std::int32_t readRows(const Pixels& pixels);

  /// True if `readRows` stopped at a decode error.
  bool damaged() const { return damaged_; }

  /// Reads the metadata after the pixels. A decode error there does not count: the pixels are good.
  void readEnd();

 private:
  Errors errors_;
  Bytes rest_;
  std::size_t largestRequest_;
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  std::int32_t rows_ = 0;
  bool damaged_ = false;
};

}  // namespace kestrel::engine::png
