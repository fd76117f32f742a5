#include <QApplication>
#include <QDialog>
#include <QMenu>
#include <QTextBrowser>
#include <QTimer>

#include <kestrel/ImageEditor.h>
#include <kestrel/imaging/contract/Image.h>
#include <kestrel/imaging/contract/ImageView.h>
#include <kestrel/settings/Options.h>

// Watches the README's host without a change of it. Once the editor is painted, its help is opened, then the
// editor is closed with unsaved changes, and the host ends: with 0 if the picture is open, the help window
// shows a page and the user could cancel the close. Uses the toolkit's keywords, which a host may.

class Watch : public QObject {
  Q_OBJECT

 public:
  Watch() {
    connect(this, SIGNAL(painted()), this, SLOT(use()));
    qApp->installEventFilter(this);
  }

  bool eventFilter(QObject* object, QEvent* event) override {
    if (editor_ == nullptr && event->type() == QEvent::Paint) {
      editor_ = qobject_cast<kestrel::qt::ImageEditor*>(object);
      if (editor_ != nullptr) emit painted();
    }
    return false;
  }

 signals:
  void painted();

 private slots:
  void use() {
    // Later, in the host's own event loop.
    QTimer::singleShot(0, this, [this] {
      // Runs also while the message box is open that reports a missing help book.
      QTimer::singleShot(0, this, [this] {
        QCoreApplication::exit(showsPicture() && showsHelp() && asksOnClose() ? 0 : 1);
      });
      openHelp();
    });
  }

 private:
  bool showsPicture() const {
    const kestrel::Image* const image = editor_->control().Image();
    return image != nullptr && image->Width() > 0 && editor_->control().Options()->UndoLevels() > 0;
  }

  /// Opens the menu Help, which is filled then, and chooses its first line.
  static void openHelp() {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      auto* const menu = qobject_cast<QMenu*>(window);
      if (menu == nullptr || menu->objectName() != "mnuHelp") continue;
      menu->popup(QPoint());
      menu->close();
      if (!menu->isEmpty()) menu->actions().first()->trigger();
      return;
    }
  }

  static bool showsHelp() {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      const auto* const page = window->findChild<QTextBrowser*>();
      if (page != nullptr && page->toPlainText().size() > 100) return true;
    }
    return false;
  }

  /// The user closes the window and cancels the question about unsaved changes.
  bool asksOnClose() {
    QTimer user;
    bool asked = false;
    connect(&user, &QTimer::timeout, this, [&asked] {
      auto* const question = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (question == nullptr) return;
      asked = true;
      question->reject();
    });
    user.start(5);
    editor_->control().ImageControl().Modified(true);
    return !editor_->close() && asked && editor_->isVisible();
  }

  kestrel::qt::ImageEditor* editor_ = nullptr;
};

namespace {
void watch() {
  static Watch* const watch = new Watch;
  watch->setParent(qApp);
}
}  // namespace

Q_COREAPP_STARTUP_FUNCTION(watch)

#include "Watch.moc"
