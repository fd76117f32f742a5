#include "WheelGlide.h"

#include <cmath>
#include <utility>

namespace kestrel::qt {
namespace {

constexpr int kFrameMilliseconds = 16;
/// Share of the rest that each frame covers: fast at first, then slower.
constexpr double kSharePerFrame = 0.28;
constexpr double kLeastStep = 1.0;

}  // namespace

WheelGlide::WheelGlide(std::function<bool(std::int64_t)> scroll) : scroll_(std::move(scroll)) {
  timer_.setTimerType(Qt::PreciseTimer);
  timer_.setInterval(kFrameMilliseconds);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { step(); });
}

void WheelGlide::add(double distance, bool animated) {
  // A turn back ends the glide at once.
  if (rest_ * distance < 0) rest_ = 0;
  rest_ += distance;
  if (animated) {
    if (!timer_.isActive()) timer_.start();
    return;
  }
  timer_.stop();
  const auto whole = static_cast<std::int64_t>(rest_);
  rest_ -= static_cast<double>(whole);
  if (whole != 0) scroll_(whole);
}

void WheelGlide::stop() {
  timer_.stop();
  rest_ = 0;
}

void WheelGlide::step() {
  if (std::abs(rest_) < kLeastStep) return stop();
  const double part = rest_ * kSharePerFrame;
  const auto distance =
      static_cast<std::int64_t>(std::abs(part) < kLeastStep ? std::copysign(kLeastStep, rest_) : part);
  rest_ -= static_cast<double>(distance);
  if (!scroll_(distance)) stop();
}

}  // namespace kestrel::qt
