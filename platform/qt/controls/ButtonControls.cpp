#include "ButtonControls.h"

#include <QSignalBlocker>
#include <QVariant>

#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Pictures.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {

CheckBoxControl::CheckBoxControl(QCheckBox& box, ControlId id)
    : WidgetControl(box, std::move(id)), box_(box) {
  QObject::connect(&box_, &QCheckBox::toggled, receiver(), [this] { guarded([this] { Click(); }); });
}

std::string CheckBoxControl::Caption() const { return fromQt(box_.text()); }

void CheckBoxControl::Caption(const std::string& value) { box_.setText(translated(value)); }

OptionButtonControl::OptionButtonControl(QRadioButton& button, ControlId id)
    : WidgetControl(button, std::move(id)), button_(button) {
  QObject::connect(&button_, &QRadioButton::toggled, receiver(), [this](bool chosen) {
    if (chosen) guarded([this] { Click(); });
  });
}

std::string OptionButtonControl::Caption() const { return fromQt(button_.text()); }

std::string OptionButtonControl::Tag() const { return fromQt(button_.property("Tag").toString()); }

void OptionButtonControl::Value(bool value) {
  // The toolkit keeps one button of a group checked; the contract allows none.
  const bool exclusive = button_.autoExclusive();
  if (!value) button_.setAutoExclusive(false);
  button_.setChecked(value);
  button_.setAutoExclusive(exclusive);
}

CommandButtonControl::CommandButtonControl(QAbstractButton& button, ControlId id)
    : WidgetControl(button, std::move(id)), button_(button), swatch_(button) {
  QObject::connect(&button_, &QAbstractButton::clicked, receiver(), [this] {
    // A click does not change the appearance, which follows the written state.
    Pressed(pressed_);
    guarded([this] { Click(); });
  });
}

std::string CommandButtonControl::Caption() const { return fromQt(button_.text()); }

void CommandButtonControl::Pressed(bool value) {
  pressed_ = value;
  const QSignalBlocker silent(button_);
  button_.setChecked(value);
  swatch_.show(toColor(backColor_), value);
}

void CommandButtonControl::BackColor(OLE_COLOR value) {
  backColor_ = value;
  swatch_.show(toColor(value), pressed_);
}

}  // namespace kestrel::qt
