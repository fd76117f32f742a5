#pragma once

#include <QDockWidget>
#include <map>
#include <vector>

#include "DockableForm.h"
#include "MoorageWindow.h"
#include "platform/docking/MoorageModel.h"

namespace kestrel::qt {

/// The dock windows of a suite. A dock window without an attached form stays hidden; docked windows for which
/// there is no room are hidden until there is, those first that were shown first. Their models stay visible.
class DockPanels final : public QObject {
  Q_OBJECT

 public:
  DockPanels(docking::MoorageModel& suite, MoorageWindow& window);

  QDockWidget& find(docking::DockWindowModel& window) const { return *panels_.at(&window); }
  void attach(docking::DockWindowModel& window, DockableForm& form);
  void refresh(docking::DockWindowModel& window);
  /// Docks all windows where the layout places them.
  void arrange();
  /// Moves the windows docked at the left and the right edge to the other one: call when the layout direction
  /// has changed.
  void mirror();

 private:
  /// A dock window that is hidden for lack of room.
  struct Hidden {
    docking::DockWindowModel* model;
    QSize room;  ///< by which the smallest size of the suite would grow with it
  };

  void distributeSpace(docking::Edge edge);
  void fit();
  void showFitting();
  void hideUnfitting();

  docking::MoorageModel& suite_;
  MoorageWindow& window_;
  std::vector<docking::DockWindowModel*> order_;  ///< the one that was shown last is the last
  std::vector<Hidden> hidden_;                    ///< the one that was hidden last is the last
  bool fitting_ = false;
  std::map<docking::DockWindowModel*, QDockWidget*> panels_;
};

}  // namespace kestrel::qt
