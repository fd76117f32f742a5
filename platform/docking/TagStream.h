#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "StoredLayout.h"

namespace kestrel::docking {

/// Raised for every block that is not a layout: "Invalid file format".
inline constexpr std::int32_t kInvalidFileFormat = 321;

/// One item of the tag stream in a layout block: a property with its value, an object with its items, or
/// an image. Numbers in the block are little-endian.
struct TagItem {
  using Items = std::vector<TagItem>;
  /// Properties of the variant types 2, 11, 3, 4, 5, 8 and 9, in this order; then image and object.
  using Value = std::variant<std::int16_t, bool, std::int32_t, float, double, std::string, StoredFont,
                             StoredPicture, Items>;

  std::int32_t id = 0;
  std::int32_t index = 0;  ///< of an object: its index in the collection; else 0
  Value value;
};

/// Reads the items to the end of the stream. Raises RuntimeError 321 for a malformed stream. Memory use is
/// bounded by a small multiple of the stream's size, regardless of its counts.
TagItem::Items parseTags(std::span<const std::byte> stream);

/// Appends the items to a block.
void appendTags(std::vector<std::byte>& block, const TagItem::Items& items);

/// Raises RuntimeError 321: "The stored layout is damaged: ", `what` and a full stop.
[[noreturn]] void refuseLayout(const std::string& what);

}  // namespace kestrel::docking
