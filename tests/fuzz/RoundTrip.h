#pragma once

#include <cstdint>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::fuzz {

/// Ends the program unless the decoded picture, with its metadata, can be encoded in `format` and decodes
/// again without a notice, to the same size and, for PNG, the same pixels. Does nothing for large pictures,
/// to be quick, and for formats that cannot be written.
void requireRoundTrip(const engine::Decoded& decoded, std::int32_t format);

}  // namespace kestrel::fuzz
