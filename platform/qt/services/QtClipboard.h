#pragma once

#include "engine/imgx/ClipboardPort.h"
#include "imaging/contract/Clipboard.h"

namespace kestrel::qt {

class QtClipboard final : public Clipboard {
 public:
  explicit QtClipboard(engine::ClipboardPort& port) : port_(port) {}

  bool GetFormat(std::int32_t format) override { return format == kClipboardBitmap && port_.hasBitmap(); }

 private:
  engine::ClipboardPort& port_;
};

}  // namespace kestrel::qt
