#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/Decoded.h"

// `probe` checks the signature only. `decode` accepts any bytes; it raises RuntimeError 481 for files that it
// cannot read and 7 for pictures that are too large. The caller sets `format`.

namespace kestrel::engine {

namespace emf {
bool probe(Bytes data);
Decoded decode(Bytes data);
std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata,
                                 const EncodeOptions& options);
}  // namespace emf

}  // namespace kestrel::engine
