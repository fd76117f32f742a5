#include "ForeignDesktop.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QEventLoop>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <QWindow>
#include <clocale>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Display.h"
#include "base/RuntimeError.h"
#include "platform/qt/app/ApplicationIcon.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/embed/Component.h"
#include "platform/qt/embed/ImageBrowser.h"
#include "platform/qt/embed/ImageEditor.h"

namespace kestrel::qt {
namespace {

/// RPC_E_WRONG_THREAD, as hosts know it.
constexpr std::int32_t kWrongThread = -2147417842;

std::unique_ptr<QApplication> makeApplication() {
  const Display display;
  if (!display.exists()) throw RuntimeError(err::kCannotCreateObject, "There is no display for windows.");
  // The application object refers to its arguments as long as it exists.
  static int count = 1;
  static std::string name = "kestrel";
  static char* arguments[] = {name.data(), nullptr};
  // The toolkit sets the user's locale. The host goes on writing its numbers as before.
  const char* const present = std::setlocale(LC_NUMERIC, nullptr);
  const std::string numbers = present ? present : "C";
  auto application = std::make_unique<QApplication>(count, arguments);
  std::setlocale(LC_NUMERIC, numbers.c_str());
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setWindowIcon(applicationIcon());
  return application;
}

/// The application object, if it has to be made here; null if there is one of the host.
std::unique_ptr<QApplication> ownApplication() {
  const QCoreApplication* const present = QCoreApplication::instance();
  if (!present) return makeApplication();
  if (present->thread() != QThread::currentThread()) {
    throw RuntimeError(kWrongThread, "Windows can be made only on the thread of the application object.");
  }
  if (!qobject_cast<const QApplication*>(present)) {
    throw RuntimeError(err::kCannotCreateObject, "The program's application object is one without windows.");
  }
  return nullptr;
}

/// Holds a token as long as the widget that is its parent.
struct Life final : QObject {
  explicit Life(QWidget& widget) : QObject(&widget) {}
  const std::shared_ptr<const void> token = std::make_shared<char>();
};

QWidget* parentOf(void* parent) {
  if (!parent) return nullptr;
  // Compared, not used: it may be anything.
  for (QWidget* const widget : QApplication::allWidgets()) {
    if (widget == parent) return widget;
  }
  throw RuntimeError(err::kInvalidCall, "The parent is no widget of this program.");
}

}  // namespace

struct ForeignDesktop::Inside {
  explicit Inside(std::function<void()> whenEnding) : ending(std::move(whenEnding)) {
    present() = this;
    qAddPostRoutine(&endWithApplication);
  }
  ~Inside() {
    qRemovePostRoutine(&endWithApplication);
    present() = nullptr;
    for (const auto& [control, widget] : controls) delete widget.data();
  }
  Inside(const Inside&) = delete;
  Inside& operator=(const Inside&) = delete;

  static Inside*& present() {
    static Inside* inside = nullptr;
    return inside;
  }
  static void endWithApplication() {
    if (!present()) return;
    const std::function<void()> end = present()->ending;
    end();
  }

  template <typename Widget, typename Control>
  Embedded<Control> embed(void* parent) {
    std::erase_if(controls, [](const auto& row) { return row.second.isNull(); });
    auto* const widget = new Widget(component, nullptr, parentOf(parent));
    Control* const control = &widget->control();
    controls[control] = widget;
    return {control, static_cast<QWidget*>(widget), (new Life(*widget))->token};
  }

  const std::function<void()> ending;
  const std::unique_ptr<QApplication> application = ownApplication();
  Component component;
  /// Receives the posted calls.
  QObject receiver;
  std::vector<QEventLoop*> running;
  std::map<const void*, QPointer<QWidget>> controls;
};

ForeignDesktop::ForeignDesktop(std::function<void()> ending)
    : inside_(std::make_unique<Inside>(std::move(ending))) {}

ForeignDesktop::~ForeignDesktop() = default;

kestrel::Platform& ForeignDesktop::platform() { return inside_->component.platform(); }

void ForeignDesktop::post(std::function<void()> work) {
  QMetaObject::invokeMethod(
      &inside_->receiver, [work = std::move(work)] { guarded(work); }, Qt::QueuedConnection);
}

void ForeignDesktop::processEvents(std::chrono::milliseconds wait, bool outermost) {
  QEventLoop loop;
  if (!loop.processEvents(QEventLoop::AllEvents) && wait.count() > 0) {
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(wait);
    loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  }
  if (outermost) QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

ForeignDesktop::Reason ForeignDesktop::run(const std::function<bool()>& isDone,
                                           std::optional<std::chrono::milliseconds> limit) {
  if (isDone()) return Reason::kDone;
  QEventLoop loop;
  Reason reason = Reason::kQuit;
  const auto end = [&](Reason why) {
    reason = why;
    loop.quit();
  };
  // No polling: an idle program sleeps.
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &loop, [&] {
    if (loop.isRunning() && isDone()) end(Reason::kDone);
  });
  QTimer timer;
  timer.setSingleShot(true);
  QObject::connect(&timer, &QTimer::timeout, &loop, [&] { end(Reason::kTimedOut); });
  if (limit) timer.start(*limit);
  inside_->running.push_back(&loop);
  loop.exec();
  inside_->running.pop_back();
  return reason;
}

bool ForeignDesktop::quit() {
  if (inside_->running.empty()) return false;
  inside_->running.back()->quit();
  return true;
}

bool ForeignDesktop::showsWindows() {
  for (const QWidget* const window : QApplication::topLevelWidgets()) {
    const bool stays = window->windowType() == Qt::Window || window->windowType() == Qt::Dialog;
    if (stays && window->isVisible()) return true;
  }
  return false;
}

ForeignDesktop::Embedded<IImageProcessingCtl> ForeignDesktop::embedEditor(void* parent) {
  return inside_->embed<ImageEditor, IImageProcessingCtl>(parent);
}

ForeignDesktop::Embedded<IImageBrowserCtl> ForeignDesktop::embedBrowser(void* parent) {
  return inside_->embed<ImageBrowser, IImageBrowserCtl>(parent);
}

std::uint64_t ForeignDesktop::windowOf(void* widget) { return static_cast<QWidget*>(widget)->winId(); }

bool ForeignDesktop::destroy(const void* control) {
  const auto found = inside_->controls.find(control);
  if (found == inside_->controls.end()) return false;
  const QPointer<QWidget> widget = found->second;
  inside_->controls.erase(found);
  delete widget.data();
  return true;
}

}  // namespace kestrel::qt
