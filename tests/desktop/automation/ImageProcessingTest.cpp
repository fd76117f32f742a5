#include "host/ImageProcessing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QClipboard>
#include <QColorDialog>
#include <QEventLoop>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QTest>
#include <QToolButton>

#include "../EditorHost.h"
#include "Windows.h"
#include "platform/qt/controls/ColorPickerWidget.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

using testing::ElementsAre;

/// A host of the class on the desktop.
class Automation : public EditorHost {
 protected:
  Automation() {
    modProcessing::Attach(*platform_);
    modProcessing::Main();
  }
  ~Automation() override {
    connections_.clear();
    processing_.reset();
    settle();
    modProcessing::Detach();
  }

  void start() {
    connections_.clear();
    processing_ = std::make_unique<ImageProcessing>();
    window_ = windowOfForm("frmImageEditor");
    ASSERT_TRUE(window_);
    widget_ = window_->findChild<qt::EditorWidget*>();
    processing_->Title("Host");
    processing_->Initialize();
    processing_->ShowClose(true);
    processing_->Show();
    window_->resize(1000, 700);
    focusView();
    ASSERT_TRUE(processing_->OpenImage(file("open.png")));
    settle();
  }

  ImageProcessing& processing() { return *processing_; }
  IImageProcessingCtl& control() { return processing_->Control(); }
  template <typename... Args, typename Handler>
  void on(Event<Args...>& event, Handler handler) {
    connections_.push_back(event.Connect(std::move(handler)));
  }
  /// The user presses the close box.
  void closeWindow() { window_->close(); }

  std::unique_ptr<qt::QtPlatform> platform_ = testPlatform();
  std::unique_ptr<ImageProcessing> processing_;
  QPointer<qt::FormWindow> window_;
  std::vector<Connection> connections_;
};

TEST_F(Automation, ShowsTheFileAndTheTitleInItsCaption) {
  start();
  EXPECT_EQ(window_->windowTitle(), QStringLiteral("open.png - Host"));
  EXPECT_TRUE(processing().Visible());
  EXPECT_EQ(widget_->geometry(), window_->rect()) << "the editor fills the window";
  writeScreenshot(*window_, "automation");
}

TEST_F(Automation, TheEditorFillsTheWindowAtEachSize) {
  start();
  window_->resize(800, 600);
  settle();
  EXPECT_EQ(widget_->geometry(), QRect(0, 0, 800, 600));
}

