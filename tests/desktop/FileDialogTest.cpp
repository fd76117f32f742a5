#include <gtest/gtest.h>

#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFile>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

#include "EditorBench.h"
#include "Themes.h"
#include "imaging/contract/Formats.h"
#include "platform/qt/dialogs/FileDialogWindow.h"
#include "platform/qt/dialogs/PicturePane.h"
#include "platform/qt/dialogs/QtImgXDialog.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

// Long enough for a busy machine; only a failing test waits this long.
constexpr qint64 kPatienceMilliseconds = 30'000;

template <typename Condition>
bool eventually(Condition condition) {
  QElapsedTimer clock;
  clock.start();
  while (!condition() && clock.elapsed() < kPatienceMilliseconds) settle();
  return condition();
}

class FileDialogDesktop : public testing::Test {
 protected:
  FileDialogDesktop() {
    paint("red.png", Qt::red);
    paint("blue.JPG", Qt::blue);
    paint("green.jpeg", Qt::green);
    paint("gray.TIFF", Qt::gray);
    write("broken.png", "This is no picture.");
    write("notes.txt", "Neither is this.");
  }

  void paint(const char* name, const QColor& color) const {
    QImage picture(300, 200, QImage::Format_RGB32);
    picture.fill(color);
    // The engine writes the formats that the toolkit may not know.
    const QString file = path(name);
    if (!picture.save(file, file.endsWith(QStringLiteral("png")) ? "PNG" : "JPG")) picture.save(file, "PNG");
  }
  void write(const char* name, const QByteArray& content) const {
    QFile file(path(name));
    if (file.open(QIODevice::WriteOnly)) file.write(content);
  }
  QString path(const char* name) const { return folder.filePath(QLatin1String(name)); }

  /// Shows the open dialog in the folder and does `work` in it.
  bool open(const std::function<void(QWidget& dialog)>& work) {
    ImgXDialog& dialog = *bench.editor().BrowseDialog();
    dialog.Filter(kOpenFilter);
    dialog.Filename(path("none").toStdString());
    whenModalOpens([&](QWidget& window) {
      eventually([&] { return shownNames(window).size() > 2; });
      work(window);
      if (window.isVisible()) dynamic_cast<QFileDialog&>(window).reject();
    });
    return dialog.ShowOpen();
  }

  static QTreeView& list(const QWidget& dialog) {
    return *dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
  }
  static QStringList shownNames(const QWidget& dialog) {
    const QTreeView& files = list(dialog);
    QStringList names;
    for (int row = 0; row < files.model()->rowCount(files.rootIndex()); ++row) {
      names += files.model()->index(row, 0, files.rootIndex()).data().toString();
    }
    return names;
  }
  static qt::PicturePane& pane(const QWidget& dialog) { return *dialog.findChild<qt::PicturePane*>(); }

  /// Types into the widget that has the focus, the name.
  static void type(QWidget& dialog, const QString& text) {
    auto* const name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    name->selectAll();
    for (const QChar character : text) QTest::keyClick(dialog.windowHandle(), character.toLatin1());
    settle();
  }

  QTemporaryDir folder;
  EditorBench bench;
};

TEST_F(FileDialogDesktop, ShowsEachSpellingOfAnExtensionWithTheFirstFilter) {
  QStringList shown;
  QString description;
  open([&](QWidget& dialog) {
    eventually([&] { return shownNames(dialog).size() >= 5; });
    shown = shownNames(dialog);
    description = dynamic_cast<QFileDialog&>(dialog).selectedNameFilter();
  });
  shown.sort();
  EXPECT_EQ(shown.join(u' '), "blue.JPG broken.png gray.TIFF green.jpeg red.png");
  EXPECT_TRUE(description.startsWith(QStringLiteral(
      "All Supported Picture (*.bmp;*.jpg;*.png;*.tif;*.pcx;*.psd;*.tga;*.wbp;*.wmf;*.emf;*.tla)")));
}

TEST(FilterPatterns, KnowTheOtherExtensionsOfAFormat) {
  const QStringList filters = qt::nameFilters("Pictures (*.jpg)|*.jpg;*.TIF|Own (*.own)|*.own|All (*.*)|*.*");
  EXPECT_EQ(filters[0], "Pictures (*.jpg) (*.jpg *.jpeg *.jpe *.jfif *.TIF *.tif *.tiff)");
  EXPECT_EQ(filters[1], "Own (*.own) (*.own)");
  EXPECT_EQ(filters[2], "All (*.*) (*)");
}

