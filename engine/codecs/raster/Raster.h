#pragma once

#include <cstdint>
#include <vector>

#include "engine/codecs/common/Decoded.h"

// `probe` checks the signature only. `decode` accepts any bytes; it raises RuntimeError 481 for files that it
// cannot read and 7 for pictures that are too large. The caller sets `format`.

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
