#pragma once

#include <string>
#include <utility>
#include <vector>

#include "../Window.h"
#include "base/RuntimeError.h"
#include "imaging/contract/controls/TabStrip.h"

namespace kestrel::headless {

class TabStrip final : public WindowOf<kestrel::TabStrip> {
 public:
  using WindowOf::WindowOf;

  /// The first tab is selected.
  void captions(std::vector<std::string> value) {
    captions_ = std::move(value);
    selected_ = 1;
  }

  std::int32_t Count() const override { return static_cast<std::int32_t>(captions_.size()); }
  std::string Caption(std::int32_t index) const override {
    check(index);
    return captions_[static_cast<std::size_t>(index - 1)];
  }
  std::int32_t SelectedIndex() const override { return selected_; }
  void SelectedIndex(std::int32_t value) override {
    check(value);
    if (value == selected_) return;
    selected_ = value;
    Click();
  }

 private:
  void check(std::int32_t index) const {
    if (index < 1 || index > Count()) {
      throw RuntimeError(err::kSubscript, "There is no tab " + std::to_string(index) + ".");
    }
  }

  std::vector<std::string> captions_;
  std::int32_t selected_ = 1;
};

}  // namespace kestrel::headless
