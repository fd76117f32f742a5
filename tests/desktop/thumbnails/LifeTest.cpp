#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QDateTime>
#include <QHelpEvent>
#include <QLocale>
#include <QToolTip>
#include <QWindow>
#include <filesystem>

#include "../Drags.h"
#include "ThumbnailBench.h"
#include "platform/qt/exchange/FileExchange.h"
#include "platform/qt/thumbnails/PostedCalls.h"
#include "platform/qt/thumbnails/ThumbnailTexts.h"

namespace kestrel::desktop {
namespace {

class ThumbnailLife : public testing::Test {
 protected:
  QString tipAt(std::int32_t item) {
    QWidget& viewport = *bench.area().viewport();
    const QPoint at = viewport.mapFrom(&bench.window(), bench.middleOf(item));
    QHelpEvent event(QEvent::ToolTip, at, viewport.mapToGlobal(at));
    QApplication::sendEvent(&viewport, &event);
    return QToolTip::text();
  }

  PictureFolder folder;
  ThumbnailBench bench;
};

TEST_F(ThumbnailLife, ToolTipHasNameSizesAndDate) {
  folder.add("a<b&c.png", Qt::red, {1234, 567});
  bench.open(folder);
  bench.waitForLoad();
  const QString tip = tipAt(0);
  const QLocale locale = QLocale::system();
  EXPECT_TRUE(tip.contains(QStringLiteral("<b>a&lt;b&amp;c.png</b>"))) << tip.toStdString();
  EXPECT_TRUE(tip.contains(locale.toString(1234) + u' ' + QChar(0xD7) + u' ' + locale.toString(567)));
  EXPECT_TRUE(tip.contains(QStringLiteral("pixels")));
  const auto bytes = static_cast<qint64>(bench.view().factsOf(0).bytes);
  EXPECT_TRUE(tip.contains(locale.formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat)));
  EXPECT_TRUE(tip.contains(locale.toString(QDateTime::currentDateTime().date(), QLocale::ShortFormat)));
  EXPECT_EQ(tip.count(QStringLiteral("<br>")), 2);
}

TEST_F(ThumbnailLife, ToolTipOfABrokenFileHasTheReason) {
  folder.addBroken("broken.png");
  bench.open(folder);
  bench.waitForLoad();
  const std::string notice = bench.view().factsOf(0).notice;
  ASSERT_FALSE(notice.empty());
  EXPECT_TRUE(tipAt(0).contains(QString::fromStdString(notice).toHtmlEscaped()));
  EXPECT_FALSE(tipAt(0).contains(QStringLiteral("pixels")));
}

TEST_F(ThumbnailLife, ThereIsNoToolTipBetweenItems) {
  folder.addMany(2);
  bench.open(folder);
  ASSERT_FALSE(tipAt(0).isEmpty());
  QWidget& viewport = *bench.area().viewport();
  // A tip that does not end by itself for an hour.
  QToolTip::showText(viewport.mapToGlobal(QPoint(1, 1)), QStringLiteral("tip"), &viewport, {}, 3'600'000);
  ASSERT_TRUE(QToolTip::isVisible());
  QHelpEvent event(QEvent::ToolTip, QPoint(1, 1), viewport.mapToGlobal(QPoint(1, 1)));
  QApplication::sendEvent(&viewport, &event);
  EXPECT_TRUE(eventually([] { return !QToolTip::isVisible(); }));
}

TEST(ThumbnailDetails, OfAFileThatIsNotDecodedHaveNoSizeInPixels) {
  thumbnails::ItemFacts facts;
  facts.label = "a.png";
  facts.bytes = 2048;
  EXPECT_FALSE(qt::detailsOf(facts).join(u' ').contains(QStringLiteral("pixels")));
  facts.state = thumbnails::ItemState::kBroken;
  EXPECT_EQ(qt::detailsOf(facts).back(), "This picture cannot be shown.");
}

class ThumbnailAccessibility : public ThumbnailLife {
 protected:
  ThumbnailAccessibility() {
    folder.addMany(3);
    bench.open(folder);
    bench.waitForLoad();
  }

