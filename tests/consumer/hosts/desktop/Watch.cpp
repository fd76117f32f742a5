#include <QApplication>
#include <QTimer>

#include <kestrel/ImageEditor.h>
#include <kestrel/imaging/contract/Image.h>
#include <kestrel/settings/Options.h>

// Watches the README's host without a change of it: once the editor is painted, the host ends with 0 if the
// picture is open. Uses the toolkit's keywords, which a host may.

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
      emit painted(open && editor->control().Options()->UndoLevels() > 0);
    }
    return false;
  }

 signals:
  void painted(bool open);

 private slots:
  void end(bool open) {
    QTimer::singleShot(0, qApp, [open] { QCoreApplication::exit(open ? 0 : 1); });
  }

 private:
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
