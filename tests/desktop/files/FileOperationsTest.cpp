#include <QAccessible>
#include <QCheckBox>
#include <QGroupBox>
#include <QProgressBar>
#include <filesystem>

#include "../Themes.h"
#include "FilesBench.h"
#include "platform/os/Paths.h"
#include "platform/qt/dialogs/Modal.h"
#include "platform/qt/dialogs/PicturePane.h"
#include "platform/qt/files/ProgressWindow.h"
#include "platform/qt/files/QuestionWindow.h"

namespace kestrel::desktop {
namespace {

using qt::ProgressWindow;
using qt::QuestionWindow;

class FileOperations : public FilesBench {
 protected:
  /// Three files, each of which has a namesake in the other folder.
  void writeClashes() const {
    for (const char* name : {"from/a.png", "from/b.png", "from/c.png"}) write(name, "the new one");
    for (const char* name : {"to/a.png", "to/b.png", "to/c.png"}) write(name, "old");
  }
  const QStringList clashing = {"from/a.png", "from/b.png", "from/c.png"};
};

TEST_F(FileOperations, WithoutFilesDoNothingAndAskNothing) {
  EXPECT_TRUE(copy({}));
  EXPECT_TRUE(move({}));
  EXPECT_TRUE(remove({}, kAllowUndo));
  EXPECT_TRUE(remove({}, 0));
}

TEST_F(FileOperations, AskAboutAClashAndTakeTheAnswerForAllByKeys) {
  writeClashes();
  windows.then([&](QWidget& window) {
    ASSERT_TRUE(qobject_cast<QuestionWindow*>(&window));
    EXPECT_EQ(window.parentWidget(), owner.get());
    EXPECT_EQ(window.windowTitle(), "Copy Files");
    press(window, Qt::Key_A, Qt::AltModifier);
    const auto* const forAll = window.findChild<QCheckBox*>(QStringLiteral("forAll"));
    EXPECT_TRUE(eventually([&] { return forAll->isChecked(); }));
    press(window, Qt::Key_R, Qt::AltModifier);
  });
  EXPECT_TRUE(copy(clashing));
  for (const char* name : {"to/a.png", "to/b.png", "to/c.png"}) EXPECT_EQ(content(name), "the new one");
}

TEST_F(FileOperations, AskAboutEachClashOtherwise) {
  writeClashes();
  windows.then([](QWidget& window) { press(window, Qt::Key_R, Qt::AltModifier); });
  windows.then([](QWidget& window) { press(window, Qt::Key_K, Qt::AltModifier); });
  windows.then([](QWidget& window) {
    EXPECT_FALSE(window.findChild<QCheckBox*>(QStringLiteral("forAll"))->isVisible()) << "the last one";
    press(window, Qt::Key_Return);
  });
  EXPECT_FALSE(move(clashing)) << "one was skipped";
  EXPECT_EQ(entries("to"), "a.png b (2).png b.png c.png");
  EXPECT_EQ(content("to/a.png"), "the new one");
  EXPECT_EQ(content("to/b.png"), "old");
  EXPECT_EQ(content("to/b (2).png"), "the new one");
  EXPECT_EQ(content("to/c.png"), "old") << "Enter loses nothing";
  EXPECT_EQ(entries("from"), "c.png");
}

TEST_F(FileOperations, AskWhetherFoldersAreMergedAndSkipByEnter) {
  for (const char* name : {"from/album/a.png", "to/album/b.png"}) {
    QDir(folder.path()).mkpath(QFileInfo(QLatin1String(name)).path());
    write(name, "content");
  }
  windows.then([](QWidget& window) {
    EXPECT_FALSE(window.findChild<QPushButton*>(QStringLiteral("replace")));
    screenshot(window, "merge");
    press(window, Qt::Key_Return);
  });
  EXPECT_FALSE(move({"from/album/"}));
  EXPECT_EQ(entries("to/album"), "b.png");
  windows.then([](QWidget& window) { press(window, Qt::Key_M, Qt::AltModifier); });
  EXPECT_TRUE(move({"from/album/"}));
  EXPECT_EQ(entries("to/album"), "a.png b.png");
  EXPECT_EQ(entries("from"), "");
}

TEST_F(FileOperations, ShowWhatIsKnownAboutBothFiles) {
  QImage red(300, 200, QImage::Format_RGB32), blue(200, 300, QImage::Format_RGB32);
  red.fill(Qt::red);
  blue.fill(Qt::blue);
  red.save(path("from/a.png"));
  blue.save(path("to/a.png"));
  write("from/b.png", "");
  QFile old(path("to/a.png"));
  ASSERT_TRUE(old.open(QIODevice::ReadWrite));
  old.setFileTime(QDateTime(QDate(2020, 5, 17), QTime(12, 0)), QFileDevice::FileModificationTime);
  old.close();
  windows.then([&](QWidget& window) {
    const auto groups = window.findChildren<QGroupBox*>();
    ASSERT_EQ(groups.size(), 2);
    QStringList sentences;
    for (const QLabel* each : window.findChildren<QLabel*>()) sentences += each->text();
    EXPECT_TRUE(sentences.contains(
        QStringLiteral("There is already a file with this name in \"to\". What do you want to do?")))
        << sentences.join(u'|').toStdString();
    EXPECT_EQ(groups[0]->title(), "Existing");
    EXPECT_EQ(groups[1]->title(), "New");
    const auto texts = [](const QGroupBox& group) {
      QStringList all;
      for (const QLabel* each : group.findChildren<QLabel*>()) all += each->text();
      return all.join(u'|');
    };
    EXPECT_TRUE(
        texts(*groups[0])
            .contains(QLocale().toString(QDateTime(QDate(2020, 5, 17), QTime(12, 0)), QLocale::ShortFormat)))
        << texts(*groups[0]).toStdString();
    EXPECT_TRUE(texts(*groups[1]).contains(QStringLiteral("(newer)"))) << texts(*groups[1]).toStdString();
    for (const QGroupBox* group : groups) {
      const auto* const pane = group->findChild<qt::PicturePane*>();
      EXPECT_TRUE(eventually([&] { return !pane->picture().isNull(); }));
      EXPECT_EQ(pane->picture().pixelColor(5, 5), QColor(group == groups[0] ? Qt::blue : Qt::red));
    }
    screenshot(window, "clash");
    {
      const Theme dark(darkPalette());
      QTest::qWait(20);
      screenshot(window, "clash-dark");
    }
    press(window, Qt::Key_Escape);
  });
  EXPECT_FALSE(copy({"from/a.png", "from/b.png"}));
}

TEST_F(FileOperations, ShowThePicturesOfFilesWhoseNamesAreNoText) {
  const std::string name = "\xFF\xFE.png";
  QImage red(300, 200, QImage::Format_RGB32);
  red.fill(Qt::red);
  red.save(path("from/a.png"));
  namespace fs = std::filesystem;
  const fs::path from = fs::path(path("from").toStdString()) / name;
  fs::rename(path("from/a.png").toStdString(), from);
  fs::copy_file(from, fs::path(path("to").toStdString()) / name);
  windows.then([&](QWidget& window) {
    for (const QGroupBox* group : window.findChildren<QGroupBox*>()) {
      const auto* const pane = group->findChild<qt::PicturePane*>();
      EXPECT_TRUE(eventually([&] { return !pane->picture().isNull(); })) << group->title().toStdString();
    }
    press(window, Qt::Key_Escape);
  });
  const std::string buffer = os::textOf(from) + '\0';
  EXPECT_FALSE(files.CopyFiles(buffer, path("to").toStdString(), 0, qt::handleOf(owner.get())));
}

TEST_F(FileOperations, CallNoFileNewerThatIsOfTheSameSecond) {
  writeClashes();
  const QDateTime noon(QDate(2020, 5, 17), QTime(12, 0));
  for (const auto& [name, milliseconds] : {std::pair("from/a.png", 900), {"to/a.png", 100}}) {
    QFile file(path(name));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(noon.addMSecs(milliseconds), QFileDevice::FileModificationTime));
  }
  windows.then([](QWidget& window) {
    for (const QLabel* each : window.findChildren<QLabel*>())
      EXPECT_FALSE(each->text().contains(QStringLiteral("newer"))) << each->text().toStdString();
    press(window, Qt::Key_Escape);
  });
  EXPECT_FALSE(copy({"from/a.png"}));
}

TEST_F(FileOperations, ReachAllButtonsOfAQuestionByTab) {
  writeClashes();
  windows.then([](QWidget& window) {
    QStringList reached;
    for (int i = 0; i < 5; ++i) {
      reached += window.focusWidget()->objectName();
      press(window, Qt::Key_Tab);
    }
    EXPECT_EQ(reached.front(), "skip");
    reached.sort();
    EXPECT_EQ(reached.join(u' '), "cancel forAll keepBoth replace skip");
    press(window, Qt::Key_K, Qt::AltModifier);
  });
  windows.then([](QWidget& window) { press(window, Qt::Key_K, Qt::AltModifier); });
  windows.then([](QWidget& window) { press(window, Qt::Key_K, Qt::AltModifier); });
  EXPECT_TRUE(copy(clashing));
}

TEST_F(FileOperations, EndWithEscapeAndSayWhatWasNotDone) {
  writeClashes();
  windows.then([](QWidget& window) { press(window, Qt::Key_R, Qt::AltModifier); });
  windows.then([](QWidget& window) { press(window, Qt::Key_Escape); });
  windows.then([&](QWidget& window) {
    EXPECT_EQ(boxText(window), "Copying was canceled. 1 of 3 files was copied. Not copied:\n\n2 files in \"" +
                                   path("from") + "\":\n\"b.png\"\n\"c.png\"");
    EXPECT_EQ(window.parentWidget(), owner.get());
    press(window, Qt::Key_Return);
  });
  EXPECT_FALSE(copy(clashing));
  EXPECT_EQ(content("to/b.png"), "old");
}

TEST_F(FileOperations, EndWithEscapeSilentlyBeforeAnythingWasDone) {
  writeClashes();
  windows.then([](QWidget& window) {
    ASSERT_TRUE(qobject_cast<QuestionWindow*>(&window));
    press(window, Qt::Key_Escape);
  });
  EXPECT_FALSE(copy(clashing));
  EXPECT_EQ(content("to/a.png"), "old");
}

TEST_F(FileOperations, ShowTheirProgressAndCanBeCanceledInTheMiddle) {
  write("from/a.png", "first");
  write("from/b.png", QByteArray(100'000, 'b'));
  for (const bool byEscape : {true, false}) {
    QFile::remove(path("to/a.png"));
    gate().close();
    windows.then([&, byEscape](QWidget& window) {
      auto* const progress = qobject_cast<ProgressWindow*>(&window);
      ASSERT_TRUE(progress);
      EXPECT_EQ(window.parentWidget(), owner.get());
      EXPECT_EQ(window.windowTitle(), "Copy Files");
      EXPECT_EQ(label(window, "fileName"), "Copying \"a.png\"");
      EXPECT_TRUE(label(window, "counts").startsWith(QStringLiteral("0 of 2 files, ")));
      const auto* const bar = window.findChild<QProgressBar*>();
      EXPECT_EQ(bar->value(), 0);
      EXPECT_EQ(bar->accessibleName(), "Progress");
      screenshot(window, "progress");
      {
        const Theme dark(darkPalette());
        QTest::qWait(20);
        screenshot(window, "progress-dark");
      }
      press(window, Qt::Key_Return);
      EXPECT_TRUE(window.isVisible());
      EXPECT_NE(label(window, "fileName"), "Canceling...") << "Enter does not cancel";
      if (byEscape) {
        press(window, Qt::Key_Escape);
      } else {
        window.close();
      }
      EXPECT_EQ(label(window, "fileName"), "Canceling...");
      EXPECT_TRUE(window.isVisible()) << "until the work has ended";
      gate().open();
    });
    EXPECT_FALSE(copy({"from/a.png", "from/b.png"})) << "and there is nothing to report";
    EXPECT_EQ(entries("to"), "") << "no partial file";
    EXPECT_EQ(entries("from"), "a.png b.png");
  }
}

TEST_F(FileOperations, CanBeLeftWhenTheDiskDoesNotAnswer) {
  write("from/a.png", QByteArray(100'000, 'a'));
  gate().close();
  windows.then([](QWidget& window) {
    press(window, Qt::Key_Escape);
    press(window, Qt::Key_Escape);
    EXPECT_TRUE(window.isVisible()) << "it may end at once";
    const auto* const button = window.findChild<QPushButton*>();
    EXPECT_FALSE(button->isEnabled());
    EXPECT_TRUE(eventually([&] { return button->isEnabled(); }));
    EXPECT_EQ(label(window, "fileName"), "The disk does not answer.");
    EXPECT_EQ(button->text(), "&Close");
    screenshot(window, "disk-hangs");
    press(window, Qt::Key_C, Qt::AltModifier);
  });
  EXPECT_FALSE(copy({"from/a.png"}));
  EXPECT_EQ(entries("to"), "") << "no partial file";
  gate().open();
}

TEST_F(FileOperations, CountTheBytesOnlyOfASingleFile) {
  write("from/a.png", QByteArray(100'000, 'a'));
  gate().close();
  windows.then([](QWidget& window) {
    EXPECT_TRUE(eventually([&] { return !label(window, "counts").isEmpty(); }));
    EXPECT_EQ(label(window, "counts"),
              QStringLiteral("%1 of %2")
                  .arg(QLocale().formattedDataSize(0, 1, QLocale::DataSizeSIFormat),
                       QLocale().formattedDataSize(100'000, 1, QLocale::DataSizeSIFormat)));
    gate().open();
  });
  EXPECT_TRUE(copy({"from/a.png"}));
}

TEST_F(FileOperations, AskAboveTheirProgressAndGoOn) {
  write("from/a.png", "first");
  write("from/b.png", "second");
  write("to/b.png", "old");
  gate().close();
  QPointer<QWidget> progress;
  windows.then([&](QWidget& window) {
    progress = &window;
    gate().open();
  });
  windows.then([&](QWidget& window) {
    EXPECT_EQ(window.parentWidget(), progress);
    press(window, Qt::Key_R, Qt::AltModifier);
  });
  EXPECT_TRUE(copy({"from/a.png", "from/b.png"}));
  EXPECT_EQ(content("to/a.png"), "first");
  EXPECT_EQ(content("to/b.png"), "second");
}

TEST_F(FileOperations, EndWithADestroyedOwnerWithoutABox) {
  write("from/a.png", QByteArray(100'000, 'a'));
  for (const bool deleted : {true, false}) {
    QFile::remove(path("to/a.png"));
    gate().close();
    windows.then([&, deleted](QWidget&) {
      if (deleted) {
        owner.reset();
      } else {
        qt::closeWindowsOf(*owner);
      }
      gate().open();
    });
    const WindowHandle handle = qt::handleOf(owner.get());
    EXPECT_FALSE(files.CopyFiles(buffer({"from/a.png"}), path("to").toStdString(), 0, handle));
    EXPECT_FALSE(calls.Any());
    const QString there = entries("to");
    EXPECT_TRUE(there.isEmpty() || content("to/a.png").size() == 100'000) << "whole or not at all";
    EXPECT_FALSE(there.contains(QStringLiteral(".kestrel-")));
    if (!owner) {
      owner = std::make_unique<QWidget>();
      owner->show();
    }
  }
}

TEST_F(FileOperations, EndWithAnOwnerThatIsDestroyedDuringAQuestion) {
  writeClashes();
  for (const bool deleted : {false, true}) {
    windows.then([&, deleted](QWidget&) {
      if (deleted) {
        owner.reset();
      } else {
        qt::closeWindowsOf(*owner);
      }
    });
    const WindowHandle handle = qt::handleOf(owner.get());
    EXPECT_FALSE(files.MoveFiles(buffer(clashing), path("to").toStdString(), 0, handle));
    EXPECT_EQ(content("to/a.png"), "old");
    EXPECT_EQ(content("from/a.png"), "the new one");
  }
}

TEST_F(FileOperations, EndWithAnOwnerThatIsDestroyedDuringAQuestionAboveTheProgress) {
  write("from/a.png", "first");
  write("from/b.png", "second");
  write("to/b.png", "old");
  gate().close();
  windows.then([](QWidget&) { gate().open(); });
  windows.then([&](QWidget&) { owner.reset(); });
  const WindowHandle handle = qt::handleOf(owner.get());
  EXPECT_FALSE(files.CopyFiles(buffer({"from/a.png", "from/b.png"}), path("to").toStdString(), 0, handle));
  EXPECT_EQ(content("to/b.png"), "old");
}

TEST_F(FileOperations, AskBeforeFilesGoToTheTrash) {
  write("from/a.png", "first");
  write("from/b.png", "second");
  write("from/c.png", "third");
  windows.then([](QWidget& window) {
    EXPECT_EQ(window.windowTitle(), "Move to Trash");
    EXPECT_EQ(boxText(window), "Are you sure you want to move these 3 files to the trash?");
    press(window, Qt::Key_Escape);
  });
  EXPECT_FALSE(remove(clashing, kAllowUndo));
  EXPECT_EQ(entries("from"), "a.png b.png c.png");

  windows.then([](QWidget& window) { press(window, Qt::Key_Return); });
  EXPECT_TRUE(remove(clashing, kAllowUndo));
  EXPECT_EQ(entries("from"), "");
  EXPECT_EQ(content("data/Trash/files/b.png"), "second");
}

TEST_F(FileOperations, AskBeforeFilesAreDeletedForGoodAndDoNothingOnEnter) {
  write("from/a.png", "first");
  windows.then([](QWidget& window) {
    EXPECT_EQ(boxText(window), "Are you sure you want to delete \"a.png\" for good?");
    press(window, Qt::Key_Return);
  });
  EXPECT_FALSE(remove({"from/a.png"}, 0));
  EXPECT_EQ(entries("from"), "a.png");

  windows.then([](QWidget& window) { press(window, Qt::Key_Y, Qt::AltModifier); });
  EXPECT_TRUE(remove({"from/a.png"}, 0));
  EXPECT_EQ(entries("from"), "");
}

}  // namespace
}  // namespace kestrel::desktop
