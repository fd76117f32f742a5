#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QSizeGrip>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QWindow>

#include "EditorBench.h"
#include "Themes.h"
#include "platform/qt/core/SvgIcon.h"
#include "platform/qt/docking/DockContent.h"

namespace kestrel::desktop {
namespace {

class Bars : public testing::Test {
 protected:
  QDockWidget& dock(const char* key) { return *bench.window().findChild<QDockWidget*>(QLatin1String(key)); }
  QToolBar& toolBar(const char* name) { return *bench.window().findChild<QToolBar*>(QLatin1String(name)); }
  qt::MoorageWindow& suite() { return *bench.window().findChild<qt::MoorageWindow*>(); }
  std::vector<QToolBar*> movableBars() {
    return {&toolBar("Standard"), &toolBar("Picture"), &toolBar("Tools")};
  }

  QRect placeOf(const QWidget& widget) {
    return QRect(widget.mapTo(&bench.window(), QPoint()), widget.size());
  }
  /// The middle of the handle of a bar, in the window.
  QPoint handleOf(const QToolBar& bar) {
    constexpr int kInside = 5;
    const QPoint handle = bar.orientation() == Qt::Horizontal ? QPoint(kInside, bar.height() / 2)
                                                              : QPoint(bar.width() / 2, kInside);
    return bar.mapTo(&bench.window(), handle);
  }
  void drag(QToolBar& bar, const QPoint& to) {
    QWindow* const window = bench.window().windowHandle();
    const QPoint from = handleOf(bar);
    QTest::mousePress(window, Qt::LeftButton, {}, from);
    constexpr int kSteps = 8;
    for (int i = 1; i <= kSteps; ++i) QTest::mouseMove(window, from + (to - from) * i / kSteps);
    settle();
    QTest::mouseRelease(window, Qt::LeftButton, {}, to);
    for (int round = 0; round < 20; ++round) settle();  // the bars slide to their places
  }
  QStringList texts(const QMenu& menu) {
    QStringList result;
    for (const QAction* action : menu.actions()) result += action->text();
    return result;
  }

  EditorBench bench;
};

TEST_F(Bars, TheMenuBarIsAsHighAsItsEntries) {
  const auto* const menuBar = bench.window().findChild<QMenuBar*>();
  ASSERT_NE(menuBar, nullptr);
  ASSERT_NE(menuBar->cornerWidget(), nullptr);
  const QRect entry = menuBar->actionGeometry(menuBar->actions().first());
  EXPECT_EQ(entry.bottom(), menuBar->rect().bottom());
  EXPECT_LE(menuBar->cornerWidget()->height(), menuBar->height());
}

TEST_F(Bars, HaveAMenuAtTheEndOfTheMenuBar) {
  auto* const button = bench.window().findChild<QToolButton*>(QStringLiteral("barMenuButton"));
  ASSERT_NE(button, nullptr);
  ASSERT_TRUE(button->isVisible());
  EXPECT_EQ(button->accessibleName(), "Tool bars and windows");
  EXPECT_FALSE(button->toolTip().isEmpty());
  QStringList shown;
  QTimer::singleShot(50, [&] {
    if (auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
      shown = texts(*menu);
      writeScreenshot(*menu, "bar-menu");
      menu->close();
    }
  });
  QTest::mouseClick(bench.window().windowHandle(), Qt::LeftButton, {}, placeOf(*button).center());
  settle();
  EXPECT_THAT(shown, testing::IsSupersetOf({QStringLiteral("Standard"), QStringLiteral("Tool Bar &Style"),
                                            QStringLiteral("&Lock the Tool Bars"),
                                            QStringLiteral("&Reset Bars and Windows")}));
}

TEST_F(Bars, HaveAMenuThatOpensByItsKey) {
  bool opened = false;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
    QWidget* const popup = QApplication::activePopupWidget();
    if (!popup || !QTest::qWaitForWindowExposed(popup)) return;
    opened = true;
    QTest::keyClick(popup, Qt::Key_Escape);
    watch.stop();
  });
  watch.start(5);
  pressKey(bench.window(), Qt::Key_B, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return opened; }));
  EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::focusWidget() == &bench.canvas(); }))
      << "the focus returns when the window is active again";
}

