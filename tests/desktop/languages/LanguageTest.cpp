// The language of an open editor.

#include <gtest/gtest.h>

#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QToolBar>
#include <QToolButton>

#include "../EditorBench.h"
#include "UsedLanguage.h"
#include "imaging/contract/UserInterface.h"
#include "platform/qt/core/SvgIcon.h"

namespace kestrel::desktop {
namespace {

class Language : public testing::Test {
 protected:
  QMainWindow& suite() { return *bench.window().findChild<qt::MoorageWindow*>(); }
  template <typename T>
  T& part(const char* name) {
    return *bench.window().findChild<T*>(QLatin1String(name));
  }
  QString menuText(const char* command) {
    return bench.moorage().actions().actionOf(bench.command(command)).text();
  }

  const UsedLanguage language{"en"};
  EditorBench bench;
};

TEST_F(Language, OfMenusBarsAndWindowsChangesWhileTheyAreOpen) {
  ASSERT_EQ(menuText("mnuFile"), "&File");
  QLabel* red = nullptr;
  for (QLabel* const label : part<QDockWidget>("dkwMaterials").findChildren<QLabel*>()) {
    if (label->text() == "Red:") red = label;
  }
  ASSERT_NE(red, nullptr);
  UsedLanguage::use("de_AT");
  EXPECT_EQ(qt::language(), "de");
  EXPECT_EQ(menuText("mnuFile"), QStringLiteral("&Datei"));
  EXPECT_EQ(menuText("btnFileOpen").section(u'\t', 0, 0), QStringLiteral("&Öffnen..."));
  EXPECT_EQ(part<QToolBar>("Tools").windowTitle(), QStringLiteral("Werkzeuge"));
  EXPECT_EQ(part<QToolButton>("btnEditUndo").accessibleName(), QStringLiteral("Rückgängig"));
  EXPECT_EQ(part<QToolButton>("btnEditUndo").accessibleDescription(),
            QStringLiteral("Macht die letzte Aktion rückgängig"));
  EXPECT_EQ(part<QToolButton>("barMenuButton").toolTip(),
            QStringLiteral("Symbolleisten und Fenster (Alt+S)"));
  EXPECT_EQ(part<QWidget>("pnlZoom").toolTip(), QStringLiteral("Aktuelle Zoomstufe"));
  EXPECT_EQ(part<QDockWidget>("dkwMaterials").windowTitle(), QStringLiteral("Material"));
  EXPECT_EQ(bench.canvas().accessibleName(), QStringLiteral("Bild"));
  EXPECT_EQ(red->text(), QStringLiteral("Rot:"));
  UsedLanguage::use("en");
  EXPECT_EQ(menuText("mnuFile"), "&File");
  EXPECT_EQ(part<QDockWidget>("dkwMaterials").windowTitle(), "Materials");
  EXPECT_EQ(red->text(), "Red:");
}

TEST_F(Language, OfTextsThatTheLogicHasSetChangesToo) {
  bench.view().Notice("Open a picture.", "Save &As...");
  bench.moorage().StatusPanel("pnlStatus").Caption("Saving image...");
  UsedLanguage::use("es");
  EXPECT_EQ(part<QWidget>("notice").accessibleName(), QStringLiteral("Abra una imagen."));
  EXPECT_EQ(part<QPushButton>("noticeButton").text(), QStringLiteral("Guardar como..."));
  EXPECT_EQ(part<QWidget>("pnlStatus").findChildren<QLabel*>().last()->text(),
            QStringLiteral("Guardando imagen..."));
  EXPECT_EQ(bench.view().Notice(), "Open a picture.") << "hosts read English";
  EXPECT_EQ(bench.moorage().StatusPanel("pnlStatus").Caption(), "Saving image...");
}

TEST_F(Language, OfAnOpenDialogChangesButNotWhatItsControlsSay) {
  bench.showPicture(noise(60, 40));
  bool opened = false;
  whenModalOpens([&](QWidget& dialog) {
    opened = true;
    const auto label = [&](const char* name) {
      return dialog.findChild<QLabel*>(QLatin1String(name))->text();
    };
    const QString width = dialog.findChild<QLineEdit*>(QStringLiteral("txtField_0"))->text();
    const auto unit = [&] { return label("lblUnit_0"); };
    EXPECT_TRUE(unit() == "percent" || unit() == "pixels");
    UsedLanguage::use("ja");
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("サイズ変更"));
    EXPECT_TRUE(unit() == QStringLiteral("パーセント") || unit() == QStringLiteral("ピクセル"))
        << qPrintable(unit());
    EXPECT_EQ(dialog.findChild<QLineEdit*>(QStringLiteral("txtField_0"))->text(), width);
    dialog.close();
  });
  bench.editor().ShowResizeDialog();
  EXPECT_TRUE(opened);
}

TEST_F(Language, WrittenFromRightToLeftMirrorsBarsDocksAndArrowsButNoPicture) {
  const auto areaOfTools = [&] { return suite().toolBarArea(&part<QToolBar>("Tools")); };
  const auto areaOfMaterials = [&] { return suite().dockWidgetArea(&part<QDockWidget>("dkwMaterials")); };
  ASSERT_EQ(areaOfTools(), Qt::LeftToolBarArea);
  ASSERT_EQ(areaOfMaterials(), Qt::RightDockWidgetArea);
  const QImage arrow = qt::svgIcon("Undo").pixmap(QSize(24, 24), 1.0).toImage();
  UsedLanguage::use("ar");
  EXPECT_EQ(bench.window().layoutDirection(), Qt::RightToLeft);
  EXPECT_EQ(areaOfTools(), Qt::RightToolBarArea);
  EXPECT_EQ(areaOfMaterials(), Qt::LeftDockWidgetArea);
  EXPECT_TRUE(part<QToolBar>("Tools").isVisible());
  EXPECT_TRUE(part<QDockWidget>("dkwMaterials").isVisible());
  EXPECT_EQ(qt::svgIcon("Undo").pixmap(QSize(24, 24), 1.0).toImage(), arrow.mirrored(true, false));
  EXPECT_EQ(bench.canvas().layoutDirection(), Qt::LeftToRight);
  UsedLanguage::use("de");
  EXPECT_EQ(bench.window().layoutDirection(), Qt::LeftToRight);
  EXPECT_EQ(areaOfTools(), Qt::LeftToolBarArea);
  EXPECT_EQ(areaOfMaterials(), Qt::RightDockWidgetArea);
}

TEST_F(Language, WrittenFromRightToLeftPlacesTheBarsOfANewEditor) {
  UsedLanguage::use("ar");
  EditorBench another;
  auto& suite = *another.window().findChild<qt::MoorageWindow*>();
  EXPECT_EQ(suite.toolBarArea(another.window().findChild<QToolBar*>(QStringLiteral("Tools"))),
            Qt::RightToolBarArea);
  EXPECT_EQ(suite.dockWidgetArea(another.window().findChild<QDockWidget*>(QStringLiteral("dkwZoom"))),
            Qt::LeftDockWidgetArea);
}

TEST_F(Language, OfBoxesIsThatOfTheirSentences) {
  UsedLanguage::use("de");
  QString title, text;
  whenModalOpens([&](QWidget& box) {
    title = box.windowTitle();
    text = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))->text();
    box.close();
  });
  bench.platform().UserInterface().MessageBox(
      "Changes have been made file \"Open.png\".\r\rDo you want to save these changes?", kBoxYesNoCancel,
      "Save Changes");
  EXPECT_EQ(title, QStringLiteral("Änderungen speichern"));
  EXPECT_EQ(text, QStringLiteral(
                      "Die Datei „Open.png“ wurde geändert.\n\nMöchten Sie diese Änderungen speichern?"));
}

}  // namespace
}  // namespace kestrel::desktop
