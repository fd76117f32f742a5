#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine {

/// The IPTC records among the image resource blocks ("8BIM") that PSD files and JPEG markers hold; empty if
/// there are none.
std::vector<std::uint8_t> iptcOfResources(Bytes resources);

/// One image resource block that holds the IPTC records.
std::vector<std::uint8_t> resourcesOfIptc(Bytes iptc);

/// The content of the resource with this number; empty if there is none.
Bytes findResource(Bytes resources, std::uint16_t number);

}  // namespace kestrel::engine
