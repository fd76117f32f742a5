#pragma once

#include <cstdint>

#include "Types.h"

namespace kestrel {

/// The clipboard format of a bitmap.
inline constexpr std::int32_t kClipboardBitmap = 2;

/// The system clipboard.
class Clipboard {
 public:
  virtual ~Clipboard() = default;
  /// Whether it holds the format; text and files are not bitmaps.
  virtual bool GetFormat(std::int32_t format) = 0;
};

}  // namespace kestrel
