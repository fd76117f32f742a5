#pragma once

#include <QAction>
#include <QKeySequence>
#include <QObject>
#include <map>
#include <set>
#include <string_view>

#include "CommandMenu.h"
#include "platform/docking/MoorageModel.h"
#include "platform/qt/core/PostedCall.h"

namespace kestrel::qt {

/// The toolkit's actions and menus for the commands of a suite. They display the models and pass on user
/// input; they never change a model's state themselves.
class CommandActions final : public QObject {
  Q_OBJECT

 public:
  /// `choices` is the key of the menu whose commands are alternatives, of which one is checked; empty for
  /// none.
  CommandActions(docking::MoorageModel& suite, std::string_view choices);
  ~CommandActions() override;

  QAction& actionOf(docking::CommandModel& command);
  /// The menu of a menu command.
  QMenu& menuOf(docking::CommandModel& command);
  QIcon iconOf(const docking::CommandModel& command) const;
  bool isChoice(const docking::CommandModel& command) const { return choices_.contains(&command); }

  /// Shows this key for a command without a hot key. The key itself is for others to handle.
  void showKey(docking::CommandModel& command, const QKeySequence& key);

  void closeMenus();

  /// Updates the action from its command.
  void refresh(docking::CommandModel& command);
  /// Fills the closed menus again, soon, if their entries have changed: assistive technology and programs
  /// that search menus read them before they open.
  void refreshMenus() { menusChanged_.post(); }

  /// Event filter for the widgets that show actions: without it a command stays highlighted after the pointer
  /// leaves.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void makeAction(docking::CommandModel& command);
  void fill(CommandMenu& menu, docking::CommandModel& command);
  void fillClosedMenus();
  void choose(docking::CommandModel& list, std::int32_t line);
  void addLines(CommandMenu& menu, docking::CommandModel& list);
  QString toolTipOf(docking::CommandModel& command) const;
  QString keyTextOf(docking::CommandModel& command) const;

  docking::MoorageModel& suite_;
  std::map<const docking::CommandModel*, QAction*> actions_;
  std::map<docking::CommandModel*, CommandMenu*> menus_;
  std::map<const docking::CommandModel*, QString> shownKeys_;
  std::set<const docking::CommandModel*> choices_;
  int choosing_ = 0;  ///< calls of `choose` in progress
  PostedCall menusChanged_{[this] { fillClosedMenus(); }};
};

/// The text of a command's first hot key in menus, empty if it has none.
QString hotKeyTextOf(docking::CommandModel& command);

}  // namespace kestrel::qt
