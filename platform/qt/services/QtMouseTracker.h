#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include "imaging/contract/MouseTracker.h"

namespace kestrel::qt {

class QtMouseTracker final : public QObject, public MouseTracker {
  Q_OBJECT

 public:
  QtMouseTracker();

  WindowHandle hWnd() const override;
  void hWnd(WindowHandle value) override;
  bool Tracking() const override { return hoverArmed_ || leaveArmed_; }
  void StartTracking() override;
  void StopTracking() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void hovered();
  void left();

  QPointer<QWidget> window_;
  QTimer rest_;
  bool hoverArmed_ = false;
  bool leaveArmed_ = false;
};

}  // namespace kestrel::qt
