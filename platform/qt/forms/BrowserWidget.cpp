#include "BrowserWidget.h"

#include <QAction>
#include <QEvent>
#include <vector>

#include "Resources/Layouts.h"
#include "platform/docking/LayoutReader.h"
#include "platform/qt/controls/SplitPanelControl.h"
#include "platform/qt/docking/QtMoorage.h"
#include "platform/qt/thumbnails/QtThumbnailView.h"
#include "platform/qt/thumbnails/ThumbnailArea.h"
#include "platform/qt/tree/FolderTreeWidget.h"

namespace kestrel::qt {
namespace {

/// The menu of the views, one of which is chosen.
constexpr char kViews[] = "mnuView";

std::vector<DesktopKey> desktopKeys() {
  return {
      {"btnFileClose", QKeySequence::keyBindings(QKeySequence::Close)},
      {"btnHelpContents", QKeySequence::keyBindings(QKeySequence::HelpContents)},
  };
}

}  // namespace

void BrowserWidget::populate(QtSite& site, const SiteServices& services) {
  bars_ = new MoorageWindow(this);
  connect(bars_, &MoorageWindow::smallestSizeChanged, this, &QWidget::updateGeometry);
  auto moorage = std::make_unique<QtMoorage>(*bars_, ControlId{"mrgUI"},
                                             docking::readLayout(resources::browserLayout()), kViews);
  moorage_ = moorage.get();
  moorage_->popupActions = [this] { return actions(); };
  moorage_->actions().showKey(moorage_->Commands().Item("btnImageDelete"), QKeySequence::Delete);
  if (property("DesktopKeys").toBool()) moorage_->useDesktopKeys(desktopKeys());
  site.add(std::move(moorage));

  // Created after the suite, so that they are above the client area, and in the order of the Tab key: tree,
  // divider, pictures.
  auto* const tree = new FolderTreeWidget(this);
  site.add(std::make_unique<QtSite>(*tree, "ftvBrowse", site.UserMode(), services));
  panel_ = new SplitPanelWidget(this);
  site.add(std::make_unique<SplitPanelControl>(*panel_, ControlId{"pnlBrowse"}));
  auto* const area = new ThumbnailArea(this);
  auto view = std::make_unique<QtThumbnailView>(*area, ControlId{"thvBrowse"}, services);
  thumbnails_ = view.get();
  site.add(std::move(view));
  setFocusProxy(area);
}

void BrowserWidget::closeMenus() {
  if (moorage_) moorage_->actions().closeMenus();
}

QSize BrowserWidget::minimumSizeHint() const {
  return bars_ ? bars_->minimumSizeFor(panel_->minimumSizeHint()) : QSize();
}

bool BrowserWidget::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) updateGeometry();  // the panel needs another size
  return SiteWidget::event(event);
}

}  // namespace kestrel::qt
