#pragma once

#include <QEvent>
#include <QObject>
#include <functional>

namespace kestrel::qt {

/// An event filter that calls a function after its object has received the keyboard focus and processed the
/// event.
class FocusWatcher final : public QObject {
 public:
  explicit FocusWatcher(std::function<void()> gotFocus) : gotFocus_(std::move(gotFocus)) {}

  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::FocusIn) {
      QMetaObject::invokeMethod(
          this, [this] { gotFocus_(); }, Qt::QueuedConnection);
    }
    return false;
  }

 private:
  std::function<void()> gotFocus_;
};

}  // namespace kestrel::qt
