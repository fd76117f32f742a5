#pragma once

#include <QComboBox>
#include <QKeySequence>
#include <QLineEdit>
#include <QSlider>
#include <QTabBar>

#include "FocusWatcher.h"
#include "WidgetControl.h"
#include "imaging/contract/controls/ComboBox.h"
#include "imaging/contract/controls/Slider.h"
#include "imaging/contract/controls/TabStrip.h"
#include "imaging/contract/controls/TextBox.h"

namespace kestrel::qt {

class TextBoxControl final : public WidgetControl<TextBox> {
 public:
  TextBoxControl(QLineEdit& edit, ControlId id);

  std::string Text() const override;
  void Text(const std::string& value) override;
  std::string SelectedText() const override;

 private:
  QLineEdit& edit_;
  FocusWatcher focus_;
};

/// A drop-down list. The form stores the numbers of its entries in the list property `itemData`.
class ComboBoxControl final : public WidgetControl<ComboBox> {
 public:
  ComboBoxControl(QComboBox& combo, ControlId id);

  std::int32_t ListCount() const override { return combo_.count(); }
  std::string List(std::int32_t index) const override;
  std::int32_t ItemData(std::int32_t index) const override;
  std::int32_t ListIndex() const override { return combo_.currentIndex(); }
  void ListIndex(std::int32_t value) override;

 private:
  QComboBox& combo_;
};

class SliderControl final : public WidgetControl<Slider> {
 public:
  SliderControl(QSlider& slider, ControlId id);

  std::int32_t Min() const override { return slider_.minimum(); }
  std::int32_t Max() const override { return slider_.maximum(); }
  std::int32_t Value() const override { return slider_.value(); }
  void Value(std::int32_t value) override { slider_.setValue(value); }

 private:
  QSlider& slider_;
};

/// A row of tabs. The form stores the captions in the list property `tabs`. Ctrl+Tab and Ctrl+Shift+Tab
/// select the next and the previous tab from anywhere in the window.
class TabStripControl final : public WidgetControl<TabStrip> {
 public:
  TabStripControl(QTabBar& tabs, ControlId id);

  std::int32_t Count() const override { return tabs_.count(); }
  std::string Caption(std::int32_t index) const override;
  std::int32_t SelectedIndex() const override { return tabs_.currentIndex() + 1; }
  void SelectedIndex(std::int32_t value) override;

 private:
  void selectBy(QKeySequence::StandardKey keys, int step);

  QTabBar& tabs_;
};

}  // namespace kestrel::qt
