#include "PanelAccessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "PanelField.h"

namespace kestrel::qt {
namespace {

class AccessiblePanel final : public QAccessibleWidget {
 public:
  explicit AccessiblePanel(PanelField& panel) : QAccessibleWidget(&panel, QAccessible::StaticText) {}

  QString text(QAccessible::Text which) const override {
    const QString value = panel().text().trimmed();
    switch (which) {
      case QAccessible::Name:
        return value.isEmpty() ? panel().toolTip() : value;
      case QAccessible::Value:
        return value;
      case QAccessible::Description:
        return panel().toolTip();
      default:
        return QAccessibleWidget::text(which);
    }
  }

  // Icon and text are no objects of their own.
  int childCount() const override { return 0; }
  QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }

 private:
  PanelField& panel() const { return *static_cast<PanelField*>(widget()); }
};

QAccessibleInterface* accessibleOf(const QString& /*className*/, QObject* object) {
  auto* const panel = qobject_cast<PanelField*>(object);
  // A bar of progress is a standard control with a value.
  return panel && !panel->showsProgress() ? new AccessiblePanel(*panel) : nullptr;
}

}  // namespace

void useAccessiblePanels() {
  // The toolkit keeps each factory once.
  QAccessible::installFactory(&accessibleOf);
}

void reportValue(PanelField& panel) {
  QAccessibleEvent changed(&panel, QAccessible::NameChanged);
  QAccessible::updateAccessibility(&changed);
}

}  // namespace kestrel::qt
