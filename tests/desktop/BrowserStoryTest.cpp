// A user's session with the browser, by mouse and keys through its window, with a screenshot of each step.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QPainter>
#include <QTest>
#include <QWheelEvent>
#include <chrono>
#include <memory>

#include "BrowserBench.h"
#include "EditorBench.h"
#include "apps/kestrel-browser/window/EditorWindows.h"
#include "platform/qt/dialogs/FolderDialog.h"
#include "platform/qt/files/QuestionWindow.h"
#include "platform/qt/tree/TreeWidget.h"

namespace kestrel::desktop {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class BrowserStory : public testing::Test {
 protected:
  BrowserStory() {
    for (int number = 1; number <= kPictures; ++number)
      draw("img " + std::to_string(number) + ".png", number);
    bench_.addFolder("Journey");
    draw("Journey/img 3.png", 200);
    bench_.open();
    opened_ = bench_.browser().ObjectThumbnailView().ThumbnailOpen.Connect(
        [this](Thumbnail& thumbnail) { editors_.open(thumbnail.Filename()); });
  }
  ~BrowserStory() override {
    for (const auto& work : later_) work();
  }

  void draw(const std::string& name, int hue) const {
    QImage picture(120 + hue % 3 * 40, 120, QImage::Format_RGB32);
    picture.fill(QColor::fromHsv(hue * 37 % 360, 120, 230));
    QPainter painter(&picture);
    painter.drawText(picture.rect(), Qt::AlignCenter, QString::fromStdString(name));
    ASSERT_TRUE(picture.save(QString::fromStdString(bench_.pathOf(name)))) << name;
  }

  void done(const char* step) {
    settle();
    writeScreenshot(bench_.window(), std::string("browser-story-") + step);
  }
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { pressKey(bench_.window(), key, modifiers); }

  /// At a position of a widget in the window, as the window system reports it.
  void click(QWidget& widget, QPoint at, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(bench_.window().windowHandle(), Qt::LeftButton, modifiers,
                      widget.mapTo(&bench_.window(), at));
    settle();
  }
  void clickPicture(const std::string& name, Qt::KeyboardModifiers modifiers = {}) {
    click(*bench_.area().viewport(), bench_.middleOf(itemOf(name)), modifiers);
  }
  /// Goes to a folder by a click in the tree.
  void clickFolder(const char* name) {
    auto& tree = *bench_.widget().findChild<qt::TreeWidget*>();
    const auto found = tree.model()->match(tree.model()->index(0, 0), Qt::DisplayRole, QLatin1String(name), 1,
                                           Qt::MatchExactly | Qt::MatchRecursive);
    ASSERT_EQ(found.size(), 1) << name;
    tree.scrollTo(found.front());
    const QRect place = tree.visualRect(found.front());  // begins with the icon
    click(*tree.viewport(), {place.left() + place.height(), place.center().y()});
    bench_.waitUntilLoaded();
  }

  /// Opens a menu and chooses an entry of it by their access keys.
  void chooseInMenu(Qt::Key menu, Qt::Key entry) {
    // A display without a window manager activates no window when a dialog has closed.
    bench_.window().activateWindow();
    settle();
    key(menu, Qt::AltModifier);
    bench_.waitUntil("the menu opens", [] { return QApplication::activePopupWidget() != nullptr; });
    ASSERT_TRUE(QApplication::activePopupWidget());
    QTest::keyClick(QApplication::activePopupWidget(), entry);
  }

  std::int32_t itemOf(const std::string& name) {
    const auto names = shown();
    return static_cast<std::int32_t>(std::find(names.begin(), names.end(), name) - names.begin());
  }
  std::vector<std::string> shown() { return bench_.names(bench_.browser().Thumbnails()); }
  std::vector<std::string> selected() { return bench_.names(bench_.browser().SelectedItems()); }

  static constexpr int kPictures = 60;

