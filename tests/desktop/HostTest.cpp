#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QColorDialog>
#include <QDialog>
#include <QDockWidget>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <set>

#include "EditorHost.h"
#include "HostWindows.h"
#include "platform/qt/controls/ColorPickerWidget.h"
#include "platform/qt/embed/ImageEditor.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

class Sink final : public IImageEvents {
 public:
  explicit Sink(std::function<void(const char*)> notify) : notify_(std::move(notify)) {}
  void RequestSaveFilename(std::string&, bool&) override { notify_("sink RequestSaveFilename"); }
  void RequestOpenFilename(std::string&, bool&) override { notify_("sink RequestOpenFilename"); }
  void ImageSave(const std::string&) override { notify_("sink ImageSave"); }
  void ImageOpen(const std::string&) override { notify_("sink ImageOpen"); }

 private:
  std::function<void(const char*)> notify_;
};

/// A host program with the editor in its window, as in the README.
class Host : public EditorHost {
 protected:
  enum class Ends { Editor, Window };

  ~Host() override {
    delete window_.data();
    connections_.clear();
    settle();
    component_.reset();
  }

  void start() {
    delete window_.data();
    connections_.clear();
    events_.clear();
    dead_ = false;
    window_ = new QWidget;
    auto* const layout = new QVBoxLayout(window_);
    editor_ = new qt::ImageEditor(*component_);
    layout->addWidget(editor_);
    widget_ = editor_->findChild<qt::EditorWidget*>();
    control().Initialize();
    window_->resize(1000, 700);
    window_->show();
    focusView();
    ASSERT_TRUE(control().OpenImage(file("open.png")));
    settle();
  }

  IImageProcessingCtl& control() { return editor_->control(); }

  void end(Ends what) {
    if (what == Ends::Editor) {
      delete editor_.data();
    } else {
      delete window_.data();
    }
    dead_ = true;
    shownAtEnd_ = shownWindows();
  }

  /// Records all events and calls of the sink; at the one of that name the host ends the editor.
  void endAt(const std::string& wanted, Ends what) {
    const auto note = [this, wanted, what](const std::string& event) {
      EXPECT_FALSE(dead_) << event << " after the end";
      events_.insert(event);
      if (event == wanted && !dead_) end(what);
    };
    IImageProcessingCtl& c = control();
    const auto keep = [this](Connection connection) { connections_.push_back(std::move(connection)); };
    keep(c.ExitRequest.Connect([note] { note("ExitRequest"); }));
    keep(c.ImageOpen.Connect([note](const std::string&) { note("ImageOpen"); }));
    keep(c.ImageSave.Connect([note](const std::string&) { note("ImageSave"); }));
    keep(c.RequestOpenFilename.Connect([note](std::string&, bool& cancel) {
      cancel = true;
      note("RequestOpenFilename");
    }));
    keep(c.RequestSaveFilename.Connect([note](std::string&, bool& cancel) {
      cancel = true;
      note("RequestSaveFilename");
    }));
    keep(c.ForeColorChange.Connect([note](OLE_COLOR) { note("ForeColorChange"); }));
    keep(c.BackColorChange.Connect([note](OLE_COLOR) { note("BackColorChange"); }));
    keep(c.ToolChange.Connect([note](ImageProcessingToolConstants) { note("ToolChange"); }));
    keep(c.PictureSet.Connect([note] { note("PictureSet"); }));
    keep(c.SimpleSaveRequest.Connect([note](bool&) { note("SimpleSaveRequest"); }));
    keep(c.Change.Connect([note] { note("Change"); }));
    sink_ = std::make_shared<Sink>(note);
    c.EventSink(sink_);
  }

  /// Runs the program's event loop with `act` in it, which leads to a call of `quit`. Returns 1 if the loop
  /// goes on after that for many turns, or if `act` returned without it.
  int runProgram(const std::function<void()>& act) {
    constexpr int kTurns = 1'000;
    int turns = 0;
    QObject::connect(&turnsAfterQuit_, &QTimer::timeout, &turnsAfterQuit_, [&] {
      if (++turns == kTurns) QCoreApplication::exit(1);
    });
    QTimer::singleShot(0, qApp, [&] {
      act();
      if (!turnsAfterQuit_.isActive()) QCoreApplication::exit(1);
    });
    const int code = QApplication::exec();
    turnsAfterQuit_.stop();
    turnsAfterQuit_.disconnect();
    return code;
  }
  void quit() {
    turnsAfterQuit_.start(0);
    qApp->quit();
  }

