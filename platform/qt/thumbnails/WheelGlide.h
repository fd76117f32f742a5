#pragma once

#include <QTimer>
#include <cstdint>
#include <functional>

namespace kestrel::qt {

/// Turns the jumps of a mouse wheel into a glide. Distances are device pixels along the scroll axis.
class WheelGlide {
 public:
  /// `scroll` scrolls by a distance and returns false where that is impossible.
  explicit WheelGlide(std::function<bool(std::int64_t distance)> scroll);

  /// Adds a distance; at once if `animated` is false.
  void add(double distance, bool animated);
  void stop();
  bool isGliding() const { return timer_.isActive(); }

 private:
  void step();

  std::function<bool(std::int64_t)> scroll_;
  QTimer timer_;
  double rest_ = 0;
};

}  // namespace kestrel::qt
