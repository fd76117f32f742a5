#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>
#include <vector>

#include "Codecs.h"

namespace kestrel::engine {

/// Codec of a file format. Extensions and other facts of the format are in imaging/contract/Formats.h.
struct Codec {
  std::int32_t format;
  std::string_view name;  ///< as in "a JPEG image"
  /// Reason for files that fail the probe, as in "not a JPEG image: no start marker".
  std::string_view mark;
  bool (*probe)(Bytes data);
  Decoded (*decode)(Bytes data);
  /// Null for a read-only format.
  std::vector<std::uint8_t> (*encode)(const Bitmap&, const Metadata&, const EncodeOptions&);
  /// Null for a format that cannot be decoded faster at a reduced size.
  Decoded (*decodeReduced)(Bytes data, std::int32_t longestSide) = nullptr;
};

/// All formats in probing order; those without an unambiguous signature come last.
std::span<const Codec> codecTable();

/// The format with this code, or null.
const Codec* codecOf(std::int32_t format);

/// The format whose probe matches the content, or null.
const Codec* codecOfContent(Bytes data);

/// The format of the path's extension (case-insensitive), or null.
const Codec* codecOfName(const std::filesystem::path& path);

}  // namespace kestrel::engine
