// The browser's window, used by real mouse and keys.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QContextMenuEvent>
#include <QFile>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <memory>

#include "BrowserBench.h"
#include "EditorBench.h"
#include "browser/ImageBrowser.h"
#include "platform/qt/controls/SplitPanelWidget.h"
#include "platform/qt/tree/TreeWidget.h"

namespace kestrel::desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Browser : public testing::Test {
 protected:
  /// A window on img2, img10 and Lake.
  void open() {
    bench_.addPicture("img10.png");
    bench_.addPicture("img2.png");
    bench_.addPicture("Lake.jpg", 320, 200);
    bench_.open();
    bench_.area().setFocus();
    settle();
  }

  /// Runs `work` with the menu that opens next; `work` must close it.
  void whenMenuOpens(std::function<void(QMenu&)> work) {
    auto* const timer = new QTimer(&bench_.window());
    QObject::connect(timer, &QTimer::timeout, timer, [timer, work = std::move(work)] {
      auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      if (!menu || !menu->isVisible()) return;
      timer->deleteLater();
      timer->stop();
      work(*menu);
    });
    timer->start(5);
  }

  void contextClick(std::int32_t item) {
    QWidget& viewport = *bench_.area().viewport();
    const QPoint at = bench_.middleOf(item);
    QTest::mousePress(&viewport, Qt::RightButton, {}, at);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, viewport.mapToGlobal(at));
    QApplication::sendEvent(&viewport, &event);
    QTest::mouseRelease(&viewport, Qt::RightButton, {}, at);
    settle();
  }

  static QStringList textsOf(const QMenu& menu) {
    QStringList texts;
    for (const QAction* action : menu.actions()) {
      if (action->isVisible()) texts += action->isSeparator() ? QStringLiteral("-") : action->text();
    }
    return texts;
  }

  qt::TreeWidget& tree() { return *bench_.widget().findChild<qt::TreeWidget*>(); }
  qt::SplitPanelWidget& split() { return *bench_.widget().findChild<qt::SplitPanelWidget*>(); }
  QWidget& divider() { return *split().findChild<QWidget*>(QStringLiteral("divider")); }

  BrowserBench bench_;
};

TEST_F(Browser, ShowsThePicturesOfItsFolderInNaturalOrder) {
  open();
  EXPECT_THAT(bench_.names(bench_.browser().Thumbnails()), ElementsAre("img2.png", "img10.png", "Lake.jpg"));
  EXPECT_EQ(bench_.browserWindow().Form().Caption(), "Pictures - ");
  writeScreenshot(bench_.window(), "browser");
}

TEST_F(Browser, HidesTheProgressAfterTheLoad) {
  open();
  EXPECT_FALSE(bench_.moorage().StatusPanel("Progress").Visible());
  EXPECT_EQ(bench_.moorage().StatusPanel("pnlStatus").Caption(), " ");
}

TEST_F(Browser, ADoubleClickShowsTheSingleViewAndPressesItsCommand) {
  open();
  bench_.doubleClick(1);
  EXPECT_EQ(bench_.view().View(), kViewSingle);
  EXPECT_TRUE(bench_.command("btnViewSingle").Checked());
  EXPECT_FALSE(bench_.command("btnViewThumbnail").Checked());
  EXPECT_THAT(bench_.names(bench_.browser().SelectedItems()), ElementsAre("img10.png"));
}

TEST_F(Browser, EnterOpensThePictureInTheHost) {
  open();
  std::vector<std::string> opened;
  const Connection connection = bench_.browser().ObjectThumbnailView().ThumbnailOpen.Connect(
      [&](Thumbnail& thumbnail) { opened.push_back(thumbnail.Filename()); });
  bench_.click(2);
  pressKey(bench_.window(), Qt::Key_Return);
  EXPECT_THAT(opened, ElementsAre(bench_.pathOf("Lake.jpg")));
}

