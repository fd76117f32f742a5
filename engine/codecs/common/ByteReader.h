#pragma once

#include <cstddef>
#include <cstdint>

#include "Decoded.h"
#include "base/RuntimeError.h"

namespace kestrel::engine {

enum class ByteOrder { little, big };

/// Sequential reader over the bytes of a file. Reading or seeking beyond the end raises RuntimeError 481.
class ByteReader {
 public:
  explicit ByteReader(Bytes data, ByteOrder order = ByteOrder::little) : data_(data), order_(order) {}

  std::size_t position() const { return position_; }
  std::size_t remaining() const { return data_.size() - position_; }

  void seek(std::size_t position) {
    if (position > data_.size()) endsTooEarly();
    position_ = position;
  }

  void skip(std::size_t count) { take(count); }

  Bytes take(std::size_t count) {
    if (count > remaining()) endsTooEarly();
    const Bytes result = data_.subspan(position_, count);
    position_ += count;
    return result;
  }

  std::uint8_t u8() { return take(1)[0]; }

  std::uint16_t u16() {
    const Bytes b = take(2);
    return order_ == ByteOrder::little ? static_cast<std::uint16_t>(b[0] | b[1] << 8)
                                       : static_cast<std::uint16_t>(b[1] | b[0] << 8);
  }

  std::uint32_t u32() {
    const std::uint32_t first = u16();
    const std::uint32_t second = u16();
    return order_ == ByteOrder::little ? first | second << 16 : first << 16 | second;
  }

  std::int16_t i16() { return static_cast<std::int16_t>(u16()); }
  std::int32_t i32() { return static_cast<std::int32_t>(u32()); }

 private:
  [[noreturn]] static void endsTooEarly() {
    throw RuntimeError(err::kInvalidPicture, "The file is damaged: it ends too early.");
  }

  Bytes data_;
  ByteOrder order_;
  std::size_t position_ = 0;
};

}  // namespace kestrel::engine
