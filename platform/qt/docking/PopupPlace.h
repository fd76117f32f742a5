#pragma once

#include <QObject>
#include <QPoint>
#include <QWidget>

namespace kestrel::qt {

/// Where a context menu opens: at the pointer; by the menu key, which leaves the pointer anywhere, at what
/// the focused widget has marked (its `Qt::ImCursorRectangle`).
class PopupPlace final : public QObject {
  Q_OBJECT

 public:
  /// `control` is the widget of the whole control.
  explicit PopupPlace(const QWidget& control);

  /// On the screen. `area` is that of the client area, also on the screen, for a pointer outside of it.
  QPoint position(const QRect& area) const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  const QWidget* markedWidget() const;

  const QWidget& control_;
  bool byKey_ = false;  ///< the last input of the user was the menu key
};

}  // namespace kestrel::qt
