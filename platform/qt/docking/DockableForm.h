#pragma once

#include <QWidget>

namespace kestrel::qt {

/// What a form must be able to do to be shown in a dock window.
class DockableForm {
 public:
  /// Puts the form's window into the layout of another widget, which shows it from now on. The window stays
  /// the form's.
  virtual void embedIn(QWidget& host) = 0;

 protected:
  ~DockableForm() = default;
};

}  // namespace kestrel::qt
