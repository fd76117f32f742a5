#include "SplitPanelControl.h"

#include "base/Required.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Handles.h"

namespace kestrel::qt {

SplitPanelControl::SplitPanelControl(SplitPanelWidget& panel, ControlId id)
    : WidgetControl(panel, std::move(id)), panel_(panel) {
  QObject::connect(&panel, &SplitPanelWidget::positionChanged, receiver(),
                   [this] { guarded([this] { PositionChange(); }); });
}

void SplitPanelControl::Panes(Control& first, Control& second) {
  QWidget* const left = widgetOf(first.hWnd());
  QWidget* const right = widgetOf(second.hWnd());
  panel_.setPanes(Required(left), Required(right));
}

}  // namespace kestrel::qt
