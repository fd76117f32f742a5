#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::jpeg {

/// Content of a marker segment (APP0 + number) of a JPEG file.
struct MarkerView {
  int number;
  Bytes data;
};

struct Marker {
  int number;
  std::vector<std::uint8_t> data;
};

/// Number of the comment marker (COM).
constexpr int kCommentMarker = 0xFE - 0xE0;

/// Assembles EXIF, XMP, IPTC, color profile and comment from their segments.
Metadata readMarkers(std::span<const MarkerView> markers);

/// Marker segments for `metadata`. A segment holds at most 64 KB: long comments, IPTC records and profiles
/// continue in further segments, XMP in extended XMP. EXIF has only one segment: a block too long for it
/// loses its largest values.
std::vector<Marker> writeMarkers(const Metadata& metadata);

}  // namespace kestrel::engine::jpeg
