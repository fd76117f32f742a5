#pragma once

#include <QDockWidget>
#include <QMainWindow>
#include <map>

#include "DockableForm.h"
#include "platform/docking/MoorageModel.h"

namespace kestrel::qt {

/// The dock windows of a suite. A dock window without an attached form stays hidden.
class DockPanels final : public QObject {
  Q_OBJECT

 public:
  DockPanels(docking::MoorageModel& suite, QMainWindow& window);

  QDockWidget& find(docking::DockWindowModel& window) const { return *panels_.at(&window); }
  void attach(docking::DockWindowModel& window, DockableForm& form);
  void refresh(docking::DockWindowModel& window);
  /// Docks all windows where the layout places them.
  void arrange();

 private:
  void distributeSpace(docking::Edge edge);

  docking::MoorageModel& suite_;
  QMainWindow& window_;
  std::map<docking::DockWindowModel*, QDockWidget*> panels_;
};

}  // namespace kestrel::qt
