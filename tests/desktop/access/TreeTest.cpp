// What assistive technology sees of an editor in a host.

#include <gmock/gmock.h>

#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QStringList>
#include <QToolBar>
#include <QToolButton>
#include <array>
#include <stdexcept>

#include "AccessHost.h"
#include "platform/qt/controls/ColorPickerWidget.h"
#include "platform/qt/controls/PlacementButton.h"

namespace kestrel::desktop {
namespace {

constexpr std::array kTools = {"btnDrawZoom",      "btnDrawPan",     "btnDrawSelect",   "btnDrawLine",
                               "btnDrawRectangle", "btnDrawEllipse", "btnDrawFreehand", "btnDrawPicker"};

class AccessTree : public AccessHost {
 protected:
  QAccessibleInterface& tool(const char* name) { return face(part<QToolButton>(name)); }

  QStringList checkedTools() {
    QStringList checked;
    for (const char* name : kTools) {
      if (tool(name).state().checked) checked += QLatin1String(name);
    }
    return checked;
  }

  /// The names of the entries of a closed menu, without separators and hidden ones.
  static QStringList entries(QMenu& menu) {
    EXPECT_FALSE(menu.isVisible());
    QStringList names;
    QAccessibleInterface& list = face(menu);
    for (int i = 0; i < list.childCount(); ++i) {
      QAccessibleInterface* const entry = list.child(i);
      const QString name = entry->text(QAccessible::Name).section(u'\t', 0, 0);
      if (entry->role() != QAccessible::Separator) names += name;
    }
    return names;
  }
  static QMenu& menu(const char* key) {
    for (QWidget* const widget : QApplication::allWidgets()) {
      auto* const menu = qobject_cast<QMenu*>(widget);
      if (menu && menu->objectName() == QLatin1String(key)) return *menu;
    }
    throw std::runtime_error(key);
  }
};

TEST_F(AccessTree, ToolsAreRadioButtonsOfWhichOneIsChecked) {
  openPicture();
  for (const char* name : kTools) {
    EXPECT_EQ(tool(name).role(), QAccessible::RadioButton) << name;
    EXPECT_TRUE(tool(name).state().checkable) << name;
    EXPECT_FALSE(tool(name).text(QAccessible::Name).isEmpty()) << name;
    EXPECT_FALSE(tool(name).text(QAccessible::Description).isEmpty()) << name;
  }
  EXPECT_EQ(checkedTools(), QStringList{QStringLiteral("btnDrawSelect")});
  control().Tool(ipToolLine);
  EXPECT_EQ(checkedTools(), QStringList{QStringLiteral("btnDrawLine")});
}

TEST_F(AccessTree, ToolsAreChosenByTheirAction) {
  openPicture();
  QAccessibleActionInterface* const actions = tool("btnDrawPan").actionInterface();
  ASSERT_NE(actions, nullptr);
  ASSERT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
  actions->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(control().Tool(), ipToolPan);
  EXPECT_EQ(checkedTools(), QStringList{QStringLiteral("btnDrawPan")});
  actions->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(checkedTools(), QStringList{QStringLiteral("btnDrawPan")}) << "a chosen tool stays chosen";
}

TEST_F(AccessTree, OtherButtonsOfTheBarsAreButtons) {
  openPicture();
  QAccessibleInterface& mirror = tool("btnImageMirror");
  EXPECT_EQ(mirror.role(), QAccessible::Button);
  EXPECT_EQ(mirror.text(QAccessible::Name), "Mirror");
  mirror.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  settle();
  EXPECT_TRUE(control().ImageControl().CanUndo());
}

TEST_F(AccessTree, BarsAreNamed) {
  for (QToolBar* const bar : editor_->findChildren<QToolBar*>()) {
    EXPECT_EQ(face(*bar).role(), QAccessible::ToolBar);
    EXPECT_EQ(face(*bar).text(QAccessible::Name), bar->objectName());
  }
}

TEST_F(AccessTree, StatusPanelsAreNamedByTheirValue) {
  openPicture();
  QWidget& zoom = part("pnlZoom");
  EXPECT_EQ(face(zoom).role(), QAccessible::StaticText);
  EXPECT_EQ(nameOf(zoom), "1:1 (100%)");
  EXPECT_EQ(face(zoom).text(QAccessible::Value), "1:1 (100%)");
  EXPECT_EQ(face(zoom).text(QAccessible::Description), "Current Zoom Level");
  EXPECT_EQ(face(zoom).childCount(), 0) << "icon and text are no objects of their own";
  control().ZoomIn();
  EXPECT_EQ(nameOf(zoom), "2:1 (200%)");
  control().Status("Working...");
  EXPECT_EQ(nameOf(part("pnlStatus")), "Working...");
}

TEST_F(AccessTree, ThePictureIsAGraphic) {
  QAccessibleInterface& graphic = face(picture());
  EXPECT_EQ(graphic.role(), QAccessible::Graphic);
  EXPECT_EQ(graphic.text(QAccessible::Name), "Picture");
  EXPECT_TRUE(graphic.state().focusable);
  const QString hint = graphic.text(QAccessible::Description);
  EXPECT_FALSE(hint.contains(QStringLiteral("pixels"))) << "there is no picture";

  openPicture(300, 200);
  EXPECT_EQ(graphic.text(QAccessible::Description), QStringLiteral("300 \u00D7 200 pixels, shown at 100%"));
  control().ZoomIn();
  control().SelectAll();
  EXPECT_EQ(graphic.text(QAccessible::Description),
            QStringLiteral("300 \u00D7 200 pixels, shown at 200%, selection of 300 \u00D7 200 pixels"));
  ASSERT_NE(graphic.imageInterface(), nullptr);
  EXPECT_EQ(graphic.imageInterface()->imageDescription(), graphic.text(QAccessible::Description));
  EXPECT_EQ(graphic.imageInterface()->imageSize(), picture().size());
  EXPECT_EQ(graphic.imageInterface()->imagePosition(), picture().mapToGlobal(QPoint()));
}

TEST_F(AccessTree, MenusAreFilledBeforeTheyOpen) {
  for (const QAction* const action : editor_->findChild<QMenuBar*>()->actions()) {
    ASSERT_NE(action->menu(), nullptr);
    EXPECT_FALSE(entries(*action->menu()).isEmpty()) << action->text().toStdString();
  }
  EXPECT_EQ(entries(menu("mnuView")).join(u','), "Materials Window,Zoom Window,Status Bar");
}

TEST_F(AccessTree, ClosedMenusFollowTheirCommands) {
  QMenu& edit = menu("mnuEdit");
  EXPECT_TRUE(entries(edit).contains(QStringLiteral("Paste")));
  control().UseSimpleTools(true);
  settle();
  EXPECT_FALSE(entries(edit).contains(QStringLiteral("Paste")));
  control().UseSimpleTools(false);
  settle();
  EXPECT_TRUE(entries(edit).contains(QStringLiteral("Paste")));

  CommandItems& recent = control().Commands()("mnuFileMRU").Items();
  recent.Clear();
  recent.Add("/pictures/sea and sand.png", "1");
  settle();
  EXPECT_TRUE(entries(menu("mnuFile")).contains(QStringLiteral("/pictures/sea and sand.png")));
}

TEST_F(AccessTree, TheMenuOfTheBarsIsFilledBeforeItOpens) {
  QMenu& bars = *part<QToolButton>("barMenuButton").menu();
  EXPECT_TRUE(entries(bars).contains(QStringLiteral("Standard")));
  const auto checked = [&](const QString& text) {
    QAccessibleInterface& list = face(bars);
    for (int i = 0; i < list.childCount(); ++i) {
      if (list.child(i)->text(QAccessible::Name) == text) return bool(list.child(i)->state().checked);
    }
    ADD_FAILURE() << text.toStdString();
    return false;
  };
  EXPECT_TRUE(checked(QStringLiteral("Materials")));
  control().DockWindows()("dkwMaterials").Visible(false);
  settle();
  EXPECT_FALSE(checked(QStringLiteral("Materials")));
}

TEST_F(AccessTree, EveryObjectThatTakesTheFocusHasAName) {
  openPicture();
  control().Tool(ipToolZoom);  // shows the zoom bar
  settle();
  int seen = 0;
  for (QWidget* const widget : editor_->findChildren<QWidget*>()) {
    if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus || widget->focusProxy()) continue;
    if (qobject_cast<QLabel*>(widget)) continue;
    ++seen;
    EXPECT_FALSE(nameOf(*widget).empty())
        << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
  }
  EXPECT_GT(seen, 5);
}

TEST_F(AccessTree, SwatchesHaveTheirColorAsDescription) {
  control().ForeColor(0x00302010);
  settle();
  auto& swatch = part<QPushButton>("btnColors_0");
  EXPECT_EQ(nameOf(swatch), "Foreground color");
  EXPECT_EQ(face(swatch).text(QAccessible::Description), "#102030");
}

TEST(AccessibleControls, PlacesOfAGridAreRadioButtons) {
  qt::PlacementButton place;
  place.setAccessibleName(QStringLiteral("Top left"));
  place.setCheckable(true);
  QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(&place);
  EXPECT_EQ(face->role(), QAccessible::RadioButton);
  EXPECT_FALSE(face->state().checked);
  place.setChecked(true);
  EXPECT_TRUE(face->state().checked);
  EXPECT_EQ(face->text(QAccessible::Name), "Top left");
}

TEST(AccessibleControls, AColorPickerIsAButtonWithAValueAndAList) {
  QWidget window;
  auto* const picker = new qt::ColorPickerWidget(&window);
  window.show();
  picker->show(QColor(0x10, 0x20, 0x30), false);
  picker->setEnhancedCaption(QStringLiteral("No Color"));
  QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(picker);
  EXPECT_EQ(face->role(), QAccessible::ButtonMenu);
  EXPECT_TRUE(face->state().hasPopup);
  EXPECT_EQ(face->text(QAccessible::Value), "#102030");
  picker->show(QColor(), true);
  EXPECT_EQ(face->text(QAccessible::Value), "No Color");

  picker->show(QColor(0, 0, 0), false);
  face->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
  auto* const list = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(list, nullptr);
  QStringList chosen;
  for (QToolButton* const swatch : list->findChildren<QToolButton*>()) {
    QAccessibleInterface* const color = QAccessible::queryAccessibleInterface(swatch);
    EXPECT_EQ(color->role(), QAccessible::RadioButton);
    if (color->state().checked) chosen += color->text(QAccessible::Name);
  }
  EXPECT_EQ(chosen, QStringList{QStringLiteral("#000000")});
  list->close();
  settle();
}

}  // namespace
}  // namespace kestrel::desktop
