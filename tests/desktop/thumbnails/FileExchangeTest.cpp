#include "platform/qt/exchange/FileExchange.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QDrag>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QUrl>
#include <QWindow>

#include "../Drags.h"
#include "ThumbnailBench.h"

namespace kestrel::desktop {
namespace {

const QString kUriList = QStringLiteral("text/uri-list");
const QString kGnomeFiles = QStringLiteral("x-special/gnome-copied-files");
const QString kKdeCut = QStringLiteral("application/x-kde-cutselection");

TEST(ExchangedFileNames, KeepEveryByte) {
  for (const std::string& name : {std::string("/tmp/a b.png"), std::string("/tmp/\xFF\xFE.png"),
                                  std::string("/tmp/new\nline%41#?.png"), std::string("/tmp/\u00E4.png")}) {
    const std::string uri = qt::uriOf(name);
    EXPECT_EQ(qt::fileOf(uri), name) << uri;
    EXPECT_EQ(uri.find_first_of(" \n#?"), std::string::npos) << uri;
  }
  EXPECT_EQ(qt::uriOf("/tmp/a b.png"), "file:///tmp/a%20b.png");
}

TEST(ExchangedFileNames, AreOfThisMachineOnly) {
  EXPECT_EQ(qt::fileOf("file://localhost/tmp/a.png"), "/tmp/a.png");
  EXPECT_EQ(qt::fileOf("file:/tmp/a.png"), "/tmp/a.png");
  EXPECT_EQ(qt::fileOf("file:///tmp/album/"), "/tmp/album")
      << "a separator would act on what a link leads to";
  EXPECT_EQ(qt::fileOf("file:///tmp/album%2F/"), "/tmp/album");
  EXPECT_EQ(qt::fileOf("file:///"), "/");
  EXPECT_EQ(qt::fileOf("file://" + QSysInfo::machineHostName().toStdString() + "/tmp/a.png"), "/tmp/a.png");
  EXPECT_EQ(qt::fileOf("file://elsewhere.example/tmp/a.png"), std::nullopt);
  EXPECT_EQ(qt::fileOf("https://elsewhere.example/a.png"), std::nullopt);
  EXPECT_EQ(qt::fileOf("file:///tmp/a%00b.png"), std::nullopt);
  EXPECT_EQ(qt::fileOf("file:relative.png"), std::nullopt);
}

TEST(ExchangedFileNames, AreReadInTheFormOfEachDesktop) {
  QMimeData gnome;
  gnome.setData(kGnomeFiles, "cut\nfile:///tmp/a%20b.png\nfile:///tmp/c.png");
  EXPECT_TRUE(qt::filesOf(gnome).move);
  EXPECT_EQ(qt::filesOf(gnome).names, (std::vector<std::string>{"/tmp/a b.png", "/tmp/c.png"}));

  QMimeData kde;
  kde.setData(kUriList, "# comment\r\nfile:///tmp/a.png\r\n\r\nhttp://elsewhere.example/b.png\r\n");
  EXPECT_FALSE(qt::filesOf(kde).move);
  EXPECT_EQ(qt::filesOf(kde).names, (std::vector<std::string>{"/tmp/a.png"}));
  kde.setData(kKdeCut, "1");
  EXPECT_TRUE(qt::filesOf(kde).move);

  QMimeData text;
  text.setText(QStringLiteral("/tmp/a.png"));
  EXPECT_FALSE(qt::holdsFiles(text));
  EXPECT_TRUE(qt::filesOf(text).names.empty());
}

class ThumbnailFiles : public testing::Test {
 protected:
  ThumbnailFiles() {
    folder.addMany(4);
    elsewhere.add("one.png", Qt::blue);
    elsewhere.add("two.png", Qt::green);
    QApplication::clipboard()->clear();
    bench.open(folder);
  }
  ~ThumbnailFiles() override { QApplication::clipboard()->clear(); }

  static QClipboard& clipboard() { return *QApplication::clipboard(); }
  void putOnClipboard(std::vector<std::string> names, bool cut) const {
    // As another program does: not by the view's own class.
    const qt::FilesMimeData own({std::move(names), cut});
    auto* const data = new QMimeData;
    for (const QString& format : own.formats()) data->setData(format, own.data(format));
    clipboard().setMimeData(data);
  }

  /// Drags over the viewport through its window; the action that the view offers, and takes if dropped.
  Qt::DropAction drag(const QMimeData& data, Qt::DropActions possible, Qt::KeyboardModifiers modifiers,
                      bool drop) {
    const Qt::DropAction action = desktop::drag(
        *bench.window().windowHandle(), bench.window().rect().center(), data, possible, modifiers, drop);
    settle();
    return action;
  }

