#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <exception>
#include <functional>

#include "platform/qt/forms/FormWindow.h"

namespace kestrel::qt {

/// Operates the modal dialog that a call opens, from inside its event loop. No modal window waits for a user.
class OpenedDialog {
 public:
  /// `use` operates the dialog.
  explicit OpenedDialog(std::function<void(Form&)> use);

  /// Runs the call. False if it opened no form. Raises an error of `use` again.
  bool during(const std::function<void()>& open);

 private:
  void look();
  bool hasAppeared(FormWindow& window);
  void operate();

  std::function<void(Form&)> use_;
  QTimer watch_;
  QElapsedTimer seen_;
  QPointer<FormWindow> dialog_;
  bool used_ = false;
  std::exception_ptr error_;
};

}  // namespace kestrel::qt
