#pragma once

#include <QDialog>

namespace kestrel::qt {

/// A dialog that distinguishes its user's cancellation from its end with its owner.
class UserDialog : public QDialog {
  Q_OBJECT

 public:
  using QDialog::QDialog;

  /// Whether it was closed by somebody else than the user.
  bool abandoned() const { return !closedByUser_; }

 protected:
  /// Escape, or the close box. May leave the dialog open.
  virtual void cancel() = 0;
  void closeWith(int result);

  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  bool closedByUser_ = false;
};

}  // namespace kestrel::qt