TEST_F(Automation, TheUserWhoDoesNotWantToLoseTheChangesKeepsTheWindow) {
  start();
  int closed = 0;
  on(processing().WindowClosed, [&] { ++closed; });
  action("btnImageMirror").trigger();
  whenModalOpens([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  closeWindow();
  EXPECT_TRUE(processing().Visible());
  EXPECT_EQ(closed, 1);
  whenModalOpens([](QWidget& box) {
    QTest::mouseClick(dynamic_cast<QMessageBox&>(box).button(QMessageBox::No), Qt::LeftButton);
  });
  closeWindow();
  EXPECT_FALSE(processing().Visible());
  EXPECT_EQ(closed, 2);
}

TEST_F(Automation, TheKeyOfTheCommandCloseHidesTheWindow) {
  start();
  int closed = 0;
  on(processing().WindowClosed, [&] { ++closed; });
  action("btnFileClose").trigger();
  EXPECT_FALSE(processing().Visible());
  EXPECT_EQ(closed, 1);
}

TEST_F(Automation, AfterTheUserClosedItShowBringsTheSameWindowBack) {
  start();
  closeWindow();
  settle();
  EXPECT_FALSE(processing().Visible());
  EXPECT_EQ(namesOfShownWindows(), "");
  processing().Show();
  settle();
  EXPECT_TRUE(window_ && window_->isVisible());
  EXPECT_EQ(windowOfForm("frmImageEditor"), window_.data());
  ASSERT_TRUE(processing().OpenImage(file("open.png")));
  QTest::mouseClick(widget_->findChild<QToolButton*>(QStringLiteral("btnDrawPan")), Qt::LeftButton);
  EXPECT_EQ(processing().Tool(), ipToolPan);
  pressKey(*window_, Qt::Key_Plus, Qt::ControlModifier);
  EXPECT_EQ(control().ImageControl().Zoom(), 2);
  closeWindow();
  EXPECT_FALSE(processing().Visible());
}

TEST_F(Automation, ShownAgainItIsWhereItWas) {
  start();
  const QRect place(40, 50, 720, 560);
  window_->setGeometry(place);
  settle();
  closeWindow();
  processing().Show();
  window_->move(7, 9);  // a window manager chooses the place of each window that is shown
  settle();
  EXPECT_EQ(window_->geometry(), place);
}

TEST_F(Automation, ShownAgainMaximizedItIsRestoredToThePlaceBefore) {
  start();
  window_->setGeometry(40, 50, 720, 560);
  settle();
  window_->showMaximized();
  settle();
  closeWindow();
  processing().Show();
  settle();
  EXPECT_TRUE(window_->isMaximized());
  window_->showNormal();
  settle();
  EXPECT_EQ(window_->geometry(), QRect(40, 50, 720, 560));
}

TEST_F(Automation, AModalShowOfTheShownWindowIsReported) {
  start();
  QString text;
  whenModalOpens([&](QWidget& box) {
    if (auto* const report = dynamic_cast<QMessageBox*>(&box)) text = report->text();
    box.close();
  });
  processing().Show(true);
  EXPECT_TRUE(text.contains(QStringLiteral("(400)"))) << text.toStdString();
  EXPECT_TRUE(processing().Visible());
}

TEST_F(Automation, IsShownModallyUntilTheUserClosesIt) {
  start();
  closeWindow();
  bool shown = false;
  whenModalOpens([&](QWidget& window) {
    shown = &window == window_.data();
    window.close();
  });
  processing().Show(true);
  EXPECT_TRUE(shown);
  EXPECT_FALSE(processing().Visible());
}

TEST_F(Automation, SeveralLiveSideBySideAndEndInAnyOrder) {
  start();
  auto second = std::make_unique<ImageProcessing>();
  second->Initialize();
  second->Show();
  settle();
  processing_.reset();
  settle();
  EXPECT_FALSE(window_);
  EXPECT_TRUE(second->OpenImage(file("open.png")));
  second.reset();
  settle();
  EXPECT_EQ(windowOfForm("frmImageEditor"), nullptr);
}

// -- Ending
// ---------------------------------------------------------------------------------------------------

class AutomationEnding : public Automation, public testing::WithParamInterface<Ends> {
 protected:
  void end() {
    ASSERT_FALSE(ended_);
    ended_ = true;
    if (GetParam() == Ends::kTerminate) {
      processing_->Terminate();
    } else {
      processing_.reset();
    }
    EXPECT_EQ(namesOfShownWindows(), "");
    EXPECT_TRUE(window_) << "its members may be on the stack";
  }
  void begin() {
    start();
    ended_ = false;
  }
  void expectNothingLeft() {
    EXPECT_TRUE(ended_) << "the host did not end it";
    settle();
    EXPECT_FALSE(window_) << "what was kept for the call is released";
    EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "the busy pointer";
  }

  bool ended_ = false;
};

INSTANTIATE_TEST_SUITE_P(Ways, AutomationEnding, testing::Values(Ends::kTerminate, Ends::kDestroy),
                         nameOfEnds);

TEST_P(AutomationEnding, InEachEvent) {
  struct Case {
    const char* event;
    std::function<void()> connect;
    std::function<void()> act;
  };
  const auto atEnd = [this](auto&&...) {
    if (!ended_) end();
  };
  const auto open = [this] { processing().OpenImage(file("open.png")); };
  const auto save = [this] { processing().SaveImageAs(file("saved.png")); };
  const Case cases[] = {
      {"ImageOpen", [&] { on(processing().ImageOpen, atEnd); }, open},
      {"ImageSave", [&] { on(processing().ImageSave, atEnd); }, save},
      {"RequestOpenFilename", [&] { on(processing().RequestOpenFilename, atEnd); },
       [this] { action("btnFileOpen").trigger(); }},
      {"RequestSaveFilename", [&] { on(processing().RequestSaveFilename, atEnd); },
       [this] { action("btnFileSaveAs").trigger(); }},
      {"WindowClosed", [&] { on(processing().WindowClosed, atEnd); }, [this] { closeWindow(); }},
      {"WindowClosed of the command", [&] { on(processing().WindowClosed, atEnd); },
       [this] { action("btnFileClose").trigger(); }},
      {"WindowClosed with changes", [&] { on(processing().WindowClosed, atEnd); },
       [this] {
         action("btnImageMirror").trigger();
         closeWindow();
       }},
      {"ExitRequest of the control", [&] { on(control().ExitRequest, atEnd); },
       [this] { action("btnFileClose").trigger(); }},
      {"ToolChange of the control", [&] { on(control().ToolChange, atEnd); },
       [this] {
         QTest::mouseClick(widget_->findChild<QToolButton*>(QStringLiteral("btnDrawPan")), Qt::LeftButton);
       }},
      {"Change of the control", [&] { on(control().Change, atEnd); },
       [this] { action("btnImageMirror").trigger(); }},
      {"ForeColorChange of the control", [&] { on(control().ForeColorChange, atEnd); },
       [this] {
         control().Tool(ipToolDropper);
         QTest::mouseClick(&canvas(), Qt::LeftButton, {}, canvas().rect().center());
       }},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.event);
    begin();
    each.connect();
    each.act();
    expectNothingLeft();
  }
}

TEST_P(AutomationEnding, UnderEachDialogAndBox) {
  struct Case {
    const char* name;
    std::function<void()> act;
  };
  const Case cases[] = {
      {"open dialog", [this] { EXPECT_FALSE(processing().OpenImage()); }},
      {"open dialog by keys", [this] { pressKey(*window_, Qt::Key_O, Qt::ControlModifier); }},
      {"save dialog", [this] { EXPECT_FALSE(processing().SaveImageAs()); }},
      {"question on close",
       [this] {
         action("btnImageMirror").trigger();
         closeWindow();
       }},
      {"question on close by the command",
       [this] {
         action("btnImageMirror").trigger();
         action("btnFileClose").trigger();
       }},
      {"failed open", [this] { EXPECT_FALSE(processing().OpenImage(file("damaged.png"))); }},
      {"failed save", [this] { EXPECT_FALSE(processing().SaveImageAs(file("nowhere/a.png"))); }},
      {"rotate", [this] { EXPECT_EQ(processing().ShowRotateDialog(), 0); }},
      {"resize", [this] { EXPECT_FALSE(processing().ShowResizeDialog()); }},
      {"canvas", [this] { EXPECT_FALSE(processing().ShowResizeCanvasDialog()); }},
      {"shadow", [this] { EXPECT_FALSE(processing().ShowDropShadowDialog()); }},
      {"masked shadow", [this] { EXPECT_FALSE(processing().ShowMaskedDropShadowDialog()); }},
      {"flatten", [this] { EXPECT_FALSE(processing().ShowFlattenAlphaDialog()); }},
      {"options", [this] { EXPECT_FALSE(processing().ShowOptions()); }},
      {"export", [this] { EXPECT_FALSE(control().ShowExportDialog()); }},
      {"thumbnail", [this] { EXPECT_EQ(processing().ShowGetThumnailDialog(), nullptr); }},
      {"thumbnail of a save", [this] { EXPECT_FALSE(processing().SaveImageThumbnailEx(file("t.png"))); }},
      {"paste special",
       [this] {
         QApplication::clipboard()->setImage(noise(6, 5));
         action("btnEditPasteSpecial").trigger();
       }},
      {"about", [this] { action("btnHelpAbout").trigger(); }},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.name);
    begin();
    QPointer<QWidget> shown;
    whenModalOpens([&](QWidget& dialog) {
      shown = &dialog;
      end();
    });
    each.act();
    EXPECT_FALSE(shown && shown->isVisible());
    expectNothingLeft();
  }
}

