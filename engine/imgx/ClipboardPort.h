#pragma once

#include "engine/pixels/Bitmap.h"

namespace kestrel::engine {

/// The system clipboard as far as pictures go; each platform has one.
class ClipboardPort {
 public:
  virtual ~ClipboardPort() = default;

  /// Puts a picture on the clipboard. The bitmap is a reference: a platform that can offers it and makes the
  /// other side's formats of it only when they are asked for.
  virtual void offer(const Bitmap& bitmap) = 0;

  /// Whether the clipboard holds a picture; text and files are none.
  virtual bool hasBitmap() = 0;

  /// The clipboard's picture, with its alpha where it came with one. Raises RuntimeError 521 if it holds
  /// none.
  virtual Bitmap take() = 0;
};

}  // namespace kestrel::engine
