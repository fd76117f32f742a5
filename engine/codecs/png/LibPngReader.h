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

  /// Reads the chunks before the pixels; false on a decode error.
  bool readHeader();

  /// Raises RuntimeError 481 with libpng's last error.
  [[noreturn]] void fail() const;

  png_structp png() const { return decoder_.png; }
  png_infop info() const { return decoder_.info; }
  std::int64_t width() const { return png_get_image_width(png(), info()); }
  std::int64_t height() const { return png_get_image_height(png(), info()); }
  int bitDepth() const { return png_get_bit_depth(png(), info()); }
  int colorType() const { return png_get_color_type(png(), info()); }
  bool interlaced() const { return png_get_interlace_type(png(), info()) != PNG_INTERLACE_NONE; }
  bool hasTransparency() const { return png_get_valid(png(), info(), PNG_INFO_tRNS) != 0; }

  /// Decodes into RGBA rows; returns the number of rows decoded at least in part, counted from the top.
  /// Raises RuntimeError 481 if there are none.
  std::int32_t readRows(const Pixels& pixels);

  /// True if `readRows` stopped at a decode error.
  bool damaged() const { return damaged_; }

  /// Reads the metadata after the pixels. A decode error there does not count: the pixels are good.
  void readEnd();

 private:
  /// libpng's two objects. The second may be missing when memory runs out.
  struct Decoder {
    Decoder() = default;
    ~Decoder() { png_destroy_read_struct(&png, &info, nullptr); }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;

    png_structp png = nullptr;
    png_infop info = nullptr;
  };

  Errors errors_;
  Bytes rest_;
  std::size_t largestRequest_;
  Decoder decoder_;
  std::int32_t rows_ = 0;
  bool damaged_ = false;
};

}  // namespace kestrel::engine::png
