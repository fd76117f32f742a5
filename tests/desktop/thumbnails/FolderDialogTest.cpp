#include "platform/qt/dialogs/FolderDialog.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include "ThumbnailBench.h"

namespace kestrel::desktop {
namespace {

class FolderQuestion : public testing::Test {
 protected:
  FolderQuestion() { QDir(root()).mkpath(QStringLiteral("inner/target")); }

  QString root() const { return QString::fromStdString(folder.path()); }

  /// Asks, and does `work` in the dialog.
  std::string ask(const std::string& start, const std::function<void(qt::FolderDialog&)>& work) {
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
      auto* const dialog = dynamic_cast<qt::FolderDialog*>(QApplication::activeModalWidget());
      if (!dialog || !dialog->isVisible()) return;
      watch.stop();
      work(*dialog);
    });
    watch.start(5);
    return bench.view().BrowseForFolder(
        "Please select the folder to copy the selected file(s) to:", "Copy To", start);
  }
  static void type(qt::FolderDialog& dialog, const QString& text) {
    auto* const name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    name->setText(text);
  }

  PictureFolder folder;
  ThumbnailBench bench;
};

TEST_F(FolderQuestion, HasPromptTitleAndStart) {
  QString title, prompt, start;
  bool fits = false;
  ask(folder.path() + "/inner", [&](qt::FolderDialog& dialog) {
    title = dialog.windowTitle();
    const auto* const label = dialog.findChild<QLabel*>(QStringLiteral("prompt"));
    prompt = label->text();
    fits = label->isVisible() && label->geometry().bottom() < dialog.height() / 4;
    start = dialog.directory().absolutePath();
    dialog.grab().save(QStringLiteral(KESTREL_SCREENSHOTS) + QStringLiteral("/folder-dialog.png"));
    dialog.reject();
  });
  EXPECT_EQ(title, "Copy To");
  EXPECT_EQ(prompt, "Please select the folder to copy the selected file(s) to:");
  EXPECT_TRUE(fits) << "the prompt is above everything else";
  EXPECT_EQ(QDir(start), QDir(root() + QStringLiteral("/inner")));
}

TEST_F(FolderQuestion, ListsFoldersWithoutSizeAndType) {
  QStringList columns;
  ask(folder.path(), [&](qt::FolderDialog& dialog) {
    const auto* const list = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
    for (int column = 0; column < list->model()->columnCount(); ++column) {
      if (list->isColumnHidden(column)) continue;
      columns += list->model()->headerData(column, Qt::Horizontal).toString();
    }
    dialog.reject();
  });
  EXPECT_EQ(columns, (QStringList{QStringLiteral("Name"), QStringLiteral("Date Modified")}));
}

TEST_F(FolderQuestion, LeavesTheColumnsOfOtherDialogsAlone) {
  ask(folder.path(), [](qt::FolderDialog& dialog) { dialog.reject(); });
  QFileDialog other;
  other.setOption(QFileDialog::DontUseNativeDialog);
  const auto* const list = other.findChild<QTreeView*>(QStringLiteral("treeView"));
  ASSERT_NE(list, nullptr);
  for (int column = 0; column < list->model()->columnCount(); ++column) {
    EXPECT_FALSE(list->isColumnHidden(column)) << column;
  }
}

TEST_F(FolderQuestion, ReturnsTheChosenFolder) {
  const std::string chosen = ask(folder.path() + "/inner", [&](qt::FolderDialog& dialog) {
    type(dialog, QStringLiteral("target"));
    QMetaObject::invokeMethod(&dialog, "accept");
  });
  EXPECT_EQ(chosen, folder.path() + "/inner/target");
}

TEST_F(FolderQuestion, ReturnsNothingWhenCanceled) {
  EXPECT_EQ(ask(folder.path(), [](qt::FolderDialog& dialog) { dialog.reject(); }), "");
}

TEST_F(FolderQuestion, WithoutAStartBeginsAtTheShownFolderThenAtTheLastChoice) {
  folder.addMany(1);
  bench.open(folder);
  QString start;
  const std::string chosen = ask("", [&](qt::FolderDialog& dialog) {
    start = dialog.directory().absolutePath();
    type(dialog, QStringLiteral("inner"));
    QMetaObject::invokeMethod(&dialog, "accept");
  });
  EXPECT_EQ(QDir(start), QDir(root()));
  EXPECT_EQ(chosen, folder.path() + "/inner");
  ask("", [&](qt::FolderDialog& dialog) {
    start = dialog.directory().absolutePath();
    dialog.reject();
  });
  EXPECT_EQ(QDir(start), QDir(root() + QStringLiteral("/inner")));
}

}  // namespace
}  // namespace kestrel::desktop
