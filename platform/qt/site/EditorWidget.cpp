#include "EditorWidget.h"

#include "../docking/QtMoorage.h"
#include "../view/QtImageView.h"
#include "Resources/Layouts.h"
#include "platform/docking/LayoutReader.h"

namespace kestrel::qt {

EditorWidget::EditorWidget(engine::ClipboardPort& clipboard, bool userMode, QWidget* parent)
    : SiteWidget(parent), site_(std::make_unique<QtSite>(*this, "ImageProcessingCtl", userMode)) {
  auto* const bars = new MoorageWindow(this);
  auto moorage =
      std::make_unique<QtMoorage>(*bars, ControlId{"mrgUI"}, docking::readLayout(resources::dialogLayout()));
  moorage_ = moorage.get();
  site_->add(std::move(moorage));

  // Made later, so that it lies over the client area that the bars leave free.
  auto* const surface = new ImageSurface(this);
  auto view = std::make_unique<QtImageView>(*surface, ControlId{"igxImage"}, clipboard);
  view_ = view.get();
  site_->add(std::move(view));
  setFocusProxy(surface);
}

EditorWidget::~EditorWidget() = default;

}  // namespace kestrel::qt
