#pragma once

#include "engine/imgx/ClipboardPort.h"

namespace kestrel::qt {

/// The desktop's clipboard for the engine.
class QtClipboardPort final : public engine::ClipboardPort {
 public:
  void offer(const engine::Bitmap& bitmap) override;
  bool hasBitmap() override;
  engine::Bitmap take() override;
};

}  // namespace kestrel::qt
