#pragma once

#include <QMessageBox>
#include <QString>
#include <cstdint>
#include <exception>

class QWidget;

namespace kestrel::qt {

/// A message or question for the user.
struct HostMessage {
  QString text;   ///< plain text, with line feeds
  QString title;  ///< never empty
  QMessageBox::Icon icon = QMessageBox::NoIcon;
  QMessageBox::StandardButtons buttons = QMessageBox::Ok;
  QMessageBox::StandardButton defaultButton = QMessageBox::Ok;
  /// The parent for a window with the message: the editor or browser, or its open dialog. With this parent
  /// the window closes when the host destroys the editor. Null if none of them is open.
  QWidget* owner = nullptr;
};

/// An error inside the component.
struct HostError {
  std::int32_t number = 0;
  QString description;    ///< a sentence for the user
  QString module;         ///< of the failed procedure; empty for an error in an event of the toolkit
  QString procedure;      ///< likewise
  std::int32_t line = 0;  ///< as in reports; see docs/error-reporting.md
  std::exception_ptr exception;
};

/// What a host takes over from the component: an object that it passes to `Component::setServices`. The
/// defaults leave everything to the component.
///
/// All calls come on the main thread. The host may destroy editors and browsers in any of them. An exception
/// must not leave a member: it is ignored, and the component does what it does by default.
class HostServices {
 public:
  virtual ~HostServices() = default;

  /// The button that the user has chosen, one of the message's; the call returns once the user has answered.
  /// NoButton: the component shows its own box. For a message that cannot be shown, return the button by
  /// which the user would close the box: Cancel if it is there, else the only button.
  virtual QMessageBox::StandardButton message(const HostMessage& /*message*/) {
    return QMessageBox::NoButton;
  }

  /// An error that the component reports to the user; the member that failed returns its default result. True
  /// if the host has taken it. False: the user sees a message with it, through `message`; an error without a
  /// procedure is written to standard error. Not called where a reporting object is installed that takes the
  /// errors of procedures.
  virtual bool error(const HostError& /*error*/) { return false; }

  /// An exception has left a handler of the host for an event of the editor or browser, or a member of its
  /// sink. Called at once. Then the component reports it by `error`, unless the event is one whose handlers
  /// must not fail, such as `ImageSave`, after which it continues. For other events, such as those of
  /// `ImageControl()`, `error` alone is called.
  virtual void handlerFailed(const std::exception_ptr& /*exception*/) {}
};

}  // namespace kestrel::qt
