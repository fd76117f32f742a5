#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "base/RuntimeError.h"
#include "engine/codecs/Codecs.h"

namespace kestrel::engine::test {

/// Index of the first byte of `text` in a file; the file's size if it does not occur.
inline std::size_t positionOf(const std::string& text, Bytes file) {
  const auto same = [](std::uint8_t byte, char c) { return byte == static_cast<std::uint8_t>(c); };
  return static_cast<std::size_t>(std::search(file.begin(), file.end(), text.begin(), text.end(), same) -
                                  file.begin());
}

inline bool contains(Bytes file, const std::string& text) { return positionOf(text, file) < file.size(); }

/// A picture with the pixels that `pixel` returns for each position.
inline Bitmap pictureOf(std::int32_t width, std::int32_t height,
                        const std::function<Pixel(std::int32_t x, std::int32_t y)>& pixel) {
  Bitmap bitmap = Bitmap::uninitialized(width, height);
  const Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      const Pixel p = pixel(x, y);
      std::copy_n(&p.r, 4, pixels.row(y) + 4 * x);
    }
  }
  return bitmap;
}

/// Smooth in all directions, opaque.
inline Bitmap gradient(std::int32_t width, std::int32_t height) {
  return pictureOf(width, height, [=](std::int32_t x, std::int32_t y) {
    return Pixel{static_cast<std::uint8_t>(x * 255 / std::max(1, width - 1)),
                 static_cast<std::uint8_t>(y * 255 / std::max(1, height - 1)),
                 static_cast<std::uint8_t>((x + y) * 255 / std::max(1, width + height - 2)), 255};
  });
}

/// Random pixels, with random alpha unless `opaque`.
inline Bitmap noise(std::int32_t width, std::int32_t height, bool opaque) {
  std::mt19937 random(7);
  return pictureOf(width, height, [&](std::int32_t, std::int32_t) {
    const auto v = static_cast<std::uint32_t>(random());
    return Pixel{static_cast<std::uint8_t>(v), static_cast<std::uint8_t>(v >> 8),
                 static_cast<std::uint8_t>(v >> 16),
                 opaque ? std::uint8_t{255} : static_cast<std::uint8_t>(v >> 24)};
  });
}

inline std::string text(const Pixel& p) {
  return "(" + std::to_string(p.r) + "," + std::to_string(p.g) + "," + std::to_string(p.b) + "," +
         std::to_string(p.a) + ")";
}

/// Succeeds if no sample of any pixel differs by more than `tolerance`.
inline testing::AssertionResult isPicture(const Bitmap& got, const Bitmap& wanted, int tolerance = 0) {
  if (got.width() != wanted.width() || got.height() != wanted.height()) {
    return testing::AssertionFailure() << got.width() << " x " << got.height() << " instead of "
                                       << wanted.width() << " x " << wanted.height();
  }
  for (std::int32_t y = 0; y < got.height(); ++y) {
    for (std::int32_t x = 0; x < got.width(); ++x) {
      const Pixel a = got.at(x, y), b = wanted.at(x, y);
      if (std::abs(a.r - b.r) > tolerance || std::abs(a.g - b.g) > tolerance ||
          std::abs(a.b - b.b) > tolerance || std::abs(a.a - b.a) > tolerance) {
        return testing::AssertionFailure()
               << "at " << x << ", " << y << ": " << text(a) << " instead of " << text(b);
      }
    }
  }
  return testing::AssertionSuccess();
}

/// The number of the error that `call` raises, 0 if none; `description` receives its text.
inline std::int32_t errorOf(const std::function<void()>& call, std::string* description = nullptr) {
  try {
    call();
  } catch (const RuntimeError& error) {
    EXPECT_FALSE(error.Description().empty());
    EXPECT_EQ(error.Description().back(), '.') << error.Description();
    if (description != nullptr) *description = error.Description();
    return error.Number();
  }
  return 0;
}

/// Builds a byte sequence value by value.
class Builder {
 public:
  Builder& u8(std::initializer_list<int> values) {
    for (const int v : values) bytes.push_back(static_cast<std::uint8_t>(v));
    return *this;
  }
  Builder& le16(std::uint32_t v) { return u8({static_cast<int>(v & 255), static_cast<int>(v >> 8 & 255)}); }
  Builder& le32(std::uint32_t v) { return le16(v & 0xFFFF).le16(v >> 16); }
  Builder& be16(std::uint32_t v) { return u8({static_cast<int>(v >> 8 & 255), static_cast<int>(v & 255)}); }
  Builder& be32(std::uint32_t v) { return be16(v >> 16).be16(v & 0xFFFF); }
  Builder& text(const std::string& s) {
    bytes.insert(bytes.end(), s.begin(), s.end());
    return *this;
  }
  Builder& fill(std::size_t count, int value = 0) {
    bytes.resize(bytes.size() + count, static_cast<std::uint8_t>(value));
    return *this;
  }

  /// Pads with zeros up to a position.
  Builder& fillTo(std::size_t position) {
    bytes.resize(std::max(position, bytes.size()), std::uint8_t{0});
    return *this;
  }

  std::vector<std::uint8_t> bytes;
};

/// An EXIF block with an orientation, a size, an invented maker's note and a thumbnail of `thumbnail` bytes.
inline std::vector<std::uint8_t> cameraBlock(std::uint32_t orientation, std::size_t thumbnail = 0) {
  Builder b;
  b.text("II").le16(42).le32(8);
  b.le16(3);                                         // at 8: the first directory
  b.le16(0x010F).le16(2).le32(8).le32(100);          // make, at 100
  b.le16(0x0112).le16(3).le32(1).le32(orientation);  // orientation
  b.le16(0x8769).le16(4).le32(1).le32(120);          // EXIF directory, at 120
  b.le32(thumbnail > 0 ? 200 : 0);                   // next directory
  b.fillTo(100).text("Kestrel").u8({0});
  b.fillTo(120);
  b.le16(3);
  b.le16(0x9003).le16(2).le32(20).le32(170);  // date and time, at 170
  b.le16(0xA002).le16(4).le32(1).le32(1234);  // width
  b.le16(0xA003).le16(3).le32(1).le32(567);   // height
  b.le32(0);
  b.fillTo(170).text("2026:01:02 03:04:05").u8({0});
  b.fillTo(200);
  if (thumbnail > 0) {
    b.le16(2);
    b.le16(0x0201).le16(4).le32(1).le32(240);
    b.le16(0x0202).le16(4).le32(1).le32(static_cast<std::uint32_t>(thumbnail));
    b.le32(0);
    b.fillTo(240);
    b.fill(thumbnail, 0xAB);
  }
  return b.bytes;
}

}  // namespace kestrel::engine::test
