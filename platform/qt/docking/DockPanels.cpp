#include "DockPanels.h"

#include <QCloseEvent>

#include "../Guard.h"
#include "../Text.h"
#include "../forms/QtForm.h"

namespace kestrel::qt {
namespace {

/// Leaves it to the model whether it closes.
class Panel final : public QDockWidget {
 public:
  Panel(docking::DockWindowModel& model, QWidget* parent)
      : QDockWidget(translated(model.Caption()), parent), model_(model) {
    setObjectName(toQt(model_.Name()));
  }

 protected:
  void closeEvent(QCloseEvent* event) override {
    event->ignore();
    guarded([this] { model_.show(false, kReasonUser); });
  }

 private:
  docking::DockWindowModel& model_;
};

Qt::DockWidgetArea areaOf(docking::Edge edge) {
  switch (edge) {
    case docking::Edge::Left:
      return Qt::LeftDockWidgetArea;
    case docking::Edge::Top:
      return Qt::TopDockWidgetArea;
    case docking::Edge::Bottom:
      return Qt::BottomDockWidgetArea;
    default:
      return Qt::RightDockWidgetArea;
  }
}

}  // namespace

DockPanels::DockPanels(docking::MoorageModel& suite, QMainWindow& window) {
  for (const auto& model : suite.DockWindows().all()) {
    auto* const panel = new Panel(*model, &window);
    panel->setVisible(false);
    window.addDockWidget(areaOf(model->edge()), panel);
    panels_[model.get()] = panel;
  }
}

void DockPanels::attach(docking::DockWindowModel& window, QtForm& form) {
  QDockWidget& panel = find(window);
  auto* const host = new QWidget;
  form.embedIn(*host);
  host->setMinimumWidth(form.window().minimumSizeHint().width());
  panel.setWidget(host);
  refresh(window);
  if (window.size() > 0) {
    const bool across = window.edge() == docking::Edge::Left || window.edge() == docking::Edge::Right;
    auto* const main = qobject_cast<QMainWindow*>(panel.parentWidget());
    main->resizeDocks({&panel}, {window.size()}, across ? Qt::Horizontal : Qt::Vertical);
  }
}

void DockPanels::refresh(docking::DockWindowModel& window) {
  QDockWidget& panel = find(window);
  panel.setVisible(window.Visible() && panel.widget());
}

}  // namespace kestrel::qt
