// The browser's folder tree on a disk that changes, and as a target of files; by real mouse and keys.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QClipboard>
#include <QDir>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>
#include <QWindow>
#include <filesystem>

#include "BrowserBench.h"
#include "Drags.h"
#include "EditorBench.h"
#include "browser/modFolderTreeView.h"
#include "platform/qt/exchange/FileExchange.h"
#include "platform/qt/tree/TreeModel.h"
#include "platform/qt/tree/TreeWidget.h"

namespace kestrel::desktop {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;

/// The folders Pictures, which is shown, and Pictures/Journey and Pictures/Party, which have one picture
/// each.
class BrowserFolders : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : {"Journey", "Party"}) {
      bench_.addFolder(name);
      bench_.addPicture(std::string(name) + "/day.png");
    }
    bench_.addPicture("lake.png");
    bench_.open();
    QApplication::clipboard()->clear();
  }
  ~BrowserFolders() override { QApplication::clipboard()->clear(); }

  FolderTreeView& folders() { return bench_.browser().ObjectFolderBrowse(); }
  qt::TreeWidget& tree() { return *bench_.widget().findChild<qt::TreeWidget*>(); }
  qt::TreeModel& model() { return dynamic_cast<qt::TreeModel&>(*tree().model()); }
  TreeNode* nodeOf(const std::string& name) {
    return modFolderTreeView::FindFolder(folders().TreeView(), bench_.pathOf(name));
  }
  /// The middle of a node's text, in the tree's viewport.
  QPoint placeOf(const std::string& name) {
    const QModelIndex index = model().indexOf(dynamic_cast<qt::TreeItem&>(*nodeOf(name)));
    tree().scrollTo(index);
    const QRect place = tree().visualRect(index);
    return {place.left() + place.height(), place.center().y()};
  }
  void clickNode(const std::string& name) {
    QTest::mouseClick(tree().viewport(), Qt::LeftButton, {}, placeOf(name));
    settle();
  }
  void select(const std::string& name) {
    bench_.browser().Path(bench_.pathOf(name));
    bench_.waitUntilLoaded();
  }
  std::int32_t count() { return bench_.browser().Thumbnails().Count(); }
  void removeFolder(const std::string& name) { fs::remove_all(bench_.pathOf(name)); }

  BrowserBench bench_;
};

// -- The folder that is shown -----------------------------------------------------------------------------

TEST_F(BrowserFolders, TheShownFolderComesBackWhenItIsCreatedAgain) {
  select("Journey");
  ASSERT_EQ(count(), 1);
  removeFolder("Journey");
  bench_.waitUntil("the view is empty", [this] { return count() == 0; });
  bench_.waitUntil("the reason is shown", [this] { return !bench_.view().message().empty(); });
  bench_.addFolder("Journey");
  bench_.addPicture("Journey/day.png");
  bench_.addPicture("Journey/night.png");
  bench_.waitUntil("the new pictures are shown", [this] { return count() == 2; });
  EXPECT_EQ(bench_.browser().Path(), bench_.pathOf("Journey") + "/");
  EXPECT_TRUE(nodeOf("Journey")->Selected());
}

TEST_F(BrowserFolders, TheShownFolderComesBackWithTheFoldersAboveIt) {
  bench_.addFolder("Year/May");
  bench_.addPicture("Year/May/day.png");
  bench_.waitUntil("the folder is in the tree", [this] { return nodeOf("Year") != nullptr; });
  select("Year/May");
  ASSERT_EQ(count(), 1);
  removeFolder("Year");
  bench_.waitUntil("the view is empty", [this] { return count() == 0; });
  bench_.addFolder("Year");
  bench_.addFolder("Year/May");
  bench_.addPicture("Year/May/day.png");
  bench_.waitUntil("the new picture is shown", [this] { return count() == 1; });
}

