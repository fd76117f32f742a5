#include "ToolBars.h"

#include <QStyle>
#include <QToolButton>
#include <algorithm>
#include <set>
#include <vector>

#include "ComboField.h"
#include "platform/qt/controls/ButtonAccessibility.h"
#include "platform/qt/core/Language.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

/// The edges of a layout are those of a language written from left to right.
Qt::ToolBarArea areaOf(docking::Edge edge, Qt::LayoutDirection direction) {
  const bool mirrored = direction == Qt::RightToLeft;
  switch (edge) {
    case docking::Edge::Left:
      return mirrored ? Qt::RightToolBarArea : Qt::LeftToolBarArea;
    case docking::Edge::Right:
      return mirrored ? Qt::LeftToolBarArea : Qt::RightToolBarArea;
    case docking::Edge::Bottom:
      return Qt::BottomToolBarArea;
    default:
      return Qt::TopToolBarArea;
  }
}

Qt::ToolButtonStyle buttonStyleOf(std::int32_t style) {
  return style == 1   ? Qt::ToolButtonTextBesideIcon
         : style == 2 ? Qt::ToolButtonTextUnderIcon
                      : Qt::ToolButtonIconOnly;
}

bool sameEntry(const docking::ShownEntry& a, const docking::ShownEntry& b) {
  return a.command == b.command && a.separatorBefore == b.separatorBefore;
}

}  // namespace

ToolBars::ToolBars(docking::MoorageModel& suite, CommandActions& actions, QMainWindow& window,
                   QWidget& control)
    : suite_(suite), actions_(actions), window_(window), keys_(control) {
  for (const auto& bar : suite_.CommandBars().all()) {
    if (bar->kind() == docking::BarKind::ToolBar) ordered_.push_back(bar.get());
  }
  std::stable_sort(ordered_.begin(), ordered_.end(), [](const auto* a, const auto* b) {
    return std::pair(a->edge(), a->row()) < std::pair(b->edge(), b->row());
  });
  for (docking::CommandBarModel* model : ordered_) {
    auto* const bar = new QToolBar(&window_);
    keepTranslated(*bar, *this, [bar, model] { bar->setWindowTitle(translated(model->Name())); });
    bar->setObjectName(toQt(model->Name()));
    bar->setAccessibleName(bar->windowTitle());
    bar->setFloatable(false);
    bars_[model].bar = bar;
  }
  arrange();
  refreshStyle();
}

void ToolBars::arrange() {
  for (const auto& [model, shown] : bars_) {
    if (window_.toolBarBreak(shown.bar)) window_.removeToolBarBreak(shown.bar);
  }
  const docking::CommandBarModel* before = nullptr;
  for (docking::CommandBarModel* model : ordered_) {
    const Qt::ToolBarArea area = areaOf(model->edge(), window_.layoutDirection());
    if (before && before->edge() == model->edge() && before->row() != model->row()) {
      window_.addToolBarBreak(area);
    }
    window_.addToolBar(area, bars_.at(model).bar);
    before = model;
    refresh(*model);
  }
}

void ToolBars::mirror() {
  for (docking::CommandBarModel* model : ordered_) {
    QToolBar* const bar = bars_.at(model).bar;
    const Qt::ToolBarArea area = window_.toolBarArea(bar);
    if (area != Qt::LeftToolBarArea && area != Qt::RightToolBarArea) continue;
    window_.addToolBar(area == Qt::LeftToolBarArea ? Qt::RightToolBarArea : Qt::LeftToolBarArea, bar);
    bar->setVisible(model->Visible());
  }
}

// The window owns the bars; their fields refer to the suite and are destroyed here.
ToolBars::~ToolBars() {
  for (const auto& [command, action] : combos_) delete action;
}

QToolBar* ToolBars::find(docking::CommandBarModel& bar) const {
  const auto found = bars_.find(&bar);
  return found == bars_.end() ? nullptr : found->second.bar;
}

