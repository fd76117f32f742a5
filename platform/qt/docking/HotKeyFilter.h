#pragma once

#include <QObject>
#include <QWidget>

#include "platform/docking/MoorageModel.h"

namespace kestrel::qt {

/// Hands the keys that go down in the suite's window, and in its floating dock windows, to the suite before
/// the focused widget gets them; but never those with which a text field is written.
class HotKeyFilter final : public QObject {
  Q_OBJECT

 public:
  HotKeyFilter(docking::MoorageModel& suite, QWidget& surface);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool concerns(const QWidget& widget) const;

  docking::MoorageModel& suite_;
  QWidget& surface_;
};

}  // namespace kestrel::qt
