#pragma once

#include <QScrollBar>
#include <QWidget>

#include "ViewCanvas.h"
#include "engine/view/View.h"

namespace kestrel::qt {

/// The window of an image view: its canvas, and the scroll bars where the picture reaches beyond it.
class ImageSurface final : public QWidget {
  Q_OBJECT

 public:
  explicit ImageSurface(QWidget* parent = nullptr);

  ViewCanvas& canvas() const { return *canvas_; }
  QScrollBar& horizontalBar() const { return *horizontal_; }
  QScrollBar& verticalBar() const { return *vertical_; }

  void setView(engine::View* view);

  /// Brings the bars into line with the view's ranges, and shows and hides them as they are needed.
  void updateBars();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct BarsShown {
    bool horizontal = false;
    bool vertical = false;
    friend bool operator==(const BarsShown&, const BarsShown&) = default;
  };

  BarsShown barsNeeded() const;
  void layOut();
  void scrolled();

  engine::View* view_ = nullptr;
  ViewCanvas* canvas_;
  QScrollBar* horizontal_;
  QScrollBar* vertical_;
  BarsShown shown_;
  bool updating_ = false;
};

}  // namespace kestrel::qt
