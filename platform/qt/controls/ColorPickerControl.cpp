#include "ColorPickerControl.h"

#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Language.h"
#include "platform/qt/core/Pictures.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {

ColorPickerControl::ColorPickerControl(ColorPickerWidget& picker, ControlId id)
    : WidgetControl(picker, std::move(id)), picker_(picker) {
  keepTranslated(picker_, *receiver(), [this] {
    if (caption_) EnhancedCaption(*caption_);
  });
  QObject::connect(&picker_, &ColorPickerWidget::colorChosen, receiver(), [this](const QColor& color) {
    guarded([&] {
      // A choice of the user raises `Change` even if only the extra choice ends.
      value_ = fromColor(color);
      picker_.show(color, false);
      Change(value_);
    });
  });
  QObject::connect(&picker_, &ColorPickerWidget::enhancedChosen, receiver(), [this] {
    EnhancedIsSelected(true);
    guarded([this] { EnhancedButtonClicked(); });
  });
}

void ColorPickerControl::Value(OLE_COLOR value) {
  picker_.show(toColor(value), false);
  if (value == value_) return;
  value_ = value;
  Change(value);
}

void ColorPickerControl::EnhancedCaption(const std::string& value) {
  caption_ = value;
  picker_.setEnhancedCaption(translated(value));
}

std::string ColorPickerControl::EnhancedCaption() const { return fromQt(picker_.enhancedCaption()); }

}  // namespace kestrel::qt
