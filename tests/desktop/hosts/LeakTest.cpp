// Editors and browsers that are made and destroyed many times leave nothing behind.

#include <gtest/gtest.h>
#include <malloc.h>

#include <QApplication>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>
#include <functional>

#include "FailingAllocator.h"
#include "platform/qt/embed/ImageBrowser.h"
#include "platform/qt/embed/ImageEditor.h"

namespace kestrel::desktop {
namespace {

constexpr int kRounds = 500;
/// By then the toolkit's caches are full.
constexpr int kWarmRounds = 100;
/// What the smallest object takes. So a round that leaves a single one behind fails the test.
constexpr std::size_t kSmallestObject = 16;

/// What is alive at one moment.
struct Living {
  qsizetype widgets = QApplication::allWidgets().size();
  std::size_t objects = test::heldMemory();   ///< bytes, by `new`
  std::size_t memory = mallinfo2().uordblks;  ///< bytes, also by C functions; 0 under a sanitizer
};

void settle() {
  for (int round = 0; round < 2; ++round) {
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

/// Bytes that `later` has more.
std::size_t growth(std::size_t former, std::size_t later) { return later > former ? later - former : 0; }

class Rounds : public testing::Test {
 protected:
  Rounds() { EXPECT_TRUE(QImage(40, 30, QImage::Format_RGB32).save(picture())); }

  QString picture() const { return folder_.filePath(QStringLiteral("picture.png")); }

  void expectNothingLeft(const std::function<void()>& round) {
    for (int i = 0; i < kWarmRounds; ++i) {
      round();
      settle();
    }
    const Living before;
    for (int i = kWarmRounds; i < kRounds; ++i) {
      round();
      settle();
    }
    const Living after;
    EXPECT_EQ(after.widgets, before.widgets);
    constexpr std::size_t kMeasured = kRounds - kWarmRounds;
    EXPECT_LT(growth(before.objects, after.objects), kMeasured * kSmallestObject);
    // Chunks that the C library keeps for the next call count as taken.
    EXPECT_LT(growth(before.memory, after.memory), kMeasured * 4 * kSmallestObject);
  }

  const QTemporaryDir folder_;
  qt::Component component_;
};

TEST_F(Rounds, OfAnEditorWithAPictureInAHostsWindow) {
  expectNothingLeft([this] {
    QWidget window;
    auto* const layout = new QVBoxLayout(&window);
    auto* const editor = new qt::ImageEditor(component_);
    layout->addWidget(editor);
    editor->control().Initialize();
    EXPECT_TRUE(editor->control().OpenImage(picture().toStdString()));
    window.show();
  });
}

TEST_F(Rounds, OfABrowserInAHostsWindow) {
  expectNothingLeft([this] {
    QWidget window;
    auto* const layout = new QVBoxLayout(&window);
    auto* const browser = new qt::ImageBrowser(component_);
    layout->addWidget(browser);
    browser->control().Path(folder_.path().toStdString());
    window.show();
  });
}

}  // namespace
}  // namespace kestrel::desktop
