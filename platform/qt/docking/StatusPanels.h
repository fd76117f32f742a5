#pragma once

#include <QStatusBar>
#include <map>

#include "CommandActions.h"

namespace kestrel::qt {

class PanelField;

/// The status bar of a suite and its panels.
class StatusPanels final : public QObject {
  Q_OBJECT

 public:
  /// Fills the bar with the panels of the suite's status bar; without one the bar stays hidden.
  StatusPanels(docking::MoorageModel& suite, const CommandActions& actions, QStatusBar& bar);

  void refresh(docking::CommandBarModel& bar);
  void refresh(docking::CommandModel& command);

 private:
  QStatusBar& bar_;
  docking::CommandBarModel* model_ = nullptr;
  std::map<const docking::CommandModel*, PanelField*> fields_;
};

}  // namespace kestrel::qt
