#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/Decoded.h"

// `probe` looks at the first bytes only. `decode` may be given anything and raises RuntimeError 481 for what
// it cannot read, 7 for what is too large. It leaves `format` to its caller.

namespace kestrel::engine {

namespace jpeg {
bool probe(Bytes data);
Decoded decode(Bytes data);
/// As `decode`, a half, a quarter or an eighth as large, with the longest side still at least `longestSide`
/// pixels if the picture's is.
Decoded decodeReduced(Bytes data, std::int32_t longestSide);
std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata,
                                 const EncodeOptions& options);
}  // namespace jpeg

}  // namespace kestrel::engine
