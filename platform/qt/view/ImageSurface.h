#pragma once

#include <QScrollBar>
#include <QWidget>

#include "NoticeStrip.h"
#include "ViewCanvas.h"
#include "engine/view/View.h"

namespace kestrel::qt {

/// The widget of an image view: its canvas, the scroll bars if the picture is larger, and the notice above
/// them. The notice reduces the canvas and does not cover it.
class ImageSurface final : public QWidget {
  Q_OBJECT

 public:
  explicit ImageSurface(QWidget* parent = nullptr);

  ViewCanvas& canvas() const { return *canvas_; }
  QScrollBar& horizontalBar() const { return *horizontal_; }
  QScrollBar& verticalBar() const { return *vertical_; }
  NoticeStrip& notice() const { return *notice_; }

  void setView(engine::View* view);
  engine::View* view() const { return view_; }

  /// The area below the notice, in device pixels; fractions of a pixel are not counted.
  QSize deviceSizeWithoutBars() const;

  /// Updates the bars from the view's ranges, and shows or hides them as needed.
  void updateBars();

  /// An empty text hides the notice; if it had the focus, the canvas gets it.
  void showNotice(const QString& text, const QString& button);

 protected:
  bool event(QEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct BarsShown {
    bool horizontal = false;
    bool vertical = false;
    friend bool operator==(const BarsShown&, const BarsShown&) = default;
  };

  BarsShown barsNeeded() const;
  int heightBelowNotice() const;
  void layOut();
  void scrolled();

  engine::View* view_ = nullptr;
  ViewCanvas* canvas_;
  QScrollBar* horizontal_;
  QScrollBar* vertical_;
  NoticeStrip* notice_;
  BarsShown shown_;
  bool updating_ = false;
};

}  // namespace kestrel::qt
