#pragma once

#include <QPointer>
#include <QWidget>

#include "imaging/contract/WindowFunctions.h"

namespace kestrel::qt {

class QtWindowFunctions final : public WindowFunctions {
 public:
  void AddWindowStyle(WindowHandle window, std::int32_t style) override;
  bool IsWindowVisible(WindowHandle window) override;
  Point GetCursorPos() override;
  Point ScreenToClient(WindowHandle window, const Point& screen) override;
  void LockWindowUpdate(WindowHandle window) override;
  std::int32_t ScreenCount() override;
  Rectangle ScreenArea(std::int32_t index) override;
  Margins FrameOf(WindowHandle window) override;

 private:
  QPointer<QWidget> locked_;
};

}  // namespace kestrel::qt
