#include "ButtonControls.h"

#include <QShortcutEvent>
#include <QSignalBlocker>
#include <QVariant>

#include "ButtonFocus.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Language.h"
#include "platform/qt/core/Pictures.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

/// Lets Tab reach the chosen option of its group only. The toolkit does so after an option has had the focus,
/// and then for that one.
void takeTabStop(QRadioButton& chosen) {
  if (!chosen.autoExclusive() || !chosen.parentWidget()) return;
  for (QRadioButton* option :
       chosen.parentWidget()->findChildren<QRadioButton*>(QString(), Qt::FindDirectChildrenOnly)) {
    option->setFocusPolicy(option == &chosen ? Qt::StrongFocus : Qt::ClickFocus);
  }
}

/// For an option whose value is entered in a field, which the form names in the property `buddy`: the access
/// key chooses the option and moves the focus into the field.
class FieldOfOption final : public QObject {
 public:
  explicit FieldOfOption(QRadioButton& option) : QObject(&option), option_(option) {
    option_.installEventFilter(this);
  }

  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() != QEvent::Shortcut || static_cast<QShortcutEvent*>(event)->isAmbiguous()) return false;
    auto* const field = option_.window()->findChild<QWidget*>(option_.property("buddy").toString());
    if (!field) return false;
    option_.click();
    field->setFocus(Qt::ShortcutFocusReason);
    return true;
  }

 private:
  QRadioButton& option_;
};

}  // namespace

CheckBoxControl::CheckBoxControl(QCheckBox& box, ControlId id)
    : WidgetControl(box, std::move(id)), box_(box) {
  QObject::connect(&box_, &QCheckBox::toggled, receiver(), [this] { guarded([this] { Click(); }); });
  keepTranslated(box_, *receiver(), [this] {
    if (caption_) Caption(*caption_);
  });
}

std::string CheckBoxControl::Caption() const { return fromQt(box_.text()); }

void CheckBoxControl::Caption(const std::string& value) {
  caption_ = value;
  box_.setText(translated(value));
}

OptionButtonControl::OptionButtonControl(QRadioButton& button, ControlId id)
    : WidgetControl(button, std::move(id)), button_(button) {
  QObject::connect(&button_, &QRadioButton::toggled, receiver(), [this](bool chosen) {
    if (!chosen) return;
    takeTabStop(button_);
    guarded([this] { Click(); });
  });
  if (button_.property("buddy").isValid()) new FieldOfOption(button_);
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
    : WidgetControl(button, std::move(id)), button_(button), swatch_(button), pressed_(button.isChecked()) {
  if (auto* const push = qobject_cast<QPushButton*>(&button_)) new ButtonFocus(*push);
  button_.installEventFilter(&swatch_);  // the last one paints first: a swatch shows color and focus itself
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
