#include "browser/ImageBrowser.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QMenuBar>
#include <QMimeData>
#include <QTest>
#include <QUrl>

#include "../BrowserBench.h"
#include "../EditorBench.h"
#include "../files/Gate.h"
#include "Windows.h"

namespace kestrel::desktop {
namespace {

/// A host of the class, which ends it while one of its windows is open.
class BrowserEnding : public testing::TestWithParam<Ends> {
 protected:
  BrowserEnding() {
    bench_.addPicture("a.png");
    bench_.addPicture("b.png");
    bench_.addFolder("sub");
  }
  ~BrowserEnding() override {
    gate().open();
    browser_.reset();
    settle();
  }

  void start() {
    ended_ = false;
    browser_ = std::make_unique<ImageBrowser>();
    window_ = windowOfForm("frmImageBrowser");
    ASSERT_TRUE(window_);
    widget_ = window_->findChild<qt::BrowserWidget*>();
    browser_->Title("Host");
    browser_->Path(bench_.folder());
  }
  void show() {
    start();
    browser_->Show();
    window_->resize(1000, 700);
    window_->activateWindow();
    bench_.waitUntil("the folder is loaded", [this] { return view().Thumbnails().Count() == 2; });
    area().setFocus();
    settle();
  }
  void showAndSelect() {
    show();
    QTest::mouseClick(area().viewport(), Qt::LeftButton, {}, middleOfFirst());
    settle();
    ASSERT_EQ(view().SelectedItems().Count(), 1);
  }

  qt::QtThumbnailView& view() { return *widget_->thumbnails(); }
  qt::ThumbnailArea& area() { return view().area(); }
  QPoint middleOfFirst() { return area().fromView(view().placeOf(0).picture).center(); }
  QAction& action(const char* name) {
    return widget_->moorage()->actions().actionOf(widget_->moorage()->Commands().Item(name));
  }

  void end() {
    ASSERT_FALSE(ended_);
    ended_ = true;
    if (GetParam() == Ends::kTerminate) {
      browser_->Terminate();
    } else {
      browser_.reset();
    }
    EXPECT_EQ(namesOfShownWindows(), "");
    EXPECT_TRUE(window_) << "its members may be on the stack";
  }
  void expectNothingLeft() {
    EXPECT_TRUE(ended_) << "the host did not end it";
    settle();
    EXPECT_FALSE(window_) << "what was kept for the call is released";
    EXPECT_TRUE(bench_.exists("a.png"));
    EXPECT_TRUE(bench_.exists("b.png"));
  }

  BrowserBench bench_;
  std::unique_ptr<ImageBrowser> browser_;
  QPointer<qt::FormWindow> window_;
  QPointer<qt::BrowserWidget> widget_;
  bool ended_ = false;
};

INSTANTIATE_TEST_SUITE_P(Ways, BrowserEnding, testing::Values(Ends::kTerminate, Ends::kDestroy), nameOfEnds);

TEST_P(BrowserEnding, OutsideOfItsWindows) {
  show();
  end();
  expectNothingLeft();
}

TEST_P(BrowserEnding, UnderTheContextMenuOfAPicture) {
  showAndSelect();
  whenPopupOpens([&] { end(); });
  pressKey(*window_, Qt::Key_Menu);
  expectNothingLeft();
}

TEST_P(BrowserEnding, UnderAMenuOfTheMenuBar) {
  show();
  auto* const bar = widget_->findChild<QMenuBar*>();
  ASSERT_TRUE(bar && bar->isVisible());
  bool closed = false;
  whenPopupOpens([&] {
    end();
    closed = QApplication::activePopupWidget() == nullptr;
  });
  QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(bar->actions().front()).center());
  EXPECT_TRUE(QTest::qWaitFor([&] { return ended_; }));
  EXPECT_TRUE(closed);
  expectNothingLeft();
}

TEST_P(BrowserEnding, UnderTheQuestionAboutADeletion) {
  showAndSelect();
  whenModalOpens([&](QWidget&) { end(); });
  pressKey(*window_, Qt::Key_Delete);
  expectNothingLeft();
}

TEST_P(BrowserEnding, UnderTheQuestionForAFolder) {
  for (const char* command : {"btnImageCopy", "btnImageMove"}) {
    SCOPED_TRACE(command);
    showAndSelect();
    whenModalOpens([&](QWidget&) { end(); });
    action(command).trigger();
    expectNothingLeft();
  }
}

TEST_P(BrowserEnding, UnderTheAboutBox) {
  show();
  whenModalOpens([&](QWidget&) { end(); });
  action("btnHelpAbout").trigger();
  expectNothingLeft();
}

TEST_P(BrowserEnding, UnderTheProgressOfACopy) {
  show();
  const std::string other = bench_.addFolder("../Other");
  ASSERT_TRUE(noise(300, 200).save(QString::fromStdString(other + "/c.png")));
  auto* const files = new QMimeData;
  files->setUrls({QUrl::fromLocalFile(QString::fromStdString(other + "/c.png"))});
  QApplication::clipboard()->setMimeData(files);
  gate().close();
  QString title;
  whenModalOpens([&](QWidget& progress) {
    title = progress.windowTitle();
    end();
    gate().open();
  });
  pressKey(*window_, Qt::Key_V, Qt::ControlModifier);
  EXPECT_FALSE(title.isEmpty());
  expectNothingLeft();
}

TEST_P(BrowserEnding, WhileItIsShownModally) {
  start();
  whenModalOpens([&](QWidget& window) {
    EXPECT_EQ(&window, window_.data());
    end();
  });
  browser_->Show(true);
  expectNothingLeft();
}

TEST_P(BrowserEnding, UnderAQuestionAboveTheModalWindow) {
  start();
  whenModalOpens([&](QWidget&) {
    whenModalOpens([&](QWidget&) { end(); });
    action("btnHelpAbout").trigger();
  });
  browser_->Show(true);
  expectNothingLeft();
}

TEST_P(BrowserEnding, WhileAFolderIsLoaded) {
  start();
  browser_->Show();
  const Connection connection = view().FolderSearchComplete.Connect([&](std::int32_t) {
    if (!ended_) end();
  });
  bench_.waitUntil("it has ended", [this] { return ended_; });
  expectNothingLeft();
}

}  // namespace
}  // namespace kestrel::desktop
