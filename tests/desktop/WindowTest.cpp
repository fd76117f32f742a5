// The program's own window: dropped files, the line in the empty view, unsaved changes.

#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

#include "EditorBench.h"
#include "Themes.h"
#include "apps/common/window/EditorWindow.h"
#include "platform/qt/docking/ComboField.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

class Window : public testing::Test {
 protected:
  Window() {
    modProcessing::Attach(*platform_);
    modProcessing::Main();
    program_ = std::make_unique<app::EditorWindow>([] {});
    program_->form().Show();
    window().resize(900, 640);
    QApplication::setActiveWindow(&window());
    settle();
    noise(300, 200).save(QString::fromStdString(file("a.png")));
    noise(200, 100).save(QString::fromStdString(file("b.png")));
    noise(20, 10).save(QString::fromStdString(file("a & b #1%20.png")));
  }
  ~Window() override {
    program_.reset();
    modProcessing::Detach();
  }

  std::string file(const char* name) { return folder_.filePath(QLatin1String(name)).toStdString(); }
  IImageProcessingCtl& editor() { return program_->editor(); }
  qt::FormWindow& window() { return static_cast<qt::QtForm&>(program_->form()).window(); }
  qt::ViewCanvas& canvas() { return *window().findChild<qt::ViewCanvas*>(); }
  void answer(QMessageBox::StandardButton button) {
    whenModalOpens([this, button](QWidget& dialog) {
      ++questions_;
      QTest::mouseClick(dynamic_cast<QMessageBox&>(dialog).button(button), Qt::LeftButton);
    });
  }
  /// The pixels of the canvas that are neither white nor nearly so.
  int inked() {
    const QImage picture = canvas().grab().toImage();
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) count += qGray(picture.pixel(x, y)) < 200 ? 1 : 0;
    }
    return count;
  }

  int questions_ = 0;
  QTemporaryDir folder_;
  std::unique_ptr<qt::QtPlatform> platform_ = testPlatform();
  std::unique_ptr<app::EditorWindow> program_;
};

// -- Dropped files ----------------------------------------------------------------------------------------

TEST_F(Window, OpensAFileDroppedOnThePictureOrOnABar) {
  EXPECT_TRUE(dropFile(canvas(), file("a.png")));
  settle();
  EXPECT_EQ(editor().Filename(), file("a.png"));
  EXPECT_EQ(window().windowTitle(), QStringLiteral("a.png - KestrelLib2 Image Editor"));
  EXPECT_TRUE(dropFile(*window().findChild<QToolBar*>(QStringLiteral("Standard")), file("b.png")));
  settle();
  EXPECT_EQ(editor().Filename(), file("b.png"));
  EXPECT_TRUE(dropFile(*window().findChild<QMenuBar*>(), file("a & b #1%20.png")));
  settle();
  EXPECT_EQ(editor().Filename(), file("a & b #1%20.png"));
}

TEST_F(Window, OpensAFileDroppedOnTheZoomFieldInsteadOfTypingItsName) {
  ASSERT_TRUE(editor().OpenImage(file("a.png")));
  editor().Tool(ipToolZoom);
  settle();
  auto* const field = window().findChild<qt::ComboField*>(QStringLiteral("cboZoom"));
  ASSERT_TRUE(field && field->isVisible());
  const QString before = field->currentText();
  EXPECT_TRUE(dropFile(*field->lineEdit(), file("b.png")));
  settle();
  EXPECT_EQ(editor().Filename(), file("b.png"));
  EXPECT_EQ(field->currentText(), before);
}

