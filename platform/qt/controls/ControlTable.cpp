#include "ControlTable.h"

#include <QAbstractButton>
#include <QVariant>

#include "../Text.h"
#include "../site/QtSite.h"
#include "ButtonControls.h"
#include "ColorPickerControl.h"
#include "DisplayControls.h"
#include "InputControls.h"
#include "base/Numbers.h"

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

std::unique_ptr<Control> wrap(QWidget& widget, engine::ClipboardPort& clipboard) {
  if (auto* const site = qobject_cast<SiteWidget*>(&widget)) {
    return std::make_unique<QtSite>(*site, fromQt(site->objectName()), true, clipboard);
  }
  using Wrap = std::unique_ptr<Control> (*)(QWidget&);
  // A class stands before its bases.
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
  };
  for (const Wrap wrapper : kClasses) {
    if (auto control = wrapper(widget)) return control;
  }
  return nullptr;
}

}  // namespace

void ControlTable::addAll(QWidget& root, engine::ClipboardPort& clipboard) {
  for (QWidget* child : root.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    std::unique_ptr<Control> control = child->objectName().isEmpty() ? nullptr : wrap(*child, clipboard);
    // The parts of a composite widget are its own affair; only frames hold controls of the form.
    const bool isContainer = !control || dynamic_cast<Frame*>(control.get()) != nullptr;
    if (control) add(std::move(control));
    if (isContainer) addAll(*child, clipboard);
  }
}

void ControlTable::add(std::unique_ptr<Control> control) {
  controls_.insert_or_assign({LowerCase(control->Name()), control->Index()}, std::move(control));
}

void ControlTable::initialiseSites() {
  for (const auto& [id, control] : controls_) {
    if (auto* const site = dynamic_cast<QtSite*>(control.get())) site->initialise();
  }
}

Control* ControlTable::find(std::string_view name, std::int32_t index) const {
  const auto found = controls_.find({LowerCase(name), index});
  return found == controls_.end() ? nullptr : found->second.get();
}

std::int32_t ControlTable::upperBound(std::string_view name) const {
  const std::string wanted = LowerCase(name);
  std::int32_t highest = -1;
  for (const auto& [id, control] : controls_) {
    if (id.first == wanted && id.second > highest) highest = id.second;
  }
  return highest;
}

}  // namespace kestrel::qt
