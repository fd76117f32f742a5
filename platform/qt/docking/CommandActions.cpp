#include "CommandActions.h"

#include <QFocusEvent>
#include <QPointer>
#include <algorithm>

#include "StoredIcon.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Keys.h"
#include "platform/qt/core/SvgIcon.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {

QString hotKeyTextOf(docking::CommandModel& command) {
  if (command.HotKeys().Count() == 0) return {};
  const HotKey& key = command.HotKeys().Item(1);
  return hotKeyText(key.Shift(), key.KeyCode());
}

CommandActions::CommandActions(docking::MoorageModel& suite, std::string_view choices) : suite_(suite) {
  if (!choices.empty()) {
    docking::CommandModel& menu = suite_.Commands().Item(std::string(choices));
    for (const auto& entry : menu.Bar().Entries().all()) choices_.insert(&entry->command());
  }
  for (const auto& command : suite_.Commands().all()) makeAction(*command);
  fillClosedMenus();
}

CommandActions::~CommandActions() {
  for (const auto& [command, menu] : menus_) delete menu;
}

void CommandActions::makeAction(docking::CommandModel& command) {
  auto* const action = new QAction(this);
  action->setObjectName(toQt(command.Name()));
  action->setIcon(iconOf(command));
  action->setMenuRole(QAction::NoRole);
  actions_[&command] = action;

  if (command.CommandType() == kCommandMenu) {
    auto* const menu = new CommandMenu;
    menu->setObjectName(toQt(command.Name()));
    action->setMenu(menu);
    menus_[&command] = menu;
    connect(menu, &QMenu::aboutToShow, this, [this, menu, &command] {
      fill(*menu, command);
      menu->elide();
    });
    connect(menu, &QMenu::aboutToHide, this, [this] { guarded([this] { suite_.highlight(nullptr); }); });
  }
  connect(action, &QAction::hovered, this,
          [this, &command] { guarded([&] { suite_.highlight(&command); }); });
  connect(action, &QAction::triggered, this, [this, &command] {
    refresh(command);  // the model decides the pressed state
    guarded([&] { suite_.click(command); });
  });
  refresh(command);
}

QAction& CommandActions::actionOf(docking::CommandModel& command) { return *actions_.at(&command); }

QMenu& CommandActions::menuOf(docking::CommandModel& command) {
  CommandMenu& menu = *menus_.at(&command);
  fill(menu, command);
  menu.elide();
  return menu;
}

void CommandActions::showKey(docking::CommandModel& command, const QKeySequence& key) {
  shownKeys_[&command] = key.toString(QKeySequence::NativeText);
  refresh(command);
}

QString CommandActions::keyTextOf(docking::CommandModel& command) const {
  const QString hotKey = hotKeyTextOf(command);
  if (!hotKey.isEmpty()) return hotKey;
  const auto shown = shownKeys_.find(&command);
  return shown == shownKeys_.end() ? QString() : shown->second;
}

void CommandActions::closeMenus() {
  for (const auto& [command, menu] : menus_) menu->hide();
}

QIcon CommandActions::iconOf(const docking::CommandModel& command) const {
  if (command.ImageName().empty()) return {};
  QIcon icon = svgIcon(command.ImageName());
  if (!icon.isNull()) return icon;
  const auto& images = suite_.layout().images;
  const auto stored = std::find_if(images.begin(), images.end(),
                                   [&](const auto& image) { return image.name == command.ImageName(); });
  return stored == images.end() ? QIcon() : storedIcon(*stored);
}

void CommandActions::refresh(docking::CommandModel& command) {
  QAction& action = actionOf(command);
  const QString caption = translated(command.Caption());
  const QString hotKey = keyTextOf(command);
  action.setText(hotKey.isEmpty() ? caption : caption + u'\t' + hotKey);
  action.setIconText(command.ShortCaption().empty() ? withoutAccessKey(caption)
                                                    : translated(command.ShortCaption()));
  action.setToolTip(toolTipOf(command));
  action.setWhatsThis(translated(command.Description()));
  action.setEnabled(command.Enabled());
  action.setVisible(command.Visible());
  action.setCheckable(command.Checked() || isChoice(command));
  action.setChecked(command.Checked());
}

bool CommandActions::eventFilter(QObject* /*watched*/, QEvent* event) {
  // A menu opened by a bar takes the keyboard focus too; its highlight must stay.
  const bool left =
      event->type() == QEvent::Leave || (event->type() == QEvent::FocusOut &&
                                         static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason);
  if (left) guarded([this] { suite_.highlight(nullptr); });
  return false;
}

QString CommandActions::toolTipOf(docking::CommandModel& command) const {
  if (!command.ToolTip().empty()) return translated(command.ToolTip()).toHtmlEscaped();
  QString name = command.ShortCaption().empty() ? withoutAccessKey(translated(command.Caption()))
                                                : translated(command.ShortCaption());
  const QString hotKey = keyTextOf(command);
  if (!hotKey.isEmpty()) name += QStringLiteral(" (%1)").arg(hotKey);
  return name.toHtmlEscaped();
}

void CommandActions::fill(CommandMenu& menu, docking::CommandModel& command) {
  menu.clear();
  for (const docking::ShownEntry& entry : command.Bar().shownEntries()) {
    if (entry.separatorBefore) menu.addSeparator();
    if (entry.command->CommandType() == kCommandList) {
      addLines(menu, *entry.command);
    } else {
      refresh(*entry.command);  // the text may be elided
      menu.addAction(&actionOf(*entry.command));
    }
  }
}

/// The line must not be deleted while it is chosen, which may open a dialog or end the suite.
void CommandActions::choose(docking::CommandModel& list, std::int32_t line) {
  const QPointer<CommandActions> self(this);
  ++choosing_;
  guarded([&] { suite_.chooseItem(list, line); });
  if (self && --choosing_ == 0) refreshMenus();
}

void CommandActions::fillClosedMenus() {
  if (choosing_ > 0) return;
  for (const auto& [command, menu] : menus_) {
    if (!menu->isVisible()) fill(*menu, *command);
  }
}

void CommandActions::addLines(CommandMenu& menu, docking::CommandModel& list) {
  if (list.Items().Count() == 0) {
    menu.addAction(translated(list.Caption()))->setEnabled(false);
    return;
  }
  for (std::int32_t i = 1; i <= list.Items().Count(); ++i) {
    QAction* const line = menu.addLine(toQt(list.Items().Item(i).Text));
    line->setEnabled(list.Enabled());
    connect(line, &QAction::triggered, this, [this, &list, i] { choose(list, i); });
    connect(line, &QAction::hovered, this, [this, &list] { guarded([&] { suite_.highlight(&list); }); });
  }
}

}  // namespace kestrel::qt
