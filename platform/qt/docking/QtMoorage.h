#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "BarMenu.h"
#include "CommandActions.h"
#include "DockPanels.h"
#include "HotKeyFilter.h"
#include "MoorageWindow.h"
#include "PopupPlace.h"
#include "StatusPanels.h"
#include "ToolBars.h"
#include "platform/docking/MoorageModel.h"
#include "platform/qt/controls/WidgetControl.h"

namespace kestrel::qt {

/// The docking suite on the desktop: displays the models and passes on user input.
class QtMoorage final : public WidgetControl<docking::MoorageModel> {
 public:
  /// `window` belongs to this suite and outlives it. `choices` is the key of the menu whose commands are
  /// alternatives, of which one is checked; empty for none.
  QtMoorage(MoorageWindow& window, ControlId id, const docking::StoredLayout& layout,
            std::string_view choices = {});
  ~QtMoorage() override;

  Rectangle ClientArea() const override;

  /// Adds keys of the desktop to the hot keys of the layout, and F10 for the menu bar.
  void useDesktopKeys(std::vector<DesktopKey> keys);

  /// Actions that a menu opened by `ShowPopup` shows last, after a separator.
  std::function<QList<QAction*>()> popupActions;

  CommandActions& actions() { return actions_; }
  ToolBars& toolBars() { return toolBars_; }
  DockPanels& dockPanels() { return dockPanels_; }

 private:
  void openPopup(docking::CommandModel& menu) override;
  void attachForm(docking::DockWindowModel& window, Form& form) override;
  void fillMenuBar();
  void openMenuBar();

  MoorageWindow& window_;
  CommandActions actions_;
  ToolBars toolBars_;
  StatusPanels statusPanels_;
  DockPanels dockPanels_;
  BarMenu barMenu_;
  HotKeyFilter hotKeys_;
  PopupPlace popupPlace_;
  docking::CommandBarModel* menuBar_ = nullptr;
  std::vector<Connection> connections_;
};

}  // namespace kestrel::qt
