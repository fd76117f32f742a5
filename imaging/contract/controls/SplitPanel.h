#pragma once

#include <cstdint>

#include "../Control.h"
#include "base/Event.h"

namespace kestrel {

/// The width of the first pane of a new split panel, in pixels.
inline constexpr std::int32_t kSplitPosition = 240;

/// Two controls side by side, with a vertical divider that the user moves by mouse or keyboard.
///
/// The position of the divider is kept for the lifetime of the panel: when the panel changes its size, the
/// first pane keeps its width as far as it fits, and gets it back when there is room again.
class SplitPanel : public Control {
 public:
  /// Fills the panel with two controls on the same surface, the first on the left. Called once; the controls
  /// must live as long as the panel is used.
  virtual void Panes(Control& first, Control& second) = 0;

  /// The width of the first pane in pixels, as it was set last by the user or by code.
  virtual std::int32_t Position() const = 0;
  /// A negative value counts as 0. Raises `PositionChange` if the value differs.
  virtual void Position(std::int32_t value) = 0;

  Event<> PositionChange;
};

}  // namespace kestrel
