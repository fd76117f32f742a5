#pragma once

#include <cstdint>
#include <string>

// Small files that hold more than one picture, or one that is too large.

namespace kestrel {

class FileBytes {
 public:
  FileBytes& put(std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) bytes_.push_back(static_cast<char>(value >> (8 * i)));
    return *this;
  }
  FileBytes& text(const std::string& text) {
    bytes_ += text;
    return *this;
  }
  FileBytes& zeros(std::size_t count) {
    bytes_.append(count, '\0');
    return *this;
  }
  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

/// A GIF animation of 2 x 2 pixels, frame after frame all black and all white.
inline std::string animatedGif(std::uint32_t frames) {
  FileBytes file;
  file.text("GIF89a").put(2, 2).put(2, 2).put(0x80, 1).put(0, 2).put(0, 3).put(0xFFFFFF, 3);
  for (std::uint32_t frame = 0; frame < frames; ++frame) {
    file.put(0x21, 1).put(0xF9, 1).put(4, 1).put(4, 1).put(10, 2).put(0, 2);
    file.put(0x2C, 1).zeros(4).put(2, 2).put(2, 2).put(0, 1).put(2, 1);
    // Codes of 3 bits: clear, 0 or 1, then the pair of the code before twice, end: 4, i, 6, i, 5.
    const std::uint32_t index = frame % 2;
    file.put(2, 1).put(4 | index << 3 | 6U << 6 | index << 9 | 5U << 12, 2).put(0, 1);
  }
  return file.put(0x3B, 1).bytes();
}

/// A DCX file of grey pages of 2 x 1 pixels.
inline std::string grayDcx(std::uint32_t pages) {
  constexpr std::uint32_t kHeader = 128, kPage = kHeader + 2;
  FileBytes file;
  file.put(0x3ADE68B1, 4);
  for (std::uint32_t page = 0; page < pages; ++page) file.put(4 * (pages + 2) + page * kPage, 4);
  file.zeros(4);
  for (std::uint32_t page = 0; page < pages; ++page) {
    file.put(10, 1).put(5, 1).put(1, 1).put(8, 1).zeros(4).put(1, 2).put(0, 2).put(72, 2).put(72, 2);
    file.zeros(49).put(1, 1).put(2, 2).put(2, 2).zeros(kHeader - 70);
    file.put(page, 1).put(page + 10, 1);
  }
  return file.bytes();
}

/// An enhanced metafile without commands, whose frame is that large at 96 pixels per inch.
inline std::string emptyDrawing(std::uint32_t width, std::uint32_t height) {
  const auto hundredths = [](std::uint32_t pixels) {
    return static_cast<std::uint32_t>(pixels * 2540.0 / 96 + 0.5);
  };
  FileBytes file;
  file.put(1, 4).put(88, 4).zeros(8).put(width - 1, 4).put(height - 1, 4);
  file.zeros(8).put(hundredths(width), 4).put(hundredths(height), 4);
  file.text(" EMF").put(0x10000, 4).zeros(24).put(960, 4).put(960, 4).put(254, 4).put(254, 4);
  return file.put(14, 4).put(20, 4).put(0, 4).put(16, 4).put(20, 4).bytes();
}

}  // namespace kestrel
