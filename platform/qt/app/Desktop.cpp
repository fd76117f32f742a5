#include "Desktop.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QPixmap>
#include <QTranslator>
#include <QWidget>
#include <utility>

#include "../Guard.h"
#include "../Handles.h"
#include "../QtPlatform.h"
#include "../Text.h"
#include "ApplicationIcon.h"
#include "base/RuntimeError.h"

namespace kestrel::qt {
namespace {

constexpr int kQuietRounds = 3;
constexpr int kRoundMilliseconds = 20;

/// The translations of the toolkit's own texts and of ours, as far as there are any for the user's language.
void translate(QApplication& application) {
  const std::pair<QString, QString> books[] = {
      {QStringLiteral("qtbase"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)},
      {QStringLiteral("kestrel"), QApplication::applicationDirPath() + QStringLiteral("/translations")}};
  for (const auto& [name, folder] : books) {
    auto* const translator = new QTranslator(&application);
    if (translator->load(QLocale(), name, QStringLiteral("_"), folder)) {
      QApplication::installTranslator(translator);
    }
  }
}

}  // namespace

struct Desktop::Inside {
  Inside(int& argumentCount, char** arguments) : application(argumentCount, arguments) {}

  QApplication application;
  std::unique_ptr<QtPlatform> platform;
};

Desktop::Desktop(int& argumentCount, char** arguments, const std::string& desktopName)
    : inside_(std::make_unique<Inside>(argumentCount, arguments)) {
  QApplication::setApplicationName(toQt(desktopName));
  QApplication::setDesktopFileName(toQt(desktopName));
  QApplication::setQuitOnLastWindowClosed(false);  // a help window may outlive the editor's
  QApplication::setWindowIcon(applicationIcon());
  translate(inside_->application);
}

Desktop::~Desktop() { setStrayErrorHandler(nullptr); }

void Desktop::assemble(DesktopParts parts) {
  QApplication::setApplicationDisplayName(translated(parts.version.title));
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

void Desktop::settle() {
  for (int round = 0; round < kQuietRounds; ++round) {
    QApplication::processEvents(QEventLoop::AllEvents, kRoundMilliseconds);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

bool Desktop::saveScreenshot(Form& form, const std::string& filename) {
  settle();
  QWidget* const window = widgetOf(form.hWnd());
  return window && window->grab().save(toQt(filename));
}

}  // namespace kestrel::qt
