// An editor by the keyboard alone: the way of the focus through bars, picture and dock windows.

#include <gmock/gmock.h>

#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>

#include "AccessHost.h"

namespace kestrel::desktop {
namespace {

class BarKeys : public AccessHost {
 protected:
  BarKeys() {
    layout_->insertWidget(0, &before_);
    layout_->addWidget(&after_);
    before_.setObjectName(QStringLiteral("before"));
    after_.setObjectName(QStringLiteral("after"));
  }
  ~BarKeys() override {
    before_.setParent(nullptr);
    after_.setParent(nullptr);
  }

  void SetUp() override {
    AccessHost::SetUp();
    openPicture();
  }

  static QWidget* focus() { return QApplication::focusWidget(); }
  static std::string focusName() { return focus() ? focus()->objectName().toStdString() : "none"; }
  QToolButton& button(const char* name) { return part<QToolButton>(name); }

  /// The widgets that Tab, or with Shift the other way, reaches from the host's field to the field again.
  std::vector<QWidget*> round(bool backwards) {
    before_.setFocus();
    std::vector<QWidget*> reached;
    constexpr std::size_t kMost = 60;
    do {
      press(backwards ? Qt::Key_Backtab : Qt::Key_Tab, backwards ? Qt::ShiftModifier : Qt::NoModifier);
      reached.push_back(focus());
    } while (focus() != &before_ && reached.size() < kMost);
    return reached;
  }
  static std::size_t placeOf(const std::vector<QWidget*>& widgets, const QWidget* widget) {
    const auto at = std::find(widgets.begin(), widgets.end(), widget);
    EXPECT_NE(at, widgets.end()) << widget->objectName().toStdString();
    return static_cast<std::size_t>(at - widgets.begin());
  }

  /// The buttons of a bar that can be pressed, in order.
  std::vector<QWidget*> usable(const char* name) {
    std::vector<QWidget*> buttons;
    auto& bar = part<QToolBar>(name);
    for (QAction* const action : bar.actions()) {
      QWidget* const widget = bar.widgetForAction(action);
      if (!action->isSeparator() && widget->isVisible() && widget->isEnabled()) buttons.push_back(widget);
    }
    return buttons;
  }

