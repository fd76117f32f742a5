#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Codecs.h"

namespace kestrel::engine::jpeg {

/// The content of one application marker (APP0 + number) of a JPEG file.
struct MarkerView {
  int number;
  Bytes data;
};

struct Marker {
  int number;
  std::vector<std::uint8_t> data;
};

/// Camera data, XMP, IPTC and colour profile, put together from their markers.
Metadata readMarkers(std::span<const MarkerView> markers);

/// The markers that tell `metadata` for a picture of this size. What does not fit into the format's markers
/// of 64 KB (camera data, XMP and IPTC must each stand in one) is left out.
std::vector<Marker> writeMarkers(const Metadata& metadata, std::int32_t width, std::int32_t height);

}  // namespace kestrel::engine::jpeg
