#pragma once

#include <tiffio.h>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::tiff {

/// Closes a file of the library.
struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffFile = std::unique_ptr<TIFF, CloseTiff>;

/// A file in memory as the library wants it, for reading or for writing, and the last error it reported.
class TiffStream {
 public:
  /// For reading; `data` must outlive this and the file.
  explicit TiffStream(Bytes data) : input_(data) {}
  /// For writing.
  TiffStream() : writing_(true) {}
  TiffStream(const TiffStream&) = delete;
  TiffStream& operator=(const TiffStream&) = delete;

  /// Null if the file is none that the library knows. This must outlive what it gives.
  TiffFile open();

  /// What the library found wrong last, without a full stop; empty if nothing.
  const char* error() const { return error_.data(); }

  /// How often the library found something wrong, whether it gave up or went on.
  int complaints() const { return complaints_; }

  /// What was written, once the file is closed.
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
  int complaints_ = 0;
};

}  // namespace kestrel::engine::tiff
