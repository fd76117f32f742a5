#pragma once

#include <string>

#include "../Window.h"
#include "imaging/contract/controls/TextBox.h"

namespace kestrel::headless {

class TextBox final : public WindowOf<kestrel::TextBox> {
 public:
  using WindowOf::WindowOf;

  std::string Text() const override { return text_; }
  void Text(const std::string& value) override {
    if (value == text_) return;
    text_ = value;
    allSelected_ = false;
    Change();
  }
  std::string SelectedText() const override { return allSelected_ ? text_ : std::string(); }

  void selectAll() { allSelected_ = true; }
  void focused() override { GotFocus(); }

 private:
  std::string text_;
  bool allSelected_ = false;
};

}  // namespace kestrel::headless
