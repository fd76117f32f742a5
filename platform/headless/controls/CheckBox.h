#pragma once

#include <string>

#include "../Window.h"
#include "imaging/contract/controls/CheckBox.h"

namespace kestrel::headless {

class CheckBox final : public WindowOf<kestrel::CheckBox> {
 public:
  using WindowOf::WindowOf;

  std::string Caption() const override { return caption_; }
  void Caption(const std::string& value) override { caption_ = value; }
  std::int32_t Value() const override { return value_; }
  void Value(std::int32_t value) override {
    if (value == value_) return;
    value_ = value;
    Click();
  }

 private:
  std::string caption_;
  std::int32_t value_ = 0;
};

}  // namespace kestrel::headless
