#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QPointer>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <QTimer>

namespace {

// Long enough for a busy machine; only a failing test waits this long.
constexpr qint64 kPatienceMilliseconds = 60'000;

/// The texts of a window, for the report of a test that left it open.
std::string textsOf(const QWidget& window) {
  QStringList texts = {window.windowTitle()};
  for (const QLabel* label : window.findChildren<QLabel*>()) texts += label->text();
  return texts.join(QStringLiteral(" | ")).toStdString();
}

/// A modal window left open would block all tests: closes it and fails the test that opened it.
class ForgottenWindows {
 public:
  ForgottenWindows() {
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { look(); });
    timer_.setObjectName(QStringLiteral("ofTheTestProgram"));
    timer_.start(100);
  }

 private:
  void look() {
    QWidget* const modal = QApplication::activeModalWidget();
    if (modal != window_) {
      window_ = modal;
      since_.start();
    } else if (modal && since_.elapsed() > kPatienceMilliseconds) {
      ADD_FAILURE() << "A window stayed open: " << textsOf(*modal);
      modal->close();
    }
  }

  QTimer timer_;
  QElapsedTimer since_;
  QPointer<QWidget> window_;
};

}  // namespace

/// One application for all tests, on a display without a screen unless another is asked for, with settings
/// and thumbnails that nobody else sees.
int main(int count, char** values) {
  const QTemporaryDir settings;
  qputenv("KESTREL_STORE", settings.filePath(QStringLiteral("settings.store")).toUtf8());
  qputenv("XDG_CACHE_HOME", settings.path().toUtf8());
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&count, values);
  QApplication application(count, values);
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QApplication::setQuitOnLastWindowClosed(false);
  const ForgottenWindows watch;
  return RUN_ALL_TESTS();
}
