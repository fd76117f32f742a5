#pragma once

#include <QScrollBar>
#include <QWidget>

#include "NoticeStrip.h"
#include "ViewCanvas.h"
#include "engine/view/View.h"

namespace kestrel::qt {

/// The window of an image view: its canvas, the scroll bars where the picture reaches beyond it, and above
/// both the notice while there is one. The notice makes the canvas smaller and covers nothing of it.
class ImageSurface final : public QWidget {
  Q_OBJECT

 public:
  explicit ImageSurface(QWidget* parent = nullptr);

  ViewCanvas& canvas() const { return *canvas_; }
  QScrollBar& horizontalBar() const { return *horizontal_; }
  QScrollBar& verticalBar() const { return *vertical_; }
  NoticeStrip& notice() const { return *notice_; }

  void setView(engine::View* view);

  /// Brings the bars into line with the view's ranges, and shows and hides them as they are needed.
  void updateBars();

  /// An empty text takes the notice away; if it had the focus, the canvas gets it.
  void showNotice(const QString& text, const QString& button);

 protected:
  bool event(QEvent* event) override;
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