TEST_F(Bars, LeaveTheMenusOfTheLayoutAsTheyAre) {
  QStringList menus;
  for (const QAction* action : bench.window().findChild<QMenuBar*>()->actions()) menus += action->text();
  EXPECT_EQ(menus.join(u' '), "&File &Edit &View &Image &Tools &Selections &Help");
}

TEST_F(Bars, AreReachableWhereverTheyAreDragged) {
  bench.window().resize(1, 1);  // as small as it gets
  settle();
  const QSize size = bench.window().size();
  const QPoint targets[] = {{20, size.height() / 2},
                            {size.width() - 5, size.height() / 2},
                            {size.width() / 2, size.height() - 5},
                            {size.width() - 3, 40},
                            {-200, size.height() / 2},
                            {size.width() / 2, -300},
                            {size.width() + 400, size.height() + 400},
                            {size.width() / 2, size.height() / 2}};
  for (const QPoint& target : targets) {
    for (QToolBar* const dragged : movableBars()) {
      drag(*dragged, target);
      for (QToolBar* const bar : movableBars()) {
        const QPoint handle = handleOf(*bar);
        EXPECT_TRUE(bar->isVisible());
        EXPECT_TRUE(bench.window().rect().contains(handle))
            << bar->objectName().toStdString() << " after " << dragged->objectName().toStdString() << " to "
            << target.x() << ' ' << target.y();
        EXPECT_EQ(bench.window().childAt(handle), bar) << "nothing covers its handle";
      }
    }
  }
}

TEST_F(Bars, MoveByTheirHandleAndComeBackByReset) {
  QToolBar& standard = toolBar("Standard");
  drag(standard, {12, 400});
  EXPECT_EQ(suite().toolBarArea(&standard), Qt::LeftToolBarArea);
  const QRect before = placeOf(toolBar("Picture"));
  dock("dkwZoom").setFloating(true);
  suite().addDockWidget(Qt::LeftDockWidgetArea, &dock("dkwMaterials"));
  settle();
  std::unique_ptr<QMenu> menu(suite().createPopupMenu());
  for (QAction* action : menu->actions()) {
    if (action->text() == QStringLiteral("&Reset Bars and Windows")) action->trigger();
  }
  settle();
  EXPECT_EQ(suite().toolBarArea(&standard), Qt::TopToolBarArea);
  EXPECT_LT(placeOf(standard).x(), placeOf(toolBar("Picture")).x());
  EXPECT_GT(placeOf(toolBar("Picture")).x(), before.x());
  EXPECT_EQ(suite().toolBarArea(&toolBar("Tools")), Qt::LeftToolBarArea);
  EXPECT_FALSE(toolBar("Zoom").isVisible()) << "as before";
  for (const char* key : {"dkwMaterials", "dkwZoom"}) {
    EXPECT_TRUE(dock(key).isVisible());
    EXPECT_FALSE(dock(key).isFloating());
    EXPECT_EQ(suite().dockWidgetArea(&dock(key)), Qt::RightDockWidgetArea);
  }
  EXPECT_LT(placeOf(dock("dkwMaterials")).y(), placeOf(dock("dkwZoom")).y());
}

class SmallestWindow : public Bars {
 protected:
  /// The parts of the window: bars, docked windows and the view.
  std::vector<const QWidget*> parts() {
    std::vector<const QWidget*> all = {bench.window().findChild<QMenuBar*>(),
                                       bench.window().findChild<QStatusBar*>(), &bench.view().surface()};
    for (const QToolBar* bar : bench.window().findChildren<QToolBar*>()) all.push_back(bar);
    for (const QDockWidget* panel : bench.window().findChildren<QDockWidget*>()) {
      if (!panel->isWindow()) all.push_back(panel);
    }
    std::erase_if(all, [](const QWidget* part) { return !part->isVisible(); });
    return all;
  }
  void expectNoOverlap(const char* when) {
    bench.window().resize(1, 1);
    for (int round = 0; round < 10; ++round) settle();
    const auto all = parts();
    for (std::size_t i = 0; i < all.size(); ++i) {
      const QRect place = placeOf(*all[i]);
      EXPECT_TRUE(bench.window().rect().contains(place))
          << when << ": " << all[i]->objectName().toStdString();
      for (std::size_t j = 0; j < i; ++j) {
        EXPECT_FALSE(place.intersects(placeOf(*all[j]))) << when << ": " << all[i]->objectName().toStdString()
                                                         << " over " << all[j]->objectName().toStdString();
      }
    }
    EXPECT_GE(bench.view().surface().width(), 200) << when;
    EXPECT_GE(bench.view().surface().height(), 140) << when;
  }
};

