#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QFontInfo>
#include <QHelpEvent>
#include <QMenuBar>
#include <QScopeGuard>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocumentFragment>
#include <QTimer>
#include <QToolTip>

#include "EditorBench.h"

namespace kestrel::desktop {
namespace {

using testing::ElementsAre;

/// The captions of a menu as it opens, without hot keys; "-" is a separator.
std::vector<std::string> captions(QMenu& menu) {
  Q_EMIT menu.aboutToShow();
  std::vector<std::string> result;
  for (const QAction* action : menu.actions()) {
    if (!action->isVisible()) continue;
    result.push_back(action->isSeparator() ? "-" : action->text().section(u'\t', 0, 0).toStdString());
  }
  return result;
}

class Menus : public testing::Test {
 protected:
  QMenuBar& bar() { return *bench.window().findChild<QMenuBar*>(); }
  QMenu& menu(const std::string& key) {
    return *bench.moorage().actions().actionOf(bench.command(key)).menu();
  }
  std::string status() { return bench.moorage().StatusPanel("pnlStatus").Caption(); }

  EditorBench bench;
};

TEST_F(Menus, AreInTheBarWithTheirCaptions) {
  std::vector<std::string> texts;
  for (const QAction* action : bar().actions()) texts.push_back(action->text().toStdString());
  EXPECT_THAT(texts, ElementsAre("&File", "&Edit", "&View", "&Image", "&Tools", "&Selections", "&Help"));
  EXPECT_TRUE(bar().isVisible());
}

TEST_F(Menus, HoldTheEntriesOfTheLayoutWithTheirSeparators) {
  EXPECT_THAT(captions(menu("mnuEdit")),
              ElementsAre("&Undo", "&Redo", "-", "Cu&t", "&Copy", "&Paste", "Paste &Special..."));
  EXPECT_THAT(captions(menu("mnuView")),
              ElementsAre("&Materials Window", "&Zoom Window", "-", "&Status Bar"));
  EXPECT_THAT(captions(menu("mnuTools")),
              ElementsAre("&Drawing Tools", "&Zoom", "-", "&Flatten Transparency...", "-", "&Options..."));
}

TEST_F(Menus, OmitInvisibleEntries) {
  EXPECT_THAT(captions(menu("mnuZoom")), ElementsAre("&Actual Size", "-", "Zoom &In", "Zoom &Out"));
  bench.editor().UseSimpleTools(true);
  EXPECT_THAT(captions(menu("mnuEdit")), ElementsAre("&Undo", "&Redo", "-", "&Copy"));
}

TEST_F(Menus, ShowHotKeysNextToTheCaptions) {
  const auto hotKey = [this](const std::string& key) {
    return bench.moorage().actions().actionOf(bench.command(key)).text().section(u'\t', 1);
  };
  EXPECT_EQ(hotKey("btnFileOpen"), "Ctrl+O");
  EXPECT_EQ(hotKey("btnImageResize"), "Shift+S");
  EXPECT_EQ(hotKey("btnFileClose"), "Alt+F4");
  EXPECT_EQ(hotKey("btnZoomIn"), "Num +");
  EXPECT_EQ(hotKey("btnZoomOut"), "Num -");
  EXPECT_EQ(hotKey("btnFileSaveAs"), "");
}

TEST_F(Menus, ListTheRecentFilesInTheFileMenu) {
  docking::CommandModel& list = bench.command("mnuFileMRU");
  list.Items().Clear();
  list.Items().Add("/pictures/a & b.png", "1");
  list.Items().Add("/pictures/c.jpg", "2");
  EXPECT_THAT(captions(menu("mnuFile")), testing::IsSupersetOf({"/pictures/a && b.png", "/pictures/c.jpg"}))
      << "the full paths, without numbers";

  std::string chosen;
  const Connection connection =
      bench.moorage().CommandClick.Connect([&](Command& command) { chosen = command.SelectedItem().Text; });
  bench.editor().ShowMRU(false);  // so that choosing an entry opens nothing
  bench.moorage().chooseItem(list, 2);
  EXPECT_EQ(chosen, "");
}

TEST_F(Menus, ElideLongNamesInTheMiddleAndShowThemAsToolTips) {
  const std::string folder = "/pictures/of a & long journey" + std::string(200, '-');
  docking::CommandModel& list = bench.command("mnuFileMRU");
  list.Items().Clear();
  list.Items().Add("/pictures/c.jpg", "1");
  list.Items().Add(folder + "/harbor & sea.jpg", "2");
  list.Items().Add(folder + "/lake.jpg", "3");

  pressKey(bench.window(), Qt::Key_F, Qt::AltModifier);
  auto* const file = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_EQ(file, &menu("mnuFile"));
  settle();
  writeScreenshot(*file, "menu-recent");
  EXPECT_LE(file->width(), 40 * QFontInfo(file->font()).pixelSize());
  EXPECT_LE(file->sizeHint().width(), file->screen()->availableGeometry().width()) << "the names fit";
  const auto line = [file](const char* end) {
    for (QAction* action : file->actions()) {
      if (action->text().endsWith(QLatin1String(end))) return action;
    }
    return static_cast<QAction*>(nullptr);
  };
  const auto toolTip = [file](QAction* action) {
    const QPoint at = file->actionGeometry(action).center();
    QHelpEvent help(QEvent::ToolTip, at, file->mapToGlobal(at));
    QApplication::sendEvent(file, &help);
    return QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText();
  };
  QAction* const harbor = line("/harbor && sea.jpg");
  QAction* const lake = line("/lake.jpg");
  QAction* const whole = line("/pictures/c.jpg");
  ASSERT_TRUE(harbor && lake && whole);
  EXPECT_TRUE(harbor->text().startsWith(QStringLiteral("/pictures/of a && long")));
  EXPECT_TRUE(harbor->text().contains(u'\u2026'));
  EXPECT_EQ(whole->text(), "/pictures/c.jpg");
  EXPECT_EQ(toolTip(whole), "") << "it is shown whole";
  EXPECT_EQ(toolTip(harbor).toStdString(), folder + "/harbor & sea.jpg");
  EXPECT_EQ(toolTip(lake).toStdString(), folder + "/lake.jpg");

  std::string chosen;
  const Connection connection =
      bench.moorage().CommandClick.Connect([&](Command& command) { chosen = command.SelectedItem().Text; });
  bench.editor().ShowMRU(true);
  file->setActiveAction(harbor);
  whenModalOpens([](QWidget& dialog) { dialog.close(); });  // there is no such file
  QTest::keyClick(file, Qt::Key_Return);
  settle();
  EXPECT_EQ(chosen, folder + "/harbor & sea.jpg");
}

TEST_F(Menus, ElideTheNameOfALongStepAndKeepItsAccessAndHotKey) {
  const std::string name(300, 'w');
  bench.showPicture(noise(64, 64));
  bench.view().Effects().Flip(0, name);
  pressKey(bench.window(), Qt::Key_E, Qt::AltModifier);
  auto* const edit = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_EQ(edit, &menu("mnuEdit"));
  EXPECT_LE(edit->width(), 40 * QFontInfo(edit->font()).pixelSize());
  const QAction& undo = bench.moorage().actions().actionOf(bench.command("btnEditUndo"));
  EXPECT_TRUE(undo.text().startsWith(QStringLiteral("&Undo ww")));
  EXPECT_TRUE(undo.text().endsWith(QStringLiteral("\tCtrl+Z"))) << undo.text().toStdString();
  QTest::keyClick(edit, Qt::Key_U);
  settle();
  EXPECT_FALSE(bench.view().CanUndo());
  bench.view().Effects().Flip(0, "Flip");
  EXPECT_THAT(captions(menu("mnuEdit")), testing::Contains("&Undo Flip"));
}

TEST_F(Menus, OpenTheRecentFileThatIsChosenInTheFileMenu) {
  const QTemporaryDir folder;
  const std::string first = folder.filePath(QStringLiteral("first.png")).toStdString();
  const std::string second = folder.filePath(QStringLiteral("second.png")).toStdString();
  for (const std::string& file : {first, second}) {
    ASSERT_TRUE(noise(40, 30).save(QString::fromStdString(file)));
    ASSERT_TRUE(bench.editor().OpenImage(file));
  }
  ASSERT_EQ(bench.editor().Filename(), second);
  Q_EMIT menu("mnuFile").aboutToShow();
  QAction* line = nullptr;
  for (QAction* action : menu("mnuFile").actions()) {
    if (action->text().endsWith(QLatin1String("/first.png"))) line = action;
  }
  ASSERT_NE(line, nullptr);
  line->trigger();
  EXPECT_EQ(bench.editor().Filename(), first);
  docking::CommandModel& list = bench.command("mnuFileMRU");
  EXPECT_EQ(list.Items().Item(1).Text, first) << "it is the newest now";
  EXPECT_EQ(list.Items().Item(2).Text, second);
}

TEST_F(Menus, ShowThePressedStateWithoutTogglingIt) {
  QAction& select = bench.moorage().actions().actionOf(bench.command("btnDrawSelect"));
  EXPECT_TRUE(select.isChecked());
  bench.showPicture(noise(64, 64));
  select.trigger();
  EXPECT_TRUE(select.isChecked());
}

TEST_F(Menus, ShowTheDescriptionOfTheEntryUnderThePointer) {
  QAction& open = bench.moorage().actions().actionOf(bench.command("btnFileOpen"));
  open.hover();
  EXPECT_EQ(status(), "Opens en existing image");
  Q_EMIT menu("mnuFile").aboutToHide();
  EXPECT_EQ(status(), "");
}

TEST_F(Menus, RestoreTheStatusWhenThePointerLeavesTheirBar) {
  bench.editor().Status("Ready", false, true);
  bar().actions().at(1)->hover();
  EXPECT_EQ(status(), "") << "the menu has no description";
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(&bar(), &leave);
  EXPECT_EQ(status(), "Ready");
}

TEST_F(Menus, RestoreTheStatusWhenEscapeLeavesTheirBar) {
  bench.editor().Status("Ready", false, true);
  pressKey(bench.window(), Qt::Key_E, Qt::AltModifier);
  ASSERT_NE(QApplication::activePopupWidget(), nullptr);
  QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
  ASSERT_EQ(QApplication::activePopupWidget(), nullptr);
  pressKey(bench.window(), Qt::Key_Escape);
  EXPECT_EQ(QApplication::focusWidget(), &bench.canvas());
  EXPECT_EQ(status(), "Ready");
}

TEST_F(Menus, OpenAtTheSelectionByTheMenuKey) {
  bench.showPicture(noise(64, 64));
  bench.view().SetSelectionRect(16, 8, 32, 20);
  bench.view().SelectionVisible(true);
  const double factor = bench.canvas().devicePixelRatioF();
  const QPointF middle((32 - bench.view().ScrollLeft()) / factor, (18 - bench.view().ScrollTop()) / factor);
  // At a large scale factor the window is larger than the screen, on which the menu must be.
  const QPoint corner = bench.window().screen()->availableGeometry().topLeft() + QPoint(20, 20);
  bench.window().move(bench.window().pos() + corner - bench.canvas().mapToGlobal(middle.toPoint()));
  settle();
  // Other tests move a pointer of their own, and nothing may be under this one.
  const QPoint pointer = QCursor::pos();
  const auto restored = qScopeGuard([&] { QCursor::setPos(pointer); });
  QCursor::setPos(bench.canvas().mapToGlobal(QPoint(3, 3)));
  QPoint place;
  QTimer::singleShot(20, [&] {
    QWidget* const popup = QApplication::activePopupWidget();
    ASSERT_NE(popup, nullptr);
    place = popup->pos();
    popup->close();
  });
  pressKey(bench.window(), Qt::Key_Menu);
  settle();  // the toolkit posts the event for the context menu
  EXPECT_LE((place - bench.canvas().mapToGlobal(middle.toPoint())).manhattanLength(), 4);
}

TEST_F(Menus, OpenAtThePointerAndReturnWhenClosed) {
  bool seen = false;
  QTimer::singleShot(20, [&] {
    QWidget* const popup = QApplication::activePopupWidget();
    seen = popup != nullptr;
    if (popup) popup->close();
  });
  bench.moorage().ShowPopup(bench.command("mnuSelectionContext"));
  EXPECT_TRUE(seen);
}

}  // namespace
}  // namespace kestrel::desktop