TEST_F(FileDialogDesktop, HasColumnsAsWideAsTheirTexts) {
  open([&](QWidget& dialog) {
    QTreeView& files = list(dialog);
    for (int column = 1; column < files.model()->columnCount(); ++column) {
      if (files.isColumnHidden(column)) continue;
      const int needed = static_cast<QAbstractItemView&>(files).sizeHintForColumn(column);
      EXPECT_GT(needed, 0);
      EXPECT_GE(files.header()->sectionSize(column), needed)
          << files.model()->headerData(column, Qt::Horizontal).toString().toStdString();
    }
    EXPECT_FALSE(files.isColumnHidden(1));
    EXPECT_FALSE(files.isColumnHidden(3));
    // The test's screen is narrower than any of a desktop if everything on it is twice as large.
    if (dialog.width() < 600) return;
    EXPECT_LE(files.header()->length(), files.viewport()->width() + 1) << "no scrolling sideways";
    EXPECT_GT(files.header()->sectionSize(0), files.header()->sectionSize(1));
  });
}

TEST_F(FileDialogDesktop, PreviewsThePictureOfTheSelection) {
  open([&](QWidget& dialog) {
    qt::PicturePane& preview = pane(dialog);
    EXPECT_TRUE(preview.isVisible());
    EXPECT_GE(preview.width(), 100);
    EXPECT_TRUE(preview.picture().isNull());
    type(dialog, QStringLiteral("red.png"));
    ASSERT_TRUE(eventually([&] { return !preview.picture().isNull(); }));
    EXPECT_EQ(preview.picture().pixelColor(5, 5), QColor(Qt::red));
    // As large as the pane, which is narrower on a small screen.
    EXPECT_LE(preview.picture().width(), qRound(200 * preview.devicePixelRatioF()));
    EXPECT_GE(preview.picture().width(), qRound(100 * preview.devicePixelRatioF()));
    writeScreenshot(dialog, "open-dialog-preview");
    type(dialog, QStringLiteral("blue.JPG"));
    // The toolkit selects the file of a typed name in its own time.
    ASSERT_TRUE(eventually(
        [&] { return !preview.picture().isNull() && preview.picture().pixelColor(5, 5).blue() > 240; }));
    EXPECT_LT(preview.picture().pixelColor(5, 5).red(), 20);
    const QImage grabbed = preview.grab().toImage();
    EXPECT_GT(grabbed.pixelColor(grabbed.rect().center()).blue(), 240);
    {
      const Theme dark(darkPalette());
      settle();
      writeScreenshot(dialog, "open-dialog-preview-dark");
    }
  });
}

TEST_F(FileDialogDesktop, SaysThatAFileHasNoPreview) {
  open([&](QWidget& dialog) {
    qt::PicturePane& preview = pane(dialog);
    type(dialog, QStringLiteral("red.png"));
    ASSERT_TRUE(eventually([&] { return !preview.picture().isNull(); }));
    type(dialog, QStringLiteral("broken.png"));
    EXPECT_TRUE(eventually([&] { return !preview.accessibleDescription().isEmpty(); }));
    EXPECT_TRUE(preview.picture().isNull());
    EXPECT_EQ(preview.accessibleDescription(), "There is no preview of this file.");
    list(dialog).clearSelection();
    EXPECT_TRUE(eventually([&] { return preview.accessibleDescription().isEmpty(); }));
  });
}

TEST_F(FileDialogDesktop, ShowsOnlyThePreviewOfTheLastSelection) {
  open([&](QWidget& dialog) {
    qt::PicturePane& preview = pane(dialog);
    for (int round = 0; round < 5; ++round) {
      preview.showFile(path("red.png").toStdString());
      preview.showFile(path("green.jpeg").toStdString());
      preview.showFile(path("blue.JPG").toStdString());
      ASSERT_TRUE(eventually([&] { return !preview.picture().isNull(); }));
      EXPECT_GT(preview.picture().pixelColor(5, 5).blue(), 240);
    }
    preview.showFile(path("red.png").toStdString());
    preview.showFile({});
    for (int round = 0; round < 20; ++round) settle();
    EXPECT_TRUE(preview.picture().isNull()) << "the canceled one does not appear later";
  });
}

