#include "InputControls.h"

#include <QShortcut>
#include <QStringList>
#include <QVariant>

#include "base/RuntimeError.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Language.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

constexpr std::int32_t kInvalidListIndex = 381;

}  // namespace

TextBoxControl::TextBoxControl(QLineEdit& edit, ControlId id)
    : WidgetControl(edit, std::move(id)), edit_(edit), focus_([this] { guarded([this] { GotFocus(); }); }) {
  edit_.installEventFilter(&focus_);
  QObject::connect(&edit_, &QLineEdit::textChanged, receiver(), [this] {
    // The typed character is visible before the work that `Change` starts, such as a preview.
    edit_.repaint();
    guarded([this] { Change(); });
  });
}

std::string TextBoxControl::Text() const { return fromQt(edit_.text()); }

void TextBoxControl::Text(const std::string& value) {
  const QString text = toQt(value);
  // Setting an equal text would move the cursor of a user who is typing.
  if (text != edit_.text()) edit_.setText(text);
}

std::string TextBoxControl::SelectedText() const { return fromQt(edit_.selectedText()); }

ComboBoxControl::ComboBoxControl(QComboBox& combo, ControlId id)
    : WidgetControl(combo, std::move(id)), combo_(combo) {
  const QStringList numbers = combo_.property("itemData").toStringList();
  for (int i = 0; i < combo_.count() && i < numbers.size(); ++i) combo_.setItemData(i, numbers[i].toInt());
  QObject::connect(&combo_, &QComboBox::currentIndexChanged, receiver(),
                   [this] { guarded([this] { Click(); }); });
}

std::string ComboBoxControl::List(std::int32_t index) const { return fromQt(combo_.itemText(index)); }

std::int32_t ComboBoxControl::ItemData(std::int32_t index) const {
  if (index < 0 || index >= combo_.count()) {
    throw RuntimeError(kInvalidListIndex, "The list has no entry " + std::to_string(index) + ".");
  }
  return combo_.itemData(index).toInt();
}

void ComboBoxControl::ListIndex(std::int32_t value) {
  if (value < -1 || value >= combo_.count()) {
    throw RuntimeError(err::kInvalidPropertyValue, "The list has no entry " + std::to_string(value) + ".");
  }
  combo_.setCurrentIndex(value);
}

SliderControl::SliderControl(QSlider& slider, ControlId id)
    : WidgetControl(slider, std::move(id)), slider_(slider) {
  QObject::connect(&slider_, &QSlider::valueChanged, receiver(), [this] { guarded([this] { Change(); }); });
}

TabStripControl::TabStripControl(QTabBar& tabs, ControlId id)
    : WidgetControl(tabs, std::move(id)), tabs_(tabs) {
  const QStringList captions = tabs_.property("tabs").toStringList();
  for (qsizetype i = 0; i < captions.size(); ++i) tabs_.addTab({});
  keepTranslated(tabs_, *receiver(), [this, captions] {
    for (int i = 0; i < captions.size(); ++i) tabs_.setTabText(i, translated(fromQt(captions[i])));
  });
  QObject::connect(&tabs_, &QTabBar::currentChanged, receiver(), [this] { guarded([this] { Click(); }); });
  selectBy(QKeySequence::NextChild, 1);
  selectBy(QKeySequence::PreviousChild, -1);
}

void TabStripControl::selectBy(QKeySequence::StandardKey keys, int step) {
  auto* const shortcut = new QShortcut(keys, &tabs_);
  QObject::connect(shortcut, &QShortcut::activated, receiver(), [this, step] {
    const int count = tabs_.count();
    if (count > 0) tabs_.setCurrentIndex((tabs_.currentIndex() + step + count) % count);
  });
}

std::string TabStripControl::Caption(std::int32_t index) const { return fromQt(tabs_.tabText(index - 1)); }

void TabStripControl::SelectedIndex(std::int32_t value) { tabs_.setCurrentIndex(value - 1); }

}  // namespace kestrel::qt
