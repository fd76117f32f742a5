#include "BarMenu.h"

#include <QActionGroup>
#include <QApplication>
#include <QEvent>
#include <QStyle>
#include <QStyleOptionMenuItem>
#include <QToolButton>
#include <algorithm>
#include <array>

#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Language.h"
#include "platform/qt/core/SvgIcon.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

template <typename Show>
void addToggle(QMenu& menu, const QString& text, bool shown, Show show) {
  QAction* const action = menu.addAction(text);
  action->setCheckable(true);
  action->setChecked(shown);
  QObject::connect(action, &QAction::triggered, action,
                   [show](bool wanted) { guarded([&] { show(wanted); }); });
}

/// Removes all entries. The toolkit would leave their menus and groups.
void empty(QMenu& menu) {
  menu.clear();
  qDeleteAll(menu.findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly));
  qDeleteAll(menu.findChildren<QActionGroup*>(QString(), Qt::FindDirectChildrenOnly));
}

/// No higher than the entries of the menu bar: in a higher bar, the line that some styles draw below each
/// entry would be in the middle of the bar.
class CornerButton final : public QToolButton {
 public:
  CornerButton() { measureIcon(); }

  QSize sizeHint() const override {
    const QSize natural = QToolButton::sizeHint();
    const QWidget* const bar = parentWidget();
    if (!bar) return natural;
    QStyleOptionMenuItem entry;
    entry.initFrom(bar);
    const QSize room =
        style()->sizeFromContents(QStyle::CT_MenuBarItem, &entry, QSize(0, bar->fontMetrics().height()), bar);
    return {natural.width(), std::min(natural.height(), room.height())};
  }

 protected:
  void changeEvent(QEvent* event) override {
    QToolButton::changeEvent(event);
    if (event->type() == QEvent::StyleChange) measureIcon();
  }

 private:
  void measureIcon() {
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    setIconSize(QSize(side, side));
  }
};

QToolButton* makeButton(QMenu& menu) {
  auto* const button = new CornerButton;
  button->setObjectName(QStringLiteral("barMenuButton"));
  keepTranslated(*button, *button, [button] {
    button->setText(translated("Tool &Bars"));  // its access key works in the whole window
    button->setToolTip(translated("Tool bars and windows (Alt+B)"));
    button->setAccessibleName(translated("Tool bars and windows"));
  });
  button->setIcon(svgIcon("Tool-Bars"));
  button->setToolButtonStyle(Qt::ToolButtonIconOnly);
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::NoFocus);  // the focus stays in the picture
  button->setMenu(&menu);
  button->setPopupMode(QToolButton::InstantPopup);
  return button;
}

}  // namespace

BarMenu::BarMenu(docking::MoorageModel& suite, ToolBars& toolBars, DockPanels& dockPanels, QMenuBar& menuBar)
    : suite_(suite), toolBars_(toolBars), dockPanels_(dockPanels), menu_(new QMenu(&menuBar)) {
  connect(menu_, &QMenu::aboutToShow, this, [this] {
    empty(*menu_);
    fill(*menu_);
  });
  menuBar.setCornerWidget(makeButton(*menu_));
  refresh();
}

// The menu bar owns the menu, and may outlive this.
BarMenu::~BarMenu() { empty(*menu_); }

void BarMenu::fillClosed() {
  // An entry that has opened a dialog is still in use.
  if (menu_->isVisible() || QApplication::activeModalWidget()) return;
  empty(*menu_);
  fillOwnLines(*menu_);
}

void BarMenu::fill(QMenu& menu) {
  fillOwnLines(menu);
  addContainerLines(menu);
}

void BarMenu::fillOwnLines(QMenu& menu) {
  for (const auto& bar : suite_.CommandBars().all()) {
    if (bar->kind() == docking::BarKind::MenuBar || !bar->Listed()) continue;
    addToggle(menu, translated(bar->Name()), bar->Visible(),
              [model = bar.get()](bool wanted) { model->show(wanted, kReasonUser); });
  }
  menu.addSeparator();
  for (const auto& dock : suite_.DockWindows().all()) {
    if (!dockPanels_.find(*dock).widget()) continue;
    addToggle(menu, translated(dock->Caption()), dock->Visible(),
              [model = dock.get()](bool wanted) { model->show(wanted, kReasonUser); });
  }
  menu.addSeparator();
  fillStyles(*menu.addMenu(translated("Tool Bar &Style")));
  addToggle(menu, translated("&Lock the Tool Bars"), toolBars_.locked(),
            [this](bool locked) { toolBars_.setLocked(locked); });
  connect(menu.addAction(translated("&Reset Bars and Windows")), &QAction::triggered, this,
          [this] { guarded([this] { reset(); }); });
}

void BarMenu::addContainerLines(QMenu& menu) {
  std::vector<BarMenuLine> lines;
  suite_.BarMenuOpening(lines);
  if (!lines.empty()) menu.addSeparator();
  for (const BarMenuLine& line : lines) {
    QAction* const action = menu.addAction(translated(line.Caption));
    action->setEnabled(line.Enabled);
    connect(action, &QAction::triggered, action, [chosen = line.Chosen] { guarded([&] { chosen(); }); });
  }
}

void BarMenu::fillStyles(QMenu& menu) {
  static constexpr std::array kStyles = {"&Icons Only", "Icons &Beside Text", "Icons &Above Text"};
  auto* const group = new QActionGroup(&menu);
  for (std::size_t i = 0; i < kStyles.size(); ++i) {
    const auto number = static_cast<std::int32_t>(i);
    QAction* const action = menu.addAction(translated(kStyles[i]));
    action->setCheckable(true);
    action->setChecked(suite_.style() == number);
    group->addAction(action);
    connect(action, &QAction::triggered, action, [this, number] { guarded([&] { suite_.style(number); }); });
  }
}

void BarMenu::reset() {
  toolBars_.arrange();
  dockPanels_.arrange();
}

}  // namespace kestrel::qt
