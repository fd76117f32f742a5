#pragma once

#include <tiffio.h>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::tiff {

/// Deleter for TIFF handles.
struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffFile = std::unique_ptr<TIFF, CloseTiff>;

/// Client I/O of the library over a file in memory, for reading or writing, with its last error.
class TiffStream {
 public:
  /// For reading; `data` must outlive this and the file.
  explicit TiffStream(Bytes data) : input_(data) {}
  /// For writing.
  TiffStream() : writing_(true) {}
  TiffStream(const TiffStream&) = delete;
  TiffStream& operator=(const TiffStream&) = delete;

  /// Opens the file; null if the library cannot read it. The stream must outlive the result.
  TiffFile open();

  /// Last error message of the library, without a period; empty if there was none.
  const char* error() const { return error_.data(); }

  /// Number of errors and warnings of the library so far.
  int diagnostics() const { return diagnostics_; }

  /// The bytes written; call after the file is closed.
  std::vector<std::uint8_t> finish() { return std::move(output_); }

 private:
  static tmsize_t read(thandle_t self, void* target, tmsize_t count);
  static tmsize_t write(thandle_t self, void* source, tmsize_t count);
  static toff_t seek(thandle_t self, toff_t offset, int whence);
  static toff_t size(thandle_t self);
  static int keepError(TIFF*, void* self, const char* module, const char* format, va_list arguments);
  static int countWarning(TIFF*, void* self, const char* module, const char* format, va_list arguments);

  Bytes input_;
  std::vector<std::uint8_t> output_;
  bool writing_ = false;
  std::uint64_t position_ = 0;
  std::array<char, 200> error_{};
  int diagnostics_ = 0;
};

}  // namespace kestrel::engine::tiff
