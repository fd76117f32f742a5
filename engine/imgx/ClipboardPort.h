#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// Picture access to the system clipboard; each platform implements one.
class ClipboardPort {
 public:
  virtual ~ClipboardPort() = default;

  /// Puts a picture on the clipboard. The bitmap is a reference: a platform with delayed rendering converts
  /// it to a format only when another program requests that format.
  virtual void offer(const Bitmap& bitmap) = 0;

  /// Whether the clipboard holds a picture; text and files do not count.
  virtual bool hasBitmap() = 0;

  /// The clipboard's picture, with alpha if its format has it. Raises RuntimeError 521 if there is none.
  virtual Bitmap take() = 0;
};

}  // namespace kestrel::engine
