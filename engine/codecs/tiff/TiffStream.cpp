#include "TiffStream.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <new>

namespace kestrel::engine::tiff {
namespace {

/// Largest single allocation of the library: a size field in a small file must not reserve gigabytes.
constexpr tmsize_t kLargestRequest = tmsize_t{1} << 30;

struct FreeOptions {
  void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

}  // namespace

TiffFile TiffStream::open() {
  const std::unique_ptr<TIFFOpenOptions, FreeOptions> options(TIFFOpenOptionsAlloc());
  if (!options) return nullptr;
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), kLargestRequest);
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), keepError, this);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), countWarning, this);
  return TiffFile(TIFFClientOpenExt(
      "picture", writing_ ? "wl" : "rm", this, read, write, seek, [](thandle_t) { return 0; }, size, nullptr,
      nullptr, options.get()));
}

tmsize_t TiffStream::read(thandle_t handle, void* target, tmsize_t count) {
  auto* const self = static_cast<TiffStream*>(handle);
  const Bytes data = self->writing_ ? Bytes(self->output_) : self->input_;
  if (self->position_ >= data.size() || count <= 0) return 0;
  const std::size_t here = std::min(static_cast<std::size_t>(count), data.size() - self->position_);
  std::memcpy(target, data.data() + self->position_, here);
  self->position_ += here;
  return static_cast<tmsize_t>(here);
}

tmsize_t TiffStream::write(thandle_t handle, void* source, tmsize_t count) {
  auto* const self = static_cast<TiffStream*>(handle);
  if (!self->writing_ || count <= 0) return 0;
  const auto bytes = static_cast<std::size_t>(count);
  // No exception may propagate through the library.
  try {
    if (self->output_.size() < self->position_ + bytes) self->output_.resize(self->position_ + bytes);
  } catch (const std::bad_alloc&) {
    return 0;
  }
  std::memcpy(self->output_.data() + self->position_, source, bytes);
  self->position_ += bytes;
  return count;
}

toff_t TiffStream::seek(thandle_t handle, toff_t offset, int whence) {
  auto* const self = static_cast<TiffStream*>(handle);
  switch (whence) {
    case SEEK_SET:
      self->position_ = offset;
      break;
    case SEEK_CUR:
      self->position_ += offset;
      break;
    default:
      self->position_ = size(handle) + offset;
      break;
  }
  return self->position_;
}

toff_t TiffStream::size(thandle_t handle) {
  auto* const self = static_cast<TiffStream*>(handle);
  return self->writing_ ? self->output_.size() : self->input_.size();
}

int TiffStream::keepError(TIFF*, void* handle, const char*, const char* format, va_list arguments) {
  auto* const self = static_cast<TiffStream*>(handle);
  std::vsnprintf(self->error_.data(), self->error_.size(), format, arguments);
  // The library's messages may end with a period; callers add their own.
  std::size_t length = std::strlen(self->error_.data());
  while (length > 0 && (self->error_[length - 1] == '.' || self->error_[length - 1] == ' ')) --length;
  self->error_[length] = '\0';
  ++self->diagnostics_;
  return 1;
}

int TiffStream::countWarning(TIFF*, void* handle, const char*, const char*, va_list) {
  ++static_cast<TiffStream*>(handle)->diagnostics_;
  return 1;
}

}  // namespace kestrel::engine::tiff
