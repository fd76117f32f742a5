#include <QAction>
#include <QApplication>
#include <QTextBrowser>
#include <QTimer>

#include <kestrel/ImageEditor.h>
#include <kestrel/imaging/contract/Image.h>
#include <kestrel/settings/Options.h>

// Watches the README's host without a change of it. Once the editor is painted, its help is opened and the
// host ends: with 0 if the picture is open and the help window shows a page. Uses the toolkit's keywords,
// which a host may.

class Watch : public QObject {
  Q_OBJECT

 public:
  Watch() {
    connect(this, SIGNAL(painted(bool)), this, SLOT(end(bool)));
    qApp->installEventFilter(this);
  }

  bool eventFilter(QObject* object, QEvent* event) override {
    auto* const editor = qobject_cast<kestrel::qt::ImageEditor*>(object);
    if (editor != nullptr && event->type() == QEvent::Paint && !ended_) {
      ended_ = true;
      const kestrel::Image* const image = editor->control().Image();
      const bool open = image != nullptr && image->Width() > 0;
      editor_ = editor;
      emit painted(open && editor->control().Options()->UndoLevels() > 0);
    }
    return false;
  }

 signals:
  void painted(bool open);

 private slots:
  void end(bool open) {
    // Runs while the message box is open that reports a missing help book.
    QTimer::singleShot(0, this, [this, open] {
      QTimer::singleShot(0, this, [this, open] { QCoreApplication::exit(open && showsHelp() ? 0 : 1); });
      openHelp();
    });
  }

 private:
  void openHelp() {
    for (QAction* const action : editor_->findChildren<QAction*>()) {
      if (action->text().contains("Contents")) return action->trigger();
    }
  }

  static bool showsHelp() {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      const auto* const page = window->findChild<QTextBrowser*>();
      if (page != nullptr && page->toPlainText().size() > 100) return true;
    }
    return false;
  }

  kestrel::qt::ImageEditor* editor_ = nullptr;
  bool ended_ = false;
};

namespace {
void watch() {
  static Watch* const watch = new Watch;
  watch->setParent(qApp);
}
}  // namespace

Q_COREAPP_STARTUP_FUNCTION(watch)

#include "Watch.moc"
