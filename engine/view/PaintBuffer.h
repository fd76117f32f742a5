#pragma once

#include <cstddef>
#include <cstdint>

namespace kestrel::engine {

/// The order of the four bytes of a pixel.
enum class ChannelOrder { rgba, bgra };

/// The pixels that a view is painted into. All are painted opaque, so the fourth byte, 255, may be read as
/// straight alpha, premultiplied alpha or padding.
struct PaintBuffer {
  std::uint8_t* data = nullptr;
  std::size_t stride = 0;  ///< bytes from row to row
  std::int32_t width = 0;
  std::int32_t height = 0;
  ChannelOrder order = ChannelOrder::rgba;

  std::uint8_t* row(std::int32_t y) const { return data + static_cast<std::size_t>(y) * stride; }
};

}  // namespace kestrel::engine
