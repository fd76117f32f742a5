#pragma once

#include <QMainWindow>
#include <QToolBar>
#include <QWidgetAction>
#include <map>
#include <vector>

#include "BarKeys.h"
#include "CommandActions.h"

namespace kestrel::qt {

/// The tool bars of a suite.
class ToolBars final : public QObject {
  Q_OBJECT

 public:
  /// `control` is the widget of the whole control.
  ToolBars(docking::MoorageModel& suite, CommandActions& actions, QMainWindow& window, QWidget& control);
  ~ToolBars() override;

  /// Null if the bar is not a tool bar.
  QToolBar* find(docking::CommandBarModel& bar) const;

  /// Updates a bar from its model; ignores a bar that is not a tool bar.
  void refresh(docking::CommandBarModel& bar);
  /// Updates all bars that show the command.
  void refresh(docking::CommandModel& command);
  void refreshStyle();
  /// Puts all bars where the layout places them.
  void arrange();
  /// Moves the bars of the left and the right edge to the other one: call when the layout direction has
  /// changed.
  void mirror();

  bool locked() const { return locked_; }
  void setLocked(bool value);

 private:
  struct Shown {
    QToolBar* bar = nullptr;
    std::vector<docking::ShownEntry> entries;
    std::map<const docking::CommandModel*, QAction*> separators;  ///< each before its command
  };

  void fill(docking::CommandBarModel& model, Shown& shown);
  void removeOthers(Shown& shown, const std::vector<docking::ShownEntry>& wanted);
  QAction& actionFor(docking::CommandModel& command);
  QAction* place(QToolBar& bar, docking::CommandModel& command, QAction* before);
  void prepare(QToolButton& button, docking::CommandModel& command);

  docking::MoorageModel& suite_;
  CommandActions& actions_;
  QMainWindow& window_;
  std::vector<docking::CommandBarModel*> ordered_;  ///< by edge and row
  std::map<docking::CommandBarModel*, Shown> bars_;
  std::map<const docking::CommandModel*, QWidgetAction*> combos_;
  BarKeys keys_;
  bool locked_ = false;
};

}  // namespace kestrel::qt