TEST_F(SmallestWindow, HasNoOverlap) {
  bench.showPicture(noise(600, 400));
  expectNoOverlap("at the start");
  bench.screenshot("window-smallest");
  bench.editor().Tool(ipToolZoom);
  expectNoOverlap("with the zoom bar");
  bench.editor().SetToolbarStyle(2);
  expectNoOverlap("with texts");
  bench.editor().SetToolbarStyle(0);
  suite().addDockWidget(Qt::LeftDockWidgetArea, &dock("dkwMaterials"));
  expectNoOverlap("with a window at each side");
  {
    const Theme dark(darkPalette());
    settle();
    bench.screenshot("window-smallest-dark");
  }
}

TEST_F(SmallestWindow, GetsSmallerWithFewerWindows) {
  bench.window().resize(1, 1);
  settle();
  const QSize before = bench.window().size();
  bench.moorage().DockWindows()("dkwZoom").Visible(false);
  bench.moorage().DockWindows()("dkwMaterials").Visible(false);
  settle();
  bench.window().resize(1, 1);
  settle();
  EXPECT_LT(bench.window().width(), before.width());
}

class FloatingWindow : public Bars {
 protected:
  QDockWidget& floated(const char* key) {
    QDockWidget& panel = dock(key);
    panel.setFloating(true);
    panel.resize(panel.size().expandedTo(QSize(220, 220)));
    QApplication::setActiveWindow(&panel);
    settle();
    return panel;
  }
};

TEST_F(FloatingWindow, HasAFrameAndAGrip) {
  bench.showPicture(noise(300, 200));
  for (const char* key : {"dkwMaterials", "dkwZoom"}) {
    auto* const grip = dock(key).findChild<QSizeGrip*>();
    ASSERT_NE(grip, nullptr);
    EXPECT_FALSE(grip->isVisible()) << "docked";
    for (const auto& [name, palette] : {std::pair("light", QPalette()), std::pair("dark", darkPalette())}) {
      const Theme theme(palette);
      QDockWidget& panel = floated(key);
      EXPECT_TRUE(grip->isVisible());
      const auto& content = *qobject_cast<qt::DockContent*>(panel.widget());
      EXPECT_LE(content.rect().bottomRight().x() - grip->geometry().right(), 2);
      EXPECT_LE(content.rect().bottomRight().y() - grip->geometry().bottom(), 2);
      const QImage shown = panel.widget()->grab().toImage();
      const QColor ground = panel.palette().color(QPalette::Window);
      const QPoint edges[] = {{0, shown.height() / 2},
                              {shown.width() - 1, shown.height() / 2},
                              {shown.width() / 2, 0},
                              {shown.width() / 2, shown.height() - 1}};
      for (const QPoint& edge : edges) {
        EXPECT_GE(qt::contrastOf(shown.pixelColor(edge), ground), 2.0) << key << ' ' << name;
      }
      writeScreenshot(panel, std::string("floating ") + key + ' ' + name);
      panel.setFloating(false);
      settle();
      EXPECT_FALSE(grip->isVisible());
    }
  }
}

TEST_F(FloatingWindow, OpensTheMenusByTheirKeys) {
  for (const char* key : {"dkwMaterials", "dkwZoom"}) {
    QDockWidget& panel = floated(key);
    ASSERT_EQ(QApplication::activeWindow(), &panel);
    pressKey(panel, Qt::Key_V, Qt::AltModifier);
    settle();
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr) << key;
    EXPECT_EQ(menu->objectName(), "mnuView");
    QTest::keyClick(menu, Qt::Key_Escape);
    settle();
    panel.setFloating(false);
    settle();
  }
}

}  // namespace
}  // namespace kestrel::desktop
