#pragma once

#include "JpegLib.h"
#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::jpeg {

/// Input of libjpeg: a file in memory, followed by EOI markers without end. Within the content of a marker
/// between two scans they would be taken for that content: there the library is suspended until `feedEnd`.
struct Source {
  jpeg_source_mgr base;
  bool exhausted;  ///< the library has asked for more than the file has
  bool hadRow;     ///< at that time, a row of MCUs or a whole scan had been read

  /// `data` must outlive the decompression.
  void install(jpeg_decompress_struct* info, Bytes data);

  void feedEnd();

 private:
  void exhaust(const jpeg_decompress_struct& info);
};

/// Raises an error in libjpeg at the scan after the most that a file may have, and when the decoding was
/// canceled.
struct ScanLimit {
  jpeg_progress_mgr base;

  void install(jpeg_decompress_struct* info);
};

}  // namespace kestrel::engine::jpeg
