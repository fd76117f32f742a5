#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>
#include <vector>

#include "Codecs.h"

namespace kestrel::engine {

/// The codec of one file format. What else is known of the format is in imaging/contract/Formats.h.
struct Codec {
  std::int32_t format;
  std::string_view name;  ///< as in "a JPEG image"
  /// What a file that is not of this format lacks, as in "not a JPEG image: no start marker".
  std::string_view mark;
  bool (*probe)(Bytes data);
  Decoded (*decode)(Bytes data);
  /// Null for a format that can only be read.
  std::vector<std::uint8_t> (*encode)(const Bitmap&, const Metadata&, const EncodeOptions&);
  /// Null for a format whose pictures are not read any quicker when less of them is wanted.
  Decoded (*decodeReduced)(Bytes data, std::int32_t longestSide) = nullptr;
};

/// All formats, in the order in which their probes are tried: those without a clear mark come last.
std::span<const Codec> codecTable();

/// The format with this code, or null.
const Codec* codecOf(std::int32_t format);

/// The format that the content shows, or null.
const Codec* codecOfContent(Bytes data);

/// The format that the extension names, in whatever case, or null.
const Codec* codecOfName(const std::filesystem::path& path);

}  // namespace kestrel::engine