  void expectNothingLeft() {
    EXPECT_TRUE(dead_) << "the host did not end it";
    EXPECT_FALSE(editor_);
    for (const QWidget* shown : shownAtEnd_) EXPECT_EQ(shown, window_.data()) << "a window of the editor's";
    settle();
    EXPECT_FALSE(widget_) << "objects kept for the call are released";
    EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "the busy pointer";
  }

  std::unique_ptr<qt::Component> component_ = std::make_unique<qt::Component>();
  QPointer<QWidget> window_;
  QPointer<qt::ImageEditor> editor_;
  std::vector<Connection> connections_;
  std::shared_ptr<Sink> sink_;
  std::set<std::string> events_;
  std::set<QWidget*> shownAtEnd_;
  QTimer turnsAfterQuit_;
  bool dead_ = false;
};

TEST_F(Host, MayEndEditorOrWindowInAnyEventOrCallOfItsSink) {
  struct Case {
    const char* event;
    std::function<void()> act;
  };
  const auto open = [&] { control().OpenImage(file("open.png")); };
  const auto save = [&] { control().SaveImageAs(file("saved.png")); };
  const Case cases[] = {
      {"ExitRequest", [&] { action("btnFileClose").trigger(); }},
      {"ImageOpen", open},
      {"sink ImageOpen", open},
      {"PictureSet", open},
      {"ImageSave", save},
      {"sink ImageSave", save},
      {"RequestOpenFilename", [&] { control().OpenImage(); }},
      {"sink RequestOpenFilename", [&] { action("btnFileOpen").trigger(); }},
      {"RequestSaveFilename", [&] { action("btnFileSaveAs").trigger(); }},
      {"sink RequestSaveFilename", [&] { control().SaveImageAs(); }},
      {"ForeColorChange", [&] { control().ForeColor(0x00123456); }},
      {"BackColorChange", [&] { control().BackColor(0x00123456); }},
      {"ToolChange", [&] { control().Tool(ipToolPan); }},
      {"SimpleSaveRequest", [&] { action("btnFileSimpleSave").trigger(); }},
      {"Change", [&] { action("btnImageMirror").trigger(); }},
  };
  for (const Case& each : cases) {
    for (const Ends what : {Ends::Editor, Ends::Window}) {
      SCOPED_TRACE(std::string(each.event) + (what == Ends::Editor ? ", the editor" : ", the window"));
      start();
      control().ShowClose(true);
      if (each.event == std::string("SimpleSaveRequest")) control().UseSimpleSave(true);
      endAt(each.event, what);
      each.act();
      EXPECT_TRUE(events_.contains(each.event));
      expectNothingLeft();
    }
  }
}

TEST_F(Host, MayEndTheEditorInAnEventOfAClickOrKey) {
  struct Case {
    const char* event;
    std::function<void()> act;
  };
  const Case cases[] = {
      {"ToolChange",
       [&] {
         auto* const button = widget_->findChild<QToolButton*>(QStringLiteral("btnDrawPan"));
         QTest::mouseClick(button, Qt::LeftButton);
       }},
      {"ForeColorChange",
       [&] {
         control().Tool(ipToolDropper);
         QTest::mouseClick(&canvas(), Qt::LeftButton, {}, canvas().rect().center());
       }},
      {"BackColorChange",
       [&] {
         control().Tool(ipToolDropper);
         QTest::mouseClick(&canvas(), Qt::RightButton, {}, canvas().rect().center());
       }},
      {"RequestOpenFilename",
       [&] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_O, Qt::ControlModifier); }},
  };
  for (const Case& each : cases) {
    for (const Ends what : {Ends::Editor, Ends::Window}) {
      SCOPED_TRACE(std::string(each.event) + (what == Ends::Editor ? ", the editor" : ", the window"));
      start();
      endAt(each.event, what);
      each.act();
      EXPECT_TRUE(events_.contains(each.event));
      expectNothingLeft();
    }
  }
}

