#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/Decoded.h"

// `probe` looks at the first bytes only. `decode` may be given anything and raises RuntimeError 481 for what
// it cannot read, 7 for what is too large. It leaves `format` to its caller.

namespace kestrel::engine {

namespace bmp {
bool probe(Bytes data);
Decoded decode(Bytes data);
std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata,
                                 const EncodeOptions& options);
}  // namespace bmp

namespace pcx {
bool probe(Bytes data);
Decoded decode(Bytes data);
std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata,
                                 const EncodeOptions& options);
}  // namespace pcx

namespace tga {
bool probe(Bytes data);
Decoded decode(Bytes data);
std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata,
                                 const EncodeOptions& options);
}  // namespace tga

namespace psd {
bool probe(Bytes data);
Decoded decode(Bytes data);
std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata,
                                 const EncodeOptions& options);
}  // namespace psd

namespace wbmp {
bool probe(Bytes data);
Decoded decode(Bytes data);
std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata,
                                 const EncodeOptions& options);
}  // namespace wbmp

namespace tla {
bool probe(Bytes data);
Decoded decode(Bytes data);
std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata,
                                 const EncodeOptions& options);
}  // namespace tla

namespace pcd {
bool probe(Bytes data);
Decoded decode(Bytes data);
}  // namespace pcd

}  // namespace kestrel::engine
