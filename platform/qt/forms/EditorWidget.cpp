#include "EditorWidget.h"

#include "Resources/Layouts.h"
#include "platform/docking/LayoutReader.h"
#include "platform/qt/docking/QtMoorage.h"
#include "platform/qt/view/QtImageView.h"

namespace kestrel::qt {

void EditorWidget::populate(QtSite& site, engine::ClipboardPort& clipboard) {
  site_ = &site;
  auto* const bars = new MoorageWindow(this);
  auto moorage =
      std::make_unique<QtMoorage>(*bars, ControlId{"mrgUI"}, docking::readLayout(resources::dialogLayout()));
  moorage_ = moorage.get();
  site.add(std::move(moorage));

  // Created after the suite, so that it is above the client area.
  auto* const surface = new ImageSurface(this);
  auto view = std::make_unique<QtImageView>(*surface, ControlId{"igxImage"}, clipboard);
  view_ = view.get();
  site.add(std::move(view));
  setFocusProxy(surface);
  acceptFiles(true);
}

}  // namespace kestrel::qt
