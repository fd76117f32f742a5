#pragma once

#include <QMenu>
#include <QMenuBar>

#include "DockPanels.h"
#include "ToolBars.h"
#include "platform/docking/MoorageModel.h"
#include "platform/qt/core/PostedCall.h"

namespace kestrel::qt {

/// The menu of the bars and dock windows: which are shown, the style of the bars, their lock. It opens by a
/// right click on a bar, and by a button at the end of the menu bar, where it is found without knowing that.
/// The stored menus have no entries for it.
class BarMenu final : public QObject {
  Q_OBJECT

 public:
  BarMenu(docking::MoorageModel& suite, ToolBars& toolBars, DockPanels& dockPanels, QMenuBar& menuBar);
  ~BarMenu() override;

  /// As the menu opens.
  void fill(QMenu& menu);
  /// Fills the button's closed menu again, soon: assistive technology reads it before it opens.
  void refresh() { changed_.post(); }

 private:
  void fillClosed();
  void fillOwnLines(QMenu& menu);
  void fillStyles(QMenu& menu);
  /// The container's entries at the end of the menu.
  void addContainerLines(QMenu& menu);
  /// Brings all bars and windows back to where they are at the start.
  void reset();

  docking::MoorageModel& suite_;
  ToolBars& toolBars_;
  DockPanels& dockPanels_;
  QMenu* menu_;
  PostedCall changed_{[this] { fillClosed(); }};
};

}  // namespace kestrel::qt
