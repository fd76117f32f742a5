#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "engine/codecs/common/Decoded.h"
#include "engine/undo/PictureState.h"

namespace kestrel::engine {

/// A picture with unsaved changes at one moment.
struct Snapshot {
  PictureState picture;
  std::string filename;      ///< empty for an unnamed picture
  std::int64_t seconds = 0;  ///< when it was taken, since 1970 in UTC
};

/// The facts at the beginning of a packed snapshot.
struct SnapshotFacts {
  std::string filename;
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::int64_t seconds = 0;
};

/// Packs a snapshot without loss, with checksums: the blocks, one after the other, are the content of a file.
/// The pixels are packed in bands of rows, on the calling thread alone. None if `canceled`, which is asked
/// before each band, returns true. Raises RuntimeError 7 if the result would exceed `mostBytes`.
std::optional<std::vector<std::vector<std::uint8_t>>> packSnapshot(const Snapshot& snapshot,
                                                                   std::size_t mostBytes,
                                                                   const std::function<bool()>& canceled);

/// How many bytes of a file `readFacts` needs at most, if its first bytes are these; 0 if they are not the
/// beginning of a packed snapshot. At least `kSnapshotPrefix` bytes are needed.
std::size_t factsSize(Bytes prefix);
inline constexpr std::size_t kSnapshotPrefix = 24;

/// Raises RuntimeError 481 if they are damaged.
SnapshotFacts readFacts(Bytes data);

/// Raises RuntimeError 481 if any byte is missing, added or changed.
Snapshot unpackSnapshot(Bytes data);

}  // namespace kestrel::engine
