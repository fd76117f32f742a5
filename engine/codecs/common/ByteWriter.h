#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "ByteReader.h"

namespace kestrel::engine {

/// Sequential writer for the bytes of a file.
class ByteWriter {
 public:
  explicit ByteWriter(ByteOrder order = ByteOrder::little) : order_(order) {}

  std::size_t size() const { return bytes_.size(); }
  std::vector<std::uint8_t> finish() { return std::move(bytes_); }

  void u8(std::size_t value) { bytes_.push_back(static_cast<std::uint8_t>(value)); }

  void u16(std::size_t value) {
    const bool little = order_ == ByteOrder::little;
    u8((little ? value : value >> 8) & 0xFF);
    u8((little ? value >> 8 : value) & 0xFF);
  }

  void u32(std::size_t value) {
    const bool little = order_ == ByteOrder::little;
    u16((little ? value : value >> 16) & 0xFFFF);
    u16((little ? value >> 16 : value) & 0xFFFF);
  }

  void bytes(Bytes data) { bytes_.insert(bytes_.end(), data.begin(), data.end()); }
  void text(std::string_view text) { bytes_.insert(bytes_.end(), text.begin(), text.end()); }
  void zeros(std::size_t count) { bytes_.insert(bytes_.end(), count, std::uint8_t{0}); }

 private:
  std::vector<std::uint8_t> bytes_;
  ByteOrder order_;
};

}  // namespace kestrel::engine