TEST_F(BrowserFolders, TheShownFolderIsShownByItsNewNameWhenItIsRenamed) {
  select("Journey");
  fs::rename(bench_.pathOf("Journey"), bench_.pathOf("Holiday"));
  bench_.waitUntil("the new name is shown", [this] {
    return bench_.browser().Path() == bench_.pathOf("Holiday") + "/" && count() == 1;
  });
  EXPECT_TRUE(nodeOf("Holiday")->Selected());
  EXPECT_EQ(nodeOf("Journey"), nullptr);
}

TEST_F(BrowserFolders, TheShownFolderIsShownByItsNewPathWhenOneAboveItIsRenamed) {
  bench_.addFolder("Year/May");
  bench_.addPicture("Year/May/day.png");
  bench_.waitUntil("the folder is in the tree", [this] { return nodeOf("Year") != nullptr; });
  select("Year/May");
  ASSERT_EQ(count(), 1);
  fs::rename(bench_.pathOf("Year"), bench_.pathOf("Decade"));
  bench_.waitUntil("the new path is shown", [this] {
    return bench_.browser().Path() == bench_.pathOf("Decade/May") + "/" && count() == 1;
  });
  EXPECT_TRUE(nodeOf("Decade/May")->Selected());
}

TEST_F(BrowserFolders, AClickOnTheNodeOfAFolderThatIsGoneReadsItAgain) {
  select("Journey");
  removeFolder("Journey");
  bench_.waitUntil("the view is empty", [this] { return count() == 0; });
  int loads = 0;
  const Connection connection =
      bench_.browser().ObjectThumbnailView().FolderLoadStart.Connect([&](bool&) { ++loads; });
  ASSERT_NE(nodeOf("Journey"), nullptr) << "the selected folder keeps its node";
  clickNode("Journey");
  EXPECT_EQ(loads, 1);
}

TEST_F(BrowserFolders, F5ReadsTheFolderAgainWithTheFocusInTheTreeOrInThePictures) {
  int loads = 0;
  const Connection connection =
      bench_.browser().ObjectThumbnailView().FolderLoadStart.Connect([&](bool&) { ++loads; });
  tree().setFocus();
  pressKey(bench_.window(), Qt::Key_F5);
  bench_.waitUntilLoaded();
  EXPECT_EQ(loads, 1);
  bench_.area().setFocus();
  pressKey(bench_.window(), Qt::Key_F5);
  bench_.waitUntilLoaded();
  EXPECT_EQ(loads, 2);
  EXPECT_EQ(count(), 1);
}

// -- The tree ---------------------------------------------------------------------------------------------

TEST_F(BrowserFolders, TheTreeFollowsTheDisk) {
  bench_.addFolder("Alps/high");
  bench_.waitUntil("the new folder appears", [this] { return nodeOf("Alps") != nullptr; });
  EXPECT_EQ(nodeOf("Alps")->Children(), 1) << "the sign to expand";
  EXPECT_TRUE(nodeOf("")->Selected());
  EXPECT_TRUE(nodeOf("")->Expanded());

  nodeOf("Alps")->Expanded(true);
  bench_.addFolder("Alps/deep");
  bench_.waitUntil("a folder in it appears", [this] { return nodeOf("Alps")->Children() == 2; });

  fs::rename(bench_.pathOf("Party"), bench_.pathOf("Birthday"));
  bench_.waitUntil("the new name appears", [this] { return nodeOf("Birthday") != nullptr; });
  EXPECT_EQ(nodeOf("Party"), nullptr);
  EXPECT_TRUE(nodeOf("Alps")->Expanded());

  removeFolder("Alps");
  bench_.waitUntil("the folder vanishes", [this] { return nodeOf("Alps") == nullptr; });
  EXPECT_TRUE(nodeOf("")->Selected());
}

TEST_F(BrowserFolders, AFolderGetsItsSignToExpandWithItsFirstSubfolder) {
  ASSERT_EQ(nodeOf("Party")->Children(), 0);
  bench_.addFolder("Party/garden");
  bench_.waitUntil("the sign appears", [this] { return nodeOf("Party")->Children() == 1; });
  removeFolder("Party/garden");
  bench_.waitUntil("the sign vanishes", [this] { return nodeOf("Party")->Children() == 0; });
}

