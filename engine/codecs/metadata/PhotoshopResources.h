#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine {

/// IPTC records in the image resource blocks ("8BIM") of PSD files and JPEG segments; empty if there are
/// none.
std::vector<std::uint8_t> iptcOfResources(Bytes resources);

/// An image resource block with the IPTC records.
std::vector<std::uint8_t> resourcesOfIptc(Bytes iptc);

/// Content of the resource with this number; empty if absent.
Bytes findResource(Bytes resources, std::uint16_t number);

}  // namespace kestrel::engine