TEST_P(AutomationEnding, UnderADialogOfADialog) {
  begin();
  whenModalOpens([&](QWidget& dialog) {
    whenModalOpens([&](QWidget&) { end(); });
    dialog.findChild<QAbstractButton*>(QStringLiteral("cmdBrowse"))->click();
  });
  EXPECT_FALSE(control().ShowExportDialog());
  expectNothingLeft();
}

TEST_P(AutomationEnding, UnderItsContextMenu) {
  begin();
  whenPopupOpens([&] { end(); });
  QTest::mouseClick(&canvas(), Qt::RightButton, {}, canvas().rect().center());
  expectNothingLeft();
}

TEST_P(AutomationEnding, UnderAMenuOfTheMenuBar) {
  begin();
  auto* const bar = widget_->findChild<QMenuBar*>();
  ASSERT_TRUE(bar && bar->isVisible());
  bool closed = false;
  whenPopupOpens([&] {
    end();
    closed = QApplication::activePopupWidget() == nullptr;
  });
  QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(bar->actions().front()).center());
  EXPECT_TRUE(QTest::qWaitFor([&] { return ended_; }));
  EXPECT_TRUE(closed);
  expectNothingLeft();
}

TEST_P(AutomationEnding, UnderTheColorDialog) {
  begin();
  auto& picker = *widget_->findChild<qt::ColorPickerWidget*>();
  picker.dropDown();
  QWidget* const palette = QApplication::activePopupWidget();
  ASSERT_TRUE(palette);
  palette->actions().back()->trigger();
  palette->close();
  const QPointer<QColorDialog> dialog = picker.findChild<QColorDialog*>();
  ASSERT_TRUE(dialog && dialog->isVisible());
  end();
  EXPECT_FALSE(dialog && dialog->isVisible());
  expectNothingLeft();
}

