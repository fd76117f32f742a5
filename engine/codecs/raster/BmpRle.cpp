#include "BmpRle.h"

#include <algorithm>
#include <cstring>

#include "engine/parallel/Cancellation.h"

namespace kestrel::engine::bmp {
namespace {

/// Output position; writes consecutive pixels and clips those outside.
class OutputCursor {
 public:
  OutputCursor(const Pixels& pixels, bool topDown) : pixels_(pixels), topDown_(topDown) {}

  void put(const Pixel& color) {
    if (x_ < pixels_.width && y_ < pixels_.height) {
      std::memcpy(pixels_.row(topDown_ ? y_ : pixels_.height - 1 - y_) + 4 * x_, &color, 4);
      touched_ = true;
    } else if (x_ >= paddedWidth() || y_ >= pixels_.height) {
      outside_ = true;
    }
    ++x_;
  }
  void endLine() { moveTo(0, std::int64_t{y_} + 1); }
  void move(std::int32_t right, std::int32_t up) { moveTo(std::int64_t{x_} + right, std::int64_t{y_} + up); }

  std::int32_t rows() const { return std::min(pixels_.height, touched_ ? y_ + 1 : y_); }
  bool outside() const { return outside_; }
  bool atEnd() const { return y_ >= pixels_.height || (y_ == pixels_.height - 1 && x_ >= pixels_.width); }

 private:
  /// Some programs also encode the padding of a row to 32 bits.
  std::int32_t paddedWidth() const { return (pixels_.width + 3) / 4 * 4; }

  void moveTo(std::int64_t x, std::int64_t y) {
    x_ = static_cast<std::int32_t>(std::min<std::int64_t>(x, pixels_.width));
    if (y != y_) touched_ = false;
    y_ = static_cast<std::int32_t>(std::min<std::int64_t>(y, pixels_.height));
  }

  Pixels pixels_;
  bool topDown_;
  std::int32_t x_ = 0, y_ = 0;
  bool touched_ = false;
  bool outside_ = false;
};

}  // namespace

RunLengths unpackRunLengths(Bytes data, std::uint32_t bits, const std::array<Pixel, 256>& palette,
                            const Pixels& pixels, bool topDown) {
  constexpr std::uint8_t kEndOfLine = 0, kEndOfPicture = 1, kMove = 2;
  OutputCursor cursor(pixels, topDown);
  std::size_t at = 0;
  const auto left = [&] { return data.size() - at; };
  const auto finished = [&](bool complete) {
    return RunLengths{cursor.rows(), complete && !cursor.outside()};
  };
  // The color of the i-th pixel in a run or a literal that begins at `at`.
  const auto color = [&](std::size_t i, bool run) -> Pixel {
    if (bits == 24) {
      const std::uint8_t* const p = data.data() + at + (run ? 0 : 3 * i);
      return {p[2], p[1], p[0], 255};
    }
    if (bits == 8) return palette[data[at + (run ? 0 : i)]];
    const std::uint8_t pair = data[at + (run ? 0 : i / 2)];
    return palette[i % 2 == 0 ? pair >> 4 : pair & 15];
  };
  const std::size_t runBytes = bits == 24 ? 3 : 1;

  while (left() >= 2) {
    const std::size_t count = data[at++];
    if (count > 0) {
      if (left() < runBytes) break;
      for (std::size_t i = 0; i < count; ++i) cursor.put(color(i, true));
      at += runBytes;
      continue;
    }
    const std::uint8_t code = data[at++];
    if (code == kEndOfPicture) return finished(true);
    if (code == kEndOfLine) {
      checkCanceled();
      cursor.endLine();
    } else if (code == kMove) {
      if (left() < 2) break;
      cursor.move(data[at], data[at + 1]);
      at += 2;
    } else {
      const std::size_t literalBytes = (code * std::size_t{bits} + 7) / 8;
      if (left() < literalBytes) break;
      for (std::size_t i = 0; i < code; ++i) cursor.put(color(i, false));
      at += std::min(left(), literalBytes + literalBytes % 2);
    }
  }
  return finished(cursor.atEnd());
}

}  // namespace kestrel::engine::bmp
