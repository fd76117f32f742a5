// The visible status line.

#include <gtest/gtest.h>

#include <QEvent>
#include <QTemporaryDir>
#include <QTimer>

#include "EditorBench.h"
#include "platform/qt/docking/PanelField.h"

namespace kestrel::desktop {
namespace {

/// Records the texts with which a panel is painted.
class PaintedTexts final : public QObject {
 public:
  explicit PaintedTexts(qt::PanelField& panel) : panel_(panel) { panel_.installEventFilter(this); }

  /// The texts since the last call, each in brackets.
  std::string take() { return std::exchange(texts_, {}); }

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Paint) texts_ += '[' + panel_.text().toStdString() + ']';
    return false;
  }

 private:
  qt::PanelField& panel_;
  std::string texts_;
};

class StatusLine : public testing::Test {
 protected:
  void SetUp() override {
    bench.showPicture(noise(300, 200));
    ASSERT_TRUE(bench.editor().SaveImageAs(file));
    settle();
    painted.take();
  }

  EditorBench bench;
  QTemporaryDir folder;
  std::string file = folder.filePath(QStringLiteral("picture.png")).toStdString();
  PaintedTexts painted{*bench.window().findChild<qt::PanelField*>(QStringLiteral("pnlStatus"))};
};

TEST_F(StatusLine, SaysOpeningImageBeforeTheFileIsRead) {
  std::string before;
  const Connection loaded = bench.view().Loaded.Connect([&] { before = painted.take(); });
  ASSERT_TRUE(bench.editor().OpenImage(file));
  EXPECT_EQ(before, "[Opening image...]");
  EXPECT_EQ(painted.take(), "[]");
}

TEST_F(StatusLine, SaysSavingImageBeforeTheFileIsWritten) {
  ASSERT_TRUE(bench.editor().SaveImageAs(file));
  EXPECT_EQ(painted.take(), "[Saving image...][]");
}

TEST_F(StatusLine, IsPaintedAtOnceAndNothingElseHappensMeanwhile) {
  bool happened = false;
  QTimer::singleShot(0, &bench.window(), [&] { happened = true; });
  bench.editor().Status("Working...");
  EXPECT_EQ(painted.take(), "[Working...]");
  EXPECT_FALSE(happened);
  bench.editor().Status("Working...");
  EXPECT_EQ(painted.take(), "") << "the same text needs no painting";
}

}  // namespace
}  // namespace kestrel::desktop