  PictureFolder folder, elsewhere;
  ThumbnailBench bench;
};

TEST_F(ThumbnailFiles, CopyOffersTheSelectionInAllForms) {
  bench.click(0);
  bench.click(2, Qt::ControlModifier);
  bench.key(Qt::Key_C, Qt::ControlModifier);
  const QMimeData& data = *clipboard().mimeData();
  const std::string one = folder.file("img1.png"), three = folder.file("img3.png");
  EXPECT_EQ(data.data(kUriList).toStdString(), "file://" + one + "\r\nfile://" + three + "\r\n");
  EXPECT_EQ(data.data(kGnomeFiles).toStdString(), "copy\nfile://" + one + "\nfile://" + three);
  EXPECT_EQ(data.data(kKdeCut).toStdString(), "0");
  EXPECT_EQ(data.text().toStdString(), one + "\n" + three);
  EXPECT_EQ(data.urls().size(), 2);
}

TEST_F(ThumbnailFiles, CopyWithoutASelectionLeavesTheClipboard) {
  clipboard().setText(QStringLiteral("kept"));
  bench.key(Qt::Key_C, Qt::ControlModifier);
  bench.key(Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(clipboard().text(), "kept");
}

TEST_F(ThumbnailFiles, CutFilesFadeUntilSomethingElseIsOnTheClipboard) {
  const QImage before = bench.grabPicture(1);
  bench.click(1);
  bench.key(Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(clipboard().mimeData()->data(kKdeCut).toStdString(), "1");
  EXPECT_TRUE(clipboard().mimeData()->data(kGnomeFiles).startsWith("cut\n"));
  bench.click(3);
  const QPoint middle = before.rect().center();
  EXPECT_NE(bench.grabPicture(1).pixel(middle), before.pixel(middle));
  clipboard().setText(QStringLiteral("else"));
  settle();
  EXPECT_EQ(bench.grabPicture(1).pixel(middle), before.pixel(middle));
}

TEST_F(ThumbnailFiles, PasteCopiesIntoTheFolder) {
  putOnClipboard({elsewhere.file("one.png"), elsewhere.file("two.png")}, false);
  bench.key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(bench.helpers().log, "copy one.png two.png");
  EXPECT_EQ(bench.helpers().target, folder.path());
  EXPECT_EQ(bench.helpers().owner, bench.view().hWnd());
  EXPECT_TRUE(qt::holdsFiles(*clipboard().mimeData())) << "can be pasted again";
  EXPECT_TRUE(eventually([&] { return bench.view().itemCount() == 6; }));
}

TEST_F(ThumbnailFiles, PasteOfCutFilesMovesThemOnce) {
  putOnClipboard({elsewhere.file("one.png")}, true);
  bench.key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(bench.helpers().log, "move one.png");
  EXPECT_FALSE(elsewhere.has("one.png"));
  EXPECT_FALSE(clipboard().mimeData() && qt::holdsFiles(*clipboard().mimeData()));
}

TEST_F(ThumbnailFiles, PasteLeavesWhatWasCopiedDuringIt) {
  putOnClipboard({elsewhere.file("one.png")}, true);
  bench.helpers().before = [] {
    clipboard().setText(QStringLiteral("newer"));
    return true;
  };
  bench.key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_FALSE(elsewhere.has("one.png"));
  EXPECT_EQ(clipboard().text(), "newer");
}

TEST_F(ThumbnailFiles, PasteThatFailedKeepsTheClipboard) {
  putOnClipboard({elsewhere.file("one.png")}, true);
  bench.helpers().before = [] { return false; };
  bench.key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(bench.helpers().log, "move one.png");
  EXPECT_TRUE(qt::holdsFiles(*clipboard().mimeData()));
}

TEST_F(ThumbnailFiles, PasteOfFilesCutHereMovesNothing) {
  bench.click(0);
  bench.key(Qt::Key_X, Qt::ControlModifier);
  bench.key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(bench.helpers().log, "");
  EXPECT_TRUE(folder.has("img1.png"));
}

TEST_F(ThumbnailFiles, PasteWithoutFilesDoesNothing) {
  clipboard().setText(elsewhere.file("one.png").c_str());
  bench.key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(bench.helpers().log, "");
}

TEST_F(ThumbnailFiles, DropCopies) {
  const qt::FilesMimeData data({{elsewhere.file("one.png")}, false});
  EXPECT_EQ(drag(data, Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, {}, true), Qt::CopyAction);
  EXPECT_TRUE(eventually([&] { return bench.helpers().log == "copy one.png"; }));
  EXPECT_EQ(bench.helpers().target, folder.path());
}

TEST_F(ThumbnailFiles, DropWithShiftMovesAndLeavesNothingToTheSource) {
  const qt::FilesMimeData data({{elsewhere.file("one.png")}, false});
  const auto both = Qt::CopyAction | Qt::MoveAction;
  EXPECT_EQ(drag(data, both, Qt::ShiftModifier, false), Qt::MoveAction);
  EXPECT_EQ(drag(data, both, Qt::ShiftModifier, true), Qt::TargetMoveAction);
  EXPECT_TRUE(eventually([&] { return bench.helpers().log == "move one.png"; }));
}

TEST_F(ThumbnailFiles, ShiftCopiesWhereTheSourceAllowsNoMove) {
  const qt::FilesMimeData data({{elsewhere.file("one.png")}, false});
  EXPECT_EQ(drag(data, Qt::CopyAction, Qt::ShiftModifier, true), Qt::CopyAction);
  EXPECT_TRUE(eventually([&] { return bench.helpers().log == "copy one.png"; }));
}

TEST_F(ThumbnailFiles, DropOfTheFoldersOwnFilesDoesNothing) {
  const qt::FilesMimeData data({{folder.file("img1.png")}, false});
  EXPECT_EQ(drag(data, Qt::CopyAction | Qt::MoveAction, {}, true), Qt::IgnoreAction);
  const qt::FilesMimeData mixed({{folder.file("img1.png"), elsewhere.file("two.png")}, false});
  EXPECT_EQ(drag(mixed, Qt::CopyAction | Qt::MoveAction, {}, true), Qt::CopyAction);
  EXPECT_TRUE(eventually([&] { return bench.helpers().log == "copy two.png"; }));
}

TEST_F(ThumbnailFiles, DropOfOtherThingsOrWithoutAFolderIsRefused) {
  QMimeData text;
  text.setText(QStringLiteral("words"));
  EXPECT_EQ(drag(text, Qt::CopyAction, {}, true), Qt::IgnoreAction);
  bench.view().Clear();
  const qt::FilesMimeData data({{elsewhere.file("one.png")}, false});
  EXPECT_EQ(drag(data, Qt::CopyAction, {}, true), Qt::IgnoreAction) << "the folder is not shown";
  putOnClipboard({elsewhere.file("one.png")}, false);
  bench.key(Qt::Key_V, Qt::ControlModifier);
  settle();
  EXPECT_EQ(bench.helpers().log, "");
}

TEST_F(ThumbnailFiles, ViewShowsThatItWouldTakeADrop) {
  const QImage before = bench.grab();
  const qt::FilesMimeData data({{elsewhere.file("one.png")}, false});
  QDragEnterEvent enter(bench.middleOf(1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(bench.window().windowHandle(), &enter);
  EXPECT_NE(bench.grab().pixel(0, 100), before.pixel(0, 100));
  QDragLeaveEvent leave;
  QApplication::sendEvent(bench.window().windowHandle(), &leave);
  EXPECT_EQ(bench.grab().pixel(0, 100), before.pixel(0, 100));
}

TEST_F(ThumbnailFiles, DraggingAnItemOffersTheSelection) {
  bench.click(0);
  bench.click(2, Qt::ControlModifier);
  bench.press(bench.middleOf(2));
  bench.move(bench.middleOf(2) + QPoint(2, 0));
  EXPECT_EQ(bench.area().viewport()->findChild<QDrag*>(), nullptr) << "a small movement is a click";
  // This display has no drags: the drag has ended at once, and is deleted in the event loop.
  bench.move(bench.middleOf(2) + QPoint(60, 30));
  const auto* const drag = bench.area().viewport()->findChild<QDrag*>();
  ASSERT_NE(drag, nullptr);
  EXPECT_EQ(qt::filesOf(*drag->mimeData()).names,
            (std::vector<std::string>{folder.file("img1.png"), folder.file("img3.png")}));
  EXPECT_TRUE(drag->supportedActions() & Qt::CopyAction);
  EXPECT_TRUE(drag->supportedActions() & Qt::MoveAction);
  EXPECT_FALSE(drag->pixmap().isNull());
  bench.release(bench.middleOf(2) + QPoint(60, 30));
  EXPECT_EQ(bench.selection(), "0 2");
  EXPECT_TRUE(folder.has("img1.png"));
}

}  // namespace
}  // namespace kestrel::desktop