TEST_F(FileDialogDesktop, UnderstandsQuotationMarksAroundAName) {
  const QString absolute = path("green.jpeg");
  for (const QString& typed : {QStringLiteral("\"red.png\""), QStringLiteral("'red.png'"),
                               u'"' + absolute + u'"', u'\'' + absolute + u'\''}) {
    QString chosen;
    const bool accepted = open([&](QWidget& dialog) {
      type(dialog, typed);
      auto* const button = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open);
      EXPECT_TRUE(eventually([&] { return button->isEnabled(); })) << typed.toStdString();
      QMetaObject::invokeMethod(&dialog, "accept");
      // A message about a missing file would have come up by now.
      EXPECT_FALSE(dialog.isVisible()) << typed.toStdString();
    });
    EXPECT_TRUE(accepted) << typed.toStdString();
    const QString name = QString::fromStdString(bench.editor().BrowseDialog()->Filename());
    EXPECT_EQ(name, typed.contains(absolute) ? absolute : path("red.png")) << typed.toStdString();
  }
}

TEST_F(FileDialogDesktop, TakesTheQuotationMarksOfAnExistingName) {
  paint("odd.png", Qt::yellow);
  ASSERT_TRUE(QFile::rename(path("odd.png"), path("'odd.png'")));
  const bool accepted = open([&](QWidget& dialog) {
    type(dialog, QStringLiteral("'odd.png'"));
    QMetaObject::invokeMethod(&dialog, "accept");
  });
  EXPECT_TRUE(accepted);
  EXPECT_EQ(QString::fromStdString(bench.editor().BrowseDialog()->Filename()), path("'odd.png'"));
}

TEST_F(FileDialogDesktop, SavesUnderAQuotedName) {
  bench.showPicture(noise(40, 30));
  whenModalOpens([&](QWidget& dialog) {
    type(dialog, u'"' + path("new.bmp") + u'"');
    QMetaObject::invokeMethod(&dialog, "accept");
  });
  EXPECT_TRUE(bench.editor().SaveImageAs());
  EXPECT_TRUE(QFile::exists(path("new.bmp")));
}

TEST_F(FileDialogDesktop, IsLabeledByWhatItDoes) {
  const auto label = [](const QWidget& dialog) {
    return dialog.findChild<QLabel*>(QStringLiteral("lookInLabel"))->text();
  };
  open([&](QWidget& dialog) { EXPECT_EQ(label(dialog), "Look in:"); });
  bench.showPicture(noise(40, 30));
  whenModalOpens([&](QWidget& dialog) {
    EXPECT_EQ(label(dialog), "Save in:");
    settle();
    writeScreenshot(dialog, "save-dialog-preview");
    dynamic_cast<QFileDialog&>(dialog).reject();
  });
  bench.editor().SaveImageAs();
}

TEST_F(FileDialogDesktop, StartsInAFolderAtTheFirstTime) {
  const auto dialog = bench.platform().CreateImgXDialog();
  QString start;
  whenModalOpens([&](QWidget& window) {
    start = list(window).rootIndex().data(QFileSystemModel::FilePathRole).toString();
    dynamic_cast<QFileDialog&>(window).reject();
  });
  dialog->ShowOpen();
  EXPECT_FALSE(start.isEmpty()) << "not in the list of drives";
}

TEST_F(FileDialogDesktop, StartsInTheLastFolder) {
  open([&](QWidget& dialog) {
    type(dialog, QStringLiteral("red.png"));
    QMetaObject::invokeMethod(&dialog, "accept");
  });
  RegistryStore& store = bench.platform().RegistryStore();
  const std::string key = modProcessing::WindowPositions().RegistryKey() + "\\FileDialog";
  EXPECT_EQ(store.ReadValue(HKEY_CURRENT_USER, key, "Folder").ToString(), folder.path().toStdString());

  // Another dialog of the program, as after its next start
  const auto next = bench.platform().CreateImgXDialog();
  const auto startOf = [&] {
    QString start;
    whenModalOpens([&](QWidget& dialog) {
      start = dynamic_cast<QFileDialog&>(dialog).directory().absolutePath();
      dynamic_cast<QFileDialog&>(dialog).reject();
    });
    next->ShowOpen();
    return start;
  };
  EXPECT_EQ(startOf(), folder.path());

  // A canceled dialog is forgotten, and so is a folder that has gone.
  store.WriteValue(HKEY_CURRENT_USER, key, "Folder", folder.filePath(QStringLiteral("gone")).toStdString(),
                   kStoreString);
  EXPECT_NE(startOf(), folder.filePath(QStringLiteral("gone")));
  EXPECT_EQ(store.ReadValue(HKEY_CURRENT_USER, key, "Folder").ToString(),
            folder.filePath(QStringLiteral("gone")).toStdString());
}

}  // namespace
}  // namespace kestrel::desktop
