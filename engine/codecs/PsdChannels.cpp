#include "PsdChannels.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <string>

#include "Damage.h"

namespace kestrel::engine::psd {
namespace {

enum Compression : std::uint16_t { kRaw = 0, kRunLengths = 1 };

/// Unpacks one row; false if the data does not fill it.
bool unpackBits(Bytes data, std::vector<std::uint8_t>& row) {
  std::size_t filled = 0;
  std::size_t at = 0;
  while (filled < row.size() && at < data.size()) {
    const int code = static_cast<std::int8_t>(data[at++]);
    if (code == -128) continue;
    const std::size_t count = static_cast<std::size_t>(code >= 0 ? code : -code) + 1;
    const std::size_t fitting = std::min(count, row.size() - filled);
    if (code < 0) {
      if (at == data.size()) return false;
      std::fill_n(row.begin() + static_cast<std::ptrdiff_t>(filled), fitting, data[at++]);
    } else {
      if (data.size() - at < fitting) return false;
      std::copy_n(data.begin() + static_cast<std::ptrdiff_t>(at), fitting,
                  row.begin() + static_cast<std::ptrdiff_t>(filled));
      at += std::min(count, data.size() - at);
    }
    filled += fitting;
  }
  return filled == row.size();
}

std::size_t rowBytes(const ChannelForm& form) {
  return (static_cast<std::size_t>(form.width) * static_cast<std::size_t>(form.depth) + 7) / 8;
}

/// A stored row, big-endian, to 8-bit samples. Bits mean black where they are set.
void toSamples(const std::vector<std::uint8_t>& row, const ChannelForm& form, std::uint8_t* samples) {
  const auto width = static_cast<std::size_t>(form.width);
  for (std::size_t x = 0; x < width; ++x) {
    switch (form.depth) {
      case 1:
        samples[x] = (row[x / 8] >> (7 - x % 8) & 1) != 0 ? 0 : 255;
        break;
      case 8:
        samples[x] = row[x];
        break;
      case 16:
        samples[x] = static_cast<std::uint8_t>(((row[2 * x] << 8 | row[2 * x + 1]) * 255 + 32767) / 65535);
        break;
      default: {
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < 4; ++i) bits = bits << 8 | row[4 * x + i];
        const float value = std::bit_cast<float>(bits);
        samples[x] =
            value > 0 ? static_cast<std::uint8_t>(std::min(value, 1.0F) * 255 + 0.5F) : std::uint8_t{0};
      }
    }
  }
}

/// The packed size of each row of each channel, as far as the file tells.
std::vector<std::size_t> readRowSizes(ByteReader& reader, const ChannelForm& form) {
  const std::size_t count = static_cast<std::size_t>(form.channels) * static_cast<std::size_t>(form.height);
  if (reader.remaining() / (form.large ? 4 : 2) < count) {
    refusePicture("The PSD file is damaged: it ends before the first row of the picture.");
  }
  std::vector<std::size_t> sizes(count);
  for (std::size_t& size : sizes) size = form.large ? reader.u32() : reader.u16();
  return sizes;
}

}  // namespace

Channels readChannels(ByteReader& reader, const ChannelForm& form, std::int32_t wanted) {
  const std::uint16_t compression = reader.u16();
  if (compression != kRaw && compression != kRunLengths) {
    refusePicture("The PSD file cannot be read: compression " + std::to_string(compression) +
                  " of the whole picture is not known.");
  }
  std::vector<std::size_t> sizes;
  if (compression == kRunLengths) sizes = readRowSizes(reader, form);

  Channels result;
  result.rows = form.height;
  const std::size_t size = rowBytes(form);
  std::vector<std::uint8_t> row(size);
  std::size_t number = 0;
  for (std::int32_t channel = 0; channel < wanted; ++channel) {
    std::vector<std::uint8_t>& plane = result.planes.emplace_back(static_cast<std::size_t>(form.width) *
                                                                  static_cast<std::size_t>(form.height));
    for (std::int32_t y = 0; y < form.height; ++y, ++number) {
      const std::size_t stored = compression == kRaw ? size : sizes[number];
      const Bytes packed = reader.take(std::min(stored, reader.remaining()));
      bool whole = packed.size() == stored;
      if (compression == kRaw) {
        if (whole) std::ranges::copy(packed, row.begin());
      } else {
        whole = unpackBits(packed, row) && whole;
      }
      if (!whole) {
        result.rows = std::min(result.rows, y);
        if (reader.remaining() == 0) break;
        continue;
      }
      toSamples(row, form, plane.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(form.width));
    }
  }
  return result;
}

std::vector<std::uint8_t> packBits(Bytes row) {
  std::vector<std::uint8_t> packed;
  std::size_t at = 0;
  const auto runAt = [&](std::size_t start) {
    std::size_t length = 1;
    while (length < 128 && start + length < row.size() && row[start + length] == row[start]) ++length;
    return length;
  };
  while (at < row.size()) {
    const std::size_t run = runAt(at);
    if (run >= 2) {
      packed.push_back(static_cast<std::uint8_t>(257 - run));
      packed.push_back(row[at]);
      at += run;
      continue;
    }
    std::size_t count = 1;
    while (count < 128 && at + count < row.size() && runAt(at + count) < 3) ++count;
    packed.push_back(static_cast<std::uint8_t>(count - 1));
    packed.insert(packed.end(), row.begin() + static_cast<std::ptrdiff_t>(at),
                  row.begin() + static_cast<std::ptrdiff_t>(at + count));
    at += count;
  }
  return packed;
}

}  // namespace kestrel::engine::psd
