#pragma once

#include <QComboBox>
#include <QPointer>

#include "platform/docking/MoorageModel.h"

namespace kestrel::qt {

/// The field of a combo command: its lines to choose from, and any text to type. Enter confirms what was
/// typed; Escape, or going elsewhere, brings the present text back. Both give the focus back to where it was.
class ComboField final : public QComboBox {
  Q_OBJECT

 public:
  ComboField(docking::MoorageModel& suite, docking::CommandModel& command);

  /// Shows the model's lines and text anew.
  void refresh();

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void confirm();
  void leave();

  docking::MoorageModel& suite_;
  docking::CommandModel& command_;
  QPointer<QWidget> before_;  // had the focus before
};

}  // namespace kestrel::qt
