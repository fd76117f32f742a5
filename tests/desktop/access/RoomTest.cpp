// Editors and browsers in panes of any size.

#include <QDockWidget>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>
#include <vector>

#include "AccessHost.h"
#include "platform/qt/embed/ImageBrowser.h"

namespace kestrel::desktop {
namespace {

/// An editor that its host places itself, at any size.
class Room : public AccessHost {
 protected:
  void SetUp() override {
    layout_->removeWidget(editor_);
    delete window_.layout();
    layout_ = nullptr;
    resizeEditor({1000, 700});
    AccessHost::SetUp();
    openPicture();
  }

  void resizeEditor(const QSize& size) {
    editor_->setGeometry(QRect(QPoint(3, 5), size));
    for (int round = 0; round < 3; ++round) settle();
  }

  QDockWidget& materials() { return part<QDockWidget>("dkwMaterials"); }
  QDockWidget& zoom() { return part<QDockWidget>("dkwZoom"); }
  /// Where the picture and its scroll bars are.
  QWidget& surface() { return *picture().parentWidget(); }
  DockWindow& model(const char* key) { return control().DockWindows()(key); }

  QRect placeOf(const QWidget& widget) { return QRect(widget.mapTo(editor_, QPoint()), widget.size()); }

  /// The shown bars and docked windows, and the picture.
  std::vector<const QWidget*> parts() {
    std::vector<const QWidget*> all = {editor_->findChild<QMenuBar*>(), editor_->findChild<QStatusBar*>(),
                                       &surface()};
    for (const QToolBar* bar : editor_->findChildren<QToolBar*>()) all.push_back(bar);
    for (const QDockWidget* dock : editor_->findChildren<QDockWidget*>()) {
      if (!dock->isWindow()) all.push_back(dock);
    }
    std::erase_if(all, [](const QWidget* part) { return !part->isVisible(); });
    return all;
  }

  void expectNoOverlap(const char* when) {
    const auto all = parts();
    for (std::size_t i = 0; i < all.size(); ++i) {
      const QRect place = placeOf(*all[i]);
      EXPECT_TRUE(editor_->rect().contains(place)) << when << ": " << all[i]->objectName().toStdString();
      if (qobject_cast<const QDockWidget*>(all[i])) {
        EXPECT_GE(place.width(), all[i]->minimumSizeHint().width()) << all[i]->objectName().toStdString();
        EXPECT_GE(place.height(), all[i]->minimumSizeHint().height()) << all[i]->objectName().toStdString();
      }
      for (std::size_t j = 0; j < i; ++j) {
        EXPECT_FALSE(place.intersects(placeOf(*all[j]))) << when << ": " << all[i]->objectName().toStdString()
                                                         << " over " << all[j]->objectName().toStdString();
      }
    }
    EXPECT_GE(surface().width(), 200) << when;
    EXPECT_GE(surface().height(), 140) << when;
  }
};

TEST_F(Room, AtTheSmallestSizeEverythingIsShownAndNothingOverlaps) {
  const QSize smallest = editor_->minimumSizeHint();
  resizeEditor(smallest);
  EXPECT_TRUE(materials().isVisible());
  EXPECT_TRUE(zoom().isVisible());
  expectNoOverlap("smallest");
  EXPECT_EQ(editor_->minimumSizeHint(), smallest);
}

TEST_F(Room, ASmallerPaneHidesDockWindowsUntilThereIsRoom) {
  const QSize smallest = editor_->minimumSizeHint();
  for (const QSize& size : {QSize(smallest.width() - 1, smallest.height()),
                            QSize(smallest.width(), smallest.height() - 1), smallest - QSize(60, 90)}) {
    resizeEditor(size);
    EXPECT_FALSE(materials().isVisible() && zoom().isVisible()) << size.width() << 'x' << size.height();
    expectNoOverlap("small");
    EXPECT_EQ(editor_->minimumSizeHint(), smallest) << "with all that is to be shown";
    EXPECT_TRUE(model("dkwMaterials").Visible()) << "only for lack of room";
    EXPECT_TRUE(control().Commands()("btnViewZoomWindow").Checked());

    resizeEditor(smallest);
    EXPECT_TRUE(materials().isVisible());
    EXPECT_TRUE(zoom().isVisible());
    expectNoOverlap("as before");
  }
}

TEST_F(Room, APaneForThePictureAloneShowsIt) {
  model("dkwMaterials").Visible(false);
  model("dkwZoom").Visible(false);
  settle();
  const QSize bare = editor_->minimumSizeHint();
  model("dkwMaterials").Visible(true);
  model("dkwZoom").Visible(true);
  settle();
  EXPECT_GT(editor_->minimumSizeHint().width(), bare.width());
  resizeEditor(bare);
  EXPECT_FALSE(materials().isVisible());
  EXPECT_FALSE(zoom().isVisible());
  expectNoOverlap("bare");
  resizeEditor({1000, 700});
  EXPECT_TRUE(materials().isVisible());
  EXPECT_TRUE(zoom().isVisible());
}

TEST_F(Room, AWindowThatIsClosedMeanwhileStaysClosed) {
  resizeEditor({300, 300});
  ASSERT_FALSE(zoom().isVisible());
  model("dkwZoom").Visible(false);
  settle();
  resizeEditor({1000, 700});
  EXPECT_TRUE(materials().isVisible());
  EXPECT_FALSE(zoom().isVisible());
}

TEST_F(Room, TheWindowThatIsAskedForLastIsShown) {
  model("dkwMaterials").Visible(false);
  settle();
  const QSize forOne = editor_->minimumSizeHint();
  model("dkwMaterials").Visible(true);
  settle();
  const QSize forBoth = editor_->minimumSizeHint();
  ASSERT_GT(forBoth.height(), forOne.height());
  resizeEditor({1000, forBoth.height() - 1});
  ASSERT_TRUE(materials().isVisible());
  ASSERT_FALSE(zoom().isVisible());
  model("dkwZoom").Visible(false);
  model("dkwZoom").Visible(true);
  settle();
  EXPECT_TRUE(zoom().isVisible());
  EXPECT_FALSE(materials().isVisible());
  expectNoOverlap("the other");
}

TEST_F(Room, AFloatingWindowNeedsNoRoom) {
  zoom().setFloating(true);
  settle();
  resizeEditor({300, 300});
  EXPECT_TRUE(zoom().isVisible());
  EXPECT_FALSE(materials().isVisible());
}

TEST(BrowserRoom, AtTheSmallestSizeTreeAndPicturesAreShown) {
  const QTemporaryDir folder;
  qt::Component component;
  qt::ImageBrowser browser(component);
  browser.control().Path(folder.path().toStdString());
  browser.show();
  settle();
  browser.resize(browser.minimumSizeHint());
  settle();
  EXPECT_EQ(browser.size(), browser.minimumSizeHint());
  auto* const divider = browser.findChild<QWidget*>(QStringLiteral("divider"));
  ASSERT_NE(divider, nullptr);
  int panes = 0;
  for (QWidget* const pane :
       divider->parentWidget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (pane == divider) continue;
    ++panes;
    EXPECT_GE(pane->width(), pane->minimumSizeHint().width()) << pane->metaObject()->className();
    EXPECT_GE(pane->height(), pane->minimumSizeHint().height()) << pane->metaObject()->className();
    EXPECT_TRUE(browser.rect().contains(QRect(pane->mapTo(&browser, QPoint()), pane->size())));
  }
  EXPECT_EQ(panes, 2);
}

}  // namespace
}  // namespace kestrel::desktop
