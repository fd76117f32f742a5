#pragma once

#include "SplitPanelWidget.h"
#include "WidgetControl.h"
#include "imaging/contract/controls/SplitPanel.h"

namespace kestrel::qt {

class SplitPanelControl final : public WidgetControl<SplitPanel> {
 public:
  SplitPanelControl(SplitPanelWidget& panel, ControlId id);

  /// Raises RuntimeError 91 for a control without a widget.
  void Panes(Control& first, Control& second) override;
  std::int32_t Position() const override { return panel_.position(); }
  void Position(std::int32_t value) override { panel_.setPosition(value); }

 private:
  SplitPanelWidget& panel_;
};

}  // namespace kestrel::qt
