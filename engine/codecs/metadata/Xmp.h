#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/codecs/common/Decoded.h"

// XMP packets (ISO 16684-1) as far as files want them looked into: which properties there are at the top, and
// where. What is no packet is left as it is.

namespace kestrel::engine::xmp {

using Packet = std::vector<std::uint8_t>;

/// Takes the previews of the picture as it was out of the packet.
void dropThumbnails(Packet& packet);

/// Writes the picture's size into the places where the packet tells it, if it does.
void setSize(Packet& packet, std::int32_t width, std::int32_t height);

/// A packet in two parts, as JPEG files hold one that is longer than a marker: "standard" and "extended" XMP.
struct Parts {
  Packet standard;
  Packet extended;   ///< empty if all fits into the first
  std::string name;  ///< of the extended part: 32 hexadecimal digits, the MD5 sum of its bytes
};

/// Parts a packet such that the standard part has at most `limit` bytes, with as few properties as possible,
/// the longest, in the extended one. Nothing if that cannot be done.
std::optional<Parts> split(const Packet& packet, std::size_t limit);

/// The name of the extended part that a standard one wants; empty if it wants none.
std::string extendedName(Bytes standard);

/// Puts a packet together from its parts. An extended part that is no packet is left out.
Packet join(Bytes standard, Bytes extended);

}  // namespace kestrel::engine::xmp