  BrowserBench bench_;
  std::vector<std::function<void()>> later_;
  app::EditorWindows editors_{
      {.later = [this](std::function<void()> work) { later_.push_back(std::move(work)); }, .closed = [] {}}};
  Connection opened_;
};

TEST_F(BrowserStory, FromAFolderToAPictureInTheEditor) {
  ASSERT_EQ(shown().size(), std::size_t{kPictures});
  done("1-folder");

  QWidget& viewport = *bench_.area().viewport();
  const QPointF middle = viewport.rect().center();
  QWheelEvent wheel(middle, viewport.mapToGlobal(middle), {}, {0, -360}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(&viewport, &wheel);
  bench_.waitUntil("the wheel has scrolled", [this] { return bench_.view().scroll() > 0; });
  done("2-scrolled-by-the-wheel");
  click(viewport, {2, 2});
  key(Qt::Key_End);
  EXPECT_THAT(selected(), ElementsAre("img 60.png"));
  EXPECT_EQ(bench_.view().scroll(), bench_.view().arrangement().scrollRange());
  done("3-scrolled-to-the-end");
  key(Qt::Key_Home);
  EXPECT_EQ(bench_.view().scroll(), 0);

  clickPicture("img 1.png");
  clickPicture("img 3.png", Qt::ControlModifier);
  EXPECT_THAT(selected(), ElementsAre("img 1.png", "img 3.png"));
  done("4-selected");

  key(Qt::Key_C, Qt::ControlModifier);
  clickFolder("Journey");
  EXPECT_THAT(shown(), ElementsAre("img 3.png"));
  done("5-other-folder");
  whenModalOpens([](QWidget& dialog) {
    EXPECT_TRUE(qobject_cast<qt::QuestionWindow*>(&dialog));
    QTest::qWait(200);  // for its pictures
    writeScreenshot(dialog, "browser-story-6-clash");
    QTest::keyClick(dialog.windowHandle(), Qt::Key_K, Qt::AltModifier);
  });
  click(viewport, {viewport.width() - 5, viewport.height() - 5});
  key(Qt::Key_V, Qt::ControlModifier);
  bench_.waitUntil("the pasted files appear", [this] { return shown().size() == 3; });
  EXPECT_THAT(shown(), ElementsAre("img 1.png", "img 3.png", "img 3 (2).png"));
  done("7-pasted");

  clickFolder("Pictures");
  clickPicture("img 5.png");
  whenModalOpens([this](QWidget& dialog) {
    ASSERT_TRUE(dynamic_cast<qt::FolderDialog*>(&dialog));
    writeScreenshot(dialog, "browser-story-8-move-to");
    auto* const name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    ASSERT_TRUE(name);
    bench_.waitUntil("a folder can be typed", [&] { return name->hasFocus(); });
    QTest::keyClicks(name, QString::fromStdString(bench_.pathOf("Journey")));
    QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
  });
  chooseInMenu(Qt::Key_I, Qt::Key_M);
  bench_.waitUntil("the moved file is gone", [this] { return shown().size() == kPictures - 1; });
  EXPECT_TRUE(bench_.exists("Journey/img 5.png"));
  EXPECT_FALSE(bench_.exists("img 5.png"));
  done("9-moved");

  clickPicture("img 6.png");
  clickPicture("img 8.png", Qt::ShiftModifier);
  whenModalOpens([](QWidget& dialog) {
    writeScreenshot(dialog, "browser-story-10-delete");
    QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
  });
  key(Qt::Key_Delete);
  bench_.waitUntil("the deleted files are gone", [this] { return shown().size() == kPictures - 4; });
  for (const char* name : {"img 6.png", "img 7.png", "img 8.png"})
    EXPECT_TRUE(bench_.isInTrash(name)) << name;
  done("11-deleted");

  bench_.restoreFromTrash("img 7.png");
  bench_.waitUntil("the restored file appears", [this] { return shown().size() == kPictures - 3; });
  EXPECT_THAT(shown(), Contains("img 7.png"));
  done("12-restored");

  clickPicture("img 4.png");
  chooseInMenu(Qt::Key_V, Qt::Key_F);
  bench_.waitUntil("the large picture is shown", [this] { return bench_.view().settled(); });
  EXPECT_EQ(bench_.view().View(), kViewFilmstrip);
  done("13-film-strip");
  chooseInMenu(Qt::Key_V, Qt::Key_S);
  bench_.waitUntil("the picture is shown", [this] { return bench_.view().settled(); });
  key(Qt::Key_Right);
  bench_.waitUntil("the next picture is shown", [this] { return bench_.view().settled(); });
  EXPECT_THAT(selected(), ElementsAre("img 7.png"));
  done("14-single");

  key(Qt::Key_Return);
  ASSERT_TRUE(editors_.latest());
  EXPECT_EQ(editors_.latest()->editor().Filename(), bench_.pathOf("img 7.png"));
  settle();
  writeScreenshot(dynamic_cast<qt::QtForm&>(editors_.latest()->form()).window(), "browser-story-15-editor");
  editors_.latest()->form().Unload();
  done("16-back");
}

}  // namespace
}  // namespace kestrel::desktop
