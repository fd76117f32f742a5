#include "Desktop.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QPixmap>
#include <QSet>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <cstdio>
#include <utility>

#include "ApplicationIcon.h"
#include "OpenedDialog.h"
#include "QtPlatform.h"
#include "base/RuntimeError.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Handles.h"
#include "platform/qt/core/Language.h"
#include "platform/qt/core/NeededTimer.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

constexpr int kQuietRounds = 3;
constexpr int kRoundMilliseconds = 20;
/// Delay from showing a window to its screenshot, for work that it does after it has appeared.
constexpr int kFirstLookMilliseconds = 400;
constexpr int kPatienceMilliseconds = 10000;
/// Distance of simulated pointer movements, in pixels.
constexpr double kPointerStride = 4.0;

bool savePicture(QWidget& window, const std::string& filename) {
  constexpr int kSmallest = 0;  // highest compression
  return window.grab()
      .toImage()
      .convertToFormat(QImage::Format_RGB888)
      .save(toQt(filename), "PNG", kSmallest);
}

/// Message handler: passes only serious messages of the toolkit to standard error, which belongs to the
/// program.
void logSeriousMessages(QtMsgType type, const QMessageLogContext& /*where*/, const QString& message) {
  if (type == QtCriticalMsg || type == QtFatalMsg) std::fprintf(stderr, "%s\n", qPrintable(message));
}

struct QuietToolkit {
  QuietToolkit() { qInstallMessageHandler(&logSeriousMessages); }
  QuietToolkit(const QuietToolkit&) = delete;
  QuietToolkit& operator=(const QuietToolkit&) = delete;
  ~QuietToolkit() { qInstallMessageHandler(nullptr); }
};

QSet<QWidget*> shownWindows() {
  QSet<QWidget*> windows;
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    const bool stays = window->windowType() == Qt::Window || window->windowType() == Qt::Dialog;
    if (stays && window->isVisible()) windows.insert(window);
  }
  return windows;
}

void sendPointer(QWidget& widget, QEvent::Type type, QPointF at, Qt::MouseButton button,
                 Qt::MouseButtons held) {
  QMouseEvent event(type, at, widget.mapToGlobal(at), button, held, Qt::NoModifier);
  QApplication::sendEvent(&widget, &event);
}

/// Intermediate points of a movement, without the first one.
std::vector<QPointF> stridesBetween(QPointF from, QPointF to) {
  const int count = std::max(1, static_cast<int>(QLineF(from, to).length() / kPointerStride));
  std::vector<QPointF> points;
  for (int i = 1; i <= count; ++i) points.push_back(from + (to - from) * i / count);
  return points;
}

QWidget& requiredWidget(const Control& control) {
  QWidget* const widget = widgetOf(control.hWnd());
  if (!widget) throw RuntimeError(err::kObjectNotSet, "The control is not shown.");
  return *widget;
}

}  // namespace

struct Desktop::Inside {
  Inside(int& argumentCount, char** arguments) : application(argumentCount, arguments) {}

  const QuietToolkit quiet;
  QApplication application;
  std::unique_ptr<QtPlatform> platform;
};

Desktop::Desktop(int& argumentCount, char** arguments, const std::string& desktopName,
                 const std::string& language)
    : inside_(std::make_unique<Inside>(argumentCount, arguments)) {
  QApplication::setApplicationName(toQt(desktopName));
  QApplication::setDesktopFileName(toQt(desktopName));
  QApplication::setQuitOnLastWindowClosed(false);  // a help window may outlive the editor's window
  QApplication::setWindowIcon(applicationIcon());
  useToolkitTexts(toQt(language));
  useLanguage(toQt(language));
}

Desktop::~Desktop() { setStrayErrorHandler(nullptr); }

void Desktop::assemble(DesktopParts parts) {
  inside_->platform = std::make_unique<QtPlatform>(std::move(parts));
  setStrayErrorHandler([this](const std::string& description) {
    platform().UserInterface().MessageBox(description, kBoxCritical, "Application Error");
  });
}

kestrel::Platform& Desktop::platform() {
  if (!inside_->platform) throw RuntimeError(err::kObjectNotSet, "The desktop has no platform yet.");
  return *inside_->platform;
}

std::string Desktop::programFile() const { return fromQt(QApplication::applicationFilePath()); }

int Desktop::run() { return QApplication::exec(); }

void Desktop::quit(int exitCode) { QApplication::exit(exitCode); }

std::shared_ptr<void> Desktop::repeat(std::chrono::milliseconds interval, std::function<bool()> needed,
                                      std::function<void()> work) {
  return std::make_shared<NeededTimer>(interval, std::move(needed), std::move(work));
}

void Desktop::later(std::function<void()> work) {
  QTimer::singleShot(0, &inside_->application, [work = std::move(work)] { guarded(work); });
}

void Desktop::addContextEntry(const Control& control, const std::string& text, std::function<void()> chosen) {
  QWidget& widget = requiredWidget(control);
  auto* const entry = new QAction(translated(text), &widget);
  QObject::connect(entry, &QAction::triggered, &widget, [chosen = std::move(chosen)] { guarded(chosen); });
  widget.addAction(entry);
}

void Desktop::settle() {
  for (int round = 0; round < kQuietRounds; ++round) {
    QApplication::processEvents(QEventLoop::AllEvents, kRoundMilliseconds);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

bool Desktop::saveScreenshot(Form& form, const std::string& filename) {
  settle();
  QWidget* const window = widgetOf(form.hWnd());
  return window && savePicture(*window, filename);
}

bool Desktop::saveOpenedWindow(const std::function<void()>& open, const std::string& filename, bool& opened) {
  const QSet<QWidget*> before = shownWindows();
  opened = false;
  bool saved = false;
  QElapsedTimer seen;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
    const QSet<QWidget*> added = shownWindows() - before;
    if (added.isEmpty() || opened) return;
    if (!seen.isValid()) seen.start();
    if (seen.elapsed() < kFirstLookMilliseconds) return;
    opened = true;
    QWidget* const window = *added.begin();
    saved = savePicture(*window, filename);
    window->close();
  });
  watch.start(kRoundMilliseconds);
  QElapsedTimer patience;
  patience.start();
  open();
  while (!opened && patience.elapsed() < kPatienceMilliseconds) settle();
  return saved;
}

bool Desktop::useOpenedDialog(const std::function<void()>& open, const std::function<void(Form&)>& use) {
  return OpenedDialog(use).during(open);
}

void Desktop::movePointer(const Control& control, Point to) {
  sendPointer(requiredWidget(control), QEvent::MouseMove, QPointF(to.X, to.Y), Qt::NoButton, Qt::NoButton);
}

void Desktop::drag(const Control& control, const std::vector<Point>& path) {
  if (path.empty()) return;
  QWidget& widget = requiredWidget(control);
  movePointer(control, path.front());
  QPointF at(path.front().X, path.front().Y);
  sendPointer(widget, QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
  for (const Point& corner : path) {
    for (const QPointF& point : stridesBetween(at, QPointF(corner.X, corner.Y))) {
      sendPointer(widget, QEvent::MouseMove, point, Qt::NoButton, Qt::LeftButton);
    }
    at = QPointF(corner.X, corner.Y);
  }
  sendPointer(widget, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
}

}  // namespace kestrel::qt
