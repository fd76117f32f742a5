#pragma once

#include <QTimer>

#include "ImageSurface.h"
#include "engine/view/View.h"
#include "platform/qt/controls/WidgetControl.h"

namespace kestrel::qt {

/// The image view on the desktop.
class QtImageView final : public WidgetControl<engine::View> {
 public:
  /// The surface outlives the view or is destroyed with it. The clipboard must outlive both.
  QtImageView(ImageSurface& surface, ControlId id, engine::ClipboardPort& clipboard);
  ~QtImageView() override;

  /// The handle of the canvas, the origin of view coordinates.
  WindowHandle hWnd() const override { return handleOf(&surface_.canvas()); }
  ImageSurface& surface() { return surface_; }

 protected:
  void invalidate(const Rectangle& area) override;
  void repaint() override;
  void showCursor(engine::ViewCursor cursor) override;
  void scrollRangesChanged() override;
  void setTimer(engine::ViewTimer which, bool on) override;
  void showNotice(const std::string& text, const std::string& action) override;
  Size sizeWithoutBars() const override;

 private:
  QTimer& timerOf(engine::ViewTimer which);

  ImageSurface& surface_;
  QTimer march_;
  QTimer autoScroll_;
};

}  // namespace kestrel::qt