void ToolBars::refresh(docking::CommandBarModel& model) {
  const auto found = bars_.find(&model);
  if (found == bars_.end()) return;
  fill(model, found->second);
  found->second.bar->setVisible(model.Visible());
}

void ToolBars::refresh(docking::CommandModel& command) {
  if (command.CommandType() == kCommandPanel) return;
  if (const auto combo = combos_.find(&command); combo != combos_.end()) {
    static_cast<ComboField*>(combo->second->defaultWidget())->refresh();
  }
  for (auto& [model, shown] : bars_) {
    fill(*model, shown);
    keys_.update(*shown.bar);
  }
}

void ToolBars::refreshStyle() {
  for (const auto& [model, shown] : bars_) shown.bar->setToolButtonStyle(buttonStyleOf(suite_.style()));
}

void ToolBars::setLocked(bool value) {
  locked_ = value;
  for (const auto& [model, shown] : bars_) shown.bar->setMovable(!locked_);
}

void ToolBars::fill(docking::CommandBarModel& model, Shown& shown) {
  const std::vector<docking::ShownEntry> wanted = model.shownEntries();
  if (std::ranges::equal(wanted, shown.entries, sameEntry)) return;
  shown.entries = wanted;

  removeOthers(shown, wanted);
  QAction* next = nullptr;
  for (auto entry = wanted.rbegin(); entry != wanted.rend(); ++entry) {
    next = place(*shown.bar, *entry->command, next);
    if (!entry->separatorBefore) continue;
    QAction*& separator = shown.separators[entry->command];
    if (!separator) separator = shown.bar->insertSeparator(next);
    next = separator;
  }
  keys_.update(*shown.bar);
}

/// The buttons that stay keep the focus and the pointer.
void ToolBars::removeOthers(Shown& shown, const std::vector<docking::ShownEntry>& wanted) {
  std::set<const QAction*> staying;
  std::set<const docking::CommandModel*> separated;
  for (const docking::ShownEntry& entry : wanted) {
    staying.insert(&actionFor(*entry.command));
    if (entry.separatorBefore) separated.insert(entry.command);
  }
  for (QAction* const action : shown.bar->actions()) {
    if (!action->isSeparator() && !staying.contains(action)) shown.bar->removeAction(action);
  }
  std::erase_if(shown.separators, [&separated](const auto& each) {
    if (separated.contains(each.first)) return false;
    delete each.second;
    return true;
  });
}

QAction& ToolBars::actionFor(docking::CommandModel& command) {
  if (command.CommandType() != kCommandCombo) return actions_.actionOf(command);
  QWidgetAction*& action = combos_[&command];
  if (!action) {
    action = new QWidgetAction(this);
    keepTranslated(window_, *action,
                   [action, &command] { action->setText(withoutAccessKey(translated(command.Caption()))); });
    action->setDefaultWidget(new ComboField(suite_, command));
  }
  return *action;
}

/// Makes sure that the command is in the bar, before that action or at the end. Returns its action.
QAction* ToolBars::place(QToolBar& bar, docking::CommandModel& command, QAction* before) {
  QAction& action = actionFor(command);
  if (bar.actions().contains(&action)) return &action;
  bar.insertAction(before, &action);
  if (auto* const button = qobject_cast<QToolButton*>(bar.widgetForAction(&action)))
    prepare(*button, command);
  return &action;
}

void ToolBars::prepare(QToolButton& button, docking::CommandModel& command) {
  button.setObjectName(toQt(command.Name()));
  const QAction& action = actions_.actionOf(command);
  keepTranslated(button, action, [&button, &action, &command] {
    button.setAccessibleName(action.iconText());
    button.setAccessibleDescription(translated(command.Description()));
  });
  if (actions_.isChoice(command)) presentAsChoice(button);
  if (command.CommandType() == kCommandMenu) button.setPopupMode(QToolButton::InstantPopup);
  button.installEventFilter(&actions_);
  keys_.add(button);
}

}  // namespace kestrel::qt
