#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "../codecs/TestPictures.h"

// Builders of metafiles, record by record.

namespace kestrel::engine::test {

inline constexpr Pixel kNothing{0, 0, 0, 0}, kRed{255, 0, 0, 255}, kBlue{0, 0, 255, 255},
    kGreen{0, 255, 0, 255}, kWhite{255, 255, 255, 255}, kBlack{0, 0, 0, 255};
inline constexpr std::uint32_t kRedColor = 0x0000FF, kBlueColor = 0xFF0000, kGreenColor = 0x00FF00;

/// An enhanced metafile of 40 x 30 pixels whose records are added one by one.
class Emf {
 public:
  Emf& record(std::uint32_t type, std::initializer_list<std::uint32_t> words) {
    records_.le32(type).le32(static_cast<std::uint32_t>(8 + 4 * words.size()));
    for (const std::uint32_t word : words) records_.le32(word);
    return *this;
  }
  /// A record whose parameters are bytes.
  Emf& record(std::uint32_t type, const Builder& parameters) {
    const std::size_t padded = (parameters.bytes.size() + 3) / 4 * 4;
    records_.le32(type).le32(static_cast<std::uint32_t>(8 + padded));
    records_.bytes.insert(records_.bytes.end(), parameters.bytes.begin(), parameters.bytes.end());
    records_.fill(padded - parameters.bytes.size());
    return *this;
  }
  Emf& brush(std::uint32_t color) { return record(39, {1, 0, color, 0}).record(37, {1}); }
  Emf& noPen() { return record(37, {0x80000008}); }
  Emf& box(std::uint32_t left, std::uint32_t top, std::uint32_t right, std::uint32_t bottom) {
    return record(43, {left, top, right, bottom});
  }

  std::vector<std::uint8_t> file() const {
    Builder b;
    b.le32(1).le32(88).le32(0).le32(0).le32(39).le32(29);
    b.le32(0).le32(0).le32(1058).le32(794);  // hundredths of a millimeter at 96 pixels per inch
    b.text(" EMF").le32(0x10000).le32(0).le32(0).fill(16);
    b.le32(960).le32(960).le32(254).le32(254);
    b.bytes.insert(b.bytes.end(), records_.bytes.begin(), records_.bytes.end());
    b.le32(14).le32(20).le32(0).le32(16).le32(20);
    return b.bytes;
  }
  Bitmap play() const {
    const Decoded decoded = decode(file());
    EXPECT_EQ(decoded.format, 8);
    EXPECT_TRUE(decoded.notice.empty()) << decoded.notice;
    return decoded.bitmap;
  }

 private:
  Builder records_;
};

inline std::uint32_t pair(int x, int y) {
  return static_cast<std::uint32_t>(x & 0xFFFF) | static_cast<std::uint32_t>(y) << 16;
}

inline std::uint32_t bits(float value) {
  std::uint32_t result = 0;
  std::memcpy(&result, &value, 4);
  return result;
}

inline constexpr std::uint32_t kVersion = 0xDBC01002;  ///< of GDI+ objects
inline constexpr std::uint32_t kColor = 0x8000;        ///< flag: a color in place of a brush index

/// Builds a sequence of GDI+ commands.
class Plus {
 public:
  /// With `twice` the header marks a dual file: plain records hold the drawing, too.
  explicit Plus(bool twice = false) {
    command(0x4001, twice ? 1 : 0, Builder().le32(kVersion).le32(1).le32(96).le32(96));
  }

