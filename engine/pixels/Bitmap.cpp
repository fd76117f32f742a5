#include "Bitmap.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <string>

#include "Memory.h"
#include "NonTemporal.h"
#include "base/RuntimeError.h"
#include "engine/parallel/Parallel.h"

namespace kestrel::engine {
namespace {

constexpr std::size_t kRowAlignment = 64;

std::size_t strideOf(std::int32_t width) {
  return (static_cast<std::size_t>(width) * sizeof(Pixel) + kRowAlignment - 1) / kRowAlignment *
         kRowAlignment;
}

/// Sides and their product are bounded, so that sizes computed from them do not overflow.
void checkSize(std::int32_t width, std::int32_t height) {
  const std::string size = std::to_string(width) + " x " + std::to_string(height) + " pixels";
  if (width < 1 || height < 1) {
    throw RuntimeError(err::kInvalidCall, "A picture cannot have " + size + ".");
  }
  if (width > Bitmap::kMaxSide || height > Bitmap::kMaxSide ||
      std::int64_t{width} * height > Bitmap::kMaxPixels) {
    throw RuntimeError(err::kOutOfMemory, "A picture of " + size +
                                              " is too large: at most 1000000 pixels along a side and 2 "
                                              "gigapixels in all are possible.");
  }
  const std::size_t bytes = strideOf(width) * static_cast<std::size_t>(height);
  if (bytes > machineMemory() / 4) {
    throw RuntimeError(err::kOutOfMemory, "A picture of " + size + " needs " + std::to_string(bytes >> 20) +
                                              " MB, which is more than a quarter of this machine's memory.");
  }
}

/// Copies whole rows on several cores.
void copyRows(const std::uint8_t* in, std::size_t stride, std::int32_t rows, std::uint8_t* out) {
  const bool stream = exceedsCaches(stride * static_cast<std::size_t>(rows));
  constexpr std::size_t kBytesPerTask = std::size_t{512} << 10;
  forRows(rows, static_cast<std::int32_t>(kBytesPerTask / stride),
          [&](std::int32_t first, std::int32_t last) {
            const std::size_t begin = stride * static_cast<std::size_t>(first);
            const std::size_t bytes = stride * static_cast<std::size_t>(last) - begin;
            if (stream) {
              copyNonTemporal(in + begin, bytes, out + begin);
              storeFence();
            } else {
              std::memcpy(out + begin, in + begin, bytes);
            }
          });
}

}  // namespace

struct Bitmap::Buffer {
  Buffer(std::int32_t w, std::int32_t h)
      : width(w), height(h), stride(strideOf(w)), memory(stride * static_cast<std::size_t>(h)) {}

  std::int32_t width;
  std::int32_t height;
  std::size_t stride;
  Memory memory;
};

Bitmap Bitmap::uninitialized(std::int32_t width, std::int32_t height) {
  checkSize(width, height);
  Bitmap result;
  result.buffer_ = std::make_shared<Buffer>(width, height);
  return result;
}

Bitmap Bitmap::filled(std::int32_t width, std::int32_t height, Pixel value) {
  Bitmap result = uninitialized(width, height);
  const Pixels pixels = result.writable();
  for (std::int32_t y = 0; y < height; ++y) {
    std::uint8_t* const row = pixels.row(y);
    if (y == 0) {
      for (std::int32_t x = 0; x < width; ++x) std::memcpy(row + 4 * static_cast<std::size_t>(x), &value, 4);
    } else {
      std::memcpy(row, pixels.data, static_cast<std::size_t>(width) * sizeof(Pixel));
    }
  }
  return result;
}

std::int32_t Bitmap::width() const noexcept { return buffer_ ? buffer_->width : 0; }

std::int32_t Bitmap::height() const noexcept { return buffer_ ? buffer_->height : 0; }

ConstPixels Bitmap::pixels() const noexcept {
  if (!buffer_) return {};
  return {buffer_->memory.data(), buffer_->stride, buffer_->width, buffer_->height};
}

Pixels Bitmap::writable() {
  assert(buffer_);
  if (buffer_.use_count() > 1) {
    auto own = std::make_shared<Buffer>(buffer_->width, buffer_->height);
    copyRows(buffer_->memory.data(), own->stride, own->height, own->memory.data());
    buffer_ = std::move(own);
  } else {
    // The count is read without an order: what another thread did with its reference must come before
    // writing.
    const auto ordered = buffer_;
  }
  return {buffer_->memory.data(), buffer_->stride, buffer_->width, buffer_->height};
}

Pixel Bitmap::at(std::int32_t x, std::int32_t y) const noexcept {
  Pixel result;
  std::memcpy(&result, pixels().row(y) + 4 * static_cast<std::size_t>(x), sizeof result);
  return result;
}

std::size_t Bitmap::byteSize() const noexcept { return buffer_ ? buffer_->memory.size() : 0; }

}  // namespace kestrel::engine
