#include "EditorWidget.h"

#include <QKeyEvent>

#include "../docking/QtMoorage.h"
#include "../view/QtImageView.h"
#include "Resources/Layouts.h"
#include "platform/docking/LayoutReader.h"

namespace kestrel::qt {

void EditorWidget::furnish(QtSite& site, engine::ClipboardPort& clipboard) {
  site_ = &site;
  auto* const bars = new MoorageWindow(this);
  auto moorage =
      std::make_unique<QtMoorage>(*bars, ControlId{"mrgUI"}, docking::readLayout(resources::dialogLayout()));
  moorage_ = moorage.get();
  site.add(std::move(moorage));

  // Made later, so that it lies over the client area that the bars leave free.
  auto* const surface = new ImageSurface(this);
  auto view = std::make_unique<QtImageView>(*surface, ControlId{"igxImage"}, clipboard);
  view_ = view.get();
  site.add(std::move(view));
  setFocusProxy(surface);
}

void EditorWidget::keyPressEvent(QKeyEvent* event) {
  // The Escape that ends a pending paste must not close the dialog of the host, and the picture with it.
  const bool mine = event->key() == Qt::Key_Escape;
  SiteWidget::keyPressEvent(event);
  event->setAccepted(mine);
}

}  // namespace kestrel::qt
