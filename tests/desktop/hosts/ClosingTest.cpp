// An editor that is closed itself asks about unsaved changes.

#include <QMessageBox>
#include <QPushButton>

#include "HostProgram.h"

namespace kestrel::desktop {
namespace {

class ClosedEditor : public HostProgram {
 protected:
  /// An editor without a host's window, as in the README.
  ClosedEditor() {
    editor_ = new qt::ImageEditor(component_);
    editor_->control().Initialize();
    EXPECT_TRUE(editor_->control().OpenImage(file("open.png")));
    show(*editor_);
  }
  ~ClosedEditor() override { delete editor_; }

  /// The user answers the question by the key.
  void answerBy(Qt::Key key) {
    whenDialogOpens([this, key] {
      asked_ = true;
      QTest::keyClick(QApplication::activeModalWidget(), key);
    });
  }

  QPointer<qt::ImageEditor> editor_;
  bool asked_ = false;
};

TEST_F(ClosedEditor, StaysIfTheUserCancels) {
  mirror(*editor_);
  answerBy(Qt::Key_Escape);
  EXPECT_FALSE(editor_->close());
  EXPECT_TRUE(asked_);
  EXPECT_TRUE(editor_->isVisible());
}

TEST_F(ClosedEditor, ClosesIfTheUserSavesOrDeclines) {
  mirror(*editor_);
  answerBy(Qt::Key_Return);
  EXPECT_TRUE(editor_->close());
  EXPECT_TRUE(asked_);
  EXPECT_FALSE(editor_->isVisible());
  EXPECT_EQ(QImage(path("open.png")).pixelColor(0, 0), motley(40, 30).pixelColor(39, 0)) << "saved";

  show(*editor_);
  mirror(*editor_);
  whenDialogOpens([] {
    auto& box = dynamic_cast<QMessageBox&>(*QApplication::activeModalWidget());
    QTest::mouseClick(box.button(QMessageBox::No), Qt::LeftButton);
  });
  EXPECT_TRUE(editor_->close());
  EXPECT_FALSE(editor_->isVisible());
}

TEST_F(ClosedEditor, ClosesAtOnceWithoutChangesOrIfTheHostHasItsOwnWay) {
  EXPECT_TRUE(editor_->close());
  show(*editor_);
  mirror(*editor_);
  editor_->setAsksOnClose(false);
  EXPECT_TRUE(editor_->close());
}

TEST_F(ClosedEditor, MayBeDestroyedWhileItAsks) {
  mirror(*editor_);
  whenDialogOpens([this] { delete editor_.data(); });
  EXPECT_TRUE(editor_->close());
  EXPECT_FALSE(editor_);
}

TEST_F(ClosedEditor, DeepInAWindowOfTheHostItIsTheHostWhoAsks) {
  QWidget window;
  new QVBoxLayout(&window);
  qt::ImageEditor& inner = addEditor(window);
  show(window);
  mirror(inner);
  ASSERT_TRUE(inner.control().ImageControl().Modified());
  EXPECT_TRUE(window.close());
}

}  // namespace
}  // namespace kestrel::desktop
