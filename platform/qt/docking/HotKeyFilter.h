#pragma once

#include <QObject>
#include <QWidget>

#include "platform/docking/MoorageModel.h"

namespace kestrel::qt {

/// Hands the keys that go down in the control's own widgets, its floating dock windows included, to the suite
/// before the focused widget gets them, and before the shortcuts of the host; but never those with which a
/// text is written. Keys of all other widgets are none of the suite's. Those that go to the window itself, as
/// no widget in it has the focus, belong to a control that fills the window.
class HotKeyFilter final : public QObject {
  Q_OBJECT

 public:
  /// `control` is the widget of the whole control, with the suite in it.
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
