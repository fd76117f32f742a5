#pragma once

#include <QMenu>
#include <QMenuBar>

#include "DockPanels.h"
#include "ToolBars.h"
#include "platform/docking/MoorageModel.h"

namespace kestrel::qt {

/// The menu of the bars and dock windows: which are shown, the style of the bars, their lock. It opens by a
/// right click on a bar, and by a button at the end of the menu bar, where it is found without knowing that.
/// The stored menus have no entries for it.
class BarMenu final : public QObject {
  Q_OBJECT

 public:
  BarMenu(docking::MoorageModel& suite, ToolBars& toolBars, DockPanels& dockPanels, QMenuBar& menuBar);
  ~BarMenu() override;

  void fill(QMenu& menu);

 private:
  void fillStyles(QMenu& menu);
  /// The container's entries at the end of the menu.
  void addContainerLines(QMenu& menu);
  /// Brings all bars and windows back to where they are at the start.
  void reset();

  docking::MoorageModel& suite_;
  ToolBars& toolBars_;
  DockPanels& dockPanels_;
  QMenu* menu_;
};

}  // namespace kestrel::qt
