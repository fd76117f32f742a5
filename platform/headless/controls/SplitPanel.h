#pragma once

#include <algorithm>

#include "../Window.h"
#include "base/RuntimeError.h"
#include "imaging/contract/controls/SplitPanel.h"

namespace kestrel::headless {

class SplitPanel final : public WindowOf<kestrel::SplitPanel> {
 public:
  using WindowOf::WindowOf;

  static constexpr std::int32_t kDividerWidth = 6;

  void Panes(Control& first, Control& second) override {
    first_ = &windowOf(first);
    second_ = &windowOf(second);
    first_->host(this);
    second_->host(this);
    arrange();
  }

  std::int32_t Position() const override { return position_; }
  void Position(std::int32_t value) override {
    const std::int32_t position = std::max(value, 0);
    if (position == position_) return;
    position_ = position;
    arrange();
    PositionChange();
  }

  /// The user moves the divider; it stays inside the panel.
  void drag(std::int32_t position) { Position(std::min(position, largest())); }

 private:
  static Window& windowOf(Control& control) {
    if (auto* const window = dynamic_cast<Window*>(&control)) return *window;
    throw RuntimeError(err::kInvalidCall, "The control is of another platform.");
  }

  void resized() override { arrange(); }

  std::int32_t largest() const { return std::max(place().Width - kDividerWidth, 0); }

  void arrange() {
    if (!first_) return;
    const std::int32_t shown = std::min(position_, largest());
    const std::int32_t second = std::min(shown + kDividerWidth, place().Width);
    first_->place({0, 0, shown, place().Height});
    second_->place({second, 0, place().Width - second, place().Height});
  }

  std::int32_t position_ = kSplitPosition;
  Window* first_ = nullptr;
  Window* second_ = nullptr;
};

}  // namespace kestrel::headless
