#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QLineEdit>
#include <QMenu>
#include <QStatusBar>
#include <QTest>
#include <QToolButton>
#include <QWindow>

#include "EditorBench.h"
#include "platform/qt/docking/PanelField.h"

namespace kestrel::desktop {
namespace {

class DockingDesktop : public testing::Test {
 protected:
  QDockWidget& dock(const char* key) { return *bench.window().findChild<QDockWidget*>(QLatin1String(key)); }
  QToolBar& toolBar(const char* name) { return *bench.window().findChild<QToolBar*>(QLatin1String(name)); }
  qt::PanelField& panel(const char* key) {
    return *bench.window().findChild<qt::PanelField*>(QLatin1String(key));
  }
  /// The entry of the bars' context menu with this text.
  QAction* barMenuEntry(const QString& text) {
    auto* const window = bench.window().findChild<qt::MoorageWindow*>();
    barMenu.reset(window->createPopupMenu());
    for (QAction* action : barMenu->actions()) {
      if (action->text() == text) return action;
    }
    return nullptr;
  }

  EditorBench bench;
  std::unique_ptr<QMenu> barMenu;
};

TEST_F(DockingDesktop, DockWindowsCloseAndReopen) {
  ASSERT_TRUE(dock("dkwMaterials").isVisible());
  dock("dkwMaterials").close();
  EXPECT_FALSE(dock("dkwMaterials").isVisible());
  EXPECT_FALSE(bench.moorage().DockWindows()("dkwMaterials").Visible());
  EXPECT_FALSE(bench.command("btnViewMaterialsWindow").Checked());

  bench.moorage().click(bench.command("btnViewMaterialsWindow"));
  EXPECT_TRUE(dock("dkwMaterials").isVisible());
  EXPECT_TRUE(bench.command("btnViewMaterialsWindow").Checked());
}

TEST_F(DockingDesktop, AHandlerKeepsADockWindowOpen) {
  std::int32_t why = -1;
  const Connection connection =
      bench.moorage().DockWindowHiding.Connect([&](DockWindow&, std::int32_t reason, CancelValue& cancel) {
        why = reason;
        cancel.Value = true;
      });
  dock("dkwZoom").close();
  EXPECT_TRUE(dock("dkwZoom").isVisible());
  EXPECT_EQ(why, kReasonUser);
}

TEST_F(DockingDesktop, DockWindowsFloatAndDockAgain) {
  QDockWidget& zoom = dock("dkwZoom");
  zoom.setFloating(true);
  settle();
  EXPECT_TRUE(zoom.isWindow());
  EXPECT_TRUE(zoom.isVisible());
  zoom.close();
  EXPECT_FALSE(bench.moorage().DockWindows()("dkwZoom").Visible());
  bench.moorage().DockWindows()("dkwZoom").Visible(true);
  zoom.setFloating(false);
  settle();
  EXPECT_FALSE(zoom.isWindow());
  EXPECT_TRUE(zoom.isVisible());
}

TEST_F(DockingDesktop, TheViewFillsTheRemainingArea) {
  const auto fills = [this] {
    const Rectangle area = bench.moorage().ClientArea();
    return bench.view().surface().geometry() == QRect(area.Left, area.Top, area.Width, area.Height);
  };
  ASSERT_TRUE(fills());
  const int before = bench.view().surface().width();
  bench.moorage().DockWindows()("dkwZoom").Visible(false);
  bench.moorage().DockWindows()("dkwMaterials").Visible(false);
  settle();
  EXPECT_GT(bench.view().surface().width(), before);
  EXPECT_TRUE(fills());
  bench.window().resize(800, 500);
  settle();
  EXPECT_TRUE(fills());
}

TEST_F(DockingDesktop, StatusPanelsShowTheirCaptionsNextToTheirIcons) {
  bench.editor().Status("Ready for a test");
  EXPECT_EQ(panel("pnlStatus").text(), "Ready for a test");
  EXPECT_EQ(panel("pnlZoom").text(), "1:1 (100%)");
  EXPECT_GT(panel("pnlStatus").width(), 3 * panel("pnlPosition").width());
  EXPECT_GE(panel("pnlPosition").width(), 53);
  EXPECT_LT(panel("pnlPosition").x(), panel("pnlSize").x());
  EXPECT_LT(panel("pnlSize").x(), panel("pnlZoom").x());
}

TEST_F(DockingDesktop, StatusPanelsHideAndReappear) {
  ASSERT_TRUE(panel("pnlSize").isVisible());
  bench.moorage().StatusPanel("pnlSize").Visible(false);
  EXPECT_FALSE(panel("pnlSize").isVisible());
  bench.moorage().StatusPanel("pnlSize").Visible(true);
  EXPECT_TRUE(panel("pnlSize").isVisible());
}

TEST_F(DockingDesktop, BarsAreNotUpdatedUntilRedrawResumes) {
  bench.showPicture(noise(20, 20));
  const QAction& flip = bench.moorage().actions().actionOf(bench.command("btnImageFlip"));
  ASSERT_TRUE(flip.isEnabled());
  bench.moorage().Redraw(false);
  bench.command("btnImageFlip").Enabled(false);
  EXPECT_TRUE(flip.isEnabled());
  bench.moorage().Redraw(true);
  EXPECT_FALSE(flip.isEnabled());
}

TEST_F(DockingDesktop, ALongMessageDoesNotWidenTheWindow) {
  const int before = bench.window().minimumSizeHint().width();
  bench.editor().Status(std::string(2000, 'x'));
  settle();
  EXPECT_EQ(bench.window().minimumSizeHint().width(), before);
}

TEST_F(DockingDesktop, TheBarsMenuHidesTheStatusBarAndUnchecksItsCommand) {
  auto* const bar = bench.window().findChild<QStatusBar*>();
  QAction* const entry = barMenuEntry(QStringLiteral("Status Bar"));
  ASSERT_NE(entry, nullptr);
  EXPECT_TRUE(entry->isChecked());
  entry->trigger();
  EXPECT_FALSE(bar->isVisible());
  EXPECT_FALSE(bench.command("btnViewStatusBar").Checked());
  bench.moorage().click(bench.command("btnViewStatusBar"));
  EXPECT_TRUE(bar->isVisible());
}

TEST_F(DockingDesktop, TheBarsMenuOffersEveryToolBarButTheZoomBar) {
  for (const char* name : {"Standard", "Tools", "Picture"}) {
    EXPECT_NE(barMenuEntry(QLatin1String(name)), nullptr) << name;
  }
  QList<QAction*> zoom;
  for (QAction* action : barMenu->actions()) {
    if (action->text() == QStringLiteral("Zoom")) zoom << action;
  }
  ASSERT_EQ(zoom.size(), 1) << "the dock window of that caption";
  zoom[0]->trigger();
  EXPECT_FALSE(dock("dkwZoom").isVisible());
  EXPECT_FALSE(toolBar("Zoom").isVisible());
}

TEST_F(DockingDesktop, TheBarsMenuLocksTheToolBars) {
  EXPECT_TRUE(toolBar("Standard").isMovable());
  barMenuEntry(QStringLiteral("&Lock the Tool Bars"))->trigger();
  EXPECT_FALSE(toolBar("Standard").isMovable());
  EXPECT_TRUE(barMenuEntry(QStringLiteral("&Lock the Tool Bars"))->isChecked());
}

TEST_F(DockingDesktop, TheStyleChangesTheLookOfTheBars) {
  EXPECT_EQ(toolBar("Standard").toolButtonStyle(), Qt::ToolButtonIconOnly);
  bench.editor().SetToolbarStyle(1);
  EXPECT_EQ(toolBar("Standard").toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
  bench.editor().SetToolbarStyle(2);
  EXPECT_EQ(toolBar("Picture").toolButtonStyle(), Qt::ToolButtonTextUnderIcon);
  auto* const open = toolBar("Standard").findChild<QToolButton*>(QStringLiteral("btnFileOpen"));
  EXPECT_EQ(open->text(), "Open");
}

TEST_F(DockingDesktop, ButtonsClickShowTheirStateAndDescription) {
  bench.showPicture(noise(32, 32));
  auto* const pan = toolBar("Tools").findChild<QToolButton*>(QStringLiteral("btnDrawPan"));
  QTest::mouseClick(pan, Qt::LeftButton);
  EXPECT_EQ(bench.editor().Tool(), ipToolPan);
  EXPECT_TRUE(pan->isChecked());
  EXPECT_EQ(pan->accessibleName(), "Pan");

  QEnterEvent enter(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
  QApplication::sendEvent(pan, &enter);
  EXPECT_EQ(panel("pnlStatus").text(), "Allows you to scroll the image by clicking and dragging");
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(pan, &leave);
  EXPECT_EQ(panel("pnlStatus").text(), "");
}

class ZoomField : public DockingDesktop {
 protected:
  void SetUp() override {
    bench.showPicture(noise(400, 300));
    bench.editor().Tool(ipToolZoom);
    settle();
    combo = bench.window().findChild<QComboBox*>(QStringLiteral("cboZoom"));
    combo->setFocus();
    combo->lineEdit()->selectAll();
  }
  void type(const QString& text) {
    for (const QChar character : text) QTest::keyClick(bench.window().windowHandle(), character.toLatin1());
  }
  QComboBox* combo = nullptr;
};

TEST_F(ZoomField, AcceptsAnyConfirmedText) {
  type(QStringLiteral("3.3:1"));
  EXPECT_EQ(bench.view().Zoom(), 1.0);
  pressKey(bench.window(), Qt::Key_Return);
  EXPECT_FLOAT_EQ(static_cast<float>(bench.view().Zoom()), 3.3F);
  EXPECT_EQ(combo->currentText(), "3.3:1");
}

TEST_F(ZoomField, ListsItsEntriesAndChoosesOne) {
  ASSERT_EQ(combo->count(), 25);
  EXPECT_EQ(combo->itemText(3), "4:1");
  Q_EMIT combo->activated(3);
  EXPECT_EQ(bench.view().Zoom(), 4.0);
  EXPECT_EQ(combo->currentText(), "4:1");
}

TEST_F(ZoomField, RestoresTheTextOnEscape) {
  type(QStringLiteral("nonsense"));
  EXPECT_EQ(combo->currentText(), "nonsense");
  pressKey(bench.window(), Qt::Key_Escape);
  EXPECT_EQ(combo->currentText(), "1:1");
  EXPECT_EQ(bench.view().Zoom(), 1.0);
}

TEST_F(ZoomField, RestoresTheTextWhenItLosesTheFocus) {
  type(QStringLiteral("nonsense"));
  bench.canvas().setFocus();
  EXPECT_EQ(combo->currentText(), "1:1");
}

TEST_F(ZoomField, ReturnsTheFocus) {
  combo->clearFocus();
  bench.canvas().setFocus();
  combo->setFocus();
  type(QStringLiteral("2:1"));
  pressKey(bench.window(), Qt::Key_Return);
  EXPECT_EQ(QApplication::focusWidget(), &bench.canvas());
}

TEST_F(ZoomField, FollowsTheZoomOfTheEditor) {
  bench.editor().ZoomIn();
  EXPECT_EQ(combo->currentText(), "2:1");
}

}  // namespace
}  // namespace kestrel::desktop
