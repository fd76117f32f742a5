#pragma once

#include <cstdint>

#include "imaging/contract/Screen.h"

namespace kestrel::headless {

class Screen final : public kestrel::Screen {
 public:
  std::int32_t MousePointer() const override { return pointer_; }
  void MousePointer(std::int32_t value) override { pointer_ = value; }
  std::int32_t TwipsPerPixelX() const override { return 1; }
  std::int32_t TwipsPerPixelY() const override { return twipsPerPixelY; }

  std::int32_t twipsPerPixelY = 1;

 private:
  std::int32_t pointer_ = 0;
};

}  // namespace kestrel::headless