  QLineEdit before_;
  QLineEdit after_;
};

/// Tab enters the editor at the picture, as the focus proxies say, and leaves it behind the dock windows.
TEST_F(BarKeys, ShiftTabGoesThroughDockWindowsPictureAndBarsToTheHost) {
  const std::vector<QWidget*> way = round(true);
  ASSERT_EQ(way.back(), &before_);
  for (const QToolBar* const bar : editor_->findChildren<QToolBar*>()) {
    const auto stops = std::count_if(way.begin(), way.end(),
                                     [bar](const QWidget* widget) { return widget->parentWidget() == bar; });
    EXPECT_EQ(stops, bar->isVisible() ? 1 : 0) << bar->objectName().toStdString();
  }
  const std::size_t picturePlace = placeOf(way, &picture());
  EXPECT_LT(placeOf(way, &part<QPushButton>("btnColors_0")), picturePlace);
  EXPECT_LT(picturePlace, placeOf(way, &button("btnFileOpen")));
  EXPECT_THAT(way, testing::Contains(&after_));
}

TEST_F(BarKeys, ArrowsMoveAmongTheEnabledButtonsOfABar) {
  const std::vector<QWidget*> buttons = usable("Standard");
  ASSERT_GT(buttons.size(), 3U);
  buttons[0]->setFocus(Qt::TabFocusReason);
  ASSERT_EQ(focus(), buttons[0]);
  press(Qt::Key_Right);
  EXPECT_EQ(focus(), buttons[1]);
  press(Qt::Key_Left);
  press(Qt::Key_Left);
  EXPECT_EQ(focus(), buttons.back()) << "around the end";
  press(Qt::Key_Home);
  EXPECT_EQ(focus(), buttons[0]);
  press(Qt::Key_End);
  EXPECT_EQ(focus(), buttons.back());

  button("btnDrawZoom").setFocus(Qt::TabFocusReason);
  press(Qt::Key_Down);
  EXPECT_EQ(focusName(), "btnDrawPan") << "in an upright bar";
}

TEST_F(BarKeys, TheStopOfABarIsTheButtonThatHadTheFocus) {
  button("btnDrawZoom").setFocus(Qt::TabFocusReason);
  press(Qt::Key_End);
  ASSERT_EQ(focusName(), "btnDrawPicker");
  before_.setFocus();
  EXPECT_THAT(round(true), testing::Contains(&button("btnDrawPicker")));
  EXPECT_THAT(round(true), testing::Not(testing::Contains(&button("btnDrawZoom"))));
}

TEST_F(BarKeys, ReturnAndSpacePress) {
  button("btnDrawZoom").setFocus(Qt::TabFocusReason);
  press(Qt::Key_Down);
  press(Qt::Key_Return);
  EXPECT_EQ(control().Tool(), ipToolPan);
  press(Qt::Key_Down);
  press(Qt::Key_Space);
  EXPECT_EQ(control().Tool(), ipToolSelect);
  EXPECT_EQ(focusName(), "btnDrawSelect") << "the focus stays for the next tool";
}

TEST_F(BarKeys, EscapeMovesTheFocusToThePicture) {
  button("btnDrawZoom").setFocus(Qt::TabFocusReason);
  press(Qt::Key_Escape);
  EXPECT_EQ(focus(), &picture());
}

TEST_F(BarKeys, AClickLeavesTheFocusWhereItIs) {
  picture().setFocus();
  QTest::mouseClick(&button("btnDrawPan"), Qt::LeftButton);
  EXPECT_EQ(control().Tool(), ipToolPan);
  EXPECT_EQ(focus(), &picture());
}

TEST_F(BarKeys, TheCommandWithTheFocusIsDescribed) {
  button("btnDrawZoom").setFocus(Qt::TabFocusReason);
  press(Qt::Key_Down);
  EXPECT_EQ(nameOf(part("pnlStatus")), "Allows you to scroll the image by clicking and dragging");
  press(Qt::Key_Escape);
  EXPECT_EQ(nameOf(part("pnlStatus")), "");
}

TEST_F(BarKeys, ADisabledStopIsReplaced) {
  QToolButton& open = button("btnFileOpen");
  ASSERT_THAT(round(true), testing::Contains(&open));
  control().Commands()("btnFileOpen").Enabled(false);
  EXPECT_THAT(round(true), testing::Contains(usable("Standard").front()));
}

/// The buttons of bars, when their commands come and go.
class BarButtons : public BarKeys {
 protected:
  int objects() {
    settle();
    return static_cast<int>(window_.findChildren<QObject*>().size());
  }
};

TEST_F(BarButtons, AreNotLeftWhenTheirCommandsGo) {
  const auto change = [this] {
    control().UseSimpleTools(true);
    control().ShowDrawingTools(false);
    control().ShowOpen(false);
    settle();
    control().UseSimpleTools(false);
    control().ShowDrawingTools(true);
    control().ShowOpen(true);
  };
  change();
  const int before = objects();
  for (int i = 0; i < 10; ++i) change();
  EXPECT_EQ(objects(), before);

  control().ShowOpen(false);
  settle();
  EXPECT_TRUE(editor_->findChildren<QToolButton*>(QStringLiteral("btnFileOpen")).isEmpty());
}

TEST_F(BarButtons, ThatStayKeepTheirObjectAndFocus) {
  const QPointer<QWidget> last(usable("Standard").back());
  last->setFocus(Qt::TabFocusReason);
  control().ShowOpen(false);
  control().ShowOpen(true);
  settle();
  ASSERT_TRUE(last);
  EXPECT_EQ(usable("Standard").back(), last);
  EXPECT_EQ(focus(), last);
}

TEST_F(BarButtons, KeepTheOrderOfTheLayout) {
  auto* const bar = qobject_cast<QToolBar*>(button("btnFileSave").parentWidget());
  const auto order = [bar] {
    QStringList names;
    for (QAction* const action : bar->actions()) {
      names += action->isSeparator() ? QStringLiteral("|") : action->objectName();
    }
    return names.join(u' ');
  };
  const QString before = order();
  EXPECT_TRUE(before.contains(QStringLiteral("btnFileOpen btnFileSave | btnFileExport")))
      << before.toStdString();
  control().UseSimpleTools(true);
  control().ShowOpen(false);
  EXPECT_NE(order(), before);
  control().ShowOpen(true);
  control().UseSimpleTools(false);
  EXPECT_EQ(order(), before);
}

TEST_F(BarButtons, MenusOfTheBarsLeaveNothing) {
  QMenu& bars = *button("barMenuButton").menu();
  const auto open = [&bars] {
    bars.popup(QPoint(10, 10));
    settle();
    bars.close();
  };
  open();
  const int before = objects();
  for (int i = 0; i < 5; ++i) open();
  EXPECT_EQ(objects(), before);
}

}  // namespace
}  // namespace kestrel::desktop
