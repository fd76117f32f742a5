#pragma once

#include "BusyPointer.h"
#include "imaging/contract/Screen.h"

namespace kestrel::qt {

class QtScreen final : public Screen {
 public:
  std::int32_t MousePointer() const override { return BusyPointer::current(); }
  void MousePointer(std::int32_t value) override { BusyPointer::set(value); }
  std::int32_t TwipsPerPixelX() const override { return 1; }
  std::int32_t TwipsPerPixelY() const override { return 1; }
};

}  // namespace kestrel::qt
