#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::jpeg {

/// The content of one marker (APP0 + number) of a JPEG file.
struct MarkerView {
  int number;
  Bytes data;
};

struct Marker {
  int number;
  std::vector<std::uint8_t> data;
};

/// The number of the marker that holds a plain comment.
constexpr int kCommentMarker = 0xFE - 0xE0;

/// Camera data, XMP, IPTC, color profile and comment, put together from their markers.
Metadata readMarkers(std::span<const MarkerView> markers);

/// The markers that tell `metadata`. Each holds at most 64 KB: long comments, IPTC records and profiles are
/// continued in the next, XMP in its extension. Camera data has but one marker, so what is too long for that
/// loses its largest values.
std::vector<Marker> writeMarkers(const Metadata& metadata);

}  // namespace kestrel::engine::jpeg