/// A way to open a dialog, box or menu. `act` returns when it has closed, and expects that it was canceled.
struct ModalCase {
  const char* name;
  std::function<void()> act;
};

class HostDuringADialog : public Host {
 protected:
  std::vector<ModalCase> modalCases() {
    const auto change = [this] { action("btnImageMirror").trigger(); };
    return {
        {"open dialog", [this] { EXPECT_FALSE(control().OpenImage()); }},
        {"save dialog", [this] { EXPECT_FALSE(control().SaveImageAs()); }},
        {"open dialog of the command", [this] { action("btnFileOpen").trigger(); }},
        {"save changes",
         [this, change] {
           change();
           EXPECT_FALSE(control().SaveChanges());
         }},
        {"save changes of the command",
         [this, change] {
           change();
           action("btnFileOpen").trigger();
         }},
        {"failed open", [this] { EXPECT_FALSE(control().OpenImage(file("damaged.png"))); }},
        {"failed save", [this] { EXPECT_FALSE(control().SaveImageAs(file("nowhere/a.png"))); }},
        {"rotate dialog", [this] { EXPECT_EQ(control().ShowRotateDialog(), 0); }},
        {"resize dialog", [this] { EXPECT_FALSE(control().ShowResizeDialog()); }},
        {"canvas dialog", [this] { EXPECT_FALSE(control().ShowResizeCanvasDialog()); }},
        {"shadow dialog", [this] { EXPECT_FALSE(control().ShowDropShadowDialog()); }},
        {"contoured shadow dialog", [this] { EXPECT_FALSE(control().ShowMaskedDropShadowDialog()); }},
        {"flatten dialog", [this] { EXPECT_FALSE(control().ShowFlattenAlphaDialog()); }},
        {"options dialog", [this] { EXPECT_FALSE(control().ShowOptions()); }},
        {"export dialog", [this] { EXPECT_FALSE(control().ShowExportDialog()); }},
        {"thumbnail dialog", [this] { EXPECT_EQ(control().ShowGetThumnailDialog(), nullptr); }},
        {"thumbnail dialog of a save",
         [this] { EXPECT_FALSE(control().SaveImageThumbnailEx(file("t.png"))); }},
        {"paste special dialog",
         [this] {
           QApplication::clipboard()->setImage(noise(6, 5));
           action("btnEditPasteSpecial").trigger();
         }},
        {"about box", [this] { action("btnHelpAbout").trigger(); }},
        {"missing help", [this] { action("btnHelpContents").trigger(); }},
        {"nothing to paste",
         [this] {
           QApplication::clipboard()->clear();
           action("btnEditPaste").trigger();
         }},
    };
  }
};

TEST_F(HostDuringADialog, MayEndTheEditorOrItsWindow) {
  for (std::size_t i = 0; i < modalCases().size(); ++i) {
    for (const Ends what : {Ends::Editor, Ends::Window}) {
      SCOPED_TRACE(std::string(modalCases()[i].name) +
                   (what == Ends::Editor ? ", the editor" : ", the window"));
      start();
      const ModalCase asking = modalCases()[i];
      QPointer<QWidget> shown;
      whenModalOpens([&](QWidget& dialog) {
        shown = &dialog;
        EXPECT_EQ(dialog.parentWidget()->window(), window_.data());
        end(what);
      });
      asking.act();
      EXPECT_FALSE(shown && shown->isVisible());
      expectNothingLeft();
    }
  }
}

TEST_F(HostDuringADialog, MayEndTheEditorUnderABoxOfADialog) {
  start();
  QPointer<QWidget> inner;
  whenModalOpens([&](QWidget& dialog) {
    whenModalOpens([&](QWidget& box) {
      inner = &box;
      end(Ends::Window);
    });
    dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
        ->setText(QString::fromStdString(file("nowhere/picture.bmp")));
    QMetaObject::invokeMethod(&dialog, "accept", Qt::QueuedConnection);
  });
  EXPECT_FALSE(control().SaveImageAs());
  EXPECT_FALSE(inner);
  expectNothingLeft();
}

