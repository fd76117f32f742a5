#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "Gate.h"
#include "platform/qt/core/Handles.h"
#include "platform/qt/dialogs/QtUserInterface.h"
#include "platform/qt/files/QtFileHelpers.h"

namespace kestrel::desktop {

/// Runs one step with each modal window that appears, in its event loop. A window that nobody expected is
/// closed and fails the test, so that no test waits forever.
class WindowScript {
 public:
  using Step = std::function<void(QWidget& window)>;

  WindowScript() {
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { look(); });
    timer_.start(5);
  }

  void then(Step step) { steps_.push_back(std::move(step)); }
  bool isDone() const { return steps_.empty(); }

 private:
  void look() {
    QWidget* const modal = QApplication::activeModalWidget();
    if (!modal || !modal->isVisible() || modal == seen_) return;
    // A window below one that was closed is not a new one.
    if (before_.contains(modal)) return;
    before_ += modal;
    QObject::connect(modal, &QObject::destroyed, &timer_, [this, modal] { before_.removeAll(modal); });
    seen_ = modal;
    if (steps_.empty()) {
      ADD_FAILURE() << "Nobody expected the window \"" << modal->windowTitle().toStdString() << "\".";
      gate().open();
      modal->close();
      return;
    }
    const Step step = std::move(steps_.front());
    steps_.pop_front();
    step(*modal);
  }

  QTimer timer_;
  std::deque<Step> steps_;
  QPointer<QWidget> seen_;
  QList<QWidget*> before_;
};

/// The folders "from" and "to", and a window that owns the boxes.
class FilesBench : public testing::Test {
 protected:
  FilesBench() {
    qputenv("XDG_DATA_HOME", path("data").toUtf8());
    QDir(folder.path()).mkdir(QStringLiteral("from"));
    QDir(folder.path()).mkdir(QStringLiteral("to"));
    owner->resize(600, 400);
    owner->show();
  }
  ~FilesBench() override {
    gate().open();
    EXPECT_TRUE(windows.isDone()) << "a window did not appear";
  }

  QString path(const char* name) const { return folder.filePath(QLatin1String(name)); }
  void write(const char* name, const QByteArray& content) const {
    QFile file(path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
  }
  QByteArray content(const char* name) const {
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
  }
  QString entries(const char* name) const {
    return QDir(path(name)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).join(u' ');
  }
  std::string buffer(const QStringList& names) const {
    std::string all;
    for (const QString& name : names) all += folder.filePath(name).toStdString() + '\0';
    return all;
  }
  bool copy(const QStringList& names) {
    return files.CopyFiles(buffer(names), path("to").toStdString(), 0, qt::handleOf(owner.get()));
  }
  bool move(const QStringList& names) {
    return files.MoveFiles(buffer(names), path("to").toStdString(), 0, qt::handleOf(owner.get()));
  }
  bool remove(const QStringList& names, std::int32_t flags) {
    return files.DeleteFiles(buffer(names), {}, flags, qt::handleOf(owner.get()));
  }

  /// A key as the window system reports it: to the widget of the window that has the focus.
  static void press(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(window.windowHandle(), key, modifiers);
  }
  template <typename Condition>
  static bool eventually(Condition condition) {
    // Only a failing test waits this long.
    constexpr qint64 kPatience = 30'000;
    QElapsedTimer clock;
    clock.start();
    while (!condition() && clock.elapsed() < kPatience) QTest::qWait(5);
    return condition();
  }
  static QString label(const QWidget& window, const char* name) {
    const auto* const found = window.findChild<QLabel*>(QLatin1String(name));
    return found ? found->text() : QStringLiteral("(no label)");
  }
  static QString boxText(QWidget& window) {
    auto* const box = qobject_cast<QMessageBox*>(&window);
    return box ? box->text() : QStringLiteral("(no box)");
  }
  static void screenshot(QWidget& window, const char* name) {
    const QDir pictures(QStringLiteral(KESTREL_SCREENSHOTS));
    pictures.mkpath(QStringLiteral("."));
    const QString file = QStringLiteral("%1@%2.png").arg(QLatin1String(name)).arg(qApp->devicePixelRatio());
    window.grab().save(pictures.filePath(file));
  }

  QTemporaryDir folder;
  OpenCalls calls;
  qt::QtUserInterface boxes{"Files", calls};
  qt::QtFileHelpers files{boxes, calls};
  std::unique_ptr<QWidget> owner = std::make_unique<QWidget>();
  WindowScript windows;
};

}  // namespace kestrel::desktop
