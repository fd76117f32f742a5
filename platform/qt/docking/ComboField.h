#pragma once

#include <QComboBox>
#include <QPointer>

#include "platform/docking/MoorageModel.h"

namespace kestrel::qt {

/// The field of a combo command: a list of lines and free text. Enter confirms the typed text; Escape, or
/// losing the focus, restores the current text. Both return the focus to the previous widget.
class ComboField final : public QComboBox {
  Q_OBJECT

 public:
  ComboField(docking::MoorageModel& suite, docking::CommandModel& command);

  /// Updates lines and text from the model.
  void refresh();

  void hidePopup() override;

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  /// Whether it is part of the field or of its list, which is a window of its own.
  bool isOwn(const QWidget& widget) const;
  void fitTexts();
  void confirm();
  void leave();

  docking::MoorageModel& suite_;
  docking::CommandModel& command_;
  QPointer<QWidget> before_;  // previous focus widget
};

}  // namespace kestrel::qt