TEST_F(BrowserFolders, WhatTheTreeShowsStaysInPlaceWhenFoldersComeAboveIt) {
  for (int i = 10; i < 90; ++i) bench_.addFolder("n" + std::to_string(i));
  bench_.waitUntil("the folders appear", [this] { return nodeOf("n89") != nullptr; });
  tree().scrollTo(model().indexOf(dynamic_cast<qt::TreeItem&>(*nodeOf("n80"))), QTreeView::PositionAtTop);
  settle();
  ASSERT_GT(tree().verticalScrollBar()->value(), 0);
  const QModelIndex index = model().indexOf(dynamic_cast<qt::TreeItem&>(*nodeOf("n85")));
  const QPersistentModelIndex kept = index;
  const int place = tree().visualRect(kept).top();
  bench_.addFolder("a1");
  bench_.waitUntil("a folder appears above", [this] { return nodeOf("a1") != nullptr; });
  EXPECT_EQ(tree().visualRect(kept).top(), place);
  removeFolder("n10");
  bench_.waitUntil("a folder vanishes above", [this] { return nodeOf("n10") == nullptr; });
  EXPECT_EQ(tree().visualRect(kept).top(), place);
}

TEST_F(BrowserFolders, ATreeWhoseWindowIsGoneIsNotTouched) {
  bench_.addFolder("Late");
  // The notice is on its way.
  bench_.closeWindow();
  QTest::qWait(300);
}

