#pragma once

#include <QEvent>
#include <QFocusEvent>
#include <QObject>
#include <functional>

namespace kestrel::qt {

/// An event filter that calls a function after its object has received the keyboard focus and processed the
/// event. A popup window, such as the context menu of an edit, does not take the focus for this: when it
/// closes, the selection that the user made before must be kept.
class FocusWatcher final : public QObject {
 public:
  explicit FocusWatcher(std::function<void()> gotFocus) : gotFocus_(std::move(gotFocus)) {}

  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::FocusIn &&
        static_cast<const QFocusEvent*>(event)->reason() != Qt::PopupFocusReason) {
      QMetaObject::invokeMethod(
          this, [this] { gotFocus_(); }, Qt::QueuedConnection);
    }
    return false;
  }

 private:
  std::function<void()> gotFocus_;
};

}  // namespace kestrel::qt