TEST_F(HostDuringADialog, MayEndTheEditorUnderADialogOfADialog) {
  struct Case {
    const char* name;
    std::function<void()> open;
    /// Opens the inner dialog from the outer one.
    std::function<void(QWidget&)> openInner;
  };
  const auto press = [](QWidget& dialog, const char* button) {
    dialog.findChild<QAbstractButton*>(QLatin1String(button))->click();
  };
  const Case cases[] = {
      {"file dialog of export", [this] { EXPECT_FALSE(control().ShowExportDialog()); },
       [&](QWidget& dialog) { press(dialog, "cmdBrowse"); }},
      {"box of export", [this] { EXPECT_FALSE(control().ShowExportDialog()); },
       [&](QWidget& dialog) { press(dialog, "cmdAction_0"); }},
      {"box of resize", [this] { EXPECT_FALSE(control().ShowResizeDialog()); },
       [&](QWidget& dialog) {
         dialog.findChild<QLineEdit*>(QStringLiteral("txtField_0"))->setText(QStringLiteral("0"));
         press(dialog, "cmdAction_0");
       }},
      {"shadow of the thumbnail", [this] { EXPECT_EQ(control().ShowGetThumnailDialog(), nullptr); },
       [&](QWidget& dialog) {
         dialog.findChild<QAbstractButton*>(QStringLiteral("chkAddDropShadow"))->setChecked(true);
         press(dialog, "cmdOptions");
       }},
  };
  for (const Case& each : cases) {
    for (const Ends what : {Ends::Editor, Ends::Window}) {
      SCOPED_TRACE(std::string(each.name) + (what == Ends::Editor ? ", the editor" : ", the window"));
      start();
      QPointer<QWidget> outer, inner;
      whenModalOpens([&](QWidget& dialog) {
        outer = &dialog;
        whenModalOpens([&](QWidget& opened) {
          inner = &opened;
          EXPECT_NE(&opened, outer.data());
          end(what);
        });
        each.openInner(dialog);
      });
      each.open();
      EXPECT_FALSE(outer && outer->isVisible());
      EXPECT_FALSE(inner && inner->isVisible());
      expectNothingLeft();
    }
  }
}

TEST_F(HostDuringADialog, MayEndTheEditorUnderItsContextMenu) {
  for (const Ends what : {Ends::Editor, Ends::Window}) {
    start();
    whenPopupOpens([&] { end(what); });
    QTest::mouseClick(&canvas(), Qt::RightButton, {}, canvas().rect().center());
    expectNothingLeft();
  }
}

TEST_F(HostDuringADialog, MayEndTheEditorUnderTheColorDialog) {
  for (const Ends what : {Ends::Editor, Ends::Window}) {
    start();
    auto& picker = *widget_->findChild<qt::ColorPickerWidget*>();
    picker.dropDown();
    QWidget* const palette = QApplication::activePopupWidget();
    ASSERT_TRUE(palette);
    palette->actions().back()->trigger();
    palette->close();
    const QPointer<QColorDialog> dialog = picker.findChild<QColorDialog*>();
    ASSERT_TRUE(dialog);
    EXPECT_TRUE(dialog->isVisible());
    end(what);
    EXPECT_FALSE(dialog && dialog->isVisible());
    expectNothingLeft();
  }
}

TEST_F(HostDuringADialog, MayRunItsOwnEventLoopInAnEvent) {
  start();
  connections_.push_back(control().ImageOpen.Connect([&](const std::string&) {
    QEventLoop loop;
    QTimer::singleShot(5, &loop, [&] { end(Ends::Window); });
    QTimer::singleShot(60, &loop, &QEventLoop::quit);
    loop.exec();
    EXPECT_TRUE(widget_) << "the call that raised the event is not over";
  }));
  EXPECT_TRUE(control().OpenImage(file("open.png")));
  expectNothingLeft();
}

TEST_F(HostDuringADialog, MayQuitTheProgram) {
  for (std::size_t i = 0; i < modalCases().size(); ++i) {
    SCOPED_TRACE(modalCases()[i].name);
    start();
    const ModalCase asking = modalCases()[i];
    bool returned = false;
    whenModalOpens([&](QWidget&) { quit(); });
    const int code = runProgram([&] {
      asking.act();
      returned = true;
    });
    EXPECT_EQ(code, 0) << "it did not end by itself";
    EXPECT_TRUE(returned);
  }
}

