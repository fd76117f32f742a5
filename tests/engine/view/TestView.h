#pragma once

#include <cstdint>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "engine/imgx/ClipboardPort.h"
#include "engine/imgx/PictureObject.h"
#include "engine/view/View.h"

namespace kestrel::engine {

/// A clipboard that holds one picture.
class FakeClipboard final : public ClipboardPort {
 public:
  void offer(const Bitmap& value) override { bitmap = value; }
  bool hasBitmap() override { return !bitmap.empty(); }
  Bitmap take() override {
    if (bitmap.empty()) throw RuntimeError(521, "The clipboard holds no picture.");
    return bitmap;
  }
  Bitmap bitmap;
};

struct TestClipboard {
  FakeClipboard clipboard;
};

/// A view without a window that records all events and its calls to the platform.
class TestView : private TestClipboard, public View {
 public:
  explicit TestView(std::int32_t width = 200, std::int32_t height = 100, bool listening = true)
      : View(TestClipboard::clipboard) {
    resize(width, height);
    if (listening) connect();
    ranges = 0;
    invalid.clear();
  }

  FakeClipboard& clipboard() { return TestClipboard::clipboard; }

  /// The events since the last call, in order, as "Name(arguments)".
  std::vector<std::string> take() { return std::exchange(events, {}); }

  /// The whole view as it is painted, RGBA.
  Bitmap shot(ChannelOrder order = ChannelOrder::rgba) {
    Bitmap result = Bitmap::filled(viewWidth, viewHeight, {255, 0, 255, 0});
    const Pixels pixels = result.writable();
    paint({pixels.data, pixels.stride, pixels.width, pixels.height, order}, {0, 0, viewWidth, viewHeight});
    return result;
  }

  /// Loads a picture without undo steps or recorded events.
  void load(const Bitmap& bitmap) {
    Picture(std::make_shared<PictureObject>(bitmap));
    const std::int32_t levels = UndoLevels();
    UndoLevels(0);
    UndoLevels(levels);
    Modified(false);
    events.clear();
  }
  void load(std::int32_t width, std::int32_t height, Pixel value = {10, 20, 30, 255}) {
    load(Bitmap::filled(width, height, value));
  }

  /// A drag with the left button through the points.
  void drag(const std::vector<PointD>& points, std::int32_t shift = 0) {
    press(points.front(), shift);
    for (std::size_t i = 1; i < points.size(); ++i) move(points[i], shift);
    release(points.back(), shift);
  }
  void press(PointD at, std::int32_t shift = 0, std::int32_t button = kLeftButton) {
    held = button;
    pointerDown(button, shift, static_cast<float>(at.X), static_cast<float>(at.Y));
  }
  void move(PointD at, std::int32_t shift = 0) {
    pointerMove(held, shift, static_cast<float>(at.X), static_cast<float>(at.Y));
  }
  void release(PointD at, std::int32_t shift = 0) {
    pointerUp(std::exchange(held, 0), shift, static_cast<float>(at.X), static_cast<float>(at.Y));
  }

  void resize(std::int32_t width, std::int32_t height) {
    viewWidth = width;
    viewHeight = height;
    View::resize(width, height);
  }

  // Window members: there is no window.
  const std::string& Name() const override { return name; }
  std::int32_t Index() const override { return -1; }
  std::int32_t Left() const override { return 0; }
  void Left(std::int32_t) override {}
  std::int32_t Top() const override { return 0; }
  void Top(std::int32_t) override {}
  std::int32_t Width() const override { return viewWidth; }
  void Width(std::int32_t value) override { resize(value, viewHeight); }
  std::int32_t Height() const override { return viewHeight; }
  void Height(std::int32_t value) override { resize(viewWidth, value); }
  void Move(std::int32_t, std::int32_t, std::int32_t width, std::int32_t height) override {
    resize(width, height);
  }
  bool Visible() const override { return true; }
  void Visible(bool) override {}
  bool Enabled() const override { return true; }
  void Enabled(bool) override {}
  void ZOrder() override {}
  WindowHandle hWnd() const override { return 0; }

  std::vector<std::string> events;
  std::vector<Rectangle> invalid;
  std::int32_t repaints = 0;
  std::int32_t ranges = 0;
  std::vector<ViewCursor> cursors;
  bool marching = false;
  bool autoScrolling = false;

 protected:
  void invalidate(const Rectangle& area) override { invalid.push_back(area); }
  void repaint() override {
    ++repaints;
    shot();
  }
  void showCursor(ViewCursor cursor) override { cursors.push_back(cursor); }
  void scrollRangesChanged() override { ++ranges; }
  void setTimer(ViewTimer which, bool on) override {
    (which == ViewTimer::march ? marching : autoScrolling) = on;
  }
  void showNotice(const std::string& /*text*/, const std::string& /*action*/) override {}

 private:
  template <typename... Args>
  void note(Event<Args...>& event, const char* eventName) {
    connections.push_back(event.Connect([this, eventName](Args... args) {
      std::ostringstream text;
      [[maybe_unused]] const char* separator = "";
      text << eventName << '(';
      ((text << separator << args, separator = ", "), ...);
      text << ')';
      events.push_back(text.str());
    }));
  }

  void connect() {
    note(Click, "Click");
    note(MouseDown, "MouseDown");
    note(MouseMove, "MouseMove");
    note(MouseUp, "MouseUp");
    note(MouseMovePixel, "MouseMovePixel");
    note(BeforeZoomChanged, "BeforeZoomChanged");
    note(Changed, "Changed");
    note(SelectChanged, "SelectChanged");
    note(Selected, "Selected");
    note(WheelZoom, "WheelZoom");
    note(Pan, "Pan");
    note(PanChanged, "PanChanged");
    note(Scroll, "Scroll");
    note(ScrollChanged, "ScrollChanged");
  }

  std::vector<Connection> connections;
  std::string name = "igxImage";
  std::int32_t held = 0;
  std::int32_t viewWidth = 0;
  std::int32_t viewHeight = 0;
};

}  // namespace kestrel::engine
