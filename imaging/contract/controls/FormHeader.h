#pragma once

#include <cstdint>
#include <string>

#include "../Control.h"
#include "base/Event.h"

namespace kestrel {

/// The header of a dialog: a strip with the window's title at the top, and OK and Cancel in a row at the
/// bottom. The area between them is left to the dialog, which lays it out itself; so is the left part of the
/// row, 32 pixels high.
class FormHeader : public Control {
 public:
  /// The window's caption as the header shows it.
  virtual std::string Title() const = 0;
  virtual bool OKEnabled() const = 0;
  virtual void OKEnabled(bool value) = 0;
  /// Simulate a click: raise `OKClick` if OK is enabled, respectively `CancelClick`.
  virtual void PressOK() = 0;
  virtual void PressCancel() = 0;

  Event<> OKClick;
  Event<> CancelClick;
  /// The area that is left for the dialog: left, top, width, height. Raised when the window is shown, before
  /// its `Activate`, and for each new size while it is visible.
  Event<std::int32_t, std::int32_t, std::int32_t, std::int32_t> Resize;
};

}  // namespace kestrel
