#include "DockPanels.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLayout>
#include <algorithm>

#include "DockContent.h"
#include "platform/qt/core/Caption.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Language.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/site/SiteWidget.h"

namespace kestrel::qt {
namespace {

/// The model decides whether it closes.
class Panel final : public QDockWidget {
 public:
  Panel(docking::DockWindowModel& model, QWidget* parent) : QDockWidget(parent), model_(model) {
    keepTranslated(*this, *this, [this] { setCaption(*this, translated(model_.Caption())); });
    setObjectName(toQt(model_.Name()));
  }

 protected:
  void closeEvent(QCloseEvent* event) override {
    guarded([this] { model_.show(false, kReasonUser); });
    event->setAccepted(isHidden());
  }

  void paintEvent(QPaintEvent* event) override {
    QDockWidget::paintEvent(event);
    if (!isFloating() || !widget()) return;
    // The title, where it is not the window manager's; below is the content with a frame of its own.
    const QRect title(widget()->x(), 0, widget()->width(), widget()->y() + 1);
    if (title.height() > 1) DockContent::paintFrame(*this, title);
  }

  void changeEvent(QEvent* event) override {
    QDockWidget::changeEvent(event);
    // The toolkit lays out the caption only when the size of the window changes.
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
      layout()->invalidate();
      QCoreApplication::postEvent(this, new QEvent(QEvent::LayoutRequest));
    }
  }

  void keyPressEvent(QKeyEvent* event) override {
    QDockWidget::keyPressEvent(event);
    // The toolkit does not propagate keys beyond a window.
    if (!isWindow()) return;
    event->accept();
    SiteWidget::forwardKey(*this, *event);
  }

 private:
  docking::DockWindowModel& model_;
};

/// Larger than any screen: takes the remaining length.
constexpr int kAnyLength = 4000;

bool fits(const QSize& needed, const QSize& size) {
  return needed.width() <= size.width() && needed.height() <= size.height();
}

/// The edges of a layout are those of a language written from left to right.
Qt::DockWidgetArea areaOf(docking::Edge edge, Qt::LayoutDirection direction) {
  const bool mirrored = direction == Qt::RightToLeft;
  switch (edge) {
    case docking::Edge::Left:
      return mirrored ? Qt::RightDockWidgetArea : Qt::LeftDockWidgetArea;
    case docking::Edge::Top:
      return Qt::TopDockWidgetArea;
    case docking::Edge::Bottom:
      return Qt::BottomDockWidgetArea;
    default:
      return mirrored ? Qt::LeftDockWidgetArea : Qt::RightDockWidgetArea;
  }
}

}  // namespace

DockPanels::DockPanels(docking::MoorageModel& suite, MoorageWindow& window) : suite_(suite), window_(window) {
  for (const auto& model : suite.DockWindows().all()) {
    auto* const panel = new Panel(*model, &window);
    panel->setVisible(false);
    window.addDockWidget(areaOf(model->edge(), window.layoutDirection()), panel);
    panels_[model.get()] = panel;
    order_.push_back(model.get());
  }
  // What is hidden first comes last in the layout.
  std::reverse(order_.begin(), order_.end());
  connect(&window_, &MoorageWindow::roomChanged, this, &DockPanels::fit);
}

void DockPanels::attach(docking::DockWindowModel& window, DockableForm& form) {
  QDockWidget& panel = find(window);
  auto* const content = new DockContent(form);
  panel.setWidget(content);
  connect(&panel, &QDockWidget::topLevelChanged, content, &DockContent::setFloating);
  refresh(window);
  distributeSpace(window.edge());
}

/// Initial sizes: across an edge the size in the layout, along the edge each panel's preferred size; panels
/// without a preference share the rest.
void DockPanels::distributeSpace(docking::Edge edge) {
  const bool upright = edge == docking::Edge::Left || edge == docking::Edge::Right;
  QList<QDockWidget*> panels;
  QList<int> across;
  QList<int> along;
  for (const auto& [model, panel] : panels_) {
    if (model->edge() != edge || !panel->widget()) continue;
    const QSize wanted = panel->widget()->sizeHint();
    const int length = upright ? wanted.height() : wanted.width();
    panels += panel;
    across += model->size() > 0 ? model->size() : (upright ? wanted.width() : wanted.height());
    // A form without a layout is painted, at any size.
    const auto* const form = panel->widget()->findChild<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    along += form && form->layout() ? length : kAnyLength;
  }
  window_.resizeDocks(panels, across, upright ? Qt::Horizontal : Qt::Vertical);
  window_.resizeDocks(panels, along, upright ? Qt::Vertical : Qt::Horizontal);
}

void DockPanels::arrange() {
  for (const auto& model : suite_.DockWindows().all()) {
    QDockWidget& panel = find(*model);
    panel.setFloating(false);
    window_.addDockWidget(areaOf(model->edge(), window_.layoutDirection()), &panel);
    refresh(*model);
    distributeSpace(model->edge());
  }
}

void DockPanels::mirror() {
  for (const auto& [model, panel] : panels_) {
    const Qt::DockWidgetArea area = window_.dockWidgetArea(panel);
    if (panel->isFloating() || (area != Qt::LeftDockWidgetArea && area != Qt::RightDockWidgetArea)) continue;
    const bool wasLeft = area == Qt::LeftDockWidgetArea;
    window_.addDockWidget(wasLeft ? Qt::RightDockWidgetArea : Qt::LeftDockWidgetArea, panel);
    refresh(*model);
  }
  distributeSpace(docking::Edge::Left);
  distributeSpace(docking::Edge::Right);
}

void DockPanels::refresh(docking::DockWindowModel& window) {
  QDockWidget& panel = find(window);
  const bool shown = window.Visible() && panel.widget();
  std::erase_if(hidden_, [&window](const Hidden& each) { return each.model == &window; });
  if (shown && panel.isHidden() && window_.isVisible()) {
    // The user wants to see this one.
    std::erase(order_, &window);
    order_.push_back(&window);
  }
  panel.setVisible(shown);
  fit();
}

void DockPanels::fit() {
  // Before it is shown the window has no size of its own.
  if (fitting_ || !window_.isVisible()) return;
  fitting_ = true;
  showFitting();
  hideUnfitting();
  QSize room(0, 0);
  for (const Hidden& each : hidden_) room += each.room;
  window_.setRoomForHidden(room);
  fitting_ = false;
}

void DockPanels::showFitting() {
  while (!hidden_.empty()) {
    const Hidden next = hidden_.back();
    if (!fits(window_.minimumSizeOfShown() + next.room, window_.size())) return;
    hidden_.pop_back();
    find(*next.model).setVisible(true);
    // The toolkit gives it the room that it had, which may be less than it needs now.
    distributeSpace(next.model->edge());
  }
}

void DockPanels::hideUnfitting() {
  for (docking::DockWindowModel* const model : order_) {
    const QSize needed = window_.minimumSizeOfShown();
    if (fits(needed, window_.size())) return;
    QDockWidget& panel = find(*model);
    if (panel.isHidden() || panel.isFloating()) continue;
    panel.setVisible(false);
    hidden_.push_back({model, (needed - window_.minimumSizeOfShown()).expandedTo(QSize(0, 0))});
  }
}

}  // namespace kestrel::qt