TEST_P(AutomationEnding, WhileItIsShownModally) {
  begin();
  closeWindow();
  whenModalOpens([&](QWidget& window) {
    EXPECT_EQ(&window, window_.data());
    end();
  });
  processing().Show(true);
  expectNothingLeft();
}

TEST_P(AutomationEnding, UnderADialogAboveTheModalWindow) {
  begin();
  closeWindow();
  bool canceled = false;
  whenModalOpens([&](QWidget&) {
    whenModalOpens([&](QWidget&) { end(); });
    canceled = !processing().ShowResizeDialog();
  });
  processing().Show(true);
  EXPECT_TRUE(canceled);
  expectNothingLeft();
}

TEST_P(AutomationEnding, WhileAHostsOwnLoopRunsInAnEvent) {
  begin();
  on(processing().ImageOpen, [&](const std::string&) {
    QEventLoop loop;
    QTimer::singleShot(5, &loop, [&] { end(); });
    QTimer::singleShot(60, &loop, &QEventLoop::quit);
    loop.exec();
    EXPECT_TRUE(window_) << "the call that raised the event is not over";
  });
  processing().OpenImage(file("open.png"));
  expectNothingLeft();
}

TEST_P(AutomationEnding, RaisesNothingAfterwards) {
  begin();
  int late = 0;
  on(control().ImageOpen, [&](const std::string&) { late += ended_ ? 1 : 0; });
  on(processing().ImageOpen, [&](const std::string&) { ++late; });
  on(processing().RequestOpenFilename, [&](std::string& name, bool&) {
    name = file("open.png");
    end();
  });
  EXPECT_FALSE(processing().OpenImage());
  EXPECT_EQ(late, 0);
  expectNothingLeft();
}

}  // namespace
}  // namespace kestrel::desktop
