#include "EditorWidget.h"

#include "Resources/Layouts.h"
#include "platform/docking/LayoutReader.h"
#include "platform/qt/docking/QtMoorage.h"
#include "platform/qt/view/QtImageView.h"

namespace kestrel::qt {
namespace {

/// The menu of the tools, one of which is chosen.
constexpr char kTools[] = "mnuDraw";

/// The key of "+" may need Shift, or need it for "=" only.
std::vector<DesktopKey> desktopKeys() {
  const auto ctrl = [](Qt::Key key) { return QKeySequence(Qt::CTRL | key); };
  const auto ctrlShift = [](Qt::Key key) { return QKeySequence(Qt::CTRL | Qt::SHIFT | key); };
  return {
      {"btnZoomIn", {ctrl(Qt::Key_Plus), ctrlShift(Qt::Key_Plus), ctrl(Qt::Key_Equal)}},
      {"btnZoomOut", {ctrl(Qt::Key_Minus)}},
      {"btnZoomActualSize", {ctrl(Qt::Key_0)}},
      {"btnEditRedo", QKeySequence::keyBindings(QKeySequence::Redo)},
  };
}

}  // namespace

void EditorWidget::populate(QtSite& site, const SiteServices& services) {
  site_ = &site;
  bars_ = new MoorageWindow(this);
  connect(bars_, &MoorageWindow::smallestSizeChanged, this, &QWidget::updateGeometry);
  auto moorage = std::make_unique<QtMoorage>(*bars_, ControlId{"mrgUI"},
                                             docking::readLayout(resources::dialogLayout()), kTools);
  moorage_ = moorage.get();
  if (property("DesktopKeys").toBool()) moorage_->useDesktopKeys(desktopKeys());
  site.add(std::move(moorage));

  // Created after the suite, so that it is above the client area.
  auto* const surface = new ImageSurface(this);
  auto view = std::make_unique<QtImageView>(*surface, ControlId{"igxImage"}, services.clipboard);
  view_ = view.get();
  site.add(std::move(view));
  setFocusProxy(surface);
  acceptFiles(true);
}

void EditorWidget::closeMenus() {
  if (moorage_) moorage_->actions().closeMenus();
}

QSize EditorWidget::minimumSizeHint() const { return bars_ ? bars_->minimumSizeHint() : QSize(); }

}  // namespace kestrel::qt