  Plus& command(std::uint32_t type, std::uint32_t flags, const Builder& data = {}) {
    const std::size_t padded = (data.bytes.size() + 3) / 4 * 4;
    commands_.le16(type).le16(flags);
    commands_.le32(static_cast<std::uint32_t>(12 + padded)).le32(static_cast<std::uint32_t>(padded));
    commands_.bytes.insert(commands_.bytes.end(), data.bytes.begin(), data.bytes.end());
    commands_.fill(padded - data.bytes.size());
    return *this;
  }
  /// Types: 1 brush, 2 pen, 3 path, 4 region, 5 image, 6 font, 7 string format.
  Plus& object(std::uint32_t type, std::uint32_t id, const Builder& data) {
    return command(0x4008, type << 8 | id, data);
  }
  Plus& fillRect(std::uint32_t color, float x, float y, float width, float height) {
    return command(0x400A, kColor, reals(Builder().le32(color).le32(1), {x, y, width, height}));
  }
  /// Fills the whole picture with the brush of this number.
  Plus& fillAll(std::uint32_t brush) {
    return command(0x400A, 0, reals(Builder().le32(brush).le32(1), {0, 0, 40, 30}));
  }

  static Builder reals(Builder b, std::initializer_list<float> values) {
    for (const float v : values) b.le32(bits(v));
    return b;
  }

  Emf& addTo(Emf& emf) const {
    return emf.record(70, Builder()
                              .le32(static_cast<std::uint32_t>(4 + commands_.bytes.size()))
                              .text("EMF+")
                              .text(std::string(commands_.bytes.begin(), commands_.bytes.end())));
  }
  Bitmap play() const {
    Emf emf;
    return addTo(emf).play();
  }
  std::vector<std::uint8_t> file() const {
    Emf emf;
    return addTo(emf).file();
  }

 private:
  Builder commands_;
};

/// A Windows metafile whose records are added one by one, with or without a frame of 40 x 30 pixels.
class Wmf {
 public:
  Wmf& record(std::uint32_t number, std::initializer_list<int> words) {
    records_.le32(static_cast<std::uint32_t>(3 + words.size())).le16(number);
    for (const int word : words) records_.le16(static_cast<std::uint32_t>(word & 0xFFFF));
    return *this;
  }

  /// A record whose parameters are bytes, an even number of them.
  Wmf& record(std::uint32_t number, const Builder& parameters) {
    records_.le32(static_cast<std::uint32_t>(3 + parameters.bytes.size() / 2)).le16(number);
    records_.bytes.insert(records_.bytes.end(), parameters.bytes.begin(), parameters.bytes.end());
    return *this;
  }

  std::vector<std::uint8_t> file(bool placeable) const {
    Builder b;
    // Twice as many units as pixels.
    if (placeable) b.le32(0x9AC6CDD7).le16(0).le16(0).le16(0).le16(80).le16(60).le16(192).le32(0).le16(0);
    b.le16(1).le16(9).le16(0x300).le32(0).le16(2).le32(0).le16(0);
    b.bytes.insert(b.bytes.end(), records_.bytes.begin(), records_.bytes.end());
    b.le32(3).le16(0);
    return b.bytes;
  }

 private:
  Builder records_;
};

inline std::uint32_t number(int value) { return static_cast<std::uint32_t>(value); }

inline Builder words(std::initializer_list<int> values) {
  Builder b;
  for (const int v : values) b.le32(number(v));
  return b;
}

/// A 24-bit bitmap with bottom-up rows as records hold it: header and pixels.
struct Dib {
  Builder header, pixels;
};

inline Dib dibOf(const std::vector<std::vector<Pixel>>& rows) {
  Dib dib;
  dib.header.le32(40)
      .le32(static_cast<std::uint32_t>(rows[0].size()))
      .le32(static_cast<std::uint32_t>(rows.size()));
  dib.header.le16(1).le16(24).fill(24);
  for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
    for (const Pixel& p : *row) dib.pixels.u8({p.b, p.g, p.r});
    dib.pixels.fill((4 - row->size() * 3 % 4) % 4);
  }
  return dib;
}

/// Number of pixels of a rectangle with alpha above 100.
inline int inkIn(const Bitmap& bitmap, int left, int top, int right, int bottom) {
  int ink = 0;
  for (int y = top; y < bottom; ++y) {
    for (int x = left; x < right; ++x) ink += bitmap.at(x, y).a > 100 ? 1 : 0;
  }
  return ink;
}

}  // namespace kestrel::engine::test
