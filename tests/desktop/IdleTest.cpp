// An idle program sleeps: no timer wakes it, and what is not shown does not tick.

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <chrono>
#include <memory>

#include "engine/pixels/Memory.h"
#include "imaging/contract/ImageView.h"
#include "imaging/contract/ThumbnailView.h"
#include "platform/qt/core/NeededTimer.h"
#include "platform/qt/embed/ImageBrowser.h"
#include "platform/qt/embed/ImageEditor.h"

namespace kestrel::desktop {
namespace {

using namespace std::chrono_literals;

/// Longer than the interval of any repeated work: the longest is that of the release of unused memory, 5 s.
constexpr qint64 kLongestInterval = 6000;
// Long enough for a busy machine; only a failing test waits this long.
constexpr qint64 kPatience = 60'000;

/// Records the timers that fire, except those of the test program itself.
class TimerWatch final : public QObject {
 public:
  TimerWatch() {
    qApp->installEventFilter(this);
    quiet_.start();
  }

  /// Waits until no timer has fired for longer than any interval. Gives the names of those that fire on.
  QStringList thatStayActive() {
    QElapsedTimer patience;
    patience.start();
    quiet_.start();
    while (quiet_.elapsed() < kLongestInterval) {
      if (patience.elapsed() > kPatience) return fired_;
      if (patience.elapsed() < kPatience / 2) fired_.clear();
      QTest::qWait(20);
    }
    return {};
  }

  /// Waits until a timer of that interval fires; false if none does.
  bool fires(std::chrono::milliseconds interval) {
    fired_.clear();
    const QString name = nameOf(interval.count());
    return QTest::qWaitFor([&] { return fired_.contains(name); }, static_cast<int>(kPatience));
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Timer || watched->objectName() == QLatin1String("ofTheTestProgram"))
      return false;
    const auto* const timer = qobject_cast<const QTimer*>(watched);
    fired_ += timer ? nameOf(timer->interval()) : QLatin1String(watched->metaObject()->className());
    quiet_.start();
    return false;
  }

 private:
  static QString nameOf(qint64 interval) { return QStringLiteral("every %1 ms").arg(interval); }

