#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QPointer>
#include <QTemporaryDir>

#include "../EditorBench.h"
#include "DialogLooks.h"
#include "DialogUser.h"
#include "platform/qt/dialogs/FileDialogWindow.h"

namespace kestrel::desktop {
namespace {

class ExportDialog : public testing::Test {
 protected:
  void SetUp() override { bench.showPicture(noise(60, 40)); }
  bool show(const std::function<void(DialogUser&)>& use) {
    bool written = false;
    useDialog([&] { written = bench.editor().ShowExportDialog(); }, use);
    return written;
  }
  std::string file(const char* name) { return folder.filePath(QLatin1String(name)).toStdString(); }
  /// The content's format, as another reader recognizes it.
  static QByteArray formatOf(const std::string& file) {
    QImageReader reader(QString::fromStdString(file));
    reader.setDecideFormatFromContent(true);
    return reader.format();
  }

  EditorBench bench;
  QTemporaryDir folder;
};

TEST_F(ExportDialog, ExportsByKeysAloneAndStaysOpen) {
  EXPECT_TRUE(show([this](DialogUser& user) {
    EXPECT_EQ(user.focus(), "txtField");
    user.type(file("a.bmp").c_str());
    user.press(Qt::Key_Return);
    EXPECT_TRUE(user.isOpen());
    EXPECT_EQ(formatOf(file("a.bmp")), "bmp");
    user.press(Qt::Key_O, Qt::AltModifier);
    EXPECT_EQ(user.focus(), "cboFormat");
    user.press(Qt::Key_Down);
    user.press(Qt::Key_F, Qt::AltModifier);
    EXPECT_EQ(user.focus(), "txtField");
    user.type(file("b.jpg").c_str());
    EXPECT_EQ(user.text("txtField"), file("b.jpg")) << "instead of the selected text";
    user.press(Qt::Key_Return);
    EXPECT_TRUE(user.isOpen());
    user.press(Qt::Key_Escape);
    EXPECT_FALSE(user.isOpen());
  }));
  EXPECT_EQ(formatOf(file("b.jpg")), "png") << "the number of the entry JPG is that of PNG";
}

TEST_F(ExportDialog, ExportsByTheMouseAlone) {
  EXPECT_TRUE(show([this](DialogUser& user) {
    whenModalOpens([this](QWidget& window) {
      auto& files = dynamic_cast<qt::FileDialogWindow&>(window);
      files.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
          ->setText(QString::fromStdString(file("c.png")));
      files.accept();
    });
    user.click("cmdBrowse");
    EXPECT_EQ(user.text("txtField"), file("c.png"));
    EXPECT_EQ(user.part<QComboBox>("cboFormat").currentIndex(), 2);
    user.choose("cboFormat", 0);
    user.click("chkThumbnail");
    user.click("cmdAction_0");
    EXPECT_TRUE(user.isOpen());
    user.click("cmdAction_1");
    EXPECT_FALSE(user.isOpen());
  }));
  EXPECT_EQ(formatOf(file("c.png")), "bmp");
  EXPECT_LT(QImage(QString::fromStdString(file("c.png"))).width(), 60) << "a thumbnail";
}

TEST_F(ExportDialog, TheFileDialogBelongsToTheExportDialog) {
  show([](DialogUser& user) {
    user.press(Qt::Key_Tab);
    EXPECT_EQ(user.focus(), "cmdBrowse");
    whenModalOpens([&user](QWidget& window) {
      EXPECT_NE(dynamic_cast<qt::FileDialogWindow*>(&window), nullptr);
      EXPECT_EQ(window.parentWidget(), &user.window());
      EXPECT_TRUE(user.isOpen());
      window.close();
    });
    user.press(Qt::Key_Space);
    EXPECT_TRUE(user.isOpen());
    // As a window manager does; the platform of the tests has none.
    DialogUser again(user.window());
    EXPECT_EQ(again.focus(), "cmdBrowse");
    again.press(Qt::Key_Escape);
    EXPECT_FALSE(user.isOpen());
  });
}

TEST_F(ExportDialog, AMenuOfTheNameLeavesItsSelection) {
  show([](DialogUser& user) {
    auto& name = user.part<QLineEdit>("txtField");
    user.type("lake.bmp");
    name.setSelection(2, 3);
    QContextMenuEvent asking(QContextMenuEvent::Keyboard, name.rect().center(),
                             name.mapToGlobal(name.rect().center()));
    QApplication::sendEvent(user.window().focusWidget(), &asking);
    const QPointer<QWidget> menu = QApplication::activePopupWidget();
    ASSERT_TRUE(menu);
    settle();
    menu->close();
    settle();
    EXPECT_EQ(user.focus(), "txtField");
    EXPECT_EQ(name.selectedText(), "ke.") << "not the whole text";
  });
}

TEST_F(ExportDialog, AnEmptyNameIsRefusedAndTheNameGetsTheFocus) {
  EXPECT_FALSE(show([](DialogUser& user) {
    user.press(Qt::Key_Tab);
    user.press(Qt::Key_Tab);
    EXPECT_EQ(user.focus(), "cboFormat");
    expectBox("Export", "Please enter the export filename.", [&] { user.press(Qt::Key_Return); });
    EXPECT_TRUE(user.isOpen());
    EXPECT_EQ(user.focus(), "txtField");
  }));
}

TEST_F(ExportDialog, AFolderThatIsMissingIsReportedWithTheEnginesText) {
  const std::string name = file("nowhere/a.bmp");
  EXPECT_FALSE(show([&](DialogUser& user) {
    user.type(name.c_str());
    expectBox("Export",
              "Unable to export image \"" + name + "\" due to error \"The file \"" + name +
                  "\" cannot be written: the folder \"" + file("nowhere") + "\" does not exist.\".",
              [&] { user.press(Qt::Key_Return); });
    EXPECT_TRUE(user.isOpen());
  }));
  EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

TEST_F(ExportDialog, AReturnInTheListOrOnCancelDoesWhatItShows) {
  EXPECT_FALSE(show([](DialogUser& user) {
    user.part<QWidget>("cmdAction_1").setFocus();
    user.press(Qt::Key_Return);
    EXPECT_FALSE(user.isOpen());
  }));
}

TEST_F(ExportDialog, NamesItsControlsAndSharesNoAccessKey) {
  show([](DialogUser& user) {
    expectAccessKeys(user.window());
    expectAccessibleNames(user.window());
    EXPECT_EQ(user.tabOrder(), QStringList({"txtField", "cmdBrowse", "cboFormat", "chkThumbnail",
                                            "cmdAction_0", "cmdAction_1"}));
  });
}

TEST_F(ExportDialog, LooksGood) {
  expectGoodLooks(
      "export", [this] { bench.editor().ShowExportDialog(); },
      [](QWidget& window) {
        window.findChild<QLineEdit*>(QStringLiteral("txtField"))->setText(QStringLiteral("lake.bmp"));
      });
}

}  // namespace
}  // namespace kestrel::desktop
