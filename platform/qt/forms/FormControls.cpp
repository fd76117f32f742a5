#include "FormControls.h"

#include "imaging/contract/controls/Frame.h"
#include "platform/qt/controls/ControlFactory.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/site/QtSite.h"

namespace kestrel::qt {
namespace {

std::unique_ptr<Control> wrap(QWidget& widget, const SiteServices& services) {
  auto* const own = qobject_cast<SiteWidget*>(&widget);
  if (!own) return controlOf(widget);
  return std::make_unique<QtSite>(*own, fromQt(own->objectName()), true, services);
}

}  // namespace

void FormControls::addAll(QWidget& root, const SiteServices& services) {
  for (QWidget* child : root.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    std::unique_ptr<Control> control = child->objectName().isEmpty() ? nullptr : wrap(*child, services);
    // The children of a composite widget are internal; only frames contain controls of the form.
    const bool isContainer = !control || dynamic_cast<Frame*>(control.get()) != nullptr;
    if (control) controls_.add(std::move(control));
    if (isContainer) addAll(*child, services);
  }
}

void FormControls::initializeSites() {
  for (const auto& [id, control] : controls_.all()) {
    if (auto* const site = dynamic_cast<QtSite*>(control.get())) site->initialize();
  }
}

}  // namespace kestrel::qt
