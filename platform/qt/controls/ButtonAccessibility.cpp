#include "ButtonAccessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

/// The property of a button that keeps its role.
constexpr char kRole[] = "kestrelRole";

class AccessibleButton final : public QAccessibleWidget {
 public:
  AccessibleButton(QAbstractButton& button, QAccessible::Role role) : QAccessibleWidget(&button, role) {}

  QString text(QAccessible::Text which) const override {
    const QString text =
        QAccessibleWidget::text(which == QAccessible::Value ? QAccessible::Description : which);
    const bool hasName = which != QAccessible::Name || !text.isEmpty();
    return hasName ? text : withoutAccessKey(button().text());
  }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.pressed = button().isDown();
    if (role() == QAccessible::RadioButton) {
      state.checkable = true;
      state.checked = button().isChecked();
    } else {
      state.hasPopup = true;
    }
    return state;
  }

  QStringList actionNames() const override {
    QStringList names;
    if (button().isEnabled()) {
      names += role() == QAccessible::RadioButton ? pressAction() : showMenuAction();
      names += QAccessibleWidget::actionNames();
    }
    return names;
  }

  void doAction(const QString& action) override {
    if (action == pressAction() || action == showMenuAction()) {
      button().click();
    } else {
      QAccessibleWidget::doAction(action);
    }
  }

 private:
  QAbstractButton& button() const { return *static_cast<QAbstractButton*>(widget()); }
};

QAccessibleInterface* accessibleOf(const QString& /*className*/, QObject* object) {
  auto* const button = qobject_cast<QAbstractButton*>(object);
  if (!button) return nullptr;
  const QVariant role = button->property(kRole);
  return role.isValid() ? new AccessibleButton(*button, static_cast<QAccessible::Role>(role.toInt()))
                        : nullptr;
}

void present(QAbstractButton& button, QAccessible::Role role) {
  // The toolkit keeps each factory once.
  QAccessible::installFactory(&accessibleOf);
  button.setProperty(kRole, static_cast<int>(role));
  // The toolkit may have made and kept an interface as the button was put into its bar or got its name.
  QAccessible::deleteAccessibleInterface(
      QAccessible::uniqueId(QAccessible::queryAccessibleInterface(&button)));
}

}  // namespace

void presentAsChoice(QAbstractButton& button) { present(button, QAccessible::RadioButton); }

void presentAsList(QAbstractButton& button) { present(button, QAccessible::ButtonMenu); }

}  // namespace kestrel::qt
