#pragma once

#include <QWidget>

namespace kestrel::qt {

/// Interface of a form that can be shown in a dock window.
class DockableForm {
 public:
  /// Embeds the form's window in the layout of another widget. The form still owns the window.
  virtual void embedIn(QWidget& host) = 0;

 protected:
  ~DockableForm() = default;
};

}  // namespace kestrel::qt
