#include "TlaPixels.h"

#include <algorithm>
#include <cstring>

namespace kestrel::engine::tla {
namespace {

// First byte of each code; see docs/tla.md.
constexpr int kRun = 0x00;     // 00nnnnnn
constexpr int kSmall = 0x40;   // 01rrggbb
constexpr int kMedium = 0x80;  // 10gggggg rrrrbbbb
constexpr int kColor = 0xC0;   // red green blue
constexpr int kPixel = 0xC1;   // red green blue alpha
constexpr int kLongestRun = 64;

std::uint8_t clampedSlope(int left, int above, int corner) {
  return static_cast<std::uint8_t>(
      std::clamp(left + above - corner, std::min(left, above), std::max(left, above)));
}

/// Predictor of the pixel at x from pixels of the band already decoded.
class Predictor {
 public:
  /// `above` is null in the first row of a band.
  Predictor(const std::uint8_t* row, const std::uint8_t* above) : row_(row), above_(above) {}

  Pixel at(std::int32_t x) const {
    const std::uint8_t* const left = row_ + 4 * (x - 1);
    if (above_ == nullptr) return x == 0 ? Pixel{0, 0, 0, 255} : Pixel{left[0], left[1], left[2], left[3]};
    const std::uint8_t* const above = above_ + 4 * x;
    if (x == 0) return {above[0], above[1], above[2], above[3]};
    const std::uint8_t* const corner = above - 4;
    return {clampedSlope(left[0], above[0], corner[0]), clampedSlope(left[1], above[1], corner[1]),
            clampedSlope(left[2], above[2], corner[2]), clampedSlope(left[3], above[3], corner[3])};
  }

 private:
  const std::uint8_t* row_;
  const std::uint8_t* above_;
};

/// Difference of two bytes modulo 256, as a signed number.
int difference(std::uint8_t value, std::uint8_t expected) {
  return static_cast<std::int8_t>(static_cast<std::uint8_t>(value - expected));
}

bool fits(int value, int low, int high) { return value >= low && value <= high; }

class Packer {
 public:
  void put(const std::uint8_t* p, const Pixel& expected) {
    const int r = difference(p[0], expected.r), g = difference(p[1], expected.g),
              b = difference(p[2], expected.b);
    if (p[3] != expected.a) {
      endRun();
      add({kPixel, p[0], p[1], p[2], p[3]});
    } else if (r == 0 && g == 0 && b == 0) {
      if (++run_ == kLongestRun) endRun();
    } else if (fits(r, -2, 1) && fits(g, -2, 1) && fits(b, -2, 1)) {
      endRun();
      add({kSmall | (r + 2) << 4 | (g + 2) << 2 | (b + 2)});
    } else if (fits(g, -32, 31) && fits(r - g, -8, 7) && fits(b - g, -8, 7)) {
      endRun();
      add({kMedium | (g + 32), (r - g + 8) << 4 | (b - g + 8)});
    } else {
      endRun();
      add({kColor, p[0], p[1], p[2]});
    }
  }

  std::vector<std::uint8_t> finish() {
    endRun();
    return std::move(bytes_);
  }

 private:
  void endRun() {
    if (run_ > 0) add({kRun | (run_ - 1)});
    run_ = 0;
  }
  void add(std::initializer_list<int> values) {
    for (const int value : values) bytes_.push_back(static_cast<std::uint8_t>(value));
  }

  std::vector<std::uint8_t> bytes_;
  int run_ = 0;
};

std::uint8_t moved(std::uint8_t value, int by) { return static_cast<std::uint8_t>(value + by); }

class Unpacker {
 public:
  explicit Unpacker(Bytes data) : data_(data) {}

  bool atEnd() const { return run_ == 0 && data_.empty(); }

  /// Returns false if the data has ended or is invalid.
  bool next(Pixel pixel, std::uint8_t* target) {
    if (run_ > 0) {
      --run_;
    } else if (!readCode(pixel)) {
      return false;
    }
    std::memcpy(target, &pixel, sizeof pixel);
    return true;
  }

 private:
  bool readCode(Pixel& pixel) {
    if (data_.empty()) return false;
    const int code = data_[0];
    switch (code & 0xC0) {
      case kRun:
        run_ = code & 63;
        return take(1);
      case kSmall:
        pixel.r = moved(pixel.r, (code >> 4 & 3) - 2);
        pixel.g = moved(pixel.g, (code >> 2 & 3) - 2);
        pixel.b = moved(pixel.b, (code & 3) - 2);
        return take(1);
      case kMedium: {
        if (data_.size() < 2) return false;
        const int g = (code & 63) - 32;
        pixel.r = moved(pixel.r, g + (data_[1] >> 4) - 8);
        pixel.g = moved(pixel.g, g);
        pixel.b = moved(pixel.b, g + (data_[1] & 15) - 8);
        return take(2);
      }
      default:
        break;
    }
    const std::size_t size = code == kPixel ? 5 : 4;
    if ((code != kPixel && code != kColor) || data_.size() < size) return false;
    pixel = {data_[1], data_[2], data_[3], code == kPixel ? data_[4] : pixel.a};
    return take(size);
  }

  bool take(std::size_t count) {
    data_ = data_.subspan(count);
    return true;
  }

  Bytes data_;
  int run_ = 0;
};

}  // namespace

std::vector<std::uint8_t> packRows(const ConstPixels& pixels, std::int32_t first, std::int32_t last) {
  Packer packer;
  for (std::int32_t y = first; y < last; ++y) {
    const std::uint8_t* const row = pixels.row(y);
    const Predictor predictor(row, y > first ? pixels.row(y - 1) : nullptr);
    for (std::int32_t x = 0; x < pixels.width; ++x) packer.put(row + 4 * x, predictor.at(x));
  }
  return packer.finish();
}

bool unpackRows(Bytes data, const Pixels& pixels, std::int32_t first, std::int32_t last) {
  Unpacker unpacker(data);
  for (std::int32_t y = first; y < last; ++y) {
    std::uint8_t* const row = pixels.row(y);
    const Predictor predictor(row, y > first ? pixels.row(y - 1) : nullptr);
    for (std::int32_t x = 0; x < pixels.width; ++x) {
      if (!unpacker.next(predictor.at(x), row + 4 * x)) return false;
    }
  }
  return unpacker.atEnd();
}

}  // namespace kestrel::engine::tla
