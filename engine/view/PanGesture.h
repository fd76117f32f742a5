#pragma once

#include "Gesture.h"

namespace kestrel::engine {

/// Scrolls the picture with the pointer.
class PanGesture final : public Gesture {
 public:
  PanGesture(GestureHost& host, PointD at, bool withPanTool)
      : host_(host),
        withPanTool_(withPanTool),
        start_{host.horizontal().offset(), host.vertical().offset()},
        grabbed_{start_.X + at.X, start_.Y + at.Y} {}

  void drag(PointD at, std::int32_t /*shift*/) override {
    host_.pan(grabbed_.X - at.X, grabbed_.Y - at.Y, withPanTool_);
  }
  void end(bool dragged) override {
    if (dragged) host_.panEnded(withPanTool_);
  }
  void cancel() override {
    host_.pan(start_.X, start_.Y, withPanTool_);
    host_.panEnded(withPanTool_);
  }
  bool scrolls() const override { return false; }

 private:
  GestureHost& host_;
  bool withPanTool_;
  PointD start_;
  PointD grabbed_;
};

}  // namespace kestrel::engine
