#pragma once

#include <cstdint>
#include <utility>

#include "base/RuntimeError.h"
#include "engine/imgx/ClipboardPort.h"
#include "imaging/contract/Clipboard.h"

namespace kestrel::headless {

/// A private clipboard that holds a picture or other content.
class Clipboard final : public kestrel::Clipboard, public engine::ClipboardPort {
 public:
  bool GetFormat(std::int32_t format) override { return format == kClipboardBitmap && hasBitmap(); }

  void offer(const engine::Bitmap& bitmap) override { bitmap_ = bitmap; }
  bool hasBitmap() override { return !bitmap_.empty(); }
  engine::Bitmap take() override {
    if (bitmap_.empty()) throw RuntimeError(521, "The clipboard holds no picture.");
    return bitmap_;
  }

  /// Another program copied a text or files.
  void holdNoPicture() { bitmap_ = {}; }

 private:
  engine::Bitmap bitmap_;
};

}  // namespace kestrel::headless
