// Unsaved changes of an embedded editor: kept only if its host wants it, and recovered by the mouse.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>

#include "imaging/contract/Image.h"
#include "platform/qt/docking/MoorageWindow.h"
#include "platform/qt/embed/ImageEditor.h"

namespace kestrel::desktop {
namespace {

class RecoveryOnTheDesktop : public testing::Test {
 protected:
  RecoveryOnTheDesktop() {
    const QImage image(40, 30, QImage::Format_RGB32);
    file_ = folder_.filePath(QStringLiteral("a.png"));
    image.save(file_);
  }
  ~RecoveryOnTheDesktop() override {
    editor_.reset();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  void start(bool keepsChanges) {
    editor_ = std::make_unique<qt::ImageEditor>(component_);
    editor_->resize(900, 600);
    editor_->control().Initialize();
    if (keepsChanges) editor_->setProperty("keepsChanges", true);
    editor_->show();
    QApplication::processEvents();
  }
  /// Ends the editor with a change that is not saved.
  void changeAndEnd() {
    ASSERT_TRUE(editor_->control().OpenImage(file_.toStdString()));
    editor_->control().Rotate(90);
    editor_.reset();
  }
  QAbstractButton& noticeButton() {
    return *editor_->findChild<QAbstractButton*>(QStringLiteral("noticeButton"));
  }
  /// The line of the bars' context menu; null if it has none.
  QAction* recoverLine() {
    delete menu_;
    menu_ = editor_->findChild<qt::MoorageWindow*>()->createPopupMenu();
    for (QAction* action : menu_->actions()) {
      if (action->text() == QLatin1String("&Recover...")) return action;
    }
    return nullptr;
  }
  /// Presses a button of the next message box.
  static void answer(QMessageBox::StandardButton button) {
    auto* const watch = new QTimer(qApp);
    QObject::connect(watch, &QTimer::timeout, watch, [watch, button] {
      auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      watch->deleteLater();
      QTest::mouseClick(box->button(button), Qt::LeftButton);
    });
    watch->start(10);
  }

  QTemporaryDir folder_;
  QString file_;
  qt::Component component_;
  std::unique_ptr<qt::ImageEditor> editor_;
  QPointer<QMenu> menu_;  ///< the window of the bars owns it
};

TEST_F(RecoveryOnTheDesktop, IsOffUnlessTheHostSwitchesItOn) {
  start(false);
  EXPECT_FALSE(editor_->property("keepsChanges").toBool());
  EXPECT_EQ(recoverLine(), nullptr);
  changeAndEnd();
  start(true);
  EXPECT_TRUE(editor_->property("keepsChanges").toBool());
  EXPECT_FALSE(noticeButton().isVisible());
  ASSERT_NE(recoverLine(), nullptr);
  EXPECT_FALSE(recoverLine()->isEnabled());
}

TEST_F(RecoveryOnTheDesktop, AClickInTheStripOpensWhatTheLastEditorLeft) {
  start(true);
  changeAndEnd();
  start(true);
  ASSERT_TRUE(noticeButton().isVisible());
  EXPECT_EQ(noticeButton().text(), QStringLiteral("Recover..."));
  answer(QMessageBox::Yes);
  QTest::mouseClick(&noticeButton(), Qt::LeftButton);
  EXPECT_EQ(editor_->control().Filename(), file_.toStdString());
  EXPECT_EQ(editor_->control().Image()->Width(), 30) << "turned, as it was left";
  EXPECT_TRUE(editor_->control().Changed());
  EXPECT_FALSE(noticeButton().isVisible());
  EXPECT_TRUE(editor_->control().SaveImage());
  editor_.reset();
  start(true);
  EXPECT_FALSE(noticeButton().isVisible()) << "it was saved";
}

TEST_F(RecoveryOnTheDesktop, TheContextMenuOfTheBarsRecoversToo) {
  start(true);
  changeAndEnd();
  start(true);
  ASSERT_NE(recoverLine(), nullptr);
  ASSERT_TRUE(recoverLine()->isEnabled());
  answer(QMessageBox::Yes);
  recoverLine()->trigger();
  EXPECT_EQ(editor_->control().Image()->Width(), 30);
  EXPECT_TRUE(editor_->control().SaveImage());
}

TEST_F(RecoveryOnTheDesktop, TheHostMayEndTheEditorWhileItAsks) {
  start(true);
  changeAndEnd();
  start(true);
  auto* const watch = new QTimer(qApp);
  QObject::connect(watch, &QTimer::timeout, watch, [&] {
    if (QApplication::activeModalWidget() == nullptr) return;
    watch->deleteLater();
    editor_.reset();
  });
  watch->start(10);
  recoverLine()->trigger();
  EXPECT_EQ(editor_, nullptr);
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  // It can still be recovered.
  start(true);
  EXPECT_TRUE(noticeButton().isVisible());
  answer(QMessageBox::Yes);
  QTest::mouseClick(&noticeButton(), Qt::LeftButton);
  EXPECT_TRUE(editor_->control().SaveImage());
}

}  // namespace
}  // namespace kestrel::desktop
