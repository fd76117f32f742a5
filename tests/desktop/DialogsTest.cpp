#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include "EditorBench.h"
#include "base/RuntimeError.h"
#include "platform/qt/dialogs/FileDialogWindow.h"
#include "platform/qt/dialogs/QtHelpViewer.h"
#include "platform/qt/dialogs/QtImgXDialog.h"
#include "platform/qt/services/BusyPointer.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

qt::FileDialogWindow& asFileDialog(QWidget& widget) { return dynamic_cast<qt::FileDialogWindow&>(widget); }

TEST(FilterString, BecomesTheToolkitsFilters) {
  const QStringList filters = qt::nameFilters("Windows Bitmap (*.bmp)|*.bmp;*.dib|All Files (*.*)|*.*");
  ASSERT_EQ(filters.size(), 2);
  EXPECT_EQ(filters[0], "Windows Bitmap (*.bmp) (*.bmp *.dib *.rle)");
  EXPECT_EQ(filters[1], "All Files (*.*) (*)");
}

class FileDialog : public testing::Test {
 protected:
  std::string path(const char* name) { return folder.filePath(QLatin1String(name)).toStdString(); }

  EditorBench bench;
  QTemporaryDir folder;
};

TEST_F(FileDialog, OfSaveShowsTheAddedCheckBox) {
  bench.showPicture(noise(40, 30));
  QString caption;
  bool inside = false;
  bool belowTypes = false;
  bool apart = false;
  whenModalOpens([&](QWidget& dialog) {
    settle();
    auto* const box = dialog.findChild<QCheckBox*>(QStringLiteral("chkThumbnail"));
    auto* const types = dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
    if (box && types) {
      caption = box->text();
      const QRect place(box->mapTo(&dialog, QPoint()), box->size());
      const QRect row(types->mapTo(&dialog, QPoint()), types->size());
      inside = dialog.rect().contains(place) && box->isVisible();
      belowTypes = place.top() > row.bottom();
      // No other widget of the dialog overlaps the box.
      apart = dialog.childAt(place.center()) == box;
      const int distance = place.top() - row.bottom();
      dialog.resize(dialog.width() + 80, dialog.height() + 90);
      settle();
      const int after =
          box->mapTo(&dialog, QPoint()).y() - types->mapTo(&dialog, QPoint(0, types->height() - 1)).y();
      EXPECT_NEAR(after, distance, 1);
    }
    writeScreenshot(dialog, "save-dialog");
    asFileDialog(dialog).reject();
  });
  EXPECT_FALSE(bench.editor().SaveImageAs());
  EXPECT_EQ(caption, "Save Th&umbnail");
  EXPECT_TRUE(inside);
  EXPECT_TRUE(belowTypes);
  EXPECT_TRUE(apart);
}

TEST_F(FileDialog, ReturnsTheAddedControl) {
  bench.showPicture(noise(40, 30));
  for (int round = 0; round < 3; ++round) {
    whenModalOpens([&](QWidget& dialog) {
      EXPECT_NE(dialog.findChild<QCheckBox*>(QStringLiteral("chkThumbnail")), nullptr);
      asFileDialog(dialog).reject();
    });
    bench.editor().SaveImageAs();
  }
}

TEST_F(FileDialog, SavesUnderTheTypedName) {
  bench.showPicture(noise(40, 30));
  const std::string target = path("picture.bmp");
  whenModalOpens([&](QWidget& dialog) {
    dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(QString::fromStdString(target));
    QMetaObject::invokeMethod(&dialog, "accept", Qt::QueuedConnection);
  });
  EXPECT_TRUE(bench.editor().SaveImageAs());
  EXPECT_TRUE(QFile::exists(QString::fromStdString(target)));
  EXPECT_EQ(bench.editor().Filename(), target);
}

