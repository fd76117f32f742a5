#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/codecs/common/Decoded.h"

// Edits XMP packets (ISO 16684-1) at the level of top-level properties. Invalid packets are left unchanged.

namespace kestrel::engine::xmp {

using Packet = std::vector<std::uint8_t>;

/// Removes embedded thumbnails from the packet.
void dropThumbnails(Packet& packet);

/// Updates the picture size in the packet, if it is there.
void setSize(Packet& packet, std::int32_t width, std::int32_t height);

/// A packet split into "standard" and "extended" XMP, as JPEG files store one that is longer than a marker
/// segment.
struct Parts {
  Packet standard;
  Packet extended;   ///< empty if everything fits into `standard`
  std::string name;  ///< digest of the extended part: 32 hexadecimal digits, its MD5 sum
};

/// Splits a packet so that the standard part has at most `limit` bytes. Moves the longest properties, as few
/// as possible, to the extended part. Nothing if that is impossible.
std::optional<Parts> split(const Packet& packet, std::size_t limit);

/// Digest of the extended part that a standard part refers to; empty if it has none.
std::string extendedName(Bytes standard);

/// Joins the two parts to one packet. An invalid extended part is ignored.
Packet join(Bytes standard, Bytes extended);

}  // namespace kestrel::engine::xmp