TEST_F(Window, AsksAboutChangesAfterTheDropAndNotDuringIt) {
  ASSERT_TRUE(editor().OpenImage(file("a.png")));
  editor().FlipVertically();
  answer(QMessageBox::Cancel);
  EXPECT_TRUE(dropFile(canvas(), file("b.png")));
  EXPECT_EQ(questions_, 0) << "the source of the drag waits for its end";
  EXPECT_TRUE(QTest::qWaitFor([this] { return questions_ == 1; }));
  settle();
  EXPECT_EQ(questions_, 1);
  EXPECT_EQ(editor().Filename(), file("a.png"));
  answer(QMessageBox::No);
  EXPECT_TRUE(dropFile(canvas(), file("b.png")));
  EXPECT_TRUE(QTest::qWaitFor([this] { return questions_ == 2; }));
  settle();
  EXPECT_EQ(editor().Filename(), file("b.png"));
}

TEST_F(Window, NeverTakesADropThatWouldDeleteTheFile) {
  EXPECT_FALSE(dropFile(canvas(), file("a.png"), Qt::MoveAction));
  EXPECT_TRUE(dropFile(canvas(), file("a.png"), Qt::MoveAction | Qt::CopyAction)) << "as a copy";
  EXPECT_TRUE(dropFile(canvas(), file("a.png"), Qt::MoveAction | Qt::LinkAction)) << "as a link";
  settle();
  EXPECT_TRUE(QFile::exists(QString::fromStdString(file("a.png"))));
}

TEST_F(Window, TakesNoDropWhileADialogIsOpen) {
  bool taken = true;
  whenModalOpens([&](QWidget& dialog) {
    taken = dropFile(canvas(), file("a.png"));
    dialog.close();
  });
  platform_->UserInterface().MessageBox("Wait.", kBoxExclamation, "Test", program_->form().hWnd());
  EXPECT_FALSE(taken);
  EXPECT_TRUE(dropFile(canvas(), file("a.png")));
}

// -- The empty view ---------------------------------------------------------------------------------------

TEST_F(Window, ShowsHowToBeginUntilThereIsAPicture) {
  EXPECT_GT(inked(), 100);
  writeScreenshot(window(), "window-empty");
  window().resize(500, 420);
  settle();
  EXPECT_GT(inked(), 100);
  writeScreenshot(window(), "window-empty-small");
  window().resize(900, 640);
  QImage white(10, 10, QImage::Format_RGB32);
  white.fill(Qt::white);
  white.save(QString::fromStdString(file("white.png")));
  ASSERT_TRUE(editor().OpenImage(file("white.png")));
  settle();
  EXPECT_LT(inked(), 4 * 12 * 4 * 4) << "only the line around the picture";
  editor().Picture(nullptr);
  settle();
  EXPECT_GT(inked(), 100);
}

TEST_F(Window, ShowsItInADarkThemeToo) {
  const Theme dark(darkPalette());
  settle();
  writeScreenshot(window(), "window-empty-dark");
  EXPECT_GT(inked(), 100);
}

// -- Unsaved changes --------------------------------------------------------------------------------------

TEST_F(Window, ReportsUnsavedChangesToTheDesktopAndKeepsItsCaption) {
  ASSERT_TRUE(editor().OpenImage(file("a.png")));
  EXPECT_FALSE(window().isWindowModified());
  const QString caption = window().windowTitle();
  editor().FlipVertically();
  EXPECT_TRUE(window().isWindowModified());
  EXPECT_EQ(window().windowTitle(), caption);
  EXPECT_EQ(window().windowHandle()->title(), caption) << "no mark in the caption";
  ASSERT_TRUE(editor().SaveImage());
  EXPECT_FALSE(window().isWindowModified());
}

QStringList printed;

TEST_F(Window, ReportsUnsavedChangesWithoutAWarningOfTheToolkit) {
  ASSERT_TRUE(editor().OpenImage(file("a.png")));
  const QtMessageHandler before = qInstallMessageHandler(
      [](QtMsgType, const QMessageLogContext&, const QString& text) { printed += text; });
  editor().FlipVertically();
  const bool modified = window().isWindowModified();
  editor().SaveImage();
  qInstallMessageHandler(before);
  EXPECT_TRUE(modified);
  EXPECT_EQ(printed.filter(QStringLiteral("[*]")).join(u'\n').toStdString(), "");
}

}  // namespace
}  // namespace kestrel::desktop
