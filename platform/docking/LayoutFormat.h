#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace kestrel::docking {

/// Constants of a layout block, shared by reader and writer. The format is specified in docs/layout.md.
namespace layout_format {

inline constexpr std::string_view kMagic = "MRGEHDR";
inline constexpr std::int32_t kVersion = 4;
inline constexpr std::int32_t kHeaderField1 = 511;
inline constexpr std::int32_t kHeaderField2 = 27;
inline constexpr std::size_t kChecksumOffset = 20;
inline constexpr std::size_t kHeaderSize = 36;
inline constexpr std::size_t kLargestBlock = 1u << 20;

/// Objects and properties at the top of the stream, in this order.
namespace top {
enum : std::int32_t {
  kFont = 1,
  kImageGroups = 2,
  kCategories = 4,
  kCommands = 5,
  kBars = 6,
  kStatusBars = 7,
  kPanes = 8,
  kDockWindows = 9
};
}

namespace image_group {
enum : std::int32_t { kGroup = 1, kWidth = 1, kHeight = 2, kImage = 5 };
}

namespace image {
enum : std::int32_t { kGuid = 2, kName = 3, kTransparent = 7, kNormal = 8, kDisabled = 9 };
}

namespace category {
enum : std::int32_t { kCategory = 1, kGuid = 1, kName = 2 };
}

/// Besides the commands, the collection stores their count, whether hot keys without Ctrl or Alt are enabled,
/// and the index of each menu.
namespace commands {
enum : std::int32_t { kCount = 1, kAllowUnmodified = 2, kMenuIndex = 3, kCommand = 10 };
}

namespace command {
enum : std::int32_t {
  kGuid = 1,
  kKey = 2,
  kVisible = 4,
  kCaption = 6,
  kShortCaption = 7,
  kCategory = 8,
  kDescription = 9,
  kHotKey = 11,
  kImage = 12,
  kText = 1001,
  kWidth = 1002,
  kSpring = 1003,
  kPressedOrMenu = 1004,
  kProgress = 1005,
  kType = 100000
};
}

namespace hot_key {
enum : std::int32_t { kShift = 1, kKeyCode = 2 };
}

namespace bar {
enum : std::int32_t {
  kBar = 1,
  kGuid = 1,
  kName = 2,
  kKind = 3,
  kVisible = 4,
  kEdge = 5,
  kRow = 6,
  kEntry = 10
};
}

namespace entry {
enum : std::int32_t { kGuid = 1, kBeginGroup = 2, kCommand = 8 };
}

namespace pane {
enum : std::int32_t { kPane = 1, kGuid = 1, kName = 2, kEdge = 3, kSize = 4 };
}

namespace dock_window {
enum : std::int32_t { kWindow = 1, kGuid = 1, kKey = 2, kVisible = 4, kCaption = 6, kPane = 8 };
}

}  // namespace layout_format

/// The CRC-32 (ISO 3309) of the bytes after the header's checksum field.
std::uint32_t layoutChecksum(std::span<const std::byte> block);

}  // namespace kestrel::docking
