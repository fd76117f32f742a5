// The notice strip after a save.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>

#include "EditorBench.h"
#include "Themes.h"

namespace kestrel::desktop {
namespace {

class SaveNotice : public testing::Test {
 protected:
  std::string path(const char* name) { return folder.filePath(QLatin1String(name)).toStdString(); }
  void open(const char* name, const char* format) {
    ASSERT_TRUE(noise(400, 250).save(QString::fromStdString(path(name)), format, 90));
    ASSERT_TRUE(bench.editor().OpenImage(path(name)));
    settle();
  }
  /// The user saves under that name by the command Save As, from the dialog on.
  void nameInDialog(const std::string& target) {
    whenModalOpens([target](QWidget& dialog) {
      settle();
      auto* const name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
      name->selectAll();
      QTest::keyClicks(name, QString::fromStdString(target));
      QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save),
                        Qt::LeftButton);
    });
  }
  void saveAs(const std::string& target) {
    nameInDialog(target);
    bench.moorage().actions().actionOf(bench.command("btnFileSaveAs")).trigger();
    settle();
  }

  qt::NoticeStrip& strip() { return bench.view().surface().notice(); }
  std::string text() {
    return strip().findChild<QLabel*>(QStringLiteral("noticeText"))->text().toStdString();
  }
  QAbstractButton& button() { return *strip().findChild<QAbstractButton*>(QStringLiteral("noticeButton")); }

  EditorBench bench;
  QTemporaryDir folder;
};

TEST_F(SaveNotice, SaysThatAFileHasAnotherFormatThanItsNameUntilASaveAgrees) {
  open("lake.jpg", "JPG");
  bench.command("btnFileExport").Enabled(true);
  saveAs(path("lake.png"));
  ASSERT_TRUE(strip().isVisible());
  EXPECT_EQ(text(),
            "\"lake.png\" holds JPEG data, since a picture keeps its format. To convert it, use Export.");
  EXPECT_TRUE(button().isVisible());
  EXPECT_EQ(button().text(), "Export...");
  bench.screenshot("notice-format");
  saveAs(path("sea.jpg"));
  EXPECT_FALSE(strip().isVisible());
}

TEST_F(SaveNotice, SaysOnWhichColorTransparencyWasSaved) {
  open("lake.jpg", "JPG");
  bench.editor().Rotate(10);
  pressKey(bench.window(), Qt::Key_S, Qt::ControlModifier);
  settle();
  ASSERT_TRUE(strip().isVisible());
  EXPECT_EQ(text(), "JPEG files have no transparency: transparent parts are white in the file.");
  EXPECT_FALSE(button().isVisible());
  const QImage saved(QString::fromStdString(path("lake.jpg")));
  EXPECT_GT(qGray(saved.pixel(0, 0)), 250);
  bench.screenshot("notice-white");
}

TEST_F(SaveNotice, OffersSaveAsAfterAFailedSaveUntilOneSucceeds) {
  open("lake.png", "PNG");
  bench.editor().FlipVertically();
  QString said;
  whenModalOpens([&said](QWidget& dialog) {
    said = dynamic_cast<QMessageBox&>(dialog).text();
    dialog.close();
  });
  EXPECT_FALSE(bench.editor().SaveImageAs(path("nowhere/lake.png")));
  settle();
  EXPECT_TRUE(said.startsWith(QStringLiteral("Unable to save image \""))) << said.toStdString();
  ASSERT_TRUE(strip().isVisible());
  EXPECT_EQ(button().text(), "Save As...");
  EXPECT_EQ(bench.window().focusWidget(), &bench.canvas()) << "the strip takes no focus";
  bench.screenshot("notice-unsaved");
  bench.editor().FlipVertically();
  settle();
  EXPECT_TRUE(strip().isVisible());
  nameInDialog(path("safe.png"));
  QTest::mouseClick(&button(), Qt::LeftButton);
  settle();
  EXPECT_TRUE(QFile::exists(QString::fromStdString(path("safe.png"))));
  EXPECT_FALSE(strip().isVisible());
}

TEST_F(SaveNotice, IsReadableInADarkTheme) {
  open("lake.jpg", "JPG");
  const Theme dark(darkPalette());
  saveAs(path("lake.png"));
  EXPECT_TRUE(strip().isVisible());
  bench.screenshot("notice-format-dark");
}

}  // namespace
}  // namespace kestrel::desktop
