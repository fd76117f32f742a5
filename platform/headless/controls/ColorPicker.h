#pragma once

#include <string>

#include "../Window.h"
#include "imaging/contract/controls/ColorPicker.h"

namespace kestrel::headless {

class ColorPicker final : public WindowOf<kestrel::ColorPicker> {
 public:
  using WindowOf::WindowOf;

  OLE_COLOR Value() const override { return value_; }
  void Value(OLE_COLOR value) override {
    enhanced_ = false;
    if (value == value_) return;
    value_ = value;
    Change(value_);
  }
  bool EnhancedIsSelected() const override { return enhanced_; }
  void EnhancedIsSelected(bool value) override { enhanced_ = value; }
  void EnhancedVisible(bool value) override { enhancedVisible_ = value; }
  bool EnhancedVisible() const override { return enhancedVisible_; }
  void EnhancedCaption(const std::string& value) override { enhancedCaption_ = value; }
  std::string EnhancedCaption() const override { return enhancedCaption_; }
  void DropDown() override { open_ = true; }

  /// Whether the list of colors is open. A choice in it closes it.
  bool isOpen() const { return open_; }
  void pick(OLE_COLOR color) {
    open_ = false;
    enhanced_ = false;
    value_ = color;
    // A choice of the user raises `Change` even if only the extra button's state changed.
    Change(value_);
  }
  void pressEnhanced() {
    open_ = false;
    enhanced_ = true;
    EnhancedButtonClicked();
  }

 private:
  OLE_COLOR value_ = 0;
  bool enhanced_ = false;
  bool enhancedVisible_ = true;
  bool open_ = false;
  std::string enhancedCaption_;
};

}  // namespace kestrel::headless