  QAccessibleInterface& list() { return *QAccessible::queryAccessibleInterface(&bench.area()); }
  QAccessibleInterface& item(int index) { return *list().child(index); }
};

TEST_F(ThumbnailAccessibility, IsAListOfNamedItems) {
  EXPECT_EQ(list().role(), QAccessible::List);
  EXPECT_EQ(list().text(QAccessible::Name), "Thumbnails");
  ASSERT_EQ(list().childCount(), 3);
  EXPECT_EQ(item(1).role(), QAccessible::ListItem);
  EXPECT_EQ(item(1).text(QAccessible::Name), "img2.png");
  EXPECT_TRUE(item(1).text(QAccessible::Description).contains(QStringLiteral("pixels")));
  EXPECT_EQ(item(1).parent(), &list());
  EXPECT_EQ(list().indexOfChild(&item(1)), 1);
  EXPECT_EQ(list().child(3), nullptr);
}

TEST_F(ThumbnailAccessibility, ItemsHaveTheirPlaceAndState) {
  bench.click(1);
  const QRect place = item(1).rect();
  EXPECT_EQ(list().childAt(place.center().x(), place.center().y()), &item(1));
  EXPECT_TRUE(item(1).state().selected);
  EXPECT_TRUE(item(1).state().focused);
  EXPECT_FALSE(item(0).state().selected);
  EXPECT_TRUE(item(0).state().selectable);
  EXPECT_EQ(list().focusChild(), &item(1));
}

TEST_F(ThumbnailAccessibility, FocusFollowsTheKeyboard) {
  bench.key(Qt::Key_Home);
  EXPECT_EQ(list().focusChild(), &item(0));
  bench.key(Qt::Key_Right);
  EXPECT_EQ(list().focusChild(), &item(1));
  EXPECT_FALSE(item(0).state().focused);
  EXPECT_TRUE(item(1).state().focused);
}

TEST_F(ThumbnailAccessibility, ActionsSelectAndOpen) {
  std::string opened;
  const Connection open =
      bench.view().ThumbnailOpen.Connect([&](Thumbnail& item) { opened = item.Filename(); });
  QAccessibleActionInterface* const actions = item(2).actionInterface();
  ASSERT_NE(actions, nullptr);
  actions->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_EQ(bench.selection(), "2");
  actions->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_EQ(bench.selection(), "");
  actions->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(opened.ends_with("img3.png"));
}

TEST_F(ThumbnailAccessibility, FocusFollowsThePictureShownInTheSingleView) {
  bench.view().View(kViewSingle);
  settle();
  bench.key(Qt::Key_Right);
  EXPECT_EQ(list().focusChild(), &item(1));
  EXPECT_TRUE(item(1).state().selected);
  EXPECT_FALSE(item(0).state().selected);
}

TEST_F(ThumbnailAccessibility, FocusAndSelectionMoveOnWhenTheirFileGoes) {
  bench.click(1);
  folder.remove("img2.png");
  ASSERT_TRUE(eventually([&] { return list().childCount() == 2; }));
  ASSERT_EQ(list().focusChild(), &item(1));
  EXPECT_EQ(item(1).text(QAccessible::Name), "img3.png");
  EXPECT_TRUE(item(1).state().selected);
}

TEST_F(ThumbnailAccessibility, WhatIsShownInPlaceOfItemsIsTheDescription) {
  EXPECT_EQ(list().text(QAccessible::Description), "");
  std::filesystem::remove_all(folder.path());
  EXPECT_TRUE(eventually([&] { return list().childCount() == 0; }));
  EXPECT_TRUE(eventually([&] { return !list().text(QAccessible::Description).isEmpty(); }));
  EXPECT_EQ(list().text(QAccessible::Description).toStdString(), bench.view().message());
}

TEST_F(ThumbnailAccessibility, ItemOfAVanishedFileIsInvalid) {
  QAccessibleInterface& last = item(2);
  ASSERT_TRUE(last.isValid());
  bench.view().Folder("");
  settle();
  EXPECT_FALSE(last.isValid());
  EXPECT_TRUE(last.text(QAccessible::Name).isEmpty());
}

TEST_F(ThumbnailLife, FilesThatComeAndGoOnTheDiskDoSoInTheView) {
  folder.addMany(3);
  bench.open(folder);
  bench.click(1);
  folder.add("img0.png", Qt::blue);
  EXPECT_TRUE(eventually([&] { return bench.names() == "img0.png img1.png img2.png img3.png"; }));
  EXPECT_EQ(bench.selection(), "2") << "the same picture";
  folder.remove("img1.png");
  EXPECT_TRUE(eventually([&] { return bench.names() == "img0.png img2.png img3.png"; }));
  EXPECT_EQ(bench.selection(), "1");
}

TEST_F(ThumbnailLife, PictureThatChangesOnTheDiskIsShownAnew) {
  folder.add("img1.png", Qt::red);
  bench.open(folder);
  bench.waitForLoad();
  const QPoint middle = bench.grabPicture(0).rect().center();
  ASSERT_EQ(bench.grabPicture(0).pixelColor(middle), QColor(Qt::red));
  folder.add("img1.png", Qt::blue, {50, 50});
  EXPECT_TRUE(eventually([&] {
    const QImage shown = bench.grabPicture(0);
    return !shown.isNull() && shown.pixelColor(shown.rect().center()) == QColor(Qt::blue);
  }));
}

TEST_F(ThumbnailLife, FilesThatVanishLeaveNothing) {
  folder.addMany(2);
  bench.open(folder);
  bench.click(0);
  for (const char* name : {"img1.png", "img2.png"}) folder.remove(name);
  EXPECT_TRUE(eventually([&] { return bench.view().itemCount() == 0; }));
  EXPECT_EQ(bench.view().SelectedItems().Count(), 0);
  EXPECT_FALSE(bench.grab().isNull());
}

/// The view, with its window, is destroyed in an event of its own.
class ThumbnailEnd : public ThumbnailLife {
 protected:
  void openFolder() {
    folder.addMany(5);
    bench.open(folder);
  }
  /// After the end everything that waits must find nothing to do.
  void expectEnd() {
    for (int round = 0; round < 5; ++round) settle();
    EXPECT_FALSE(bench.hasView());
  }
};

TEST_F(ThumbnailEnd, InADoubleClick) {
  openFolder();
  const Connection end = bench.view().ThumbnailDblClick.Connect([&](Thumbnail&) { bench.destroy(); });
  bench.doubleClick(1);
  expectEnd();
}

TEST_F(ThumbnailEnd, InAContextClick) {
  openFolder();
  const Connection end = bench.view().ThumbnailContextClick.Connect([&](Thumbnail&) { bench.destroy(); });
  bench.rightClick(bench.middleOf(1));
  expectEnd();
}

TEST_F(ThumbnailEnd, InTheMenuKey) {
  openFolder();
  const Connection end = bench.view().ThumbnailContextClick.Connect([&](Thumbnail&) { bench.destroy(); });
  bench.click(1);
  bench.key(Qt::Key_Menu);
  expectEnd();
}

TEST_F(ThumbnailEnd, InAnOpening) {
  openFolder();
  const Connection end = bench.view().ThumbnailOpen.Connect([&](Thumbnail&) { bench.destroy(); });
  bench.click(1);
  bench.key(Qt::Key_Return);
  expectEnd();
}

TEST_F(ThumbnailEnd, InADelete) {
  openFolder();
  const Connection end = bench.view().DeletePressed.Connect([&] { bench.destroy(); });
  bench.click(1);
  bench.key(Qt::Key_Delete);
  expectEnd();
}

TEST_F(ThumbnailEnd, InAChangeOfView) {
  openFolder();
  const Connection end = bench.view().ViewChange.Connect([&](std::int32_t) { bench.destroy(); });
  bench.view().View(kViewFilmstrip);
  expectEnd();
}

TEST_F(ThumbnailEnd, WhileLoading) {
  folder.addMany(20);
  Connection end =
      bench.view().ThumbnailLoaded.Connect([&](Thumbnail&, std::int32_t, bool&) { bench.destroy(); });
  bench.view().Folder(folder.path());
  EXPECT_TRUE(eventually([&] { return !bench.hasView(); }));
  expectEnd();
}

TEST_F(ThumbnailEnd, AtEachStepOfLoading) {
  folder.addMany(3);
  {
    ThumbnailBench other;
    const Connection end = other.view().FolderSearchComplete.Connect([&](std::int32_t) { other.destroy(); });
    other.view().Folder(folder.path());
    EXPECT_TRUE(eventually([&] { return !other.hasView(); }));
  }
  {
    ThumbnailBench other;
    const Connection end = other.view().FolderLoadComplete.Connect([&](bool) { other.destroy(); });
    other.view().Folder(folder.path());
    EXPECT_TRUE(eventually([&] { return !other.hasView(); }));
  }
  {
    ThumbnailBench other;
    const Connection end = other.view().FolderLoadStart.Connect([&](bool&) { other.destroy(); });
    other.view().Folder(folder.path());
    EXPECT_FALSE(other.hasView());
  }
  settle();
}

TEST_F(ThumbnailEnd, DuringAPaste) {
  openFolder();
  PictureFolder elsewhere;
  elsewhere.add("one.png");
  std::string asked;
  bench.helpers().before = [&] {
    asked = bench.helpers().log;
    bench.destroy();
    return true;
  };
  QGuiApplication::clipboard()->setMimeData(new qt::FilesMimeData({{elsewhere.file("one.png")}, true}));
  bench.key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(asked, "move one.png");
  expectEnd();
  QGuiApplication::clipboard()->clear();
}

TEST_F(ThumbnailEnd, DuringADrop) {
  openFolder();
  PictureFolder elsewhere;
  elsewhere.add("one.png");
  bench.helpers().before = [&] {
    bench.destroy();
    return true;
  };
  const qt::FilesMimeData data({{elsewhere.file("one.png")}, false});
  drag(*bench.window().windowHandle(), bench.middleOf(1), data, Qt::CopyAction, Qt::NoModifier, true);
  EXPECT_TRUE(eventually([&] { return !bench.hasView(); }));
  expectEnd();
}

TEST(PostedCallsOnTheDesktop, RunInOrderAndEndWithTheObject) {
  auto calls = std::make_unique<qt::PostedCalls>();
  const thumbnails::Post post = calls->post();
  std::string order;
  post([&] { order += "a"; });
  post([&] { order += "b"; });
  EXPECT_EQ(order, "") << "never at once";
  EXPECT_TRUE(eventually([&] { return order == "ab"; }));
  post([&] {
    order += "c";
    calls.reset();
  });
  post([&] { order += "d"; });
  EXPECT_TRUE(eventually([&] { return calls == nullptr; }));
  post([&] { order += "e"; });
  settle();
  EXPECT_EQ(order, "abc");
}

TEST(PostedCallsOnTheDesktop, LetOthersRunInBetween) {
  qt::PostedCalls calls;
  const thumbnails::Post post = calls.post();
  int runs = 0;
  bool ended = false;
  // Each call posts the next one: without a limit the event loop would never come back.
  std::function<void()> again = [&] {
    ++runs;
    if (!ended) post(again);
  };
  post(again);
  bool came = false;
  QMetaObject::invokeMethod(
      qApp,
      [&] {
        QMetaObject::invokeMethod(
            qApp, [&] { came = true; }, Qt::QueuedConnection);
      },
      Qt::QueuedConnection);
  EXPECT_TRUE(eventually([&] { return came && runs > 3; }));
  ended = true;
  settle();
}

}  // namespace
}  // namespace kestrel::desktop
