#pragma once

#include <QAbstractButton>
#include <QCheckBox>
#include <QRadioButton>
#include <optional>

#include "SwatchLook.h"
#include "WidgetControl.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/OptionButton.h"

namespace kestrel::qt {

class CheckBoxControl final : public WidgetControl<CheckBox> {
 public:
  CheckBoxControl(QCheckBox& box, ControlId id);

  std::string Caption() const override;
  void Caption(const std::string& value) override;
  std::int32_t Value() const override { return box_.isChecked() ? 1 : 0; }
  void Value(std::int32_t value) override { box_.setChecked(value != 0); }

 private:
  QCheckBox& box_;
  std::optional<std::string> caption_;  ///< English, if not that of the .ui file
};

/// An option of a group. Tab reaches the chosen one. The form may name the field of an option's value in the
/// property `buddy`: the option's access key moves the focus into that field.
class OptionButtonControl final : public WidgetControl<OptionButton> {
 public:
  OptionButtonControl(QRadioButton& button, ControlId id);

  std::string Caption() const override;
  std::string Tag() const override;
  bool Value() const override { return button_.isChecked(); }
  void Value(bool value) override;

 private:
  QRadioButton& button_;
};

/// A push button. It is checkable in the form if it belongs to a group that shows a state.
class CommandButtonControl final : public WidgetControl<CommandButton> {
 public:
  CommandButtonControl(QAbstractButton& button, ControlId id);

  std::string Caption() const override;
  bool Pressed() const override { return pressed_; }
  void Pressed(bool value) override;
  OLE_COLOR BackColor() const override { return backColor_; }
  void BackColor(OLE_COLOR value) override;
  void Press() override { button_.click(); }

 private:
  QAbstractButton& button_;
  SwatchLook swatch_;
  OLE_COLOR backColor_ = kNoColor;
  bool pressed_;
};

}  // namespace kestrel::qt
