#pragma once

#include <string>
#include <utility>

#include "../Window.h"
#include "imaging/contract/controls/CommandButton.h"

namespace kestrel::headless {

class CommandButton final : public WindowOf<kestrel::CommandButton> {
 public:
  using WindowOf::WindowOf;

  std::string Caption() const override { return caption_; }
  void caption(std::string value) { caption_ = std::move(value); }
  bool Pressed() const override { return pressed_; }
  void Pressed(bool value) override { pressed_ = value; }
  OLE_COLOR BackColor() const override { return backColor_; }
  void BackColor(OLE_COLOR value) override { backColor_ = value; }
  void Press() override {
    if (isUsable()) Click();
  }

 private:
  std::string caption_;
  bool pressed_ = false;
  OLE_COLOR backColor_ = kNoColor;
};

}  // namespace kestrel::headless