TEST_F(HostDuringADialog, MayQuitTheProgramWhileADockWindowFloats) {
  start();
  QDockWidget& dock = *widget_->findChild<QDockWidget*>();
  dock.setFloating(true);
  dock.show();
  settle();
  EXPECT_EQ(runProgram([&] { quit(); }), 0) << "it did not end by itself";
}

TEST_F(Host, EndsFloatingDockWindowsWithTheEditor) {
  start();
  QDockWidget& dock = *widget_->findChild<QDockWidget*>();
  dock.setFloating(true);
  dock.show();
  settle();
  end(Ends::Editor);
  expectNothingLeft();
}

TEST_F(Host, GetsBoxesOverTheEditorsWindowNotTheActiveOne) {
  start();
  QWidget other;
  qt::ImageEditor second(*component_, nullptr, &other);
  second.control().Initialize();
  other.show();
  action("btnImageMirror").trigger();
  QApplication::setActiveWindow(&other);
  settle();
  for (const bool box : {true, false}) {
    QWidget* over = nullptr;
    whenModalOpens([&](QWidget& dialog) {
      over = dialog.parentWidget()->window();
      static_cast<QDialog&>(dialog).reject();
    });
    if (box) {
      EXPECT_FALSE(control().SaveChanges());
    } else {
      EXPECT_EQ(control().ShowRotateDialog(), 0);
    }
    EXPECT_EQ(over, window_.data());
  }
}

TEST_F(Host, MayUseTheEditorAfterASecondComponentEnded) {
  start();
  {
    const qt::Component second;
    EXPECT_TRUE(control().OpenImage(file("open.png")));
  }
  EXPECT_TRUE(control().OpenImage(file("open.png")));
  control().ForeColor(0x00010203);
  EXPECT_NO_THROW(modProcessing::Platform());
  end(Ends::Editor);
  expectNothingLeft();
}

TEST_F(Host, MayEndTheComponentRightAfterTheEditor) {
  start();
  end(Ends::Window);
  EXPECT_TRUE(widget_) << "kept until control is back in the event loop";
  component_.reset();
  EXPECT_FALSE(widget_);
}

TEST(EmbeddedComponent, KeepsTheSharedServicesUntilTheProcessEnds) {
  const std::string moved = "Software\\Brindlewick\\ImageProcessing2";
  std::string first;
  {
    const qt::Component component;
    first = modProcessing::WindowPositions().RegistryKey();
    modProcessing::WindowPositions().RegistryKey(moved);
  }
  const qt::Component next;
  EXPECT_EQ(modProcessing::WindowPositions().RegistryKey(), moved) << "Main runs once per process";
  modProcessing::WindowPositions().RegistryKey(first);
}

// -- Dropped files ----------------------------------------------------------------------------------------

TEST_F(Host, TakesFilesForTheEditorUnlessItsPropertyIsOff) {
  noise(70, 30).save(QString::fromStdString(file("dropped.png")));
  start();
  EXPECT_TRUE(editor_->property("acceptFiles").toBool());
  editor_->setProperty("acceptFiles", false);
  EXPECT_FALSE(dropFile(canvas(), file("dropped.png")));
  settle();
  EXPECT_EQ(control().Filename(), file("open.png"));
  control().Picture(nullptr);
  EXPECT_EQ(control().ImageControl().EmptyHint(), "Open a picture.");
  editor_->setProperty("acceptFiles", true);
  EXPECT_EQ(control().ImageControl().EmptyHint(), "Open a picture, or drop one here.");
  EXPECT_TRUE(dropFile(canvas(), file("dropped.png")));
  settle();
  EXPECT_EQ(control().Filename(), file("dropped.png"));
}

TEST_F(Host, MayEndTheEditorAfterADrop) {
  start();
  EXPECT_TRUE(dropFile(canvas(), file("open.png")));
  end(Ends::Editor);
  settle();
  EXPECT_TRUE(editor_.isNull());
}

}  // namespace
}  // namespace kestrel::desktop