TEST_F(FileDialog, RefusesASaveIntoAFolderThatDoesNotExist) {
  bench.showPicture(noise(40, 30));
  QString shownText;
  whenModalOpens([&](QWidget& dialog) {
    whenModalOpens([&](QWidget& warning) {
      shownText = dynamic_cast<QMessageBox&>(warning).text();
      warning.close();
      asFileDialog(dialog).reject();
    });
    dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
        ->setText(QString::fromStdString(path("nowhere/picture.bmp")));
    QMetaObject::invokeMethod(&dialog, "accept", Qt::QueuedConnection);
  });
  EXPECT_FALSE(bench.editor().SaveImageAs());
  EXPECT_TRUE(shownText.contains(QStringLiteral("does not exist"))) << shownText.toStdString();
}

TEST_F(FileDialog, OfOpenHasNoCheckBoxAndTakesExistingFilesOnly) {
  ASSERT_TRUE(noise(20, 10).save(QString::fromStdString(path("small.png"))));
  bool box = true;
  QFileDialog::FileMode mode = QFileDialog::AnyFile;
  whenModalOpens([&](QWidget& dialog) {
    settle();
    box = dialog.findChild<QCheckBox*>(QStringLiteral("chkThumbnail")) != nullptr;
    mode = asFileDialog(dialog).fileMode();
    writeScreenshot(dialog, "open-dialog");
    dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
        ->setText(QString::fromStdString(path("small.png")));
    QMetaObject::invokeMethod(&dialog, "accept", Qt::QueuedConnection);
  });
  EXPECT_TRUE(bench.editor().OpenImage());
  EXPECT_FALSE(box);
  EXPECT_EQ(mode, QFileDialog::ExistingFile);
  EXPECT_EQ(bench.editor().Image()->Width(), 20);
}

TEST_F(FileDialog, HasControlsOnlyBeforeItIsShown) {
  ImgXDialog& dialog = *bench.editor().BrowseDialog();
  std::int32_t left = 0, top = 0, width = 0, height = 0;
  EXPECT_THROW(dialog.GetControlRect(kDialogFileTypeLabel, left, top, width, height), RuntimeError);
  EXPECT_THROW(dialog.MoveControl(0, 0, 0), RuntimeError);
}

class Boxes : public testing::Test {
 protected:
  UserInterface& boxes() { return bench.platform().UserInterface(); }
  EditorBench bench;
};

TEST_F(Boxes, ShowTheirButtonsAndReturnTheAnswer) {
  whenModalOpens([](QWidget& box) {
    auto& message = dynamic_cast<QMessageBox&>(box);
    EXPECT_EQ(message.windowTitle(), "Save Changes");
    EXPECT_EQ(message.icon(), QMessageBox::Question);
    EXPECT_EQ(message.text(), "Line one\n\nLine two");
    writeScreenshot(box, "question");
    message.button(QMessageBox::No)->click();
  });
  EXPECT_EQ(boxes().MessageBox("Line one\r\rLine two", 35, "Save Changes"), kAnswerNo);
}

TEST_F(Boxes, ShowTheirTitlesUnchanged) {
  whenModalOpens([](QWidget& box) {
    EXPECT_EQ(box.windowHandle()->title(), "a[*]b[*][*].png");
    box.close();
  });
  boxes().MessageBox("Told.", kBoxExclamation, "a[*]b[*][*].png");
  whenModalOpens([](QWidget& box) {
    EXPECT_EQ(box.windowHandle()->title(), "[*]");
    box.close();
  });
  boxes().InputBox("What?", "[*]", "", nullptr);
}

TEST_F(Boxes, CountClosingAsCancel) {
  whenModalOpens([](QWidget& box) { box.close(); });
  EXPECT_EQ(boxes().MessageBox("Go on?", 35, "Test"), kAnswerCancel);
  whenModalOpens([](QWidget& box) {
    EXPECT_EQ(box.windowTitle(), "KestrelLib2 Image Editor");
    box.close();
  });
  EXPECT_EQ(boxes().MessageBox("Told.", kBoxExclamation), kAnswerOK);
}

