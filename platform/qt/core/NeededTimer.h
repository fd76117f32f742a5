#pragma once

#include <QTimer>
#include <chrono>
#include <functional>

namespace kestrel::qt {

/// Calls `work` at an interval, but only while that is needed: an idle program is not woken.
///
/// Whether it is needed is looked up each time the event loop goes to sleep or wakes up, so `needed` must be
/// cheap. A host whose loop bypasses the toolkit's dispatcher calls `look` itself.
class NeededTimer final : public QObject {
  Q_OBJECT

 public:
  /// The functions must be callable as long as this object lives. Errors of `work` go to the handler of stray
  /// errors.
  NeededTimer(std::chrono::milliseconds interval, std::function<bool()> needed, std::function<void()> work,
              QObject* parent = nullptr);

  /// Starts the timer if it is needed.
  void look();
  bool isActive() const { return timer_.isActive(); }

 private:
  void run();

  std::function<bool()> needed_;
  std::function<void()> work_;
  QTimer timer_;
};

}  // namespace kestrel::qt
