#pragma once

#include <QMetaObject>
#include <QObject>
#include <functional>
#include <utility>

namespace kestrel::qt {

/// Work that is done once when control is back in the event loop, however often it was asked for until then.
class PostedCall final : public QObject {
 public:
  explicit PostedCall(std::function<void()> work) : work_(std::move(work)) {}

  void post() {
    if (std::exchange(posted_, true)) return;
    QMetaObject::invokeMethod(
        this, [this] { run(); }, Qt::QueuedConnection);
  }

 private:
  void run() {
    posted_ = false;
    work_();
  }

  std::function<void()> work_;
  bool posted_ = false;
};

}  // namespace kestrel::qt
