#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/Decoded.h"

// `probe` looks at the first bytes only. `decode` may be given anything and raises RuntimeError 481 for what
// it cannot read, 7 for what is too large. It leaves `format` to its caller.

namespace kestrel::engine {

namespace png {
bool probe(Bytes data);
Decoded decode(Bytes data);
std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata,
                                 const EncodeOptions& options);
}  // namespace png

}  // namespace kestrel::engine
