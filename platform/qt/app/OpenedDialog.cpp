#include "OpenedDialog.h"

#include <QApplication>
#include <utility>

namespace kestrel::qt {
namespace {

constexpr int kRoundMilliseconds = 10;
/// A display without a window manager activates no window.
constexpr int kActivationMilliseconds = 300;

}  // namespace

OpenedDialog::OpenedDialog(std::function<void(Form&)> use) : use_(std::move(use)) {
  QObject::connect(&watch_, &QTimer::timeout, &watch_, [this] { look(); });
}

bool OpenedDialog::during(const std::function<void()>& open) {
  watch_.start(kRoundMilliseconds);
  open();
  watch_.stop();
  if (error_) std::rethrow_exception(error_);
  return used_;
}

void OpenedDialog::look() {
  QWidget* const modal = QApplication::activeModalWidget();
  if (!modal || !modal->isVisible() || modal == dialog_) return;
  auto* const form = qobject_cast<FormWindow*>(modal);
  if (used_ || !form || !form->form) {
    modal->close();
    return;
  }
  if (!hasAppeared(*form)) return;
  used_ = true;
  dialog_ = form;
  // Not from here: this timer must go on while the dialog is operated.
  QTimer::singleShot(0, form, [this] { operate(); });
}

bool OpenedDialog::hasAppeared(FormWindow& window) {
  if (!seen_.isValid()) seen_.start();
  return window.isActiveWindow() || seen_.elapsed() > kActivationMilliseconds;
}

void OpenedDialog::operate() {
  try {
    if (dialog_ && dialog_->form) use_(*dialog_->form);
  } catch (...) {
    error_ = std::current_exception();
  }
  if (dialog_) dialog_->close();
}

}  // namespace kestrel::qt