TEST_F(Browser, MouseAndKeysSelect) {
  open();
  bench_.click(0);
  bench_.click(2, Qt::ControlModifier);
  EXPECT_THAT(bench_.names(bench_.browser().SelectedItems()), ElementsAre("img2.png", "Lake.jpg"));
  pressKey(bench_.window(), Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(bench_.browser().SelectedItems().Count(), 3);
  pressKey(bench_.window(), Qt::Key_Home);
  EXPECT_THAT(bench_.names(bench_.browser().SelectedItems()), ElementsAre("img2.png"));
}

TEST_F(Browser, TheContextMenuHasTheImageCommandsAndThenTheHostsActions) {
  open();
  QAction hosts(QStringLiteral("Open in Editor"));
  int chosen = 0;
  QObject::connect(&hosts, &QAction::triggered, [&] { ++chosen; });
  bench_.widget().addAction(&hosts);
  QStringList texts;
  whenMenuOpens([&](QMenu& menu) {
    texts = textsOf(menu);
    menu.setActiveAction(&hosts);
    QTest::keyClick(&menu, Qt::Key_Return);
  });
  contextClick(1);
  EXPECT_EQ(texts, (QStringList{QStringLiteral("&Copy To..."), QStringLiteral("&Move To..."),
                                QStringLiteral("&Delete...\tDel"), QStringLiteral("&Rename..."),
                                QStringLiteral("&Information..."), QStringLiteral("-"),
                                QStringLiteral("Open in Editor")}));
  EXPECT_EQ(chosen, 1);
  EXPECT_THAT(bench_.names(bench_.browser().SelectedItems()), ElementsAre("img10.png"));
  const QMenu& imageMenu = bench_.moorage().actions().menuOf(bench_.command("mnuImage"));
  EXPECT_FALSE(textsOf(imageMenu).contains(QStringLiteral("Open in Editor")));
  EXPECT_FALSE(textsOf(imageMenu).contains(QStringLiteral("-")));
}

TEST_F(Browser, TheMenuKeyOpensTheMenuAtTheFocusedThumbnail) {
  open();
  pressKey(bench_.window(), Qt::Key_End);
  pressKey(bench_.window(), Qt::Key_Home);
  QCursor::setPos(bench_.area().viewport()->mapToGlobal(bench_.middleOf(1)));
  const QPoint expected = bench_.area().viewport()->mapToGlobal(bench_.middleOf(0));
  for (const auto& [key, modifiers] :
       {std::pair(Qt::Key_Menu, Qt::NoModifier), {Qt::Key_F10, Qt::ShiftModifier}}) {
    QPoint place;
    whenMenuOpens([&](QMenu& menu) {
      place = menu.pos();
      menu.close();
    });
    pressKey(bench_.window(), key, modifiers);
    QCoreApplication::processEvents();  // the toolkit posts the event for the context menu
    EXPECT_EQ(place, expected);
  }
  QPoint place;
  whenMenuOpens([&](QMenu& menu) {
    place = menu.pos();
    menu.close();
  });
  contextClick(1);
  EXPECT_EQ(place, QCursor::pos()) << "at the pointer by the mouse";
}

TEST_F(Browser, TheStatusDescribesTheEntryThatKeysHighlight) {
  open();
  const auto status = [this] { return bench_.moorage().StatusPanel("pnlStatus").Caption(); };
  std::vector<std::string> seen;
  whenMenuOpens([&](QMenu& menu) {
    seen.push_back(status());
    QTest::keyClick(&menu, Qt::Key_Down);
    seen.push_back(status());
    QTest::keyClick(&menu, Qt::Key_Escape);
  });
  pressKey(bench_.window(), Qt::Key_I, Qt::AltModifier);
  bench_.waitUntil("the menu was open",
                   [&] { return seen.size() == 2 && !QApplication::activePopupWidget(); });
  EXPECT_THAT(seen, ElementsAre("Copies the selected image file(s) to another location",
                                "Moves the selected image file(s) to another location"));
  pressKey(bench_.window(), Qt::Key_Escape);
  EXPECT_EQ(status(), " ");
}

TEST_F(Browser, AnActionThatEndsInTheMenuIsNotTouchedAgain) {
  open();
  auto hosts = std::make_unique<QAction>(QStringLiteral("Open in Editor"));
  bench_.widget().addAction(hosts.get());
  whenMenuOpens([&](QMenu& menu) {
    hosts.reset();
    menu.close();
  });
  contextClick(0);
  EXPECT_FALSE(textsOf(bench_.moorage().actions().menuOf(bench_.command("mnuImage")))
                   .contains(QStringLiteral("Open in Editor")));
}

TEST_F(Browser, DeleteAsksAndKeepsTheFilesOfAUserWhoDeclines) {
  open();
  bench_.click(0);
  bool asked = false;
  whenModalOpens([&](QWidget& dialog) {
    asked = true;
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  pressKey(bench_.window(), Qt::Key_Delete);
  bench_.waitUntilLoaded();
  EXPECT_TRUE(asked);
  EXPECT_TRUE(bench_.exists("img2.png"));
  EXPECT_EQ(bench_.browser().Thumbnails().Count(), 3);
}

TEST_F(Browser, DeleteMovesTheSelectedFilesToTheTrash) {
  open();
  bench_.click(0);
  bench_.click(1, Qt::ControlModifier);
  whenModalOpens([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); });
  pressKey(bench_.window(), Qt::Key_Delete);
  bench_.waitUntil("the files are gone", [this] { return bench_.browser().Thumbnails().Count() == 1; });
  EXPECT_FALSE(bench_.exists("img2.png"));
  EXPECT_FALSE(bench_.exists("img10.png"));
  EXPECT_TRUE(bench_.isInTrash("img2.png"));
  EXPECT_TRUE(bench_.isInTrash("img10.png"));
}

TEST_F(Browser, CopyAsksForAFolderAndCanBeDeclined) {
  open();
  bench_.click(0);
  bool asked = false;
  whenModalOpens([&](QWidget& dialog) {
    asked = true;
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  bench_.moorage().click(bench_.command("btnImageCopy"));
  settle();
  EXPECT_TRUE(asked);
  EXPECT_EQ(bench_.browser().Thumbnails().Count(), 3);
}

TEST_F(Browser, TheDividerMovesByMouseAndIsKept) {
  open();
  EXPECT_EQ(split().shownPosition(), 240);
  QTest::mousePress(&divider(), Qt::LeftButton, {}, QPoint(2, 50));
  QTest::mouseMove(&divider(), QPoint(62, 50));
  QTest::mouseRelease(&divider(), Qt::LeftButton, {}, QPoint(2, 50));
  EXPECT_EQ(bench_.browser().DividerPosition(), 300);
  EXPECT_EQ(divider().x(), 300);
  bench_.browserWindow().Form().Unload();
  bench_.browserWindow().Form().Show();
  settle();
  EXPECT_EQ(divider().x(), 300);
  QTest::mouseDClick(&divider(), Qt::LeftButton, {}, QPoint(2, 50));
  EXPECT_EQ(bench_.browser().DividerPosition(), 240);
}

TEST_F(Browser, TheDividerMovesByKeys) {
  open();
  divider().setFocus(Qt::TabFocusReason);
  ASSERT_TRUE(divider().hasFocus());
  pressKey(bench_.window(), Qt::Key_Right);
  EXPECT_EQ(bench_.browser().DividerPosition(), 256);
  pressKey(bench_.window(), Qt::Key_Left, Qt::ControlModifier);
  EXPECT_EQ(bench_.browser().DividerPosition(), 255);
  pressKey(bench_.window(), Qt::Key_Home);
  EXPECT_EQ(bench_.browser().DividerPosition(), 0);
  pressKey(bench_.window(), Qt::Key_End);
  EXPECT_EQ(divider().x() + divider().width(), split().width());
}

TEST_F(Browser, TabGoesFromTheTreeToTheDividerAndToThePictures) {
  open();
  tree().setFocus(Qt::TabFocusReason);
  std::vector<const QWidget*> reached;
  for (int i = 0; i < 2; ++i) {
    pressKey(bench_.window(), Qt::Key_Tab);
    reached.push_back(QApplication::focusWidget());
  }
  EXPECT_EQ(reached[0], &divider());
  EXPECT_EQ(reached[1], &bench_.area());
}

TEST_F(Browser, AFolderIsOpenedByTheKeysOfTheTree) {
  bench_.addFolder("Journey");
  ASSERT_TRUE(noise(30, 20).save(QString::fromStdString(bench_.pathOf("Journey/day.png"))));
  open();
  bench_.browser().Path(bench_.pathOf("Journey"));
  bench_.waitUntilLoaded();
  EXPECT_THAT(bench_.names(bench_.browser().Thumbnails()), ElementsAre("day.png"));
  tree().setFocus(Qt::TabFocusReason);
  pressKey(bench_.window(), Qt::Key_Up);
  bench_.waitUntilLoaded();
  EXPECT_EQ(bench_.browser().Path(), bench_.folder() + "/");
  EXPECT_EQ(bench_.browser().Thumbnails().Count(), 3);
  EXPECT_EQ(bench_.browserWindow().Form().Caption(), "Pictures - ");
}

TEST_F(Browser, AClickBelowTheNodesOfTheTreeLeavesTheSelection) {
  open();
  QWidget& ground = *tree().viewport();
  QTest::mouseClick(&ground, Qt::LeftButton, {}, QPoint(ground.width() / 2, ground.height() - 3));
  ASSERT_FALSE(tree().indexAt(QPoint(ground.width() / 2, ground.height() - 3)).isValid());
  EXPECT_EQ(tree().selectionModel()->selectedIndexes().size(), 1);
  EXPECT_EQ(bench_.browser().Path(), bench_.folder() + "/");
}

TEST_F(Browser, AFileThatIsAddedAppears) {
  open();
  bench_.addPicture("new.png");
  bench_.waitUntil("the new file appears", [this] { return bench_.browser().Thumbnails().Count() == 4; });
  QFile::remove(QString::fromStdString(bench_.pathOf("img2.png")));
  bench_.waitUntil("the removed file vanishes",
                   [this] { return bench_.browser().Thumbnails().Count() == 3; });
}

TEST_F(Browser, OpensThePathThatAHostSetsBeforeTheFirstShow) {
  ImageBrowser browser;
  browser.Path(bench_.folder());
  EXPECT_EQ(browser.Path(), bench_.folder() + "/");
  browser.Show();
  settle();
  EXPECT_EQ(browser.Path(), bench_.folder() + "/");
}

TEST_F(Browser, AHostMayDestroyItWhileItIsShownModally) {
  auto browser = std::make_unique<ImageBrowser>();
  bool shown = false;
  QTimer::singleShot(0, qApp, [&] {
    shown = browser->Visible();
    browser.reset();
  });
  browser->Show(true);
  EXPECT_TRUE(shown);
  EXPECT_EQ(browser, nullptr);
}

}  // namespace
}  // namespace kestrel::desktop
