#include "EditorBench.h"

#include <QApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <QWindow>

#include "base/RuntimeError.h"
#include "platform/posix/LineTable.h"
#include "platform/qt/core/Pictures.h"
#include "platform/store/MemoryStore.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

class NothingInstalled final : public ObjectFactory {
 public:
  std::unique_ptr<ErrorReporter> CreateErrorReporter(const std::string& identifier) override {
    throw RuntimeError(err::kCannotCreateObject, "\"" + identifier + "\" is not installed.");
  }
};

qt::DesktopParts testParts() {
  qt::DesktopParts parts;
  parts.version = {"KestrelLib2 Image Editor", 2, 0, 0};
  parts.store = std::make_unique<store::MemoryStore>();
  parts.objectFactory = std::make_unique<NothingInstalled>();
  parts.stackResolver = std::make_unique<posix::LineTable>();
  return parts;
}

}  // namespace

std::unique_ptr<qt::QtPlatform> testPlatform() { return std::make_unique<qt::QtPlatform>(testParts()); }

EditorBench::EditorBench() : platform_(testPlatform()) {
  modProcessing::Attach(*platform_);
  modProcessing::Main();
  form_.reset(static_cast<qt::QtForm*>(platform_->CreateForm("frmImageEditor").release()));
  editor_ = std::make_unique<ImageProcessingCtl>(*widget().site());
  window().resize(1100, 760);
  form_->Show();
  editor_->Initialize();
  QApplication::setActiveWindow(&window());
  canvas().setFocus();
  settle();
}

EditorBench::~EditorBench() {
  editor_->Terminate();
  editor_.reset();
  form_.reset();
  modProcessing::Detach();
}

qt::EditorWidget& EditorBench::widget() { return *window().findChild<qt::EditorWidget*>(); }

void EditorBench::showPicture(const QImage& picture) {
  editor_->Picture(std::make_shared<qt::ImagePicture>(picture));
  settle();
}

QImage EditorBench::grabWindow() { return window().grab().toImage(); }

void EditorBench::screenshot(const std::string& name) { writeScreenshot(window(), name); }

QImage noise(int width, int height) {
  QImage picture(width, height, QImage::Format_RGBA8888);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const unsigned mixed = static_cast<unsigned>(x) * 2654435761U ^ static_cast<unsigned>(y) * 2246822519U;
      picture.setPixelColor(x, y, QColor::fromRgb((mixed ^ (mixed >> 13)) & 0xFFFFFF));
    }
  }
  return picture;
}

void pressKey(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QTest::keyClick(window.window()->windowHandle(), key, modifiers);
}

void pressKey(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text) {
  QTest::sendKeyEvent(QTest::Click, window.window()->windowHandle(), key, text, modifiers);
}

bool dropFile(QWidget& widget, const std::string& name, Qt::DropActions actions) {
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(QString::fromStdString(name))});
  QWindow* const window = widget.window()->windowHandle();
  const QPoint at = widget.mapTo(widget.window(), widget.rect().center());
  QDragEnterEvent enter(at, actions, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(window, &enter);
  if (!enter.isAccepted()) return false;
  QDropEvent drop(at, actions, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(window, &drop);
  return drop.isAccepted() && drop.dropAction() != Qt::MoveAction;
}

void settle() {
  for (int round = 0; round < 3; ++round) QTest::qWait(5);
}

void writeScreenshot(QWidget& widget, const std::string& name) {
  const QDir folder(QStringLiteral(KESTREL_SCREENSHOTS));
  folder.mkpath(QStringLiteral("."));
  const QString file =
      QStringLiteral("%1@%2.png").arg(QString::fromStdString(name)).arg(qApp->devicePixelRatio());
  widget.grab().save(folder.filePath(file));
}

void whenModalOpens(std::function<void(QWidget& dialog)> work) {
  auto* const watch = new QTimer(qApp);
  // A dialog that is open already is not the one to wait for, however late the other one opens.
  const QPointer<QWidget> open = QApplication::activeModalWidget();
  QObject::connect(watch, &QTimer::timeout, watch, [watch, open, work = std::move(work)] {
    QWidget* const dialog = QApplication::activeModalWidget();
    if (!dialog || !dialog->isVisible() || dialog == open) return;
    watch->stop();
    const auto job = work;  // the timer is deleted before the work ends
    watch->deleteLater();
    job(*dialog);
  });
  watch->start(5);
}

}  // namespace kestrel::desktop
