#pragma once

#include <cstdint>
#include <string>

namespace kestrel {

/// A TIFF file of gray pages; row y has the value y. Each directory precedes its pixels, so that a truncated
/// file keeps its first rows.
inline std::string grayTiff(std::uint32_t width, std::uint32_t height, std::uint32_t pages = 1) {
  constexpr std::uint32_t kHeader = 8;
  constexpr std::uint16_t kEntries = 8;
  constexpr std::uint32_t kDirectory = 2 + kEntries * 12 + 4;
  constexpr std::uint16_t kLong = 4;
  std::string file = "II";
  const auto put = [&file](std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) file.push_back(static_cast<char>(value >> (8 * i)));
  };
  const auto entry = [&put](std::uint32_t tag, std::uint32_t value) {
    put(tag, 2), put(kLong, 2), put(1, 4), put(value, 4);
  };
  put(42, 2), put(kHeader, 4);
  for (std::uint32_t page = 0; page < pages; ++page) {
    const auto begin = static_cast<std::uint32_t>(file.size());
    put(kEntries, 2);
    entry(256, width), entry(257, height), entry(258, 8), entry(259, 1), entry(262, 1);
    entry(273, begin + kDirectory), entry(278, height), entry(279, width * height);
    put(page + 1 < pages ? begin + kDirectory + width * height : 0, 4);
    for (std::uint32_t y = 0; y < height; ++y) file.append(width, static_cast<char>(y));
  }
  return file;
}

}  // namespace kestrel
