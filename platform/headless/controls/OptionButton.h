#pragma once

#include <string>
#include <utility>

#include "../Window.h"
#include "imaging/contract/controls/OptionButton.h"

namespace kestrel::headless {

class OptionButton final : public WindowOf<kestrel::OptionButton> {
 public:
  using WindowOf::WindowOf;

  std::string Caption() const override { return caption_; }
  void caption(std::string value) { caption_ = std::move(value); }
  std::string Tag() const override { return tag_; }
  void tag(std::string value) { tag_ = std::move(value); }

  bool Value() const override { return value_; }
  void Value(bool value) override {
    if (value == value_) return;
    value_ = value;
    if (!value_) return;
    clearSiblings();
    Click();
  }

 private:
  void clearSiblings() {
    for (Window* sibling : parent()->children()) {
      auto* button = dynamic_cast<OptionButton*>(sibling);
      if (button && button != this) button->value_ = false;
    }
  }

  std::string caption_;
  std::string tag_;
  bool value_ = false;
};

}  // namespace kestrel::headless