TEST_F(Boxes, ShowTheNormalPointerDuringABusyPhase) {
  bench.platform().FormUtility().SetPointer(kBusyHourglass);
  EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
  whenModalOpens([](QWidget& box) {
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    box.close();
  });
  boxes().MessageBox("Unable to open.", kBoxExclamation, "Open Image");
  EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
  bench.platform().FormUtility().SetPointer(kBusyDefault);
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(Boxes, NameTheProgramAndItsVersion) {
  QStringList texts;
  whenModalOpens([&](QWidget& box) {
    for (const QLabel* label : box.findChildren<QLabel*>()) texts += label->text();
    writeScreenshot(box, "about");
    box.close();
  });
  bench.moorage().click(bench.command("btnHelpAbout"));
  EXPECT_TRUE(texts.contains(QStringLiteral("Version 2.0.0"))) << texts.join(u'|').toStdString();
}

TEST_F(Boxes, InputReturnsTheTextOrNothing) {
  whenModalOpens([](QWidget& box) {
    auto* const edit = box.findChild<QLineEdit*>();
    EXPECT_EQ(edit->text(), "before");
    edit->setText(QStringLiteral("after"));
    dynamic_cast<QDialog&>(box).accept();
  });
  EXPECT_EQ(boxes().InputBox("Name:", "Test", "before"), "after");
  whenModalOpens([](QWidget& box) { dynamic_cast<QDialog&>(box).reject(); });
  EXPECT_EQ(boxes().InputBox("Name:", "Test", "before"), "");
}

TEST_F(Boxes, MissingHelpRaisesAnErrorText) {
  const auto help = bench.platform().CreateHelpViewer();
  help->HelpFile("NoSuchBook.chm");
  try {
    help->ShowTopic("default.html", 0);
    FAIL() << "Nothing was raised.";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), 53);
    EXPECT_EQ(error.Description(), "The help book \"NoSuchBook.chm\" was not found.");
  }
}

TEST_F(Boxes, HelpShowsAPageOfTheFolderNamedLikeTheBook) {
  QTemporaryDir books;
  ASSERT_TRUE(QDir(books.path()).mkpath(QStringLiteral("Book")));
  QFile page(books.filePath(QStringLiteral("Book/default.html")));
  ASSERT_TRUE(page.open(QIODevice::WriteOnly));
  page.write("<html><head><title>First page</title></head><body><h1>Welcome</h1></body></html>");
  page.close();

  qt::QtHelpViewer help(books.path());
  help.HelpFile("Book.chm");
  help.ShowTopic("default.html", 0);
  settle();
  qt::HelpWindow* window = nullptr;
  for (QWidget* const top : QApplication::topLevelWidgets()) {
    if (auto* const found = qobject_cast<qt::HelpWindow*>(top)) window = found;
  }
  ASSERT_NE(window, nullptr);
  EXPECT_TRUE(window->isVisible());
  EXPECT_EQ(window->windowTitle(), "First page");
  EXPECT_TRUE(window->browser().toPlainText().contains(QStringLiteral("Welcome")));
  EXPECT_THROW(help.ShowTopic("missing.html", 0), RuntimeError);
}

TEST(Captions, ShowAFilesNameUnchanged) {
  EditorBench bench;
  modProcessing::SetWindowCaption(bench.form(), {}, "/pictures/a[*]b[*][*].png");
  EXPECT_EQ(bench.window().windowHandle()->title(), "a[*]b[*][*].png - KestrelLib2 Image Editor");
  EXPECT_EQ(bench.form().Caption(), "a[*]b[*][*].png - KestrelLib2 Image Editor");
}

TEST(Captions, ShowControlCharactersOfAFilesNameOnOneLine) {
  EditorBench bench;
  modProcessing::SetWindowCaption(bench.form(), {}, "/pictures/a\nb\t.png");
  EXPECT_EQ(bench.window().windowHandle()->title(), "a\uFFFDb\uFFFD.png - KestrelLib2 Image Editor");
  EXPECT_EQ(bench.form().Caption(), "a\nb\t.png - KestrelLib2 Image Editor") << "the property stays as it is";
}

}  // namespace
}  // namespace kestrel::desktop
