#pragma once

#include <optional>
#include <string>

#include "ColorPickerWidget.h"
#include "WidgetControl.h"
#include "imaging/contract/controls/ColorPicker.h"

namespace kestrel::qt {

class ColorPickerControl final : public WidgetControl<ColorPicker> {
 public:
  ColorPickerControl(ColorPickerWidget& picker, ControlId id);

  OLE_COLOR Value() const override { return value_; }
  void Value(OLE_COLOR value) override;
  bool EnhancedIsSelected() const override { return picker_.enhancedSelected(); }
  void EnhancedIsSelected(bool value) override { picker_.show(picker_.color(), value); }
  void EnhancedVisible(bool value) override { picker_.setEnhancedVisible(value); }
  bool EnhancedVisible() const override { return picker_.enhancedVisible(); }
  void EnhancedCaption(const std::string& value) override;
  std::string EnhancedCaption() const override;
  void DropDown() override { picker_.dropDown(); }

 private:
  ColorPickerWidget& picker_;
  std::optional<std::string> caption_;  ///< English, if not that of the .ui file
  OLE_COLOR value_ = 0;
};

}  // namespace kestrel::qt
