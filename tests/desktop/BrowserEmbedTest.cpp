// The browser in a host that links nothing but the widget, and that may end it at any time.

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QMenu>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>

#include "HostWindows.h"
#include "imaging/contract/Moorage.h"
#include "imaging/contract/Site.h"
#include "imaging/contract/ThumbnailView.h"
#include "platform/qt/embed/ImageBrowser.h"

#if __has_include("browser/ImageBrowserCtl.h") || __has_include("platform/qt/app/QtPlatform.h")
#error "A host sees what is private to the browser."
#endif

namespace kestrel::desktop {
namespace {

// Long enough for a busy machine; only a failing test waits this long.
constexpr qint64 kPatienceMilliseconds = 60'000;

class EmbeddedBrowser : public testing::Test {
 protected:
  EmbeddedBrowser() {
    qputenv("KESTREL_STORE", scratch_.filePath(QStringLiteral("settings.sqlite")).toUtf8());
    qputenv("XDG_CACHE_HOME", scratch_.filePath(QStringLiteral("cache")).toUtf8());
    qputenv("XDG_DATA_HOME", scratch_.filePath(QStringLiteral("data")).toUtf8());
    qputenv("HOME", scratch_.path().toUtf8());
    EXPECT_TRUE(QDir().mkpath(folder_));
    for (const char* name : {"a.png", "b.png"}) {
      EXPECT_TRUE(
          QImage(40, 30, QImage::Format_RGB32).save(folder_ + QLatin1Char('/') + QLatin1String(name)));
    }
    component_ = std::make_unique<qt::Component>();
    host_ = std::make_unique<QWidget>();
    host_->resize(900, 600);
    browser_ = new qt::ImageBrowser(*component_, nullptr, host_.get());
    browser_->resize(900, 600);
    host_->show();
    host_->activateWindow();
  }

  IImageBrowserCtl& control() { return browser_->control(); }

  void waitUntil(const std::function<bool()>& condition) {
    QElapsedTimer patience;
    patience.start();
    while (!condition()) {
      if (patience.elapsed() > kPatienceMilliseconds) {
        ADD_FAILURE() << "waited in vain";
        return;
      }
      QTest::qWait(5);
    }
  }

  /// Shows the folder with its two pictures loaded, the first selected, and the focus in the view.
  void load() {
    bool loaded = false;
    const Connection connection = control().ObjectThumbnailView().FolderLoadComplete.Connect(
        [&](bool cancelled) { loaded = !cancelled; });
    control().Path(folder_.toStdString());
    waitUntil([&] { return loaded; });
    ASSERT_EQ(control().Thumbnails().Count(), 2);
    browser_->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Home);
    ASSERT_EQ(control().SelectedItems().Count(), 1);
  }

  void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }

  /// Opens the context menu by its key and returns when `work` for it has run.
  void pressMenuKey(std::function<void()> work) {
    // A menu that was closed may have left the window inactive.
    host_->activateWindow();
    waitUntil([&] { return host_->isActiveWindow() && QApplication::focusWidget(); });
    bool hasRun = false;
    whenPopupOpens([&hasRun, work = std::move(work)] {
      hasRun = true;
      work();
    });
    press(Qt::Key_Menu);
    waitUntil([&] { return hasRun; });
  }

  /// Processes events and deferred deletions.
  static void settle() {
    for (int i = 0; i < 3; ++i) {
      QApplication::processEvents();
      QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
  }

  void runCommand(const char* key) {
    Moorage& suite = control().ObjectMoorage();
    suite.CommandClick(suite.Commands()(key));
  }

  const QTemporaryDir scratch_;
  const QString folder_ = scratch_.filePath(QStringLiteral("Pictures"));
  std::unique_ptr<qt::Component> component_;
  std::unique_ptr<QWidget> host_;
  QPointer<qt::ImageBrowser> browser_;
};

TEST_F(EmbeddedBrowser, NotifiesItsHostOfAChangedProperty) {
  QStringList changed;
  QObject::connect(browser_, &qt::ImageBrowser::propertyChanged,
                   [&](const QString& name) { changed += name; });
  control().ShowMenuBar(false);
  control().ShowMenuBar(false);
  EXPECT_EQ(changed, QStringList{QStringLiteral("ShowMenuBar")});
}

TEST_F(EmbeddedBrowser, EnterNamesTheFileToItsHost) {
  load();
  QStringList opened;
  QObject::connect(browser_, &qt::ImageBrowser::fileOpened, [&](const QString& file) { opened += file; });
  press(Qt::Key_Return);
  EXPECT_EQ(opened, QStringList{folder_ + QStringLiteral("/a.png")});
}

TEST_F(EmbeddedBrowser, ShowsTheHostsActionsInTheContextMenuOfThumbnails) {
  load();
  QAction open(QStringLiteral("Open"));
  browser_->addAction(&open);
  bool shown = false;
  pressMenuKey([&] {
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    shown = menu && menu->actions().contains(&open);
    if (menu) menu->close();
  });
  EXPECT_TRUE(shown);
  browser_->removeAction(&open);
  pressMenuKey([&] {
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    shown = menu && menu->actions().contains(&open);
    if (menu) menu->close();
  });
  EXPECT_FALSE(shown);
}

TEST_F(EmbeddedBrowser, MayBeDestroyedInAChangeOfThePath) {
  int raised = 0;
  const Connection connection = control().PathChange.Connect([&](const std::string&) {
    ++raised;
    delete browser_;
  });
  control().Path(folder_.toStdString());
  EXPECT_EQ(raised, 1);
  EXPECT_EQ(browser_, nullptr);
  settle();
}

TEST_F(EmbeddedBrowser, MayBeDestroyedAsItsFileIsOpened) {
  load();
  QObject::connect(browser_, &qt::ImageBrowser::fileOpened, [&] { host_.reset(); });
  press(Qt::Key_Return);
  EXPECT_EQ(browser_, nullptr);
  settle();
}

TEST_F(EmbeddedBrowser, MayBeDestroyedByItsOwnCloseCommand) {
  const Connection connection = control().ExitRequest.Connect([&] { delete browser_; });
  runCommand("btnFileClose");
  EXPECT_EQ(browser_, nullptr);
  settle();
}

TEST_F(EmbeddedBrowser, MayBeDestroyedUnderItsContextMenu) {
  load();
  pressMenuKey([&] { delete browser_; });
  EXPECT_EQ(browser_, nullptr);
  settle();
}

TEST_F(EmbeddedBrowser, MayBeDestroyedWhileItAsksForAFolder) {
  load();
  whenDialogOpens([&] { delete browser_; });
  runCommand("btnImageMove");
  EXPECT_EQ(browser_, nullptr);
  settle();
  EXPECT_TRUE(QFile::exists(folder_ + QStringLiteral("/a.png")));
}

TEST_F(EmbeddedBrowser, MayBeDestroyedWhileItAsksAboutADeletion) {
  load();
  whenDialogOpens([&] { delete browser_; });
  press(Qt::Key_Delete);
  EXPECT_EQ(browser_, nullptr);
  settle();
  EXPECT_TRUE(QFile::exists(folder_ + QStringLiteral("/a.png")));
}

TEST_F(EmbeddedBrowser, MayBeDestroyedWhileAFolderIsLoaded) {
  const Connection connection =
      control().ObjectThumbnailView().FolderSearchComplete.Connect([&](std::int32_t) { delete browser_; });
  control().Path(folder_.toStdString());
  waitUntil([&] { return browser_ == nullptr; });
  settle();
}

}  // namespace
}  // namespace kestrel::desktop
