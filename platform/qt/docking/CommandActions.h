#pragma once

#include <QAction>
#include <QMenu>
#include <QObject>
#include <map>

#include "platform/docking/MoorageModel.h"

namespace kestrel::qt {

/// The toolkit's actions for the commands of a suite, one each, and the menus they open. They show what the
/// models say and hand on what the user does; they never change a model's state by themselves.
class CommandActions final : public QObject {
  Q_OBJECT

 public:
  explicit CommandActions(docking::MoorageModel& suite);
  ~CommandActions() override;

  QAction& actionOf(docking::CommandModel& command);
  /// The menu of a menu command.
  QMenu& menuOf(docking::CommandModel& command);
  QIcon iconOf(const docking::CommandModel& command) const;

  void closeMenus();

  /// Brings the action into line with its command.
  void refresh(docking::CommandModel& command);

  /// For the widgets that show actions: without it a command stays highlighted when they are left.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void makeAction(docking::CommandModel& command);
  void fill(QMenu& menu, docking::CommandModel& command);
  void addLines(QMenu& menu, docking::CommandModel& list);
  QString toolTipOf(docking::CommandModel& command) const;

  docking::MoorageModel& suite_;
  std::map<const docking::CommandModel*, QAction*> actions_;
  std::map<const docking::CommandModel*, QMenu*> menus_;
};

/// The first hot key of a command as menus show it, empty if it has none.
QString hotKeyTextOf(docking::CommandModel& command);

}  // namespace kestrel::qt
