#pragma once

#include <QObject>
#include <QWidget>

#include "platform/docking/MoorageModel.h"

namespace kestrel::qt {

/// Passes keys pressed in the control's own widgets, including its floating dock windows, to the suite before
/// the focused widget and the host's shortcuts get them; except keys that edit text. Keys of other widgets
/// are ignored. Keys sent to the window itself, because no widget in it has the focus, belong to a control
/// that fills the window.
class HotKeyFilter final : public QObject {
  Q_OBJECT

 public:
  /// `control` is the widget of the whole control, which contains the suite.
  HotKeyFilter(docking::MoorageModel& suite, const QWidget& control);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool isUsable() const;
  bool owns(const QWidget& widget) const;
  bool fillsItsWindow() const;

  docking::MoorageModel& suite_;
  const QWidget& control_;
};

}  // namespace kestrel::qt
