#pragma once

#include <QWidget>

#include "DockableForm.h"

class QSizeGrip;

namespace kestrel::qt {

/// What a dock window shows: a form, and while the window floats a frame around it and a grip to resize the
/// window by. On some desktops a floating window has neither of its own.
class DockContent final : public QWidget {
  Q_OBJECT

 public:
  explicit DockContent(DockableForm& form);

  void setFloating(bool value);

  /// Paints the line of the frame around `place` of a widget.
  static void paintFrame(QWidget& widget, const QRect& place);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QSizeGrip* grip_;
  bool floating_ = false;
};

}  // namespace kestrel::qt
