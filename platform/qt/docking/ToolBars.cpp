#include "ToolBars.h"

#include <QStyle>
#include <QToolButton>
#include <algorithm>
#include <vector>

#include "ComboField.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

Qt::ToolBarArea areaOf(docking::Edge edge) {
  switch (edge) {
    case docking::Edge::Left:
      return Qt::LeftToolBarArea;
    case docking::Edge::Right:
      return Qt::RightToolBarArea;
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

ToolBars::ToolBars(docking::MoorageModel& suite, CommandActions& actions, QMainWindow& window)
    : suite_(suite), actions_(actions), window_(window) {
  for (const auto& bar : suite_.CommandBars().all()) {
    if (bar->kind() == docking::BarKind::ToolBar) ordered_.push_back(bar.get());
  }
  std::stable_sort(ordered_.begin(), ordered_.end(), [](const auto* a, const auto* b) {
    return std::pair(a->edge(), a->row()) < std::pair(b->edge(), b->row());
  });
  for (docking::CommandBarModel* model : ordered_) {
    auto* const bar = new QToolBar(translated(model->Name()), &window_);
    bar->setObjectName(toQt(model->Name()));
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
    const Qt::ToolBarArea area = areaOf(model->edge());
    if (before && before->edge() == model->edge() && before->row() != model->row()) {
      window_.addToolBarBreak(area);
    }
    window_.addToolBar(area, bars_.at(model).bar);
    before = model;
    refresh(*model);
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
  if (const auto combo = combos_.find(&command); combo != combos_.end()) {
    static_cast<ComboField*>(combo->second->defaultWidget())->refresh();
  }
  for (auto& [model, shown] : bars_) fill(*model, shown);
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

  QToolBar& bar = *shown.bar;
  for (QAction* action : bar.actions()) {
    bar.removeAction(action);
    if (action->isSeparator()) action->deleteLater();
  }
  for (const docking::ShownEntry& entry : wanted) {
    if (entry.separatorBefore) bar.addSeparator();
    if (entry.command->CommandType() == kCommandCombo) {
      addCombo(bar, *entry.command);
    } else {
      addButton(bar, *entry.command);
    }
  }
}

void ToolBars::addCombo(QToolBar& bar, docking::CommandModel& command) {
  QWidgetAction*& action = combos_[&command];
  if (!action) {
    action = new QWidgetAction(&bar);
    action->setText(withoutAccessKey(translated(command.Caption())));
    action->setDefaultWidget(new ComboField(suite_, command));
  }
  bar.addAction(action);
}

void ToolBars::addButton(QToolBar& bar, docking::CommandModel& command) {
  QAction& action = actions_.actionOf(command);
  bar.addAction(&action);
  auto* const button = qobject_cast<QToolButton*>(bar.widgetForAction(&action));
  button->setObjectName(toQt(command.Name()));
  button->setAccessibleName(action.iconText());
  button->setAccessibleDescription(translated(command.Description()));
  if (command.CommandType() == kCommandMenu) button->setPopupMode(QToolButton::InstantPopup);
  button->installEventFilter(&actions_);
}

}  // namespace kestrel::qt