TEST_F(BrowserFolders, TheBoxForANewFolderIs50PixelsFromTheCornerOfItsWindow) {
  Form& form = bench_.browserWindow().Form();
  form.Move(120, 90, 900, 600);
  QPoint place;
  whenModalOpens([&](QWidget& dialog) {
    place = dialog.pos();
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  EXPECT_EQ(folders().NewFolder(&form), "");
  EXPECT_EQ(place, QPoint(170, 140));
}

// -- Files ------------------------------------------------------------------------------------------------

TEST_F(BrowserFolders, PasteWithTheFocusInTheTreeCopiesIntoTheSelectedFolder) {
  select("Party");
  tree().setFocus();
  QApplication::clipboard()->setMimeData(new qt::FilesMimeData({{bench_.pathOf("lake.png")}, false}));
  pressKey(bench_.window(), Qt::Key_V, Qt::ControlModifier);
  bench_.waitUntil("the file is copied", [this] { return bench_.exists("Party/lake.png"); });
  EXPECT_TRUE(bench_.exists("lake.png"));
  bench_.waitUntil("the view shows it", [this] { return count() == 2; });
}

TEST_F(BrowserFolders, PasteMovesFilesThatWereCutAndThenForgetsThem) {
  select("Party");
  tree().setFocus();
  QApplication::clipboard()->setMimeData(new qt::FilesMimeData({{bench_.pathOf("lake.png")}, true}));
  pressKey(bench_.window(), Qt::Key_V, Qt::ControlModifier);
  bench_.waitUntil("the file is moved",
                   [this] { return bench_.exists("Party/lake.png") && !bench_.exists("lake.png"); });
  const QMimeData* const left = QApplication::clipboard()->mimeData();
  EXPECT_FALSE(left && qt::holdsFiles(*left));
}

TEST_F(BrowserFolders, AFolderIsCutAndPastedByTheKeysOfTheTree) {
  select("Journey");
  tree().setFocus();
  pressKey(bench_.window(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_THAT(qt::filesOf(*QApplication::clipboard()->mimeData()).names,
              ElementsAre(bench_.pathOf("Journey")));
  EXPECT_FALSE(qt::filesOf(*QApplication::clipboard()->mimeData()).move);
  pressKey(bench_.window(), Qt::Key_X, Qt::ControlModifier);
  EXPECT_TRUE(qt::filesOf(*QApplication::clipboard()->mimeData()).move);
  select("Party");
  tree().setFocus();
  pressKey(bench_.window(), Qt::Key_V, Qt::ControlModifier);
  bench_.waitUntil("the folder is moved", [this] { return bench_.exists("Party/Journey/day.png"); });
  bench_.waitUntil("its node goes", [this] { return nodeOf("Journey") == nullptr; });
  bench_.waitUntil("the sign of the other appears", [this] { return nodeOf("Party")->Children() == 1; });
}

TEST_F(BrowserFolders, ADriveIsNotPutOnTheClipboard) {
  bench_.browser().Path("/");
  tree().setFocus();
  QApplication::clipboard()->setText(QStringLiteral("kept"));
  pressKey(bench_.window(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("kept"));
}

/// Drags of files over the tree, through its window.
class BrowserDrags : public BrowserFolders {
 protected:
  /// The action that the tree offers at a place of its viewport, and takes if dropped.
  Qt::DropAction drag(const std::vector<std::string>& names, QPoint place, Qt::KeyboardModifiers modifiers,
                      bool drop) {
    const qt::FilesMimeData data({names, false});
    const QPoint at = tree().viewport()->mapTo(&bench_.window(), place);
    const Qt::DropAction action = desktop::drag(*bench_.window().windowHandle(), at, data,
                                                Qt::CopyAction | Qt::MoveAction, modifiers, drop);
    settle();
    return action;
  }
};

TEST_F(BrowserDrags, ADropOnANodeCopiesIntoItsFolder) {
  EXPECT_EQ(drag({bench_.pathOf("lake.png")}, placeOf("Party"), {}, true), Qt::CopyAction);
  bench_.waitUntil("the file is copied", [this] { return bench_.exists("Party/lake.png"); });
  EXPECT_TRUE(bench_.exists("lake.png"));
  EXPECT_TRUE(nodeOf("")->Selected()) << "the selection stays";
}

TEST_F(BrowserDrags, ADropWithShiftMovesIntoItsFolder) {
  EXPECT_EQ(drag({bench_.pathOf("lake.png")}, placeOf("Party"), Qt::ShiftModifier, true),
            Qt::TargetMoveAction);
  bench_.waitUntil("the file is moved",
                   [this] { return bench_.exists("Party/lake.png") && !bench_.exists("lake.png"); });
}

TEST_F(BrowserDrags, FilesOfTheFolderItselfAFolderForItselfAndTheGroundTakeNothing) {
  EXPECT_EQ(drag({bench_.pathOf("Party/day.png")}, placeOf("Party"), {}, false), Qt::IgnoreAction);
  EXPECT_EQ(drag({bench_.pathOf("Party")}, placeOf("Party"), {}, false), Qt::IgnoreAction);
  EXPECT_EQ(drag({bench_.folder()}, placeOf("Party"), {}, false), Qt::IgnoreAction);
  EXPECT_EQ(drag({bench_.pathOf("Party")}, placeOf("Journey"), {}, false), Qt::CopyAction);
  const QPoint ground(tree().viewport()->width() / 2, tree().viewport()->height() - 3);
  ASSERT_FALSE(tree().indexAt(ground).isValid());
  EXPECT_EQ(drag({bench_.pathOf("lake.png")}, ground, {}, false), Qt::IgnoreAction);
}

TEST_F(BrowserDrags, ACollapsedNodeExpandsUnderADragThatRests) {
  bench_.addFolder("Party/garden");
  bench_.waitUntil("the sign appears", [this] { return nodeOf("Party")->Children() == 1; });
  const qt::FilesMimeData data({{bench_.pathOf("lake.png")}, false});
  const QPoint at = tree().viewport()->mapTo(&bench_.window(), placeOf("Party"));
  QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(bench_.window().windowHandle(), &enter);
  bench_.waitUntil("the node expands", [this] { return nodeOf("Party")->Expanded(); });
  QDragLeaveEvent leave;
  QApplication::sendEvent(bench_.window().windowHandle(), &leave);
}

}  // namespace
}  // namespace kestrel::desktop