  QStringList fired_;
  QElapsedTimer quiet_;
};

constexpr auto kMarch = 120ms;

/// A host's window with two editors in tabs.
class Idle : public testing::Test {
 protected:
  Idle() {
    qputenv("KESTREL_STORE", folder_.filePath(QStringLiteral("settings.sqlite")).toUtf8());
    component_ = std::make_unique<qt::Component>();
    tabs_ = std::make_unique<QTabWidget>();
    tabs_->resize(1100, 760);
  }
  ~Idle() override {
    tabs_.reset();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  std::string picture() {
    const QString file = folder_.filePath(QStringLiteral("picture.png"));
    QImage image(300, 200, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    EXPECT_TRUE(image.save(file));
    return file.toStdString();
  }

  qt::ImageEditor& addEditor() {
    auto* const editor = new qt::ImageEditor(*component_);
    tabs_->addTab(editor, QStringLiteral("Editor"));
    editor->control().Initialize();
    editor->setKeepsChanges(true);
    return *editor;
  }
  void show() {
    tabs_->show();
    QApplication::setActiveWindow(tabs_.get());
    QTest::qWait(20);
  }

  const QTemporaryDir folder_;
  std::unique_ptr<qt::Component> component_;
  std::unique_ptr<QTabWidget> tabs_;
  TimerWatch watch_;
};

TEST_F(Idle, AnEditorWithoutAPictureNeedsNoTimer) {
  addEditor();
  show();
  EXPECT_EQ(watch_.thatStayActive(), QStringList());
}

TEST_F(Idle, AnEditorWithAPictureNeedsNoTimer) {
  qt::ImageEditor& editor = addEditor();
  show();
  ASSERT_TRUE(editor.control().OpenImage(picture()));
  editor.setFocus();
  EXPECT_EQ(watch_.thatStayActive(), QStringList());
}

TEST_F(Idle, AnEditorWhoseChangesAreKeptNeedsNoTimer) {
  qt::ImageEditor& editor = addEditor();
  show();
  ASSERT_TRUE(editor.control().OpenImage(picture()));
  editor.control().Rotate(90);
  ASSERT_TRUE(watch_.fires(1000ms)) << "the changes wait to be kept";
  EXPECT_EQ(watch_.thatStayActive(), QStringList());
}

TEST_F(Idle, AHiddenEditorDoesNotMarchItsSelection) {
  qt::ImageEditor& editor = addEditor();
  addEditor();
  show();
  ASSERT_TRUE(editor.control().OpenImage(picture()));
  editor.control().SelectAll();
  EXPECT_TRUE(watch_.fires(kMarch)) << "while it is shown";

  tabs_->setCurrentIndex(1);
  ASSERT_FALSE(editor.isVisible());
  EXPECT_EQ(watch_.thatStayActive(), QStringList());
  tabs_->setCurrentIndex(0);
  EXPECT_TRUE(watch_.fires(kMarch)) << "shown again";

  editor.control().ResetSelection();
  EXPECT_EQ(watch_.thatStayActive(), QStringList());
}

TEST_F(Idle, ASelectionMadeInAHiddenEditorMarchesWhenItIsShown) {
  qt::ImageEditor& editor = addEditor();
  addEditor();
  show();
  tabs_->setCurrentIndex(1);
  ASSERT_TRUE(editor.control().OpenImage(picture()));
  editor.control().SelectAll();
  EXPECT_EQ(watch_.thatStayActive(), QStringList());
  tabs_->setCurrentIndex(0);
  EXPECT_TRUE(watch_.fires(kMarch));
}

TEST_F(Idle, ABrowserOnAFolderNeedsNoTimer) {
  picture();
  auto* const browser = new qt::ImageBrowser(*component_);
  tabs_->addTab(browser, QStringLiteral("Browser"));
  bool loaded = false;
  const Connection done = browser->control().ObjectThumbnailView().FolderLoadComplete.Connect(
      [&](bool canceled) { loaded = !canceled; });
  show();
  browser->control().Path(folder_.path().toStdString());
  ASSERT_TRUE(QTest::qWaitFor([&] { return loaded; }, static_cast<int>(kPatience)));
  browser->setFocus();
  EXPECT_EQ(watch_.thatStayActive(), QStringList());
}

TEST_F(Idle, MemoryThatIsNoLongerUsedIsReleasedAndThenTheTimerEnds) {
  addEditor();
  show();
  { const engine::Memory freed(std::size_t{16} << 20); }
  ASSERT_GT(engine::keptMemory(), 0U);
  EXPECT_TRUE(QTest::qWaitFor([] { return engine::keptMemory() == 0; }, static_cast<int>(kPatience)));
  EXPECT_EQ(watch_.thatStayActive(), QStringList());
}

TEST(NeededTimer, WorksOnlyWhileItIsNeeded) {
  int left = 0, done = 0;
  qt::NeededTimer timer(
      1ms, [&] { return left > 0; },
      [&] {
        --left;
        ++done;
      });
  QTest::qWait(10);
  EXPECT_FALSE(timer.isActive());
  left = 3;
  EXPECT_TRUE(QTest::qWaitFor([&] { return done == 3 && !timer.isActive(); }, static_cast<int>(kPatience)));
  left = 1;
  EXPECT_TRUE(QTest::qWaitFor([&] { return done == 4 && !timer.isActive(); }, static_cast<int>(kPatience)));
}

TEST(NeededTimer, MayBeDestroyedByItsWork) {
  std::unique_ptr<qt::NeededTimer> timer;
  timer = std::make_unique<qt::NeededTimer>(
      1ms, [] { return true; }, [&timer] { timer.reset(); });
  timer->look();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !timer; }, static_cast<int>(kPatience)));
}

}  // namespace
}  // namespace kestrel::desktop
