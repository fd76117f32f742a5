#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace kestrel::engine {

/// One pixel: 8 bits each of red, green, blue and straight (not premultiplied) alpha, in this order in
/// memory.
struct Pixel {
  std::uint8_t r = 0, g = 0, b = 0, a = 0;
  friend bool operator==(const Pixel&, const Pixel&) = default;
};

/// Read-only rows of pixels. Valid while the bitmap exists and is not written to.
struct ConstPixels {
  const std::uint8_t* data = nullptr;
  std::size_t stride = 0;  ///< bytes from one row to the next, a multiple of 64
  std::int32_t width = 0;
  std::int32_t height = 0;

  const std::uint8_t* row(std::int32_t y) const { return data + static_cast<std::size_t>(y) * stride; }
};

/// Rows of pixels to write. Threads may write different rows at the same time.
struct Pixels {
  std::uint8_t* data = nullptr;
  std::size_t stride = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;

  std::uint8_t* row(std::int32_t y) const { return data + static_cast<std::size_t>(y) * stride; }
  operator ConstPixels() const { return {data, stride, width, height}; }
};

/// A picture's pixels: 8-bit RGBA, straight alpha, rows aligned to 64 bytes, shared copy-on-write.
///
/// Copying a bitmap is taking a reference; the first `writable()` of a shared one copies the pixels.
/// A bitmap is empty (0 x 0) or has both sides of at least 1.
class Bitmap {
 public:
  /// The longest side. Together with `kMaxPixels` it keeps products of sizes in range.
  static constexpr std::int32_t kMaxSide = 1'000'000;
  /// 2 gigapixels; larger sizes are refused before memory is allocated.
  static constexpr std::int64_t kMaxPixels = std::int64_t{2} * 1000 * 1000 * 1000;

  Bitmap() noexcept = default;

  /// A bitmap with undefined pixels, for callers that write every pixel. Raises RuntimeError 5 for a side
  /// below 1, 7 for a size beyond the limits (or more than a quarter of the machine's memory) or out of
  /// memory.
  static Bitmap uninitialized(std::int32_t width, std::int32_t height);

  /// A bitmap filled with one pixel value. Raises as `uninitialized`.
  static Bitmap filled(std::int32_t width, std::int32_t height, Pixel value = {});

  std::int32_t width() const noexcept;
  std::int32_t height() const noexcept;
  bool empty() const noexcept { return buffer_ == nullptr; }

  ConstPixels pixels() const noexcept;

  /// The pixels for writing, copied first if shared. Call it on one thread, not for an empty bitmap.
  Pixels writable();

  /// The pixel at a position inside the bitmap (not checked).
  Pixel at(std::int32_t x, std::int32_t y) const noexcept;

  /// True if both refer to the same memory, and so hold equal pixels.
  bool sharesPixelsWith(const Bitmap& other) const noexcept { return buffer_ == other.buffer_; }

  /// Bytes held, padding included, whether shared or not.
  std::size_t byteSize() const noexcept;

 private:
  struct Buffer;
  std::shared_ptr<Buffer> buffer_;
};

}  // namespace kestrel::engine
