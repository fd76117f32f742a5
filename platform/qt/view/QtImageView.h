#pragma once

#include <QPointer>
#include <QTimer>

#include "ImageSurface.h"
#include "engine/view/View.h"
#include "platform/qt/controls/WidgetControl.h"

namespace kestrel::qt {

/// The image view on the desktop.
class QtImageView final : public WidgetControl<engine::View> {
 public:
  /// The surface may be destroyed before the view, with the window that contains it: the view then paints
  /// nothing. The clipboard must outlive both.
  QtImageView(ImageSurface& surface, ControlId id, engine::ClipboardPort& clipboard);
  ~QtImageView() override;

  /// The handle of the canvas, the origin of view coordinates.
  WindowHandle hWnd() const override { return surface_ ? handleOf(&surface_->canvas()) : 0; }
  ImageSurface& surface() { return *surface_; }

 protected:
  void invalidate(const Rectangle& area) override;
  void repaint() override;
  void showCursor(engine::ViewCursor cursor) override;
  void scrollRangesChanged() override;
  void setTimer(engine::ViewTimer which, bool on) override;
  void showNotice(const std::string& text, const std::string& action) override;
  Size sizeWithoutBars() const override;

 private:
  void step();
  void painted();

  QPointer<ImageSurface> surface_;
  std::string notice_;  ///< English
  std::string noticeAction_;
  QTimer march_;
  bool marching_ = false;
  bool painted_ = false;  ///< since the last step of the marching ants
  QTimer autoScroll_;
};

}  // namespace kestrel::qt
