#include "ControlFactory.h"

#include <QAbstractButton>
#include <QVariant>

#include "ButtonControls.h"
#include "ColorPickerControl.h"
#include "DisplayControls.h"
#include "FormHeaderControl.h"
#include "InputControls.h"
#include "SplitPanelControl.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

ControlId idOf(const QWidget& widget) {
  std::string name = fromQt(widget.objectName());
  const QVariant index = widget.property("index");
  if (!index.isValid()) return {name, -1};
  const std::string suffix = "_" + std::to_string(index.toInt());
  if (name.ends_with(suffix)) name.resize(name.size() - suffix.size());
  return {name, index.toInt()};
}

template <typename Widget, typename ControlOfWidget>
std::unique_ptr<Control> wrapAs(QWidget& widget) {
  auto* const typed = qobject_cast<Widget*>(&widget);
  return typed ? std::make_unique<ControlOfWidget>(*typed, idOf(widget)) : nullptr;
}

}  // namespace

std::unique_ptr<Control> controlOf(QWidget& widget) {
  using Wrap = std::unique_ptr<Control> (*)(QWidget&);
  // Derived classes come before their bases.
  static constexpr Wrap kClasses[] = {
      &wrapAs<ColorPickerWidget, ColorPickerControl>,
      &wrapAs<QCheckBox, CheckBoxControl>,
      &wrapAs<QRadioButton, OptionButtonControl>,
      &wrapAs<QAbstractButton, CommandButtonControl>,
      &wrapAs<QLineEdit, TextBoxControl>,
      &wrapAs<QComboBox, ComboBoxControl>,
      &wrapAs<QSlider, SliderControl>,
      &wrapAs<QTabBar, TabStripControl>,
      &wrapAs<QLabel, LabelControl>,
      &wrapAs<FrameWidget, FrameControl>,
      &wrapAs<PictureWidget, PictureBoxControl>,
      &wrapAs<FormHeaderWidget, FormHeaderControl>,
      &wrapAs<SplitPanelWidget, SplitPanelControl>,
  };
  for (const Wrap wrapper : kClasses) {
    if (auto control = wrapper(widget)) return control;
  }
  return nullptr;
}

}  // namespace kestrel::qt
