#include "QtMoorage.h"

#include <QMenuBar>
#include <QPointer>

#include "base/RuntimeError.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Language.h"

namespace kestrel::qt {
namespace {

/// Actions at the end of a menu while it is open. Their owner may destroy them meanwhile.
class PopupActions {
 public:
  PopupActions(QMenu& menu, const QList<QAction*>& actions) : menu_(menu) {
    if (actions.isEmpty()) return;
    for (QAction* action : actions) added_.append(action);
    // The menu is filled as it opens, by the slot that was connected first.
    opening_ = QObject::connect(&menu, &QMenu::aboutToShow, &menu, [this] { append(); });
  }
  PopupActions(const PopupActions&) = delete;
  PopupActions& operator=(const PopupActions&) = delete;
  ~PopupActions() {
    QObject::disconnect(opening_);
    for (QAction* action : added_) {
      if (action) menu_.removeAction(action);
    }
    delete separator_;
  }

 private:
  void append() {
    separator_ = menu_.addSeparator();
    for (QAction* action : added_) {
      if (action) menu_.addAction(action);
    }
  }

  QMenu& menu_;
  QPointer<QAction> separator_;
  QList<QPointer<QAction>> added_;
  QMetaObject::Connection opening_;
};

/// The widget of the whole control.
QWidget& controlOf(MoorageWindow& window) {
  QWidget* const parent = window.parentWidget();
  return parent ? *parent : window;
}

/// Panels and fields change often, as the pointer moves, and no menu has them.
bool isInMenus(const docking::CommandModel& command) {
  return command.CommandType() != kCommandPanel && command.CommandType() != kCommandCombo;
}

}  // namespace

QtMoorage::QtMoorage(MoorageWindow& window, ControlId id, const docking::StoredLayout& layout,
                     std::string_view choices)
    : WidgetControl(window, std::move(id), layout),
      window_(window),
      actions_(*this, choices),
      toolBars_(*this, actions_, window, controlOf(window)),
      statusPanels_(*this, actions_, *window.statusBar()),
      dockPanels_(*this, window),
      barMenu_(*this, toolBars_, dockPanels_, *window.menuBar()),
      hotKeys_(*this, controlOf(window)),
      popupPlace_(controlOf(window)) {
  for (const auto& bar : CommandBars().all()) {
    if (bar->kind() == docking::BarKind::MenuBar) menuBar_ = bar.get();
  }
  window_.menuBar()->setNativeMenuBar(false);
  window_.menuBar()->installEventFilter(&actions_);
  fillMenuBar();

  connections_.push_back(CommandUpdated.Connect([this](docking::CommandModel& command) {
    actions_.refresh(command);
    toolBars_.refresh(command);
    statusPanels_.refresh(command);
    if (isInMenus(command)) actions_.refreshMenus();
  }));
  connections_.push_back(BarUpdated.Connect([this](docking::CommandBarModel& bar) {
    if (&bar == menuBar_) fillMenuBar();
    toolBars_.refresh(bar);
    statusPanels_.refresh(bar);
    actions_.refreshMenus();
    barMenu_.refresh();
  }));
  connections_.push_back(DockWindowUpdated.Connect([this](docking::DockWindowModel& dock) {
    dockPanels_.refresh(dock);
    barMenu_.refresh();
  }));
  connections_.push_back(StyleUpdated.Connect([this] {
    toolBars_.refreshStyle();
    barMenu_.refresh();
  }));

  // Its children, which show the actions, change after it.
  keepTranslated(window_, actions_, [this] {
    for (const auto& command : Commands().all()) actions_.refresh(*command);
  });
  QObject::connect(&window_, &MoorageWindow::layoutDirectionChanged, &actions_, [this] {
    toolBars_.mirror();
    dockPanels_.mirror();
  });

  window_.fillBarMenu = [this](QMenu& menu) { barMenu_.fill(menu); };
  QObject::connect(&hotKeys_, &HotKeyFilter::menuBarRequested, &hotKeys_, [this] { openMenuBar(); });
  QObject::connect(&window_, &MoorageWindow::clientAreaChanged, &actions_,
                   [this] { guarded([this] { ClientAreaChanged(); }); });
}

QtMoorage::~QtMoorage() { window_.fillBarMenu = nullptr; }

Rectangle QtMoorage::ClientArea() const {
  const QRect area = window_.clientArea();
  return {area.x(), area.y(), area.width(), area.height()};
}

void QtMoorage::useDesktopKeys(std::vector<DesktopKey> keys) {
  for (const DesktopKey& key : keys) actions_.showKey(Commands().Item(key.command), key.keys.value(0));
  hotKeys_.useDesktopKeys(std::move(keys));
}

void QtMoorage::openPopup(docking::CommandModel& menu) {
  const PopupActions added(actions_.menuOf(menu), popupActions ? popupActions() : QList<QAction*>());
  const QRect area = window_.clientArea();
  actions_.menuOf(menu).exec(popupPlace_.position({window_.mapToGlobal(area.topLeft()), area.size()}));
}

void QtMoorage::attachForm(docking::DockWindowModel& window, Form& form) {
  auto* const ours = dynamic_cast<DockableForm*>(&form);
  if (!ours) throw RuntimeError(err::kInvalidCall, "The window to attach does not belong to this desktop.");
  dockPanels_.attach(window, *ours);
  barMenu_.refresh();
}

void QtMoorage::fillMenuBar() {
  QMenuBar& bar = *window_.menuBar();
  bar.setVisible(menuBar_ && menuBar_->Visible());
  if (!menuBar_) return;
  for (QAction* action : bar.actions()) bar.removeAction(action);
  for (const docking::ShownEntry& entry : menuBar_->shownEntries()) {
    bar.addAction(&actions_.actionOf(*entry.command));
  }
}

void QtMoorage::openMenuBar() {
  QMenuBar& bar = *window_.menuBar();
  if (!bar.isVisible()) return;
  for (QAction* action : bar.actions()) {
    if (!action->isVisible() || !action->isEnabled()) continue;
    bar.setActiveAction(action);
    return;
  }
}

}  // namespace kestrel::qt
