#pragma once

#include <algorithm>

#include "../Window.h"
#include "imaging/contract/controls/Slider.h"

namespace kestrel::headless {

class Slider final : public WindowOf<kestrel::Slider> {
 public:
  using WindowOf::WindowOf;

  void range(std::int32_t min, std::int32_t max) {
    min_ = min;
    max_ = max;
    value_ = std::clamp(value_, min_, max_);
  }

  std::int32_t Min() const override { return min_; }
  std::int32_t Max() const override { return max_; }
  std::int32_t Value() const override { return value_; }
  void Value(std::int32_t value) override {
    const std::int32_t bounded = std::clamp(value, min_, max_);
    if (bounded == value_) return;
    value_ = bounded;
    Change();
  }

 private:
  std::int32_t min_ = 0;
  std::int32_t max_ = 100;
  std::int32_t value_ = 0;
};

}  // namespace kestrel::headless
