// Editors and browsers in the containers of a host: side by side, in other windows, sub-windows and tabs.

#include <QAction>
#include <QDialog>
#include <QDockWidget>
#include <QLineEdit>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "HostProgram.h"

namespace kestrel::desktop {
namespace {

class Containers : public HostProgram {
 protected:
  static bool isMirrored(qt::ImageEditor& editor) {
    return editor.picture().pixelColor(0, 0) == motley(40, 30).pixelColor(39, 0);
  }
  /// Whether the key of the command Mirror reaches the editor that has the focus in this window.
  static void expectMirrors(qt::ImageEditor& editor) {
    const bool before = isMirrored(editor);
    editor.setFocus();
    EXPECT_TRUE(editor.isAncestorOf(QApplication::focusWidget()));
    press(editor, Qt::Key_M, Qt::ControlModifier);
    EXPECT_NE(isMirrored(editor), before);
  }
};

TEST_F(Containers, EditorsAndABrowserShareAWindowAndEndInAnyOrder) {
  QWidget window;
  new QVBoxLayout(&window);
  QPointer<qt::ImageEditor> first = &addEditor(window), second = &addEditor(window);
  auto* const browser = new qt::ImageBrowser(component_, nullptr, &window);
  window.layout()->addWidget(browser);
  browser->control().Path(folder_.path().toStdString());
  show(window);
  expectMirrors(*first);
  EXPECT_FALSE(isMirrored(*second)) << "the focus was in the other one";
  delete first;
  settle();
  expectMirrors(*second);
  delete browser;
  settle();
  expectMirrors(*second);
  EXPECT_FALSE(second->picture().isNull());
}

TEST_F(Containers, AnEditorMovesToAnotherWindowWithItsPictureItsKeysAndItsDialogs) {
  QWidget from, to;
  new QVBoxLayout(&from);
  new QVBoxLayout(&to);
  auto* const line = new QLineEdit;
  to.layout()->addWidget(line);
  qt::ImageEditor& editor = addEditor(from);
  show(from);
  expectMirrors(editor);
  auto* const dock = editor.findChild<QDockWidget*>(QStringLiteral("dkwMaterials"));
  ASSERT_TRUE(dock);
  dock->setFloating(true);
  dock->show();
  settle();

  to.layout()->addWidget(&editor);
  show(to);
  EXPECT_EQ(editor.window(), &to);
  EXPECT_TRUE(editor.isVisible());
  EXPECT_EQ(dock->parentWidget()->window(), &to);
  EXPECT_TRUE(isMirrored(editor)) << "the picture has come along";
  EXPECT_TRUE(editor.control().ImageControl().CanUndo());
  expectMirrors(editor);
  line->setFocus();
  press(to, Qt::Key_M, Qt::ControlModifier);
  EXPECT_FALSE(isMirrored(editor)) << "the host's line has the focus";
  const QWidget* over = nullptr;
  whenDialogOpens([&] {
    auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    over = dialog->parentWidget()->window();
    dialog->reject();
  });
  EXPECT_EQ(editor.control().ShowRotateDialog(), 0);
  EXPECT_EQ(over, &to);
}

TEST_F(Containers, ABrowserMovesToAnotherWindowWithItsFolder) {
  QWidget from, to;
  new QVBoxLayout(&from);
  new QVBoxLayout(&to);
  auto* const browser = new qt::ImageBrowser(component_, nullptr, &from);
  from.layout()->addWidget(browser);
  show(from);
  browser->control().Path(folder_.path().toStdString());
  const std::string shown = browser->control().Path();
  to.layout()->addWidget(browser);
  show(to);
  EXPECT_EQ(browser->control().Path(), shown);
  EXPECT_TRUE(browser->isVisible());
  browser->setFocus();
  EXPECT_TRUE(browser->isAncestorOf(QApplication::focusWidget()));
  EXPECT_EQ(QApplication::focusWidget()->window(), &to);
}

TEST_F(Containers, SubWindowsOfAnMdiAreaHaveEditorsOfTheirOwnAndAskOnClose) {
  QMainWindow window;
  auto* const area = new QMdiArea;
  window.setCentralWidget(area);
  QWidget none;
  qt::ImageEditor &first = addEditor(none), &second = addEditor(none);
  QPointer<QMdiSubWindow> left = area->addSubWindow(&first), right = area->addSubWindow(&second);
  auto* const browser = new qt::ImageBrowser(component_);
  area->addSubWindow(browser);
  show(window);
  for (QMdiSubWindow* const sub : area->subWindowList()) sub->show();
  area->tileSubWindows();
  settle();

  area->setActiveSubWindow(left);
  expectMirrors(first);
  area->setActiveSubWindow(right);
  EXPECT_FALSE(isMirrored(second));
  expectMirrors(second);
  first.setFocus();
  EXPECT_EQ(area->activeSubWindow(), left.data()) << "the focus activates the sub-window";

  whenDialogOpens([] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
  EXPECT_FALSE(right->close());
  EXPECT_TRUE(right->isVisible());
  whenDialogOpens([] {
    auto& box = dynamic_cast<QMessageBox&>(*QApplication::activeModalWidget());
    QTest::mouseClick(box.button(QMessageBox::No), Qt::LeftButton);
  });
  EXPECT_TRUE(right->close());
  settle();
  window.activateWindow();  // the question was the active window
  area->setActiveSubWindow(left);
  settle();
  expectMirrors(first);
}

TEST_F(Containers, TabsKeepTheirEditorsWhileTheyAreHidden) {
  QMainWindow window;
  auto* const tabs = new QTabWidget;
  window.setCentralWidget(tabs);
  QWidget none;
  qt::ImageEditor& editor = addEditor(none);
  auto* const browser = new qt::ImageBrowser(component_);
  tabs->addTab(&editor, QStringLiteral("Editor"));
  tabs->addTab(browser, QStringLiteral("Browser"));
  show(window);
  expectMirrors(editor);
  tabs->setCurrentIndex(1);
  settle();
  EXPECT_FALSE(editor.isVisible());
  EXPECT_TRUE(browser->isVisible());
  press(window, Qt::Key_M, Qt::ControlModifier);
  EXPECT_TRUE(isMirrored(editor)) << "a hidden editor gets no key";
  editor.setPicture(motley(40, 30));
  tabs->setCurrentIndex(0);
  settle();
  EXPECT_EQ(editor.control().Image()->Width(), 40);
  expectMirrors(editor);
}

// -- A host's own actions, keys and settings ----------------------------------------------------------------

class InAHostsWindow : public Containers {
 protected:
  InAHostsWindow() {
    auto* const content = new QWidget;
    new QVBoxLayout(content);
    line_ = new QLineEdit;
    content->layout()->addWidget(line_);
    editor_ = &addEditor(*content);
    after_ = new QLineEdit;
    content->layout()->addWidget(after_);
    window_.setCentralWidget(content);
    show(window_);
  }

  QAction& addAction(const QKeySequence& key, int& triggered) {
    auto* const action = window_.menuBar()->addAction(QStringLiteral("Host"));
    action->setShortcut(key);
    QObject::connect(action, &QAction::triggered, action, [&triggered] { ++triggered; });
    return *action;
  }

  QMainWindow window_;
  QLineEdit* line_ = nullptr;
  QLineEdit* after_ = nullptr;
  qt::ImageEditor* editor_ = nullptr;
};

TEST_F(InAHostsWindow, ShortcutsOfTheHostWorkWhereTheEditorHasNoSuchKey) {
  int own = 0, same = 0;
  addAction(Qt::CTRL | Qt::ALT | Qt::Key_H, own);
  addAction(Qt::CTRL | Qt::Key_M, same);
  editor_->setFocus();
  press(window_, Qt::Key_H, Qt::ControlModifier | Qt::AltModifier);
  EXPECT_EQ(own, 1);
  press(window_, Qt::Key_M, Qt::ControlModifier);
  EXPECT_EQ(same, 0) << "the editor with the focus comes first";
  EXPECT_TRUE(isMirrored(*editor_));
  line_->setFocus();
  press(window_, Qt::Key_M, Qt::ControlModifier);
  EXPECT_EQ(same, 1);
  EXPECT_TRUE(isMirrored(*editor_));
}

TEST_F(InAHostsWindow, TheTabKeyReachesTheEditorFromTheHostsFields) {
  line_->setFocus();
  press(window_, Qt::Key_Tab);
  EXPECT_TRUE(editor_->isAncestorOf(QApplication::focusWidget()));
  after_->setFocus();
  press(window_, Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_TRUE(editor_->isAncestorOf(QApplication::focusWidget()));
}

TEST_F(InAHostsWindow, ADisabledEditorTakesNoKeyAndNoFocus) {
  editor_->setFocus();
  editor_->setEnabled(false);
  EXPECT_FALSE(editor_->isAncestorOf(QApplication::focusWidget()));
  press(window_, Qt::Key_M, Qt::ControlModifier);
  EXPECT_FALSE(isMirrored(*editor_));
  editor_->setEnabled(true);
  expectMirrors(*editor_);
}

TEST_F(InAHostsWindow, FontAndPaletteOfTheHostReachTheBars) {
  editor_->control().ShowMenuBar(true);
  settle();
  auto* const bar = editor_->findChild<QMenuBar*>();
  ASSERT_TRUE(bar && bar->isVisible());
  const int height = bar->sizeHint().height();
  const QSize smallest = editor_->minimumSizeHint();

  QFont large = editor_->font();
  large.setPointSizeF(2 * large.pointSizeF());
  editor_->setFont(large);
  settle();
  EXPECT_GT(bar->sizeHint().height(), height);
  EXPECT_GE(editor_->minimumSizeHint().height(), smallest.height());

  QPalette palette = editor_->palette();
  palette.setColor(QPalette::Window, QColor(40, 60, 90));
  palette.setColor(QPalette::Button, QColor(40, 60, 90));
  editor_->setPalette(palette);
  settle();
  EXPECT_EQ(bar->palette().color(QPalette::Window), QColor(40, 60, 90));
}

TEST_F(InAHostsWindow, SizeHintsFitTheHostsLayout) {
  qt::ImageBrowser browser(component_);
  for (QWidget* const widget : std::initializer_list<QWidget*>{editor_, &browser}) {
    SCOPED_TRACE(widget->metaObject()->className());
    EXPECT_EQ(widget->sizeHint(), QSize(1100, 760));
    EXPECT_GT(widget->minimumSizeHint().width(), 0);
    EXPECT_LE(widget->minimumSizeHint().width(), widget->sizeHint().width());
    EXPECT_LE(widget->minimumSizeHint().height(), widget->sizeHint().height());
  }
  EXPECT_GE(window_.minimumSizeHint().width(), editor_->minimumSizeHint().width());
  window_.resize(1, 1);
  settle();
  EXPECT_GE(editor_->width(), editor_->minimumSizeHint().width());
  EXPECT_GE(editor_->height(), editor_->minimumSizeHint().height());
}

}  // namespace
}  // namespace kestrel::desktop
